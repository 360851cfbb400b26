// What the forms of dates mean, told a second time and by other means: regular
// expressions, and Qt's calendar and zone. Slow; for comparison only.

#pragma once

#include "records/Instant.h"

#include <QString>

#include <optional>

namespace quire::testing {

std::optional<Instant> oracleDate(const QString &text);

// The instant at which the local clock first showed this time, found by
// looking at what Qt says of the instants around it. For a time that was
// skipped: what it would have been had the clock not been put forward.
Instant oracleLocalInstant(int year, int month, int day, int hour, int minute, int second);

} // namespace quire::testing
