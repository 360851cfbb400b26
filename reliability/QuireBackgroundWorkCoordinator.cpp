#include "reliability/QuireBackgroundWorkCoordinator.h"

#include "records/UUIDText.h"

#include <QPromise>

#include <algorithm>
#include <optional>
#include <vector>

namespace quire {

namespace {

struct WaitingJob
{
    QString id; // upper-case text of a UUID
    QuireBackgroundJob kind;
    QuireJobPriority priority;
    std::shared_ptr<QPromise<bool>> continuation;
};

bool goesBefore(const WaitingJob &a, const WaitingJob &b)
{
    if (a.priority != b.priority) {
        return a.priority > b.priority;
    }
    return a.id < b.id;
}

void resume(QPromise<bool> &continuation, bool holdsSlot)
{
    continuation.addResult(holdsSlot);
    continuation.finish();
}

} // namespace

class QuireBackgroundWorkCoordinator::Slot
{
public:
    explicit Slot(std::function<QUuid()> makeId)
        : m_makeId(std::move(makeId))
    {
    }

    Slot(const Slot &) = delete;
    Slot &operator=(const Slot &) = delete;

    ~Slot()
    {
        for (const WaitingJob &job : m_waiting) {
            resume(*job.continuation, false);
        }
    }

    void acquire(QuireBackgroundJob job, QuireJobPriority priority, std::shared_ptr<QPromise<bool>> continuation)
    {
        if (!m_active) {
            m_active = job;
            resume(*continuation, true);
        } else if (*m_active == job || isWaiting(job)) {
            resume(*continuation, false); // the first request keeps its priority
        } else {
            m_waiting.push_back({UUIDText::of(m_makeId()), job, priority, std::move(continuation)});
            std::stable_sort(m_waiting.begin(), m_waiting.end(), goesBefore);
        }
    }

    void finish(QuireBackgroundJob job)
    {
        if (m_active != job) {
            return;
        }
        if (m_waiting.empty()) {
            m_active.reset();
            return;
        }
        const WaitingJob next = std::move(m_waiting.front());
        m_waiting.erase(m_waiting.begin());
        m_active = next.kind;
        resume(*next.continuation, true);
    }

private:
    bool isWaiting(QuireBackgroundJob job) const
    {
        return std::any_of(
            m_waiting.begin(), m_waiting.end(), [job](const WaitingJob &waiting) { return waiting.kind == job; });
    }

    std::function<QUuid()> m_makeId;
    std::optional<QuireBackgroundJob> m_active;
    std::vector<WaitingJob> m_waiting; // in the order in which they get the slot
};

QuireBackgroundWorkCoordinator::QuireBackgroundWorkCoordinator(std::function<QUuid()> makeId)
    : m_slot(std::make_unique<Slot>(std::move(makeId)))
    , m_executor(QStringLiteral("quire-jobs"))
{
}

QuireBackgroundWorkCoordinator::~QuireBackgroundWorkCoordinator() = default;

QFuture<bool> QuireBackgroundWorkCoordinator::acquire(QuireBackgroundJob job, QuireJobPriority priority)
{
    auto continuation = std::make_shared<QPromise<bool>>();
    continuation->start();
    QFuture<bool> answer = continuation->future();
    m_executor.submit([slot = m_slot.get(), job, priority, continuation = std::move(continuation)] {
        slot->acquire(job, priority, continuation);
    });
    return answer;
}

QFuture<void> QuireBackgroundWorkCoordinator::finish(QuireBackgroundJob job)
{
    return m_executor.submit([slot = m_slot.get(), job] { slot->finish(job); });
}

} // namespace quire
