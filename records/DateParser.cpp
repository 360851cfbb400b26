#include "records/DateParser.h"

#include "records/LocalTime.h"

#include <array>
#include <cstdio>

namespace quire::DateParser {

namespace {

using namespace std::chrono_literals;
using std::chrono::local_days;
using std::chrono::milliseconds;
using std::chrono::minutes;
using std::chrono::seconds;
using std::chrono::sys_days;
using std::chrono::year_month_day;

constexpr std::array<QStringView, 12> monthNames{u"january", u"february", u"march", u"april", u"may", u"june", u"july",
    u"august", u"september", u"october", u"november", u"december"};
constexpr std::array<QStringView, 7> weekdayNames{
    u"monday", u"tuesday", u"wednesday", u"thursday", u"friday", u"saturday", u"sunday"};
constexpr qsizetype shortName = 3;

// Reads a text from left to right. A step that does not match leaves the
// reader failed, and every later step with it, so that a form is written down
// as the sequence of its parts and judged once at the end.
class Reader
{
public:
    explicit Reader(QStringView text)
        : m_at(text.utf16())
        , m_end(m_at + text.size())
    {
    }

    bool atEnd() const { return m_ok && m_at == m_end; }
    bool failed() const { return !m_ok; }
    bool sees(char16_t c) const { return m_at != m_end && *m_at == c; }

    void skip(char16_t c)
    {
        if (sees(c)) {
            ++m_at;
        } else {
            m_ok = false;
        }
    }

    // Exactly `count` ASCII digits.
    unsigned digits(qsizetype count)
    {
        if (m_end - m_at < count) {
            m_ok = false;
            return 0;
        }
        unsigned value = 0;
        for (const char16_t *const last = m_at + count; m_at != last; ++m_at) {
            const unsigned digit = *m_at - u'0';
            m_ok &= digit <= 9;
            value = value * 10 + digit;
        }
        return value;
    }

    // As digits(), and not above `highest`.
    unsigned upTo(unsigned highest, qsizetype count)
    {
        const unsigned value = digits(count);
        m_ok &= value <= highest;
        return value;
    }

    // One or more digits after a point; those beyond the third are cut.
    milliseconds fraction()
    {
        skip(u'.');
        const char16_t *const first = m_at;
        int value = 0;
        int unit = 100;
        for (; m_at != m_end && *m_at >= u'0' && *m_at <= u'9'; ++m_at) {
            value += (*m_at - u'0') * unit;
            unit /= 10;
        }
        m_ok &= m_at != first;
        return milliseconds(value);
    }

    // The place of a name, short or in full and in any case of its letters,
    // counted from 1.
    template<std::size_t Count>
    unsigned name(const std::array<QStringView, Count> &names)
    {
        for (std::size_t i = 0; i < Count; ++i) {
            if (startsWith(names[i].first(shortName))) {
                m_at += startsWith(names[i]) ? names[i].size() : shortName;
                return static_cast<unsigned>(i + 1);
            }
        }
        m_ok = false;
        return 1;
    }

    bool skipWord(QStringView word)
    {
        const bool there = m_end - m_at >= word.size() && QStringView(m_at, word.size()) == word;
        m_at += there ? word.size() : 0;
        return there;
    }

private:
    // lowerCase: lower-case ASCII letters.
    bool startsWith(QStringView lowerCase) const
    {
        if (m_end - m_at < lowerCase.size()) {
            return false;
        }
        for (qsizetype i = 0; i < lowerCase.size(); ++i) {
            if ((m_at[i] | 0x20) != lowerCase[i].unicode()) {
                return false;
            }
        }
        return true;
    }

