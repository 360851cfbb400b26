#include "records/DateParser.h"

#include "records/DateReader.h"
#include "records/LocalTime.h"

#include <array>
#include <cstdio>

namespace quire::DateParser {

namespace {

using namespace std::chrono_literals;
using std::chrono::local_days;
using std::chrono::milliseconds;
using std::chrono::minutes;
using std::chrono::month;
using std::chrono::seconds;
using std::chrono::sys_days;
using std::chrono::year_month_day;

// Tells most texts from those that are worth a look by the slower full test.
bool mayBeBlank(QChar c)
{
    return c.unicode() <= u' ' || c.unicode() >= 0x80;
}

bool isDate(const DateReader &reader, const year_month_day &date)
{
    return reader.isDone() && date.ok() && date.year() != std::chrono::year(0);
}

std::optional<Instant> inZone(const DateReader &reader, const year_month_day &date, milliseconds time, minutes offset)
{
    if (!isDate(reader, date)) {
        return std::nullopt;
    }
    return sys_days(date) + time - offset;
}

std::optional<Instant> inLocalZone(const DateReader &reader, const year_month_day &date, seconds time)
{
    if (!isDate(reader, date)) {
        return std::nullopt;
    }
    return LocalTime::instant(local_days(date) + time);
}

// The zone of the internet forms: Z, or an offset with a colon.
minutes internetZone(DateReader &reader)
{
    return reader.skipIfThere(u'Z') ? 0min : reader.offsetWithColon();
}

// The zone of the pattern letter Z: an offset without a colon, and the names
// of UTC that formatters of that pattern take as well.
minutes patternZone(DateReader &reader)
{
    if (reader.sees(u'+') || reader.sees(u'-')) {
        return reader.offset();
    }
    if (!reader.skipIfThere(u"GMT") && !reader.skipIfThere(u"UTC") && !reader.skipIfThere(u"UT")) {
        reader.skip(u'Z');
    }
    return 0min;
}

// 2024-03-05, 2024-03-05 10:15:30, 2024-03-05T10:15:30Z, 2024-03-05T10:15:30.250+01:00
std::optional<Instant> beginningWithYear(QStringView text)
{
    constexpr qsizetype dateLength = 10;
    DateReader reader(text);
    const auto date = reader.dashedDate();
    if (text.size() == dateLength) {
        return inLocalZone(reader, date, 0s);
    }
    if (reader.sees(u' ')) {
        reader.skip(u' ');
        const auto time = reader.timeOfDay();
        return inLocalZone(reader, date, time);
    }
    reader.skip(u'T');
    const auto time = reader.timeOfDay();
    const auto fraction = reader.sees(u'.') ? reader.fraction() : 0ms;
    const auto offset = internetZone(reader);
    return inZone(reader, date, time + fraction, offset);
}

// Mar 05, 2024
std::optional<Instant> beginningWithMonth(QStringView text)
{
    DateReader reader(text);
    const month month(reader.name(monthNames));
    reader.skip(u' ');
    const auto day = reader.day();
    reader.skip(u',');
    reader.skip(u' ');
    const auto year = reader.year();
    return inLocalZone(reader, {year, month, day}, 0s);
}

// Tue, 05 Mar 2024 10:15:30 +0000 and Tue Mar 05 10:15:30 +0000 2024. The
// weekday must be one, but which one is not held against the date.
std::optional<Instant> beginningWithWeekday(QStringView text)
{
    DateReader reader(text);
    reader.name(weekdayNames);
    if (reader.sees(u',')) {
        reader.skip(u',');
        reader.skip(u' ');
        const auto day = reader.day();
        reader.skip(u' ');
        const month month(reader.name(monthNames));
        reader.skip(u' ');
        const auto year = reader.year();
        reader.skip(u' ');
        const auto time = reader.timeOfDay();
        reader.skip(u' ');
        const auto offset = patternZone(reader);
        return inZone(reader, {year, month, day}, time, offset);
    }
    reader.skip(u' ');
    const month month(reader.name(monthNames));
    reader.skip(u' ');
    const auto day = reader.day();
    reader.skip(u' ');
    const auto time = reader.timeOfDay();
    reader.skip(u' ');
    const auto offset = patternZone(reader);
    reader.skip(u' ');
    const auto year = reader.year();
    return inZone(reader, {year, month, day}, time, offset);
}

} // namespace

std::optional<Instant> date(QStringView text)
{
    if (text.isEmpty()) {
        return std::nullopt;
    }
    if (mayBeBlank(text.front()) || mayBeBlank(text.back())) {
        text = text.trimmed();
    }
    // No text has two of the seven forms, so the order of trial does not show:
    // how a text begins tells which ones are possible.
    if (text.size() < qsizetype(weekdayNames.shortLength)) {
        return std::nullopt;
    }
    if (text.front() >= u'0' && text.front() <= u'9') {
        return beginningWithYear(text);
    }
    if (weekdayNames.find(text.utf16()) != 0) {
        return beginningWithWeekday(text);
    }
    return beginningWithMonth(text);
}

std::optional<Instant> date(const QString &text)
{
    return date(QStringView(text));
}

std::optional<Instant> date(const std::optional<QString> &text)
{
    return text ? date(QStringView(*text)) : std::nullopt;
}

QString iso8601(Instant instant)
{
    const auto day = std::chrono::floor<std::chrono::days>(instant);
    const year_month_day date(day);
    const std::chrono::hh_mm_ss time(instant - day);
    std::array<char, 48> text{};
    const int length = std::snprintf(text.data(), text.size(), "%04d-%02u-%02uT%02d:%02d:%02d.%03dZ", int(date.year()),
        unsigned(date.month()), unsigned(date.day()), int(time.hours().count()), int(time.minutes().count()),
        int(time.seconds().count()), int(time.subseconds().count()));
    return QString::fromLatin1(text.data(), length);
}

} // namespace quire::DateParser
