#include "persistence/BookRows.h"
#include "persistence/CoverCache.h"
#include "records/Failure.h"
#include "testing/Await.h"
#include "testing/TestLibrary.h"

#include <QFile>

#include <gmock/gmock.h>

#include <random>

#include <sqlite3.h>

using namespace quire;
using namespace quire::testing;
using ::testing::ElementsAre;

namespace {

QList<QString> titles(TestLibrary &library)
{
    QList<QString> list;
    for (const Book &book : await(library.store().books())) {
        list.append(book.title);
    }
    return list;
}

const void *coverOf(TestLibrary &library, qsizetype index = 0)
{
    const auto books = await(library.store().books());
    return books[index].coverData ? books[index].coverData->bytes().constData() : nullptr;
}

} // namespace

TEST(LibraryReads, BooksComeByShelfThenLatestFirstAndUndatedLast)
{
    TestLibrary library;
    library.executeScript(R"sql(
        INSERT INTO goodreads_books (goodreads_id, title, shelf, read_at, date_added) VALUES
            ('1', 'unknown', 'someday', '2026-01-01', NULL),
            ('2', 'abandoned', 'did-not-finish', '2026-01-01', NULL),
            ('3', 'wanted', 'to-read', NULL, '2026-01-01'),
            ('4', 'undated', 'read', NULL, NULL),
            ('5', 'earlier', 'read', '2025-01-01', '2026-09-09'),
            ('6', 'added only', 'read', NULL, '2025-06-01'),
            ('7', 'later', 'read', '2026-01-01', '2020-01-01'),
            ('8', 'open', 'currently-reading', NULL, NULL),
            ('9', 'shelfless', NULL, '2025-01-01', NULL);
    )sql");
    EXPECT_THAT(titles(library),
        ElementsAre(QStringLiteral("open"), QStringLiteral("later"), QStringLiteral("added only"),
            QStringLiteral("earlier"), QStringLiteral("undated"), QStringLiteral("wanted"), QStringLiteral("abandoned"),
            QStringLiteral("unknown"), QStringLiteral("shelfless")));
}

TEST(LibraryReads, EveryFieldOfABookComesFromItsColumn)
{
    TestLibrary library;
    library.executeScript(R"sql(
        INSERT INTO goodreads_books VALUES (7, 'gid', 'title', 'author', 'isbn', 'to-read', 4.5, 3.75, 321, 'summary',
            'https://a.example/1', 1987, 'https://a.example/2', 'https://a.example/3', x'0102', 'manual', 'read at',
            'added', 'synced', 'modified', 'notes', 1);
        INSERT INTO book_tags (book_id, tag) VALUES (7, 'sea'), (7, 'art'), (99, 'nobody');
    )sql");
    const auto books = await(library.store().books());
    ASSERT_EQ(books.size(), 1);
    const Book expected{
        .id = 7,
        .goodreadsID = QStringLiteral("gid"),
        .title = QStringLiteral("title"),
        .author = QStringLiteral("author"),
        .isbn = QStringLiteral("isbn"),
        .shelf = QStringLiteral("to-read"),
        .userRating = 4.5,
        .averageRating = 3.75,
        .numberOfPages = 321,
        .summary = QStringLiteral("summary"),
        .goodreadsURL = Url::parse(QStringLiteral("https://a.example/1")),
        .publishedYear = 1987,
        .coverURL = Url::parse(QStringLiteral("https://a.example/2")),
        .goodreadsImageURL = Url::parse(QStringLiteral("https://a.example/3")),
        .coverData = CoverBytes(QByteArray("\x01\x02", 2)),
        .readAt = QStringLiteral("read at"),
        .dateAdded = QStringLiteral("added"),
        .dateSynced = QStringLiteral("synced"),
        .dateModified = QStringLiteral("modified"),
        .notes = QStringLiteral("notes"),
        .tags = {QStringLiteral("art"), QStringLiteral("sea")},
        .isHidden = true,
    };
    EXPECT_EQ(books.first(), expected);
}

