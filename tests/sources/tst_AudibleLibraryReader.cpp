#include "sources/AudibleLibraryReader.h"

#include "concurrency/Cancelled.h"
#include "persistence/database/DatabaseError.h"
#include "sources/ServiceError.h"
#include "testing/AudibleLibraryFile.h"
#include "testing/TestFiles.h"
#include "testing/ThrownFailure.h"

#include <QTemporaryDir>

#include <gmock/gmock.h>

#include <algorithm>

using namespace quire;
using namespace quire::testing;
using namespace std::chrono_literals;
using ::testing::IsEmpty;

namespace {

const QString damaged = QStringLiteral("Audible’s local library did not pass its integrity check.");

class AudibleLibraryReaderTest : public ::testing::Test
{
protected:
    QList<AudibleLibraryItem> read(const AudibleLibraryReader::Limits &limits = {})
    {
        return AudibleLibraryReader::read(
            path, QUrl(QStringLiteral("https://www.audible.example")), stop.get_token(), limits);
    }

    QStringList asins()
    {
        QStringList result;
        for (const AudibleLibraryItem &item : read()) {
            result.append(item.asin);
        }
        return result;
    }

    void add(const char *asin, const AudibleColumns &columns = {})
    {
        library.addTitle(QString::fromLatin1(asin), QStringLiteral("Title %1").arg(QString::fromLatin1(asin)), columns);
    }

    std::optional<QString> serviceFailure(const AudibleLibraryReader::Limits &limits = {})
    {
        const auto failure = thrownBy<ServiceError>([&] { read(limits); });
        return failure ? std::optional(failure->description()) : std::nullopt;
    }

    std::optional<QString> databaseFailure()
    {
        const auto failure = thrownBy<DatabaseError>([this] { read(); });
        return failure ? std::optional(failure->text()) : std::nullopt;
    }

    QTemporaryDir folder;
    QString path = folder.filePath(QStringLiteral("x-library.sqlite"));
    AudibleLibraryFile library{path};
    std::stop_source stop;
};

} // namespace

