#include "core/ReadingInsights.h"

#include "ReadBooks.h"

#include "core/LibraryIndex.h"

#include <gmock/gmock.h>

#include <limits>

using namespace quire;
using namespace quire::testing;
using ::testing::ElementsAre;
using ::testing::IsEmpty;

namespace {

const Instant now = at(QStringLiteral("2026-11-21 12:00:00"));

ReadingInsightsSnapshot insightsOf(const QList<Book> &books)
{
    auto insights = makeReadingInsights(books, now);
    EXPECT_EQ(insights, makeReadingInsights(ReadingHistory(books, *LibraryIndex::of(books), now)));
    return insights;
}

Book tagged(const QStringList &tags)
{
    Book book = readBook();
    book.tags = tags;
    return book;
}

std::vector<qint64> monthsOf(const ReadingInsightsSnapshot &insights)
{
    std::vector<qint64> counts;
    for (const MonthlyReadingCount &month : insights.monthlyReading) {
        counts.push_back(month.count);
    }
    return counts;
}

std::vector<qint64> starsOf(const ReadingInsightsSnapshot &insights)
{
    std::vector<qint64> counts;
    for (const RatingReadingCount &stars : insights.ratingDistribution) {
        counts.push_back(stars.count);
    }
    return counts;
}

} // namespace

TEST(ReadingInsights, OfNoBooksHaveEveryRowAndNothingInIt)
{
    const auto insights = insightsOf({});

    ASSERT_EQ(insights.monthlyReading.size(), 12);
    EXPECT_EQ(insights.monthlyReading.first(), (MonthlyReadingCount{1, QStringLiteral("Jan"), 0}));
    EXPECT_EQ(insights.monthlyReading.last(), (MonthlyReadingCount{12, QStringLiteral("Dec"), 0}));
    EXPECT_EQ(monthsOf(insights), std::vector<qint64>(12));
    ASSERT_EQ(insights.ratingDistribution.size(), 5);
    EXPECT_EQ(insights.ratingDistribution.first().stars, 1);
    EXPECT_EQ(insights.ratingDistribution.last().stars, 5);
    EXPECT_EQ(starsOf(insights), std::vector<qint64>(5));
    EXPECT_EQ(insights.activeMonths, 0);
    EXPECT_EQ(insights.bestMonth, std::nullopt);
    EXPECT_EQ(insights.bestMonthCount, 0);
    EXPECT_EQ(insights.averageDaysBetweenFinishes, std::nullopt);
    EXPECT_EQ(insights.averageBookLength, 0);
    EXPECT_THAT(insights.topTags, IsEmpty());
    EXPECT_THAT(insights.recentReadIDs, IsEmpty());
}

TEST(ReadingInsights, CountHiddenBooksNowhere)
{
    Book book = longBook(300, QStringLiteral("2026-03-05"));
    book.userRating = 4;
    book.tags = {QStringLiteral("fiction")};

    EXPECT_EQ(insightsOf({hidden(book)}), insightsOf({}));
}

TEST(ReadingInsights, OfOneBookThisYearHaveItsMonthAndNoInterval)
{
    const auto insights = insightsOf({readBook(QStringLiteral("2026-03-05"))});

    EXPECT_EQ(insights.averageDaysBetweenFinishes, std::nullopt);
    EXPECT_EQ(insights.bestMonth, QStringLiteral("Mar"));
    EXPECT_EQ(insights.bestMonthCount, 1);
    EXPECT_EQ(insights.activeMonths, 1);
    EXPECT_THAT(monthsOf(insights), ElementsAre(0, 0, 1, 0, 0, 0, 0, 0, 0, 0, 0, 0));
}

TEST(ReadingInsights, CountAFinishInTheMonthThatTheLocalCalendarShows)
{
    // Summer time in Oslo is two hours ahead of UTC, winter time one.
    const auto insights = insightsOf({readBook(QStringLiteral("2026-03-31T21:59:59.999Z")),
        readBook(QStringLiteral("2026-03-31T22:00:00Z")), readBook(QStringLiteral("2026-10-31T22:59:59Z")),
        readBook(QStringLiteral("2026-10-31T23:00:00Z")), readBook(QStringLiteral("2025-12-31T23:00:00Z")),
        readBook(QStringLiteral("2026-12-31T22:59:59Z")), readBook(QStringLiteral("2025-05-05"))});

    EXPECT_THAT(monthsOf(insights), ElementsAre(1, 0, 1, 1, 0, 0, 0, 0, 0, 1, 1, 1));
}

