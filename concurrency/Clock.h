// Clock is the one source of "now" and of waiting for everything above the
// store, so that tests can hold time still and move it by hand.
//
// Thread: now() from any thread; sleep() on a thread with an event loop, and
// the coroutine goes on there.

#pragma once

#include "records/Instant.h"

#include <QCoroTask>

#include <chrono>
#include <stop_token>

namespace quire {

class Clock
{
public:
    virtual ~Clock();

    // The present moment of the wall clock.
    virtual Instant now() const = 0;

    // Suspends for at least `duration`, measured on a monotonic clock; zero or
    // less yields once to the event loop. Throws Cancelled, on the calling
    // thread, as soon as `stop` is requested, also when it was before the call.
    virtual QCoro::Task<> sleep(std::chrono::nanoseconds duration, std::stop_token stop) = 0;

protected:
    Clock() = default;
    Clock(const Clock &) = default;
    Clock &operator=(const Clock &) = default;
};

} // namespace quire
