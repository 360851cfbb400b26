#include "sources/AudibleLibraryRow.h"

#include <gtest/gtest.h>

#include <limits>

using namespace quire;

namespace {

const QUrl website(QStringLiteral("https://www.audible.example"));
const QStringList columns{QStringLiteral("authors"), QStringLiteral("narrators"), QStringLiteral("relationships"),
    QStringLiteral("productImages"), QStringLiteral("publisherSummary"), QStringLiteral("runtimeLength"),
    QStringLiteral("releaseDate"), QStringLiteral("rating"), QStringLiteral("purchaseDate"),
    QStringLiteral("percentComplete"), QStringLiteral("isStarted"), QStringLiteral("isFinished"),
    QStringLiteral("ownedIndefinitely")};

// A title with one column more.
AudibleLibraryItem with(const char *column, const SQLiteValue &value)
{
    SQLiteRow row;
    row.set(QStringLiteral("asin"), QStringLiteral("A1"));
    row.set(QStringLiteral("title"), QStringLiteral("Dune"));
    row.set(QString::fromLatin1(column), value);
    return AudibleLibraryRow::map(row, website).value();
}

AudibleLibraryItem with(const char *column, const char *text)
{
    return with(column, QString::fromUtf8(text));
}

AudibleLibraryItem bare()
{
    AudibleLibraryItem item;
    item.asin = QStringLiteral("A1");
    item.title = QStringLiteral("Dune");
    item.audibleURL = Url::parse(QStringLiteral("https://www.audible.example/pd/A1"));
    return item;
}

} // namespace

// The row. --------------------------------------------------------------------------

TEST(AudibleLibraryRow, ATitleOfTwoColumnsHasNothingElse)
{
    EXPECT_EQ(with("other", 1), bare());
}

TEST(AudibleLibraryRow, WithoutAnAsinOrATitleThereIsNoItem)
{
    const QList<std::pair<SQLiteValue, SQLiteValue>> rows{{SQLiteValue(), QStringLiteral("Dune")},
        {QString(), QStringLiteral("Dune")}, {QByteArray("A1"), QStringLiteral("Dune")},
        {QStringLiteral("A1"), SQLiteValue()}, {QStringLiteral("A1"), QString()},
        {QStringLiteral("A1"), QByteArray("Dune")}};
    for (const auto &[asin, title] : rows) {
        SQLiteRow row;
        row.set(QStringLiteral("asin"), asin);
        row.set(QStringLiteral("title"), title);
        EXPECT_EQ(AudibleLibraryRow::map(row, website), std::nullopt);
    }
    EXPECT_EQ(AudibleLibraryRow::map({}, website), std::nullopt);
}

TEST(AudibleLibraryRow, ANumberIsAnAsinAndATitle)
{
    SQLiteRow row;
    row.set(QStringLiteral("asin"), 1234567890);
    row.set(QStringLiteral("title"), 1984);
    const auto item = AudibleLibraryRow::map(row, website);
    EXPECT_EQ(item->asin, QStringLiteral("1234567890"));
    EXPECT_EQ(item->title, QStringLiteral("1984"));
}