    const char16_t *m_at;
    const char16_t *m_end;
    bool m_ok = true;
};

year_month_day dashedDate(Reader &reader)
{
    const std::chrono::year year(static_cast<int>(reader.digits(4)));
    reader.skip(u'-');
    const std::chrono::month month(reader.digits(2));
    reader.skip(u'-');
    return {year, month, std::chrono::day(reader.digits(2))};
}

seconds timeOfDay(Reader &reader)
{
    const auto hour = reader.upTo(23, 2);
    reader.skip(u':');
    const auto minute = reader.upTo(59, 2);
    reader.skip(u':');
    return seconds(hour * 3600 + minute * 60 + reader.upTo(59, 2));
}

// A sign and hours and minutes. colon: whether one stands between the two.
minutes signedOffset(Reader &reader, bool colon)
{
    const bool west = reader.sees(u'-');
    reader.skip(west ? u'-' : u'+');
    const auto hours = reader.upTo(23, 2);
    if (colon) {
        reader.skip(u':');
    }
    const minutes offset(hours * 60 + reader.upTo(59, 2));
    return west ? -offset : offset;
}

// The zone of the internet forms: Z, or an offset with a colon.
minutes internetZone(Reader &reader)
{
    if (reader.skipWord(u"Z")) {
        return 0min;
    }
    return signedOffset(reader, true);
}

// The zone of the pattern letter Z: an offset without a colon, and the names
// of UTC that formatters of that pattern take as well.
minutes patternZone(Reader &reader)
{
    for (const QStringView utc : {u"GMT", u"UTC", u"UT", u"Z"}) {
        if (reader.skipWord(utc)) {
            return 0min;
        }
    }
    return signedOffset(reader, false);
}

bool isReal(const year_month_day &date)
{
    return date.ok() && date.year() != std::chrono::year(0);
}

std::optional<Instant> inZone(const Reader &reader, const year_month_day &date, milliseconds time, minutes offset)
{
    if (!reader.atEnd() || !isReal(date)) {
        return std::nullopt;
    }
    return sys_days(date) + time - offset;
}

std::optional<Instant> inLocalZone(const Reader &reader, const year_month_day &date, seconds time)
{
    if (!reader.atEnd() || !isReal(date)) {
        return std::nullopt;
    }
    return LocalTime::instant(local_days(date) + time);
}

// 2024-03-05, 2024-03-05 10:15:30, 2024-03-05T10:15:30Z, 2024-03-05T10:15:30.250+01:00
std::optional<Instant> beginningWithYear(Reader reader)
{
    const auto date = dashedDate(reader);
    if (reader.atEnd()) {
        return inLocalZone(reader, date, 0s);
    }
    if (reader.sees(u' ')) {
        reader.skip(u' ');
        const auto time = timeOfDay(reader);
        return inLocalZone(reader, date, time);
    }
    reader.skip(u'T');
    const auto time = timeOfDay(reader);
    const auto fraction = reader.sees(u'.') ? reader.fraction() : 0ms;
    const auto offset = internetZone(reader);
    return inZone(reader, date, time + fraction, offset);
}

// Mar 05, 2024
std::optional<Instant> beginningWithMonth(Reader reader)
{
    const std::chrono::month month(reader.name(monthNames));
    reader.skip(u' ');
    const std::chrono::day day(reader.digits(2));
    reader.skip(u',');
    reader.skip(u' ');
    const std::chrono::year year(static_cast<int>(reader.digits(4)));
    return inLocalZone(reader, {year, month, day}, 0s);
}

// Tue, 05 Mar 2024 10:15:30 +0000 and Tue Mar 05 10:15:30 +0000 2024. The
// weekday must be one, but which one is not held against the date.
std::optional<Instant> beginningWithWeekday(Reader reader)
{
    reader.name(weekdayNames);
    const bool dayFirst = reader.sees(u',');
    if (dayFirst) {
        reader.skip(u',');
    }
    reader.skip(u' ');
    if (dayFirst) {
        const std::chrono::day day(reader.digits(2));
        reader.skip(u' ');
        const std::chrono::month month(reader.name(monthNames));
        reader.skip(u' ');
        const std::chrono::year year(static_cast<int>(reader.digits(4)));
        reader.skip(u' ');
        const auto time = timeOfDay(reader);
        reader.skip(u' ');
        const auto offset = patternZone(reader);
        return inZone(reader, {year, month, day}, time, offset);
    }
    const std::chrono::month month(reader.name(monthNames));
    reader.skip(u' ');
    const std::chrono::day day(reader.digits(2));
    reader.skip(u' ');
    const auto time = timeOfDay(reader);
    reader.skip(u' ');
    const auto offset = patternZone(reader);
    reader.skip(u' ');
    const std::chrono::year year(static_cast<int>(reader.digits(4)));
    return inZone(reader, {year, month, day}, time, offset);
}

} // namespace

std::optional<Instant> date(QStringView text)
{
    text = text.trimmed();
    if (text.isEmpty()) {
        return std::nullopt;
    }
    // No text has two of the seven forms, so the order of trial does not show;
    // the first character tells which ones are possible.
    if (text.front() >= u'0' && text.front() <= u'9') {
        return beginningWithYear(Reader(text));
    }
    if (const auto instant = beginningWithWeekday(Reader(text))) {
        return instant;
    }
    return beginningWithMonth(Reader(text));
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
