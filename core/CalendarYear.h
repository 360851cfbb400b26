// One year of the local calendar, as instants: the month of an instant is found
// by comparing alone, however many are asked for.
//
// Thread: immutable once made; any thread.

#pragma once

#include "records/Instant.h"

#include <array>

namespace quire {

class CalendarYear
{
public:
    // The year in which the machine's zone shows `now`, 1 to 9999.
    static CalendarYear of(Instant now);

    int number() const { return m_number; }

    // The month of `instant`, 1 to 12; 0 when it lies in another year.
    int month(Instant instant) const;

private:
    explicit CalendarYear(int number);

    int m_number;
    std::array<Instant, 13> m_starts; // of the months, and of the next year
};

} // namespace quire
