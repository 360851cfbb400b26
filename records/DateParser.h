// The one reader of dates, and the one writer of ISO-8601 instants.
//
// Seven forms are tried, in this order, and each is strict: RFC 3339 date-times
// (the profile of ISO 8601) with and without fractional seconds, the date of
// RSS feeds (RFC 822 with a four-digit year), and four more; month and weekday
// names are English on every machine. A text that names no zone means local
// wall-clock time in the machine's zone.
//
// Thread: pure but for reading the machine's zone; any thread, no locks held.

#pragma once

#include "records/Instant.h"

#include <QString>
#include <QStringView>

#include <optional>

namespace quire::DateParser {

// The instant that `text` spells, white space around it ignored; nothing when
// it is absent, blank or in none of the seven forms.
std::optional<Instant> date(const std::optional<QString> &text);
std::optional<Instant> date(QStringView text);

// "2026-11-16T03:41:09.123Z": UTC, three digits of fraction. What the system
// writes for instants of its own.
QString iso8601(Instant instant);

} // namespace quire::DateParser