TEST(LibraryReads, EveryFieldOfAnAudiobookComesFromItsColumn)
{
    TestLibrary library;
    library.executeScript(R"sql(
        INSERT INTO audible_books VALUES (7, 'asin', 'title', 'author', 'narrator', 'series', 3, 'https://a.example/1',
            x'0102', 'manual', 'https://a.example/2', 'added', 'synced', 'notes', 4.5, 'finished', 'summary', 'reading',
            600, 'released', 'bought', 4.1, 4.2, 4.3, 17, 55.5, 1, 'last sync');
    )sql");
    const auto audiobooks = await(library.store().audiobooks());
    ASSERT_EQ(audiobooks.size(), 1);
    const Audiobook expected{
        .id = 7,
        .asin = QStringLiteral("asin"),
        .title = QStringLiteral("title"),
        .author = QStringLiteral("author"),
        .narrator = QStringLiteral("narrator"),
        .series = QStringLiteral("series"),
        .bookNumber = 3,
        .coverURL = Url::parse(QStringLiteral("https://a.example/1")),
        .coverData = CoverBytes(QByteArray("\x01\x02", 2)),
        .audibleURL = Url::parse(QStringLiteral("https://a.example/2")),
        .dateAdded = QStringLiteral("added"),
        .dateSynced = QStringLiteral("synced"),
        .notes = QStringLiteral("notes"),
        .userRating = 4.5,
        .finishedAt = QStringLiteral("finished"),
        .summary = QStringLiteral("summary"),
        .status = QStringLiteral("reading"),
        .runtimeMinutes = 600,
        .releaseDate = QStringLiteral("released"),
        .purchaseDate = QStringLiteral("bought"),
        .averageRating = 4.1,
        .performanceRating = 4.2,
        .storyRating = 4.3,
        .reviewCount = 17,
        .listeningProgress = 55.5,
        .audibleOwned = true,
        .lastAudibleSync = QStringLiteral("last sync"),
    };
    EXPECT_EQ(audiobooks.first(), expected);
}

TEST(LibraryReads, ARowOfNothingButItsKeysReadsAsTheDefaults)
{
    TestLibrary library;
    library.executeScript(R"sql(
        INSERT INTO goodreads_books (id, goodreads_id, title, user_rating, date_synced, date_modified, hidden)
            VALUES (3, 'g', 't', NULL, NULL, NULL, NULL);
        INSERT INTO audible_books (id, asin, date_synced, status, audible_owned) VALUES (4, 'a', NULL, NULL, NULL);
    )sql");
    EXPECT_EQ(await(library.store().books()).first(),
        (Book{.id = 3,
            .goodreadsID = QStringLiteral("g"),
            .title = QStringLiteral("t"),
            .shelf = QStringLiteral("read")}));
    EXPECT_EQ(await(library.store().audiobooks()).first(),
        (Audiobook{.id = 4, .asin = QStringLiteral("a"), .status = QStringLiteral("read")}));
}

TEST(LibraryReads, BlobsInEveryColumnReadAsTheDefaults)
{
    TestLibrary library;
    library.executeScript(R"sql(
        INSERT INTO goodreads_books VALUES (3, x'ff', x'ff', x'ff', x'ff', x'ff', x'ff', x'ff', x'ff', x'ff', x'ff',
            x'ff', x'ff', x'ff', x'', x'ff', x'ff', x'ff', x'ff', x'ff', x'ff', x'ff');
        INSERT INTO audible_books VALUES (4, x'ff', x'ff', x'ff', x'ff', x'ff', x'ff', x'ff', x'', x'ff', x'ff', x'ff',
            x'ff', x'ff', x'ff', x'ff', x'ff', x'ff', x'ff', x'ff', x'ff', x'ff', x'ff', x'ff', x'ff', x'ff', x'ff',
            x'ff');
        INSERT INTO book_tags (book_id, tag) VALUES (x'ff', x'ff');
        INSERT INTO settings VALUES (x'ff', x'ff');
    )sql");
    EXPECT_EQ(await(library.store().books()).first(), (Book{.id = 3, .shelf = QStringLiteral("read")}));
    EXPECT_EQ(await(library.store().audiobooks()).first(), (Audiobook{.id = 4, .status = QStringLiteral("read")}));
    EXPECT_THAT(await(library.store().tags()), ElementsAre(TagCount{QString(), 1}));
    EXPECT_EQ(await(library.store().settings()), (SettingsMap{{QString(), QString()}}));
}

