// Reads the parts of a date from left to right. A part that is not there or not
// right leaves the reader failed, whatever follows, so that a form is written
// down as the sequence of its parts and judged once at its end. Nothing here
// decides early: most texts are dates, and a wrong guess of a branch costs more
// than the rest of the text.
//
// Thread: a reader belongs to one call.

#pragma once

#include "records/DateNames.h"

#include <QStringView>

#include <chrono>

namespace quire {

class DateReader
{
public:
    explicit DateReader(QStringView text)
        : m_at(text.utf16())
        , m_end(m_at + text.size())
    {
    }

    // True when every part was right and nothing is left.
    bool isDone() const { return m_wrong == 0 && m_at == m_end; }

    bool sees(char16_t c) const { return m_at != m_end && *m_at == c; }

    Q_ALWAYS_INLINE void skip(char16_t c) { m_wrong |= *take(1) ^ c; }

    bool skipIfThere(char16_t c)
    {
        const bool there = sees(c);
        m_at += there ? 1 : 0;
        return there;
    }

    bool skipIfThere(QStringView text)
    {
        const bool there = m_end - m_at >= text.size() && QStringView(m_at, text.size()) == text;
        m_at += there ? text.size() : 0;
        return there;
    }

    // Two digits.
    unsigned two() { return two(take(2)); }

    // Four digits.
    Q_ALWAYS_INLINE std::chrono::year year() { return std::chrono::year(static_cast<int>(four(take(4)))); }

    Q_ALWAYS_INLINE std::chrono::day day() { return std::chrono::day(two()); }

    // yyyy-MM-dd
    Q_ALWAYS_INLINE std::chrono::year_month_day dashedDate()
    {
        const char16_t *const at = take(10);
        m_wrong |= (at[4] ^ u'-') | (at[7] ^ u'-');
        const std::chrono::year year(static_cast<int>(four(at)));
        return {year, std::chrono::month(two(at + 5)), std::chrono::day(two(at + 8))};
    }

    // HH:mm:ss
    Q_ALWAYS_INLINE std::chrono::seconds timeOfDay()
    {
        const char16_t *const at = take(8);
        m_wrong |= (at[2] ^ u':') | (at[5] ^ u':');
        const unsigned hour = two(at);
        const unsigned minute = two(at + 3);
        const unsigned second = two(at + 6);
        m_wrong |= unsigned(hour > 23) | unsigned(minute > 59) | unsigned(second > 59);
        return std::chrono::seconds(hour * 3600 + minute * 60 + second);
    }

    // A point and one or more digits; those beyond the third are cut.
    std::chrono::milliseconds fraction()
    {
        skip(u'.');
        const char16_t *const first = m_at;
        int value = 0;
        for (int unit = 100; seesDigit(); ++m_at, unit /= 10) {
            value += (*m_at - u'0') * unit;
        }
        m_wrong |= unsigned(m_at == first);
        return std::chrono::milliseconds(value);
    }

    // A sign, hours and minutes: +hhmm, or +hh:mm
    Q_ALWAYS_INLINE std::chrono::minutes offset() { return offset(take(5), 3); }
    Q_ALWAYS_INLINE std::chrono::minutes offsetWithColon()
    {
        const char16_t *const at = take(6);
        m_wrong |= at[3] ^ u':';
        return offset(at, 4);
    }

    // The place from 1 of a name, short or in full.
    template<std::size_t Count>
    Q_ALWAYS_INLINE unsigned name(const DateNames<Count> &names)
    {
        constexpr auto shortLength = DateNames<Count>::shortLength;
        const unsigned place = names.find(take(shortLength));
        m_wrong |= unsigned(place == 0);
        if (place != 0 && m_at != m_end && isLetter(*m_at)) {
            skipLetters(names.fullName(place).substr(shortLength));
        }
        return place;
    }

private:
    Q_ALWAYS_INLINE std::chrono::minutes offset(const char16_t *at, qsizetype minutesAt)
    {
        const bool west = *at == u'-';
        const unsigned hours = two(at + 1);
        const unsigned minutes = two(at + minutesAt);
        m_wrong |= unsigned(!west && *at != u'+') | unsigned(hours > 23) | unsigned(minutes > 59);
        const int size = static_cast<int>(hours * 60 + minutes);
        return std::chrono::minutes(west ? -size : size);
    }

    bool seesDigit() const { return m_at != m_end && unsigned(*m_at - u'0') <= 9; }
    static bool isLetter(char16_t c) { return (c | 0x20) >= u'a' && (c | 0x20) <= u'z'; }

    // As skip(), in any case of the letters.
    void skipLetters(std::u16string_view lowerCase)
    {
        const char16_t *const at = take(qsizetype(lowerCase.size()));
        for (std::size_t i = 0; i < lowerCase.size(); ++i) {
            m_wrong |= (at[i] | 0x20) ^ lowerCase[i];
        }
    }

    // The next `count` code units, at most ten; units that are no part of
    // anything when there are not so many.
    Q_ALWAYS_INLINE const char16_t *take(qsizetype count)
    {
        static constexpr char16_t nothing[10]{};
        if (m_end - m_at < count) {
            m_wrong = 1;
            return nothing;
        }
        const char16_t *const taken = m_at;
        m_at += count;
        return taken;
    }

    // The digits of a number side by side in 16 bits each, the first in the
    // lowest: one load, one test of them all, one multiplication that adds them
    // up, each by its weight, in the highest 16 bits.
    Q_ALWAYS_INLINE unsigned two(const char16_t *at)
    {
        const std::uint32_t digits = (at[0] | std::uint32_t(at[1]) << 16) - 0x0030'0030;
        m_wrong |= (digits | (digits + 0x0006'0006)) & 0xfff0'fff0;
        return (digits * 0x000a'0001) >> 16;
    }

    Q_ALWAYS_INLINE unsigned four(const char16_t *at)
    {
        const std::uint64_t digits = (std::uint64_t(at[0]) | std::uint64_t(at[1]) << 16 | std::uint64_t(at[2]) << 32
                                         | std::uint64_t(at[3]) << 48)
            - 0x0030'0030'0030'0030;
        m_wrong |= (digits | (digits + 0x0006'0006'0006'0006)) & 0xfff0'fff0'fff0'fff0;
        return static_cast<unsigned>((digits * 0x03e8'0064'000a'0001) >> 48);
    }

    const char16_t *m_at;
    const char16_t *m_end;
    std::uint64_t m_wrong = 0; // zero as long as all was right
};

} // namespace quire
