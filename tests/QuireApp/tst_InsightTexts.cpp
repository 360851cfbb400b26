#include "QuireApp/ViewModels/BarListModel.h"
#include "QuireApp/ViewModels/InsightTexts.h"

#include <gmock/gmock.h>

using namespace quire;
using ::testing::ElementsAre;

namespace {

const QLocale english(QLocale::English, QLocale::UnitedStates);
const QLocale german(QLocale::German, QLocale::Germany);

} // namespace

TEST(InsightTexts, ARatingHasOneDecimalOfTheLocale)
{
    EXPECT_EQ(InsightTexts::rating(4.25, english), QStringLiteral("4.3★"));
    EXPECT_EQ(InsightTexts::rating(4, german), QStringLiteral("4,0★"));
    EXPECT_EQ(InsightTexts::rating(0, english), QStringLiteral("—"));
}

TEST(InsightTexts, AnAverageOfAllTimeIsNamedOrLeftOut)
{
    EXPECT_EQ(InsightTexts::averageRating(3.5, english), QStringLiteral("3.5★ average"));
    EXPECT_EQ(InsightTexts::averageRating(0, english), QStringLiteral("All time"));
}

TEST(InsightTexts, ThreeActiveMonthsAreThreeOfTwelve)
{
    EXPECT_EQ(InsightTexts::activeMonths(3), QStringLiteral("3 of 12"));
}

TEST(InsightTexts, TheRhythmIsAtLeastADay)
{
    EXPECT_EQ(InsightTexts::rhythm(0.4), QStringLiteral("About one finish every 1 day"));
    EXPECT_EQ(InsightTexts::rhythm(0.0), QStringLiteral("About one finish every 1 day"));
    EXPECT_EQ(InsightTexts::rhythm(1.4), QStringLiteral("About one finish every 1 day"));
    EXPECT_EQ(InsightTexts::rhythm(10.6), QStringLiteral("About one finish every 11 days"));
}

TEST(InsightTexts, WithoutTwoFinishesThePaceIsMonthly)
{
    EXPECT_EQ(InsightTexts::rhythm(std::nullopt), QStringLiteral("Monthly pace"));
}

TEST(InsightTexts, PatternsOfNothingSaySo)
{
    const GoodreadsStatistics statistics;
    const ReadingInsightsSnapshot insights;
    EXPECT_EQ(InsightTexts::topAuthor(statistics), (InsightTexts::Fact{QStringLiteral("Not enough data"), {}}));
    EXPECT_EQ(InsightTexts::strongestMonth(insights), (InsightTexts::Fact{QStringLiteral("No finishes yet"), {}}));
    EXPECT_EQ(InsightTexts::averageLength(insights), (InsightTexts::Fact{QStringLiteral("No page data"), {}}));
    EXPECT_EQ(InsightTexts::fiveStars(statistics, english),
        (InsightTexts::Fact{QStringLiteral("0"), QStringLiteral("0 waiting to be read")}));
}

TEST(InsightTexts, PatternsTellTheirNumbers)
{
    GoodreadsStatistics statistics;
    statistics.topAuthor = QStringLiteral("Iris Murdoch");
    statistics.topAuthorCount = 7;
    statistics.fiveStarCount = 1234;
    statistics.toRead = 5678;
    ReadingInsightsSnapshot insights;
    insights.bestMonth = QStringLiteral("Mar");
    insights.bestMonthCount = 4;
    insights.averageBookLength = 1312;
    EXPECT_EQ(InsightTexts::topAuthor(statistics),
        (InsightTexts::Fact{QStringLiteral("Iris Murdoch"), QStringLiteral("7 books by Iris Murdoch")}));
    EXPECT_EQ(InsightTexts::strongestMonth(insights),
        (InsightTexts::Fact{QStringLiteral("Mar"), QStringLiteral("4 finished in Mar")}));
    EXPECT_EQ(InsightTexts::averageLength(insights).value, QStringLiteral("1312 pages"));
    EXPECT_EQ(InsightTexts::fiveStars(statistics, english),
        (InsightTexts::Fact{QStringLiteral("1,234"), QStringLiteral("5,678 waiting to be read")}));
}

TEST(InsightTexts, ATagHasItsCount)
{
    EXPECT_THAT(InsightTexts::tags({{QStringLiteral("fantasy"), 1200}, {QStringLiteral("%1"), 3}}),
        ElementsAre(QStringLiteral("fantasy 1200"), QStringLiteral("%1 3")));
}

TEST(InsightTexts, ABarIsReadOutWithItsNumber)
{
    EXPECT_EQ(InsightTexts::bar(QStringLiteral("Jan"), 1), QStringLiteral("Jan: 1 book"));
    EXPECT_EQ(InsightTexts::bar(QStringLiteral("5 stars"), 12), QStringLiteral("5 stars: 12 books"));
}

TEST(BarListModel, TheAxisHasFewRoundLinesUpToTheHighestBar)
{
    EXPECT_THAT(axisTicks(0), ElementsAre(0, 1));
    EXPECT_THAT(axisTicks(1), ElementsAre(0, 1));
    EXPECT_THAT(axisTicks(5), ElementsAre(0, 1, 2, 3, 4, 5));
    EXPECT_THAT(axisTicks(6), ElementsAre(0, 2, 4, 6));
    EXPECT_THAT(axisTicks(11), ElementsAre(0, 5, 10, 15));
    EXPECT_THAT(axisTicks(26), ElementsAre(0, 10, 20, 30));
    EXPECT_THAT(axisTicks(51), ElementsAre(0, 20, 40, 60));
    EXPECT_THAT(axisTicks(50'000), ElementsAre(0, 10'000, 20'000, 30'000, 40'000, 50'000));
}

TEST(BarListModel, ABarIsItsShareOfTheAxis)
{
    BarListModel bars;
    bars.show({{QStringLiteral("Jan"), 3, {}}, {QStringLiteral("Feb"), 0, {}}, {QStringLiteral("Mar"), 6, {}}});
    ASSERT_EQ(bars.count(), 3);
    EXPECT_EQ(bars.index(0).data(BarListModel::ShareRole).toDouble(), 0.5);
    EXPECT_EQ(bars.index(1).data(BarListModel::ShareRole).toDouble(), 0);
    EXPECT_EQ(bars.index(2).data(BarListModel::ShareRole).toDouble(), 1);
    bars.show({{QStringLiteral("Jan"), 3, {}}, {QStringLiteral("Feb"), 0, {}}, {QStringLiteral("Mar"), 0, {}}});
    EXPECT_EQ(bars.index(0).data(BarListModel::ShareRole).toDouble(), 1);
}
