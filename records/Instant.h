// A moment on the wall clock, to the millisecond.

#pragma once

#include <chrono>

namespace quire {

using Instant = std::chrono::sys_time<std::chrono::milliseconds>;

// Earlier than any real date: the recency of a title without one.
inline constexpr Instant distantPast = std::chrono::sys_days(std::chrono::year(1) / 1 / 1);

} // namespace quire
