// The wall clock of the machine's zone.
//
// The zone is read when it is first asked for and kept for the life of the
// process. The C library's own conversion looks at the zone file and takes a
// process-wide lock on every call; here it is asked once for each stretch of
// about a year, and what it said is looked up from then on without a lock.
//
// Thread: any thread.

#pragma once

#include <chrono>

namespace quire::LocalTime {

// The instant at which the local clock showed `wall`, a moment of the years 1
// to 9999 of the Gregorian calendar.
//
// A time that the clock showed twice, as when summer time ends, means the
// first of the two. A time that it skipped, as when summer time begins, is
// read as if the clock had not been put forward yet: half past two of a night
// whose clocks go from two to three is half past three. A date whose midnight
// was skipped or repeated therefore means the moment at which that day began.
std::chrono::sys_seconds instant(std::chrono::local_seconds wall);

// What the local clock shows at `instant`, a moment of those years.
std::chrono::local_seconds wallClock(std::chrono::sys_seconds instant);

} // namespace quire::LocalTime
