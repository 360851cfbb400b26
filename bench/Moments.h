// Moments of a start, told on the standard output as lines of a name and the
// nanoseconds of the machine's monotonic clock, so that the process that began
// the start can tell how long each took.
//
// Thread: any; one at a time.

#pragma once

#include <chrono>
#include <cstdio>

namespace quire {

inline long long monotonicNanoseconds()
{
    return std::chrono::duration_cast<std::chrono::nanoseconds>(std::chrono::steady_clock::now().time_since_epoch())
        .count();
}

inline void tellMoment(const char *name)
{
    std::printf("%s %lld\n", name, monotonicNanoseconds());
    std::fflush(stdout);
}

} // namespace quire