TEST(LibraryReads, WordsInColumnsOfNumbersAndTheOtherWayRound)
{
    TestLibrary library;
    library.executeScript(R"sql(
        INSERT INTO goodreads_books (goodreads_id, title, author, user_rating, average_rating, num_pages,
                                     published_year, goodreads_url, cover_url, cover_data, notes, hidden)
            VALUES (12, 4.0, 7, 'five', ' 3', '12a', 1999.9, 'no url', 'https://a.example/b c', 'no bytes', 1e300, 2);
        INSERT INTO audible_books (asin, title, series, book_number, user_rating, runtime_minutes, review_count,
                                   listening_progress, audible_owned)
            VALUES ('a', '', '', 'two', '4,5', 61.9, '+', 'half', 'yes');
    )sql");
    const Book book = await(library.store().books()).first();
    EXPECT_EQ(book.goodreadsID, QStringLiteral("12"));
    EXPECT_EQ(book.title, QStringLiteral("4.0"));
    EXPECT_EQ(book.userRating, 0);
    EXPECT_EQ(book.averageRating, 3.0); // SQLite itself makes this a number in its column
    EXPECT_EQ(book.numberOfPages, std::nullopt);
    EXPECT_EQ(book.publishedYear, 1999);
    EXPECT_EQ(book.goodreadsURL, std::nullopt);
    EXPECT_EQ(book.coverURL, std::nullopt);
    EXPECT_EQ(book.coverData, std::nullopt);
    EXPECT_FALSE(book.isHidden);
    const Audiobook audiobook = await(library.store().audiobooks()).first();
    EXPECT_EQ(audiobook.series, std::nullopt);
    EXPECT_EQ(audiobook.bookNumber, std::nullopt);
    EXPECT_EQ(audiobook.userRating, std::nullopt);
    EXPECT_EQ(audiobook.runtimeMinutes, 61);
    EXPECT_EQ(audiobook.reviewCount, std::nullopt);
    EXPECT_EQ(audiobook.listeningProgress, std::nullopt);
    EXPECT_FALSE(audiobook.audibleOwned);
}

TEST(LibraryReads, AudiobooksComeBySeriesPlaceAndTitle)
{
    TestLibrary library;
    library.executeScript(R"sql(
        INSERT INTO audible_books (asin, title, series, book_number) VALUES
            ('1', 'z', 'Winter', 2), ('2', 'y', 'Winter', 1), ('3', 'b', NULL, NULL), ('4', 'a', '', NULL),
            ('5', 'x', 'Autumn', 10), ('6', 'w', 'Autumn', NULL);
    )sql");
    QList<QString> order;
    for (const Audiobook &audiobook : await(library.store().audiobooks())) {
        order.append(audiobook.title);
    }
    EXPECT_THAT(order,
        ElementsAre(QStringLiteral("a"), QStringLiteral("b"), QStringLiteral("w"), QStringLiteral("x"),
            QStringLiteral("y"), QStringLiteral("z")));
}

TEST(LibraryReads, TagsComeByUseThenByName)
{
    TestLibrary library;
    library.executeScript(R"sql(
        INSERT INTO goodreads_books (id, goodreads_id, title) VALUES (1, '1', 'One'), (2, '2', 'Two');
        INSERT INTO book_tags (book_id, tag) VALUES (1, 'sea'), (2, 'sea'), (1, 'b'), (2, 'a');
    )sql");
    EXPECT_THAT(await(library.store().tags()),
        ElementsAre(
            TagCount{QStringLiteral("sea"), 2}, TagCount{QStringLiteral("a"), 1}, TagCount{QStringLiteral("b"), 1}));
}

TEST(LibraryReads, ACoverStaysTheSameSharedValueAcrossReloadsAndEdits)
{
    TestLibrary library;
    library.execute(
        "INSERT INTO goodreads_books (goodreads_id, title, cover_data) VALUES ('1', 'One', zeroblob(40000))");
    const void *const cover = coverOf(library);
    ASSERT_NE(cover, nullptr);
    EXPECT_EQ(coverOf(library), cover);
    await(library.store().updateBook(1, 5, QStringLiteral("read"), QStringLiteral("a note")));
    EXPECT_EQ(coverOf(library), cover);
}

TEST(LibraryReads, ACoverThatTheStoreReplacesIsReadAnew)
{
    TestLibrary library;
    library.execute("INSERT INTO goodreads_books (goodreads_id, title, cover_data) VALUES ('1', 'One', x'0102')");
    EXPECT_EQ(await(library.store().books()).first().coverData, CoverBytes(QByteArray("\x01\x02", 2)));
    const CoverBytes replacement(QByteArray("\x03\x04", 2)); // of the same size
    await(library.store().storeArtwork(
        replacement, {.kind = ArtworkKind::Book, .id = 1, .title = {}, .sourceURL = {}}, QStringLiteral("manual")));
    EXPECT_EQ(await(library.store().books()).first().coverData, replacement);
}

TEST(LibraryReads, ACoverThatAnotherConnectionReplacesIsReadAnew)
{
    TestLibrary library;
    library.execute("INSERT INTO goodreads_books (goodreads_id, title, cover_data) VALUES ('1', 'One', x'0102')");
    EXPECT_EQ(await(library.store().books()).first().coverData, CoverBytes(QByteArray("\x01\x02", 2)));
    library.execute("UPDATE goodreads_books SET cover_data = x'0304'");
    EXPECT_EQ(await(library.store().books()).first().coverData, CoverBytes(QByteArray("\x03\x04", 2)));
    library.execute("UPDATE goodreads_books SET cover_data = NULL");
    EXPECT_EQ(await(library.store().books()).first().coverData, std::nullopt);
}

