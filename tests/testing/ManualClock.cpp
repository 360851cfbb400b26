#include "testing/ManualClock.h"

#include "concurrency/Cancelled.h"

#include <QCoreApplication>
#include <QCoroFuture>
#include <QFuture>
#include <QPromise>

#include <algorithm>
#include <mutex>

namespace quire::testing {

struct ManualClock::State
{
    struct Sleeper
    {
        std::chrono::nanoseconds until;
        std::chrono::nanoseconds duration;
        std::shared_ptr<QPromise<void>> promise;
    };

    std::mutex mutex; // of all that follows
    Instant now;
    std::chrono::nanoseconds elapsed{0};
    std::vector<Sleeper> sleepers; // in the order in which they fell asleep
    std::vector<std::chrono::nanoseconds> requested;
    bool closed = false;

    bool isClosed()
    {
        const std::lock_guard lock(mutex);
        return closed;
    }

    // Takes out the sleepers for whom `isDue` holds and ends their sleeps, the
    // earliest moment first.
    template<typename IsDue>
    void wake(IsDue isDue)
    {
        std::vector<Sleeper> due;
        {
            const std::lock_guard lock(mutex);
            const auto rest = std::stable_partition(
                sleepers.begin(), sleepers.end(), [&isDue](const Sleeper &sleeper) { return !isDue(sleeper); });
            due.assign(rest, sleepers.end());
            sleepers.erase(rest, sleepers.end());
        }
        std::stable_sort(due.begin(), due.end(), [](const Sleeper &a, const Sleeper &b) { return a.until < b.until; });
        for (const Sleeper &sleeper : due) {
            sleeper.promise->finish();
        }
    }
};

ManualClock::ManualClock(Instant start)
    : m_state(std::make_shared<State>())
{
    m_state->now = start;
}

ManualClock::~ManualClock()
{
    {
        const std::lock_guard lock(m_state->mutex);
        m_state->closed = true;
    }
    m_state->wake([](const auto &) { return true; });
}

Instant ManualClock::now() const
{
    const std::lock_guard lock(m_state->mutex);
    return m_state->now;
}

QCoro::Task<> ManualClock::sleep(std::chrono::nanoseconds duration, std::stop_token stop)
{
    if (stop.stop_requested()) {
        throw Cancelled();
    }
    const auto state = m_state;
    const auto promise = std::make_shared<QPromise<void>>();
    promise->start();
    {
        const std::lock_guard lock(state->mutex);
        state->requested.push_back(duration);
        if (duration.count() > 0) {
            state->sleepers.push_back({state->elapsed + duration, duration, promise});
        }
    }
    if (duration.count() <= 0) { // no time to wait for, but the event loop gets its turn
        QMetaObject::invokeMethod(
            qApp, [promise] { promise->finish(); }, Qt::QueuedConnection);
    }
    {
        const auto wake = [state, promise] {
            state->wake([&promise](const State::Sleeper &sleeper) { return sleeper.promise == promise; });
        };
        const std::stop_callback onStop(stop, wake);
        const auto finished = promise->future();
        co_await finished;
    }
    if (stop.stop_requested() || state->isClosed()) {
        throw Cancelled();
    }
}

void ManualClock::advance(std::chrono::nanoseconds duration)
{
    std::chrono::nanoseconds elapsed;
    {
        const std::lock_guard lock(m_state->mutex);
        m_state->now += std::chrono::floor<Instant::duration>(duration);
        elapsed = m_state->elapsed += duration;
    }
    m_state->wake([elapsed](const State::Sleeper &sleeper) { return sleeper.until <= elapsed; });
}

void ManualClock::setNow(Instant now)
{
    const std::lock_guard lock(m_state->mutex);
    m_state->now = now;
}

std::size_t ManualClock::sleepers(std::chrono::nanoseconds shorterThan) const
{
    const std::lock_guard lock(m_state->mutex);
    return std::size_t(std::count_if(m_state->sleepers.begin(), m_state->sleepers.end(),
        [shorterThan](const State::Sleeper &sleeper) { return sleeper.duration < shorterThan; }));
}

std::vector<std::chrono::nanoseconds> ManualClock::requestedSleeps() const
{
    const std::lock_guard lock(m_state->mutex);
    return m_state->requested;
}

} // namespace quire::testing
