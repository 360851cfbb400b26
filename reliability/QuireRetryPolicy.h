// Which failures are worth another try.
//
// Thread: pure, any thread.

#pragma once

#include <exception>

namespace quire::QuireRetryPolicy {

// True when doing the same again may succeed: transport failures that pass
// (a time-out, a lost connection, no network, ...), and the HTTP statuses 408,
// 429 and 500 to 599. Never true for a cancellation, nor for anything else.
bool isTransient(const std::exception &error);

} // namespace quire::QuireRetryPolicy
