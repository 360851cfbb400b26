// How long the passing texts stay.

#pragma once

#include <chrono>

namespace quire::ToastTimes {

inline constexpr std::chrono::milliseconds success{3200};
inline constexpr std::chrono::milliseconds failure{7000}; // of automatic work: longer, as nobody waits for it

} // namespace quire::ToastTimes