TEST_F(AudibleLibraryReaderTest, EveryColumnReachesItsField)
{
    library.addTitle(QStringLiteral("A1"), QStringLiteral("Dune"),
        {{QStringLiteral("authors"), QStringLiteral(R"([{"name": "Frank Herbert"}])")},
            {QStringLiteral("narrators"), QStringLiteral(R"([{"name": "Scott Brick"}])")},
            {QStringLiteral("relationships"),
                QStringLiteral(R"([{"relationshipType": "series", "title": "Dune", "sort": 1}])")},
            {QStringLiteral("productImages"), QStringLiteral(R"({"500": "https://i.example/5"})")},
            {QStringLiteral("publisherSummary"), QStringLiteral("<p>Sand.</p>")},
            {QStringLiteral("runtimeLength"), 1262}, {QStringLiteral("releaseDate"), QStringLiteral("2006-12-31")},
            {QStringLiteral("rating"), QStringLiteral(R"({"numberOfReviews": 9, "overall": {"averageRating": 4.7},
                    "performance": {"averageRating": 4.6}, "story": {"averageRating": 4.5}})")},
            {QStringLiteral("purchaseDate"), QStringLiteral("2020-01-02")},
            {QStringLiteral("json_data"), QStringLiteral(R"({"percentComplete": 42.5, "isArchived": false})")},
            {QStringLiteral("isStarted"), 1}, {QStringLiteral("isFinished"), 1},
            {QStringLiteral("customerEntitlements_consumableIndefinitely"), 1}});
    AudibleLibraryItem expected;
    expected.asin = QStringLiteral("A1");
    expected.title = QStringLiteral("Dune");
    expected.author = QStringLiteral("Frank Herbert");
    expected.narrator = QStringLiteral("Scott Brick");
    expected.series = QStringLiteral("Dune");
    expected.bookNumber = 1;
    expected.coverURL = Url::parse(QStringLiteral("https://i.example/5"));
    expected.audibleURL = Url::parse(QStringLiteral("https://www.audible.example/pd/A1"));
    expected.summary = QStringLiteral("Sand.");
    expected.runtimeMinutes = 1262;
    expected.releaseDate = QStringLiteral("2006-12-31");
    expected.purchaseDate = QStringLiteral("2020-01-02");
    expected.averageRating = 4.7;
    expected.performanceRating = 4.6;
    expected.storyRating = 4.5;
    expected.reviewCount = 9;
    expected.listeningProgress = 42.5;
    expected.isStarted = expected.isFinished = expected.ownedIndefinitely = true;
    EXPECT_EQ(read(), QList<AudibleLibraryItem>({expected}));
}

TEST_F(AudibleLibraryReaderTest, ATitleThatNobodyOpenedHasNoFlagsAndNoProgress)
{
    add("A1");
    const AudibleLibraryItem item = read().value(0);
    EXPECT_EQ(item.asin, QStringLiteral("A1"));
    EXPECT_FALSE(item.isStarted || item.isFinished || item.ownedIndefinitely);
    EXPECT_EQ(item.listeningProgress, 0);
}

TEST_F(AudibleLibraryReaderTest, ArchivedTitlesAndOtherThingsAreNotRead)
{
    add("A1", {{QStringLiteral("json_data"), QStringLiteral(R"({"isArchived": true})")}});
    add("A2", {{QStringLiteral("contentType"), QStringLiteral("Podcast")}});
    add("A3", {{QStringLiteral("contentType"), SQLiteValue()}});
    add("A4", {{QStringLiteral("json_data"), QStringLiteral(R"({"isArchived": null})")}});
    library.database().execute("INSERT INTO library_item (asin) VALUES ('A5')");
    library.database().execute("INSERT INTO products (asin, title, contentType) VALUES ('A6', 'x', 'Product')");
    EXPECT_EQ(asins(), QStringList({QStringLiteral("A4")}));
}

TEST_F(AudibleLibraryReaderTest, TitlesComeInTheOrderOfTheirPurchaseAndThenByTitle)
{
    add("A1", {{QStringLiteral("purchaseDate"), QStringLiteral("2021")}});
    add("A3", {{QStringLiteral("purchaseDate"), QStringLiteral("2020")}});
    add("A2", {{QStringLiteral("purchaseDate"), QStringLiteral("2020")}});
    add("A4");
    EXPECT_EQ(
        asins(), QStringList({QStringLiteral("A4"), QStringLiteral("A2"), QStringLiteral("A3"), QStringLiteral("A1")}));
}

TEST_F(AudibleLibraryReaderTest, ARowThatMapsToNothingIsDropped)
{
    library.addTitle(QStringLiteral("A1"), QString());
    add("A2");
    EXPECT_EQ(asins(), QStringList({QStringLiteral("A2")}));
}

TEST_F(AudibleLibraryReaderTest, AnEmptyLibraryIsNoFailure)
{
    EXPECT_THAT(read(), IsEmpty());
}

// Bad input. --------------------------------------------------------------------------

TEST_F(AudibleLibraryReaderTest, ADatabaseOfOtherTablesFailsAsTheQueryDoes)
{
    library.database().executeScript("DROP TABLE library_item");
    EXPECT_EQ(databaseFailure(), QStringLiteral("no such table: library_item"));
}

TEST_F(AudibleLibraryReaderTest, ADatabaseOfOtherColumnsFailsAsTheQueryDoes)
{
    library.database().executeScript("ALTER TABLE products RENAME COLUMN contentType TO kind");
    EXPECT_EQ(databaseFailure(), QStringLiteral("no such column: p.contentType"));
}

TEST_F(AudibleLibraryReaderTest, JsonDataThatIsNoneFailsAsTheQueryDoes)
{
    add("A1", {{QStringLiteral("json_data"), QStringLiteral("{")}});
    EXPECT_EQ(databaseFailure(), QStringLiteral("malformed JSON"));
}

TEST_F(AudibleLibraryReaderTest, AFileOfAnotherKindFailsAsTheDatabaseDoes)
{
    library.database().close();
    putFile(path, QByteArray(8192, '\x5a')); // as what is encrypted looks
    EXPECT_EQ(databaseFailure(), QStringLiteral("file is not a database"));
}

TEST_F(AudibleLibraryReaderTest, AnEmptyFileHasNoTables)
{
    library.database().close();
    putFile(path, "");
    EXPECT_TRUE(databaseFailure()->startsWith(QStringLiteral("no such table")));
}

TEST_F(AudibleLibraryReaderTest, ADamagedFileDoesNotPassItsCheck)
{
    for (int title = 0; title < 500; ++title) {
        add(QByteArray("A" + QByteArray::number(title)).constData());
    }
    library.database().close();
    QByteArray bytes = bytesOf(path);
    const qsizetype page = bytes.size() / 4096 / 2;
    std::fill_n(bytes.begin() + page * 4096, 4096, '\x7f');
    putFile(path, bytes);
    EXPECT_EQ(serviceFailure(), damaged);
}

TEST_F(AudibleLibraryReaderTest, AnEndlessViewInPlaceOfATableEndsAtTheLimit)
{
    library.database().executeScript(R"sql(
        DROP TABLE user_products;
        CREATE VIEW user_products AS
            WITH RECURSIVE n (x) AS (SELECT 1 UNION ALL SELECT x + 1 FROM n)
            SELECT 'A1' AS asin, 0 AS isStarted, 0 AS isFinished, 0 AS customerEntitlements_consumableIndefinitely
            FROM n WHERE x < 0;
    )sql");
    add("A1");
    EXPECT_EQ(serviceFailure({.work = 1s}), damaged);
}

TEST_F(AudibleLibraryReaderTest, TextsBeyondTheLimitAreRefused)
{
    const QString text(1000, u'x');
    for (const char *asin : {"A1", "A2", "A3"}) {
        add(asin, {{QStringLiteral("publisherSummary"), text}});
    }
    EXPECT_EQ(serviceFailure({.textBytes = 2500}), damaged);
    EXPECT_EQ(read({.textBytes = 4000}).size(), 3);
    EXPECT_EQ(thrownBy<DatabaseError>([this] { read({.valueBytes = 900}); })->text(),
        QStringLiteral("string or blob too big"));
}

TEST_F(AudibleLibraryReaderTest, TitlesThatMultiplyAreRefused)
{
    for (int copy = 0; copy < 300; ++copy) {
        add("A1"); // 90,000 pairs
    }
    EXPECT_EQ(serviceFailure({.textBytes = 500'000}), damaged);
}

TEST_F(AudibleLibraryReaderTest, ARequestToStopEndsTheReading)
{
    add("A1");
    library.database().executeScript(R"sql(
        DROP TABLE user_products;
        CREATE VIEW user_products AS
            WITH RECURSIVE n (x) AS (SELECT 1 UNION ALL SELECT x + 1 FROM n)
            SELECT 'A1' AS asin, 0 AS isStarted, 0 AS isFinished, 0 AS customerEntitlements_consumableIndefinitely
            FROM n WHERE x < 0;
    )sql");
    stop.request_stop();
    EXPECT_NE(thrownBy<Cancelled>([this] { read(); }), std::nullopt);
}
