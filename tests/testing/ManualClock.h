// A clock that stands still until the test moves it. Sleeps end when the time
// passes their moment, in the order of their moments; those under way when the
// clock is destroyed end as cancelled.
//
// Thread: now() from any thread, and a stop may be requested on any; everything
// else on the test's.

#pragma once

#include "concurrency/Clock.h"

#include <memory>
#include <vector>

namespace quire::testing {

class ManualClock final : public Clock
{
public:
    explicit ManualClock(
        Instant start = std::chrono::sys_days(std::chrono::year(2026) / 11 / 21) + std::chrono::hours(12));
    ~ManualClock() override;

    Instant now() const override;
    QCoro::Task<> sleep(std::chrono::nanoseconds duration, std::stop_token stop) override;

    // Moves the time on and ends the sleeps that are over by then.
    void advance(std::chrono::nanoseconds duration);

    // Moves the wall clock alone, as a reader does who sets it.
    void setNow(Instant now);

    // Sleeps that are under way and were asked for less than this.
    std::size_t sleepers(std::chrono::nanoseconds shorterThan = std::chrono::nanoseconds::max()) const;

    // The lengths of all sleeps ever asked for, in order.
    std::vector<std::chrono::nanoseconds> requestedSleeps() const;

private:
    struct State;

    std::shared_ptr<State> m_state; // shared with the sleeps, which may outlive the clock
};

} // namespace quire::testing
