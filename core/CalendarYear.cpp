#include "core/CalendarYear.h"

#include "records/LocalTime.h"

#include <algorithm>
#include <chrono>

namespace quire {

namespace {

using std::chrono::day;
using std::chrono::month;
using std::chrono::year;

Instant startOf(year year, month month)
{
    return LocalTime::instant(std::chrono::local_days(year / month / day(1)));
}

} // namespace

CalendarYear::CalendarYear(int number)
    : m_number(number)
{
    for (unsigned month = 1; month <= 12; ++month) {
        m_starts[month - 1] = startOf(year(number), std::chrono::month(month));
    }
    m_starts[12] = startOf(year(number + 1), std::chrono::January);
}

CalendarYear CalendarYear::of(Instant now)
{
    // No zone is further from UTC than a day, so the year is that of UTC or a neighbour.
    const std::chrono::year_month_day date(std::chrono::floor<std::chrono::days>(now));
    int number = int(date.year());
    if (now < startOf(year(number), std::chrono::January)) {
        --number;
    } else if (now >= startOf(year(number + 1), std::chrono::January)) {
        ++number;
    }
    return CalendarYear(std::clamp(number, 1, 9999));
}

int CalendarYear::month(Instant instant) const
{
    if (instant < m_starts.front() || instant >= m_starts.back()) {
        return 0;
    }
    return int(std::upper_bound(m_starts.begin(), m_starts.end(), instant) - m_starts.begin());
}

} // namespace quire