// No column of any type, and no JSON of any shape, ends the mapping of a row or
// reaches another column's field.
TEST(AudibleLibraryRow, NothingInAColumnCostsMoreThanItsOwnField)
{
    const QList<SQLiteValue> values{SQLiteValue(), 0, 2, -1, std::numeric_limits<qint64>::max(), 0.5, 1e300, -1e300,
        std::numeric_limits<double>::infinity(), -std::numeric_limits<double>::infinity(),
        std::numeric_limits<double>::quiet_NaN(), QByteArray("\x00\xff", 2), QString(), QStringLiteral(" "),
        QStringLiteral("{"), QStringLiteral("[]"), QStringLiteral("{}"), QStringLiteral("null"),
        QStringLiteral("[null]"), QStringLiteral("[[]]"), QStringLiteral("[{}]"), QStringLiteral("[1e999]"),
        QStringLiteral("\"x\""), QString(2000, u'['), QString(QChar(0xd800)), QStringLiteral("99999999999999999999")};
    for (const QString &column : columns) {
        for (const SQLiteValue &value : values) {
            AudibleLibraryItem item = with(column.toLatin1().constData(), value);
            EXPECT_GE(item.listeningProgress, 0) << qUtf8Printable(column);
            EXPECT_LE(item.listeningProgress, 100) << qUtf8Printable(column);
            // Of the text fields only those that take any text may have changed.
            EXPECT_EQ(item.author, std::nullopt) << qUtf8Printable(column);
            EXPECT_EQ(item.narrator, std::nullopt) << qUtf8Printable(column);
            EXPECT_EQ(item.series, std::nullopt) << qUtf8Printable(column);
            EXPECT_EQ(item.coverURL, std::nullopt) << qUtf8Printable(column);
            EXPECT_EQ(item.averageRating, std::nullopt) << qUtf8Printable(column);
            item.summary = item.releaseDate = item.purchaseDate = std::nullopt;
            item.runtimeMinutes = std::nullopt;
            item.listeningProgress = 0;
            EXPECT_EQ(item, bare()) << qUtf8Printable(column);
        }
    }
}

// People. ---------------------------------------------------------------------------

TEST(AudibleLibraryRow, NamesAreJoinedAndEmptyOnesLeftOut)
{
    EXPECT_EQ(with("authors", R"([{"name": ""}, {"name": "Bo Ek"}])").author, QStringLiteral("Bo Ek"));
    EXPECT_EQ(with("authors", R"([{"name": " B "}, {}, {"name": null}, {"name": "A", "asin": 1}])").author,
        QStringLiteral(" B , A"));
    EXPECT_EQ(with("narrators", R"([{"name": "Ann - translator"}])").narrator, QStringLiteral("Ann - translator"));
    EXPECT_EQ(with("authors", R"([{"name": ""}])").author, std::nullopt);
}

TEST(AudibleLibraryRow, OneWrongTypeLosesAllTheNames)
{
    EXPECT_EQ(with("authors", R"([{"name": "Bo Ek"}, {"name": 5}])"), bare());
    EXPECT_EQ(with("narrators", R"({"name": "Bo Ek"})"), bare());
    EXPECT_EQ(with("authors", R"([{"name": "Bo Ek"})"), bare());
}

// Series. ---------------------------------------------------------------------------

TEST(AudibleLibraryRow, TheFirstSeriesOfAnySpellingCounts)
{
    const auto item = with("relationships", R"([{"relationshipType": "merchant", "title": "No"},
        {"title": "Nor this"}, {"relationshipType": "Series", "sort": 3, "title": "First"},
        {"relationshipType": "SERIES", "sort": 4, "title": "Second"}])");
    EXPECT_EQ(item.series, QStringLiteral("First"));
    EXPECT_EQ(item.bookNumber, 3);
}

TEST(AudibleLibraryRow, ASeriesMayLackItsNumberOrItsTitle)
{
    const auto untitled = with("relationships", R"([{"relationshipType": "series", "sort": 0}])");
    EXPECT_EQ(untitled.series, std::nullopt);
    EXPECT_EQ(untitled.bookNumber, 0);
    EXPECT_EQ(with("relationships", R"([{"relationshipType": "series", "title": ""}])").series, QString());
}

TEST(AudibleLibraryRow, ASortThatIsAStringLosesAllRelationshipsAndNothingElse)
{
    EXPECT_EQ(with("relationships", R"([{"relationshipType": "series", "title": "S", "sort": 1},
        {"relationshipType": "merchant", "sort": "2"}])"),
        bare());
}

// The rest. -------------------------------------------------------------------------

