// The one reader of dates, and the one writer of ISO-8601 instants.
//
// Seven forms are tried, in this order, and each is strict: RFC 3339 date-times
// (the profile of ISO 8601) with and without fractional seconds, the date of
// RSS feeds (RFC 822 with a four-digit year), and four more; month and weekday
// names are English on every machine. A text that names no zone means local
// wall-clock time in the machine's zone.
//
// Every number has exactly the digits that the forms show. Names of months and
// weekdays may be written in full and in any case of their letters, and the
// weekday need not be that of the date. Where a form has an offset without a
// colon, GMT, UTC, UT and Z are taken too.
//
// Thread: pure but for reading the machine's zone; any thread, no locks held.

#pragma once

#include "records/Instant.h"

#include <QString>
#include <QStringView>

#include <optional>

namespace quire::DateParser {

// The instant that `text` spells, white space around it ignored; nothing when
// it is absent, blank or in none of the seven forms, or names a day or a time
// of day that does not exist. A fraction is cut after its milliseconds. For
// wall-clock times that the local clock skips or repeats see LocalTime.h.
std::optional<Instant> date(const std::optional<QString> &text);
std::optional<Instant> date(const QString &text);
std::optional<Instant> date(QStringView text);

// "2026-11-16T03:41:09.123Z": UTC, three digits of fraction. What the system
// writes for instants of its own.
QString iso8601(Instant instant);

} // namespace quire::DateParser