TEST(LibraryReads, AnAudiobooksCoverThatAnotherConnectionReplacesIsReadAnew)
{
    TestLibrary library;
    library.execute("INSERT INTO audible_books (asin, cover_data) VALUES ('1', x'0102')");
    EXPECT_EQ(await(library.store().audiobooks()).first().coverData, CoverBytes(QByteArray("\x01\x02", 2)));
    library.execute("UPDATE audible_books SET cover_data = x'0304'");
    EXPECT_EQ(await(library.store().audiobooks()).first().coverData, CoverBytes(QByteArray("\x03\x04", 2)));
}

TEST(LibraryReads, ACoverThatIsReplacedWhileTheLibraryIsClosedIsReadAnew)
{
    TestLibrary library;
    // Two connections of the same short life, which count foreign changes alike.
    for (const char byte : {'\x01', '\x02'}) {
        library.close();
        library.execute("INSERT OR REPLACE INTO goodreads_books (id, goodreads_id, title, cover_data) "
                        "VALUES (1, '1', 'One', ?)",
            {QByteArray(1, byte)});
        library.open();
        EXPECT_EQ(await(library.store().books()).first().coverData, CoverBytes(QByteArray(1, byte)));
    }
}

TEST(LibraryReads, BooksAndTheirTagsAreOfOneMoment)
{
    TestLibrary library;
    library.executeScript("INSERT INTO goodreads_books (id, goodreads_id, title) VALUES (1, '1', 'One');"
                          "PRAGMA journal_mode = WAL;");
    SQLiteDatabase database(library.databasePath());
    // Writes a second book as soon as the books are being read, after the tags.
    const auto onStatement = [](unsigned, void *context, void *, void *sql) {
        if (QByteArrayView(static_cast<const char *>(sql)).contains("did-not-finish")) {
            static_cast<TestLibrary *>(context)->executeScript(
                "INSERT INTO goodreads_books (id, goodreads_id, title) VALUES (2, '2', 'Two');"
                "INSERT INTO book_tags (book_id, tag) VALUES (2, 'tag');");
        }
        return 0;
    };
    sqlite3_trace_v2(database.handle(), SQLITE_TRACE_STMT, onStatement, &library);
    CoverCache covers;
    EXPECT_EQ(BookRows::all(database, covers).size(), 1);
    sqlite3_trace_v2(database.handle(), 0, nullptr, nullptr);
    const auto books = BookRows::all(database, covers);
    ASSERT_EQ(books.size(), 2);
    EXPECT_THAT(books[1].tags, ElementsAre(QStringLiteral("tag")));
}

TEST(LibraryReads, ABookAndAnAudiobookOfOneRowIdKeepTheirOwnCovers)
{
    TestLibrary library;
    library.executeScript(
        "INSERT INTO goodreads_books (id, goodreads_id, title, cover_data) VALUES (1, '1', 'One', x'01');"
        "INSERT INTO audible_books (id, asin, cover_data) VALUES (1, '1', x'02');");
    for (int reload = 0; reload < 2; ++reload) {
        EXPECT_EQ(await(library.store().books()).first().coverData, CoverBytes(QByteArray("\x01", 1)));
        EXPECT_EQ(await(library.store().audiobooks()).first().coverData, CoverBytes(QByteArray("\x02", 1)));
    }
}

TEST(LibraryReads, ATornFileGivesAFailureOrRowsAndNeverACrash)
{
    TestLibrary library;
    library.executeScript("INSERT INTO goodreads_books (goodreads_id, title, cover_data, notes) "
                          "WITH n(i) AS (SELECT 1 UNION ALL SELECT i + 1 FROM n WHERE i < 300) "
                          "SELECT i, 'Title ' || i, zeroblob(3 * i), hex(randomblob(50)) FROM n;");
    library.close();
    QFile file(library.databasePath());
    ASSERT_TRUE(file.open(QIODevice::ReadOnly));
    const QByteArray whole = file.readAll();
    file.close();
    std::mt19937 random(20'261'121);
    int failed = 0;
    for (int round = 0; round < 40; ++round) {
        QByteArray torn = whole;
        for (int i = 0; i < 40; ++i) {
            torn[100 + qsizetype(random() % quint32(torn.size() - 100))] = char(random());
        }
        ASSERT_TRUE(file.open(QIODevice::WriteOnly | QIODevice::Truncate));
        file.write(torn);
        file.close();
        try {
            library.open();
            await(library.store().books());
        } catch (const Failure &) {
            ++failed;
        }
        library.close();
    }
    EXPECT_GT(failed, 0);
}