TEST(AudibleLibraryRow, TheImageOfTheGreatestNumberIsTheCover)
{
    EXPECT_EQ(textOf(with("productImages", R"({"500": "https://i.example/5", "1215": "https://i.example/12",
        "large": "https://i.example/l"})")
                         .coverURL),
        QStringLiteral("https://i.example/12"));
    EXPECT_EQ(with("productImages", R"({"500": "https://i.example/5", "1215": 12})"), bare());
}

TEST(AudibleLibraryRow, TheSummaryIsPlainText)
{
    EXPECT_EQ(
        with("publisherSummary", "<p>One</p><p>Two &amp; three</p>").summary, QStringLiteral("One\n Two & three"));
    EXPECT_EQ(with("publisherSummary", "<p> </p>").summary, std::nullopt);
}

TEST(AudibleLibraryRow, MinutesAreAnInteger)
{
    EXPECT_EQ(with("runtimeLength", 612).runtimeMinutes, 612);
    EXPECT_EQ(with("runtimeLength", "612").runtimeMinutes, 612);
    EXPECT_EQ(with("runtimeLength", 612.9).runtimeMinutes, 612);
    EXPECT_EQ(with("runtimeLength", "10 h").runtimeMinutes, std::nullopt);
    EXPECT_EQ(with("runtimeLength", 1e300).runtimeMinutes, std::nullopt);
}

TEST(AudibleLibraryRow, DatesStayAsTheyAre)
{
    EXPECT_EQ(with("releaseDate", "2019-05-07").releaseDate, QStringLiteral("2019-05-07"));
    EXPECT_EQ(with("purchaseDate", 700000000.5).purchaseDate, QStringLiteral("700000000.5"));
    EXPECT_EQ(with("releaseDate", "").releaseDate, std::nullopt);
}

TEST(AudibleLibraryRow, RatingsAreTheAveragesOfTheirGroups)
{
    const auto item = with("rating", R"({"numberOfReviews": 12, "overall": {"averageRating": 4.5, "stars": 5},
        "performance": {"averageRating": 4}, "story": {}})");
    EXPECT_EQ(item.averageRating, 4.5);
    EXPECT_EQ(item.performanceRating, 4.0);
    EXPECT_EQ(item.storyRating, std::nullopt);
    EXPECT_EQ(item.reviewCount, 12);
    EXPECT_EQ(with("rating", R"({"numberOfReviews": "12", "overall": {"averageRating": 4.5}})"), bare());
}

TEST(AudibleLibraryRow, ProgressIsAPercentage)
{
    EXPECT_EQ(with("percentComplete", 42.5).listeningProgress, 42.5);
    EXPECT_EQ(with("percentComplete", "42.5").listeningProgress, 42.5);
    EXPECT_EQ(with("percentComplete", 104.5).listeningProgress, 100);
    EXPECT_EQ(with("percentComplete", -3).listeningProgress, 0);
    EXPECT_EQ(with("percentComplete", "much").listeningProgress, 0);
}

TEST(AudibleLibraryRow, AFlagIsSetByOneAndByNothingElse)
{
    EXPECT_TRUE(with("isStarted", 1).isStarted);
    EXPECT_TRUE(with("isFinished", "1").isFinished);
    EXPECT_TRUE(with("ownedIndefinitely", 1.0).ownedIndefinitely);
    for (const SQLiteValue &value :
        {SQLiteValue(2), SQLiteValue(0), SQLiteValue(QStringLiteral("true")), SQLiteValue()}) {
        EXPECT_FALSE(with("isStarted", value).isStarted);
        EXPECT_FALSE(with("isFinished", value).isFinished);
        EXPECT_FALSE(with("ownedIndefinitely", value).ownedIndefinitely);
    }
}

TEST(AudibleLibraryRow, AnAsinThatGivesNoAddressGivesNoPage)
{
    SQLiteRow row;
    row.set(QStringLiteral("asin"), QStringLiteral("A 1"));
    row.set(QStringLiteral("title"), QStringLiteral("Dune"));
    EXPECT_EQ(AudibleLibraryRow::map(row, website)->audibleURL, std::nullopt);
}
