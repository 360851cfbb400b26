// What a reader feels of work behind the interface: how long the event loop was
// away at the longest.
//
// Thread: interface thread.

#pragma once

#include <QCoreApplication>

#include <algorithm>
#include <chrono>

namespace quire {

// Turns the event loop until `isDone`; the longest that one turn was away.
template<typename Condition>
std::chrono::duration<double, std::milli> longestGap(Condition isDone)
{
    using Steady = std::chrono::steady_clock;
    Steady::duration longest{0};
    auto last = Steady::now();
    while (!isDone()) {
        QCoreApplication::processEvents(QEventLoop::AllEvents, 1);
        const auto now = Steady::now();
        longest = std::max(longest, now - last);
        last = now;
    }
    return longest;
}

} // namespace quire
