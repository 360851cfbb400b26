// Named points in the riskiest write paths at which the process can be made to
// die at once, as in a power cut, so that recovery can be tested. In a normal
// run they do nothing.
//
// Thread: any thread; reads the environment and nothing else.

#pragma once

#include <QAnyStringView>

namespace quire::QuireFailureInjector {

// How a process ends at its point.
inline constexpr int exitStatus = 86;

// Returns, unless the environment has QUIRE_ENABLE_FAILURE_TESTS as "1" and
// QUIRE_FAILURE_POINT as exactly `name`: then the process ends here with
// exitStatus, without exit handlers and with nothing flushed.
void checkpoint(QAnyStringView name);

} // namespace quire::QuireFailureInjector
