// The English names of months and weekdays, found by their first three letters
// without a search: a multiplication, chosen at compile time so that no two
// names meet, tells the one place where the letters can stand.
//
// Thread: constants, any thread.

#pragma once

#include <array>
#include <cstdint>
#include <string_view>

namespace quire {

template<std::size_t Count>
class DateNames
{
public:
    static constexpr std::size_t shortLength = 3;

    // names: in lower case, of at least shortLength ASCII letters.
    explicit constexpr DateNames(const std::array<std::u16string_view, Count> &names)
        : m_names(names)
    {
        while (!fill()) {
            m_multiplier = m_multiplier * 0x5851f42d4c957f2d + 0x14057b7ef767814e; // stays odd
        }
    }

    // The place from 1 of the name whose first three letters stand at `letters`,
    // in any case; 0 when there is none.
    constexpr unsigned find(const char16_t *letters) const
    {
        const std::uint64_t key = keyOf(letters);
        const Entry &entry = m_entries[slotOf(key)];
        return entry.key == key ? entry.place : 0;
    }

    constexpr std::u16string_view fullName(unsigned place) const { return m_names[place - 1]; }

private:
    struct Entry
    {
        std::uint64_t key = 0;
        unsigned place = 0;
    };

    static constexpr int slotBits = 5;

    // Setting this bit makes a capital letter a small one, and no other
    // character a letter.
    static constexpr std::uint64_t keyOf(const char16_t *letters)
    {
        constexpr char16_t lowerCase = 0x20;
        return std::uint64_t(letters[0] | lowerCase) | std::uint64_t(letters[1] | lowerCase) << 16
            | std::uint64_t(letters[2] | lowerCase) << 32;
    }

    constexpr std::size_t slotOf(std::uint64_t key) const { return (key * m_multiplier) >> (64 - slotBits); }

    constexpr bool fill()
    {
        m_entries = {};
        for (unsigned place = 1; place <= Count; ++place) {
            const std::uint64_t key = keyOf(fullName(place).data());
            Entry &entry = m_entries[slotOf(key)];
            if (entry.place != 0) {
                return false;
            }
            entry = {key, place};
        }
        return true;
    }

    std::array<std::u16string_view, Count> m_names;
    std::array<Entry, 1 << slotBits> m_entries{};
    std::uint64_t m_multiplier = 0x9e3779b97f4a7c15;
};

inline constexpr DateNames monthNames(std::array<std::u16string_view, 12>{u"january", u"february", u"march", u"april",
    u"may", u"june", u"july", u"august", u"september", u"october", u"november", u"december"});

inline constexpr DateNames weekdayNames(std::array<std::u16string_view, 7>{
    u"monday", u"tuesday", u"wednesday", u"thursday", u"friday", u"saturday", u"sunday"});

} // namespace quire