TEST(ReadingInsights, GiveATieOfMonthsToTheEarliest)
{
    QList<Book> books;
    for (int copy = 0; copy < 3; ++copy) {
        books.append(readBook(QStringLiteral("2026-03-05")));
        books.append(readBook(QStringLiteral("2026-01-05")));
    }
    books.append(readBook(QStringLiteral("2026-02-05")));

    const auto insights = insightsOf(books);

    EXPECT_EQ(insights.bestMonth, QStringLiteral("Jan"));
    EXPECT_EQ(insights.bestMonthCount, 3);
    EXPECT_EQ(insights.activeMonths, 3);
}

TEST(ReadingInsights, HaveAnIntervalOfNoDaysBetweenTwoFinishesOfOneInstant)
{
    const QString instant = QStringLiteral("2026-03-05T10:00:00Z");

    EXPECT_EQ(insightsOf({readBook(instant), readBook(instant)}).averageDaysBetweenFinishes, 0.0);
}

TEST(ReadingInsights, TakeTheMeanOfTheIntervalsInTheOrderOfTheFinishes)
{
    const auto insights = insightsOf(
        {readBook(QStringLiteral("2026-06-04T12:00:00Z")), readBook(QStringLiteral("2026-06-01T00:00:00Z")),
            readBook(QStringLiteral("2026-06-02T00:00:00Z")), readBook(QStringLiteral("2025-06-01T00:00:00Z"))});

    EXPECT_DOUBLE_EQ(insights.averageDaysBetweenFinishes.value(), 1.75); // of 1 and 2.5 days
}

TEST(ReadingInsights, TakeTheLengthOfABookFromThisYear)
{
    EXPECT_EQ(insightsOf({longBook(101, QStringLiteral("2026-01-01")), longBook(200, QStringLiteral("2026-01-01")),
                             longBook(std::nullopt, QStringLiteral("2026-01-01")),
                             longBook(9000, QStringLiteral("2025-01-01"))})
                  .averageBookLength,
        150);
}

TEST(ReadingInsights, TakeTheLengthOfABookFromAllYearsBeforeTheFirstOfThisYear)
{
    EXPECT_EQ(insightsOf({longBook(100, QStringLiteral("2025-01-01")), longBook(201, QStringLiteral("2025-01-01")),
                             longBook(std::nullopt, QStringLiteral("2025-01-01"))})
                  .averageBookLength,
        150);
}

TEST(ReadingInsights, HaveNoLengthWhenTheBooksOfThisYearHaveNone)
{
    EXPECT_EQ(insightsOf({longBook(std::nullopt, QStringLiteral("2026-01-01")), longBook(100)}).averageBookLength, 0);
}

TEST(ReadingInsights, RoundRatingsToWholeStarsWithHalvesGoingUp)
{
    EXPECT_THAT(
        starsOf(insightsOf({rated(0.5), rated(1.4), rated(1.5), rated(2.5), rated(3.49), rated(4.5), rated(5)})),
        ElementsAre(2, 1, 2, 0, 2));
}

TEST(ReadingInsights, BringRatingsOutOfRangeToTheNearestStar)
{
    using Limits = std::numeric_limits<double>;

    EXPECT_THAT(starsOf(insightsOf(
                    {rated(0.001), rated(Limits::denorm_min()), rated(6), rated(1e300), rated(Limits::infinity())})),
        ElementsAre(2, 0, 0, 0, 3));
    EXPECT_THAT(starsOf(insightsOf({rated(0), rated(-2), rated(-Limits::infinity()), rated(Limits::quiet_NaN())})),
        ElementsAre(0, 0, 0, 0, 0));
}

TEST(ReadingInsights, CountTagsByTheirTrimmedSpelling)
{
    const auto insights = insightsOf({tagged({QStringLiteral(" fiction\n"), QStringLiteral("Fiction")}),
        tagged({QStringLiteral("fiction"), QStringLiteral("\u00a0 "), QString()})});

    EXPECT_THAT(
        insights.topTags, ElementsAre(TagCount{QStringLiteral("fiction"), 2}, TagCount{QStringLiteral("Fiction"), 1}));
}

