// The one slot of long-running work, asked for and given up in random order: what
// becomes of each request is what a plain model of the slot says.

#include "faults/Torture.h"
#include "reliability/QuireBackgroundWorkCoordinator.h"
#include "testing/Await.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <mutex>

using namespace quire;
using namespace quire::testing;

namespace {

using Job = QuireBackgroundJob;
using Priority = QuireJobPriority;

// The slot told a second time, as plainly as it can be.
class Model
{
public:
    // forgetsPriority: a broken twin, for the control.
    explicit Model(bool forgetsPriority)
        : m_forgetsPriority(forgetsPriority)
    {
    }

    struct Waiting
    {
        int priority;
        QString id;
        Job job;
        std::size_t request;
    };

    // What becomes of a request at once: true, false, or nothing while it waits.
    std::optional<bool> acquire(Job job, Priority priority, const QString &id, std::size_t request)
    {
        if (!active) {
            active = job;
            return true;
        }
        const auto same = [job](const Waiting &w) { return w.job == job; };
        if (active == job || std::any_of(waiting.begin(), waiting.end(), same)) {
            return false;
        }
        waiting.push_back({int(priority), id, job, request});
        return std::nullopt;
    }

    bool wouldWait(Job job) const
    {
        return active && active != job
            && std::none_of(waiting.begin(), waiting.end(), [job](const Waiting &w) { return w.job == job; });
    }

    // The request that gets the slot, if one does.
    std::optional<std::size_t> finish(Job job)
    {
        if (active != job) {
            return std::nullopt;
        }
        active.reset();
        if (waiting.empty()) {
            return std::nullopt;
        }
        const auto next = std::min_element(waiting.begin(), waiting.end(), [this](const Waiting &a, const Waiting &b) {
            return a.priority != b.priority && !m_forgetsPriority ? a.priority > b.priority : a.id < b.id;
        });
        active = next->job;
        const std::size_t request = next->request;
        waiting.erase(next);
        return request;
    }

    std::optional<Job> active;
    std::vector<Waiting> waiting;

private:
    bool m_forgetsPriority;
};

// So many steps; the first disagreement, empty when there is none.
QString disagreement(Torture &torture, int steps, bool forgetsPriority)
{
    QStringList ids; // handed out in this order; grown before the request that needs one
    std::mutex mutex;
    qsizetype used = 0;
    QuireBackgroundWorkCoordinator coordinator([&] {
        const std::lock_guard lock(mutex);
        return QUuid::fromString(ids.at(used++));
    });

    Model model(forgetsPriority);
    std::vector<QFuture<bool>> requests;
    std::vector<std::optional<bool>> expected;
    const auto agrees = [&](std::size_t request) {
        const QFuture<bool> &answer = requests[request];
        return answer.isFinished() == expected[request].has_value()
            && (!answer.isFinished() || answer.result() == *expected[request]);
    };
    for (int step = 1; step <= steps; ++step) {
        torture.addRounds();
        const Job job = allBackgroundJobs[std::size_t(torture.below(int(allBackgroundJobs.size())))];
        std::optional<std::size_t> touched;
        if (torture.below(2) == 0) {
            const auto priority = torture.below(2) == 0 ? Priority::Automatic : Priority::Manual;
            const QUuid id(uint(torture.random()()), 0, 0, 0, 0, 0, 0, 0, 0, 0, 1);
            if (model.wouldWait(job)) {
                const std::lock_guard lock(mutex);
                ids.append(id.toString());
            }
            touched = requests.size();
            expected.push_back(
                model.acquire(job, priority, id.toString(QUuid::WithoutBraces).toUpper(), requests.size()));
            requests.push_back(coordinator.acquire(job, priority));
        } else {
            // mostly the active one, so that the slot moves
            const Job ended = model.active && torture.below(3) != 0 ? *model.active : job;
            touched = model.finish(ended);
            if (touched) {
                expected[*touched] = true;
            }
            coordinator.finish(ended);
        }
        // Looks at the outcome once the step has been carried out.
        await(coordinator.finish(model.active == Job::Maintenance ? Job::Artwork : Job::Maintenance));
        if (touched && !agrees(*touched)) {
            return QStringLiteral("step %1: other than the model says").arg(step);
        }
        for (const Model::Waiting &waiting : model.waiting) {
            if (!agrees(waiting.request)) {
                return QStringLiteral("step %1: a request that waits was answered").arg(step);
            }
        }
    }
    return used > steps / 100 ? QString() : QStringLiteral("hardly a request waited");
}

} // namespace

TEST(CoordinatorModel, RandomStepsAgreeWithAPlainModel)
{
    Torture torture("R22", "random steps of the coordinator");
    if (const QString found = disagreement(torture, Torture::scaled(10'000), false); !found.isEmpty()) {
        torture.addFinding(found);
    }
}

// The control: a rule of its own is not the coordinator's.
TEST(CoordinatorModel, ASlotThatForgetsPriorityIsCaught)
{
    Torture torture("R22-control", "priority forgotten");
    EXPECT_FALSE(disagreement(torture, 10'000, true).isEmpty());
}
