// The local year. The zone is read once a process, so ctest runs this program
// once for each of several zones, on both sides of UTC.

#include "core/CalendarYear.h"

#include <QDateTime>

#include <gtest/gtest.h>

using namespace quire;
using namespace std::chrono_literals;

namespace {

Instant at(const QDate &date, const QTime &time)
{
    return Instant(std::chrono::milliseconds(QDateTime(date, time).toMSecsSinceEpoch()));
}

const QTime lastMoment(23, 59, 59, 999);

} // namespace

TEST(CalendarYear, IsThatOfTheLocalClock)
{
    for (int year = 1990; year < 2040; ++year) {
        EXPECT_EQ(CalendarYear::of(at(QDate(year, 1, 1), QTime(0, 0))).number(), year);
        EXPECT_EQ(CalendarYear::of(at(QDate(year, 6, 30), QTime(12, 0))).number(), year);
        EXPECT_EQ(CalendarYear::of(at(QDate(year, 12, 31), lastMoment)).number(), year);
    }
}

TEST(CalendarYear, PutsEachMomentIntoItsLocalMonth)
{
    for (int number = 1990; number < 2040; ++number) {
        const CalendarYear year = CalendarYear::of(at(QDate(number, 7, 1), QTime(12, 0)));
        for (int month = 1; month <= 12; ++month) {
            const QDate first(number, month, 1);
            EXPECT_EQ(year.month(at(first, QTime(0, 0))), month) << number;
            EXPECT_EQ(year.month(at(QDate(number, month, first.daysInMonth()), lastMoment)), month) << number;
        }
    }
}

TEST(CalendarYear, LeavesOutTheYearsBesideIt)
{
    const CalendarYear year = CalendarYear::of(at(QDate(2026, 7, 1), QTime(12, 0)));

    EXPECT_EQ(year.month(at(QDate(2025, 12, 31), lastMoment)), 0);
    EXPECT_EQ(year.month(at(QDate(2027, 1, 1), QTime(0, 0))), 0);
    EXPECT_EQ(year.month(distantPast), 0);
    EXPECT_EQ(year.month(Instant::max()), 0);
    EXPECT_EQ(year.month(Instant::min()), 0);
}