TEST(ReadingInsights, DropTagsThatAreShelvesInAnyCase)
{
    const auto insights = insightsOf({tagged({QStringLiteral("read"), QStringLiteral("Currently-Reading"),
        QStringLiteral("To-Read"), QStringLiteral("DID-NOT-FINISH"), QStringLiteral("Currently reading"),
        QStringLiteral(" Want to Read "), QStringLiteral("did not finish"), QStringLiteral("to read")})});

    EXPECT_THAT(insights.topTags, ElementsAre(TagCount{QStringLiteral("to read"), 1}));
}

TEST(ReadingInsights, ShowFiveTagsAndOrderThoseOfOneCountAsAReaderWould)
{
    const QStringList tags{QStringLiteral("part 10"), QStringLiteral("zebra"), QStringLiteral("Part 9"),
        QStringLiteral("épée"), QStringLiteral("apple"), QStringLiteral("eagle")};
    QList<Book> books{tagged(tags), tagged({QStringLiteral("zebra")})};

    const auto insights = insightsOf(books);

    EXPECT_THAT(insights.topTags,
        ElementsAre(TagCount{QStringLiteral("zebra"), 2}, TagCount{QStringLiteral("apple"), 1},
            TagCount{QStringLiteral("eagle"), 1}, TagCount{QStringLiteral("épée"), 1},
            TagCount{QStringLiteral("Part 9"), 1}));
    EXPECT_EQ(insightsOf({books.rbegin(), books.rend()}).topTags, insights.topTags);
}

TEST(ReadingInsights, CountATagAsOftenAsABookNamesIt)
{
    EXPECT_THAT(insightsOf({tagged({QStringLiteral("twice"), QStringLiteral(" twice")})}).topTags,
        ElementsAre(TagCount{QStringLiteral("twice"), 2}));
}

TEST(ReadingInsights, ListTheFiveMostRecentTitles)
{
    QList<Book> books;
    for (int day = 1; day <= 9; ++day) {
        books.append(readBook(QStringLiteral("2020-01-0%1").arg(day)));
    }
    const qint64 first = books.first().id;

    EXPECT_THAT(insightsOf(books).recentReadIDs, ElementsAre(first + 8, first + 7, first + 6, first + 5, first + 4));
    EXPECT_THAT(insightsOf({books.rbegin(), books.rend()}).recentReadIDs,
        ElementsAre(first + 8, first + 7, first + 6, first + 5, first + 4));
}

TEST(ReadingInsights, KeepTheOrderOfTitlesOfOneRecencyAndPutUndatedOnesLast)
{
    const Book undated = readBook(QStringLiteral("someday"));
    const Book alsoUndated = readBook();
    const Book first = readBook(QStringLiteral("2020-01-01"));
    const Book second = readBook(QStringLiteral("2020-01-01"));
    const Book third = readBook(QStringLiteral("2020-01-01"));
    const Book latest = readBook(QStringLiteral("2021-01-01"));

    EXPECT_THAT(insightsOf({undated, first, second, latest, third, alsoUndated}).recentReadIDs,
        ElementsAre(latest.id, first.id, second.id, third.id, undated.id));
}

TEST(ReadingInsights, OfAnUndatedBookHaveItsRatingItsTagsAndItself)
{
    Book book = readBook(QStringLiteral("yesterday"));
    book.userRating = 3;
    book.tags = {QStringLiteral("essays")};

    const auto insights = insightsOf({book});

    EXPECT_THAT(starsOf(insights), ElementsAre(0, 0, 1, 0, 0));
    EXPECT_THAT(insights.topTags, ElementsAre(TagCount{QStringLiteral("essays"), 1}));
    EXPECT_THAT(insights.recentReadIDs, ElementsAre(book.id));
    EXPECT_EQ(insights.activeMonths, 0);
}

TEST(ReadingInsights, NameTheMonthsInTheReadersLanguage)
{
    EXPECT_EQ(monthLabels(QLocale(QStringLiteral("nb_NO"))).value(4), QStringLiteral("mai"));
    EXPECT_EQ(monthLabels(QLocale(QStringLiteral("en_GB"))).value(0), QStringLiteral("Jan"));
    EXPECT_EQ(monthLabels(QLocale::c()).size(), 12);
}

TEST(ReadingInsights, SumAbsurdPageCountsWithoutLeavingTheirType)
{
    constexpr qint64 most = std::numeric_limits<qint64>::max();

    EXPECT_EQ(insightsOf({longBook(most), longBook(most)}).averageBookLength, most / 2);
}
