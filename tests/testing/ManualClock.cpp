#include "testing/ManualClock.h"

#include "concurrency/Cancelled.h"

#include <QCoroFuture>

#include <algorithm>

namespace quire::testing {

ManualClock::ManualClock(Instant start)
    : m_now(start)
{
}

ManualClock::~ManualClock()
{
    for (const Sleeper &sleeper : m_sleepers) {
        sleeper.promise->finish();
    }
}

Instant ManualClock::now() const
{
    const std::lock_guard lock(m_mutex);
    return m_now;
}

QCoro::Task<> ManualClock::sleep(std::chrono::nanoseconds duration, std::stop_token stop)
{
    if (stop.stop_requested()) {
        throw Cancelled();
    }
    m_requested.push_back(duration);
    const auto promise = std::make_shared<QPromise<void>>();
    promise->start();
    m_sleepers.push_back({m_elapsed + std::max(duration, std::chrono::nanoseconds(0)), promise});
    const std::stop_callback onStop(stop, [this, promise] { wake(promise); });
    const auto finished = promise->future();
    co_await finished;
    if (stop.stop_requested()) {
        throw Cancelled();
    }
}

void ManualClock::wake(const std::shared_ptr<QPromise<void>> &promise)
{
    const auto found = std::find_if(m_sleepers.begin(), m_sleepers.end(),
        [&promise](const Sleeper &sleeper) { return sleeper.promise == promise; });
    if (found != m_sleepers.end()) {
        m_sleepers.erase(found);
        promise->finish();
    }
}

void ManualClock::advance(std::chrono::nanoseconds duration)
{
    {
        const std::lock_guard lock(m_mutex);
        m_now += std::chrono::floor<Instant::duration>(duration);
    }
    m_elapsed += duration;
    std::vector<Sleeper> due;
    for (const Sleeper &sleeper : m_sleepers) {
        if (sleeper.until <= m_elapsed) {
            due.push_back(sleeper);
        }
    }
    std::stable_sort(due.begin(), due.end(), [](const Sleeper &a, const Sleeper &b) { return a.until < b.until; });
    for (const Sleeper &sleeper : due) {
        wake(sleeper.promise);
    }
}

void ManualClock::setNow(Instant now)
{
    const std::lock_guard lock(m_mutex);
    m_now = now;
}

std::size_t ManualClock::sleepers() const
{
    return m_sleepers.size();
}

} // namespace quire::testing
