#include "persistence/database/DatabaseError.h"
#include "persistence/GoodreadsMerge.h"
#include "reliability/QuireReliabilityError.h"
#include "testing/Await.h"
#include "testing/ImportRecords.h"
#include "testing/TestLibrary.h"

#include <gmock/gmock.h>

using namespace quire;
using namespace quire::testing;

namespace {

QString text(const char *value)
{
    return QString::fromUtf8(value);
}

void import(TestLibrary &library, const QList<GoodreadsFeedBook> &batch)
{
    await(library.store().upsertGoodreadsBooks(batch));
}

SQLiteValue cell(const TestLibrary &library, const QString &column, const QString &id = QStringLiteral("100"))
{
    const QString sql = QStringLiteral("SELECT %1 FROM goodreads_books WHERE goodreads_id = ?").arg(column);
    return library.scalar(sql.toUtf8().constData(), {id});
}

void setCell(TestLibrary &library, const QString &column, const SQLiteValue &value)
{
    const QString sql = QStringLiteral("UPDATE goodreads_books SET %1 = ? WHERE goodreads_id = '100'").arg(column);
    library.execute(sql.toUtf8().constData(), {value});
}

const SQLiteValue null;

// For one column: what the feed brings, and the stored values that give way to
// it and those that stay.
struct Rule
{
    const char *column;
    SQLiteValue incoming;
    QList<SQLiteValue> givingWay;
    QList<SQLiteValue> staying;
};

QList<Rule> rules()
{
    const QList<SQLiteValue> noText{null, text("")};
    const QList<SQLiteValue> someText{text("Mine"), text(" "), text("\t")};
    const QList<SQLiteValue> someNumber{0, 7};
    return {
        {"title", text("The Feed Title"), {text(""), text("   ")}, {text("Mine"), text("\t")}},
        {"author", text("Feed Author"), {null, text(""), text("   ")}, {text("Mine"), text("\t")}},
        {"isbn", text("9780000000001"), noText, someText},
        {"description", text("A summary of the feed."), noText, someText},
        {"goodreads_url", text("https://books.example/show/100"), noText, someText},
        {"goodreads_image_url", text("https://images.example/100.jpg"), noText, someText},
        {"cover_url", text("https://covers.example/100.jpg"), noText, someText},
        {"read_at", text("Sat, 14 Mar 2020 00:00:00 -0700"), noText, someText},
        {"date_added", text("Sun, 01 Mar 2020 10:00:00 -0700"), noText, someText},
        {"average_rating", 3.97, {null}, {0.0, 2.5}},
        {"num_pages", 320, {null}, someNumber},
        {"published_year", 1987, {null}, someNumber},
        {"user_rating", 4.0, {null, 0.0, -1.0}, {3.0, 0.5}},
    };
}

} // namespace

TEST(GoodreadsMerge, AnEmptyBatchChangesNothing)
{
    TestLibrary library;
    import(library, {fullFeedBook()});
    const auto before = everything(library);
    import(library, {});
    EXPECT_EQ(everything(library), before);
}

TEST(GoodreadsMerge, ANewBookHasEveryFieldOfTheFeed)
{
    TestLibrary library;
    import(library, {fullFeedBook()});
    const auto rows = library.query("SELECT * FROM goodreads_books");
    ASSERT_EQ(rows.size(), 1);
    EXPECT_EQ(rows[0].value(text("goodreads_id")), text("100"));
    EXPECT_EQ(rows[0].value(text("shelf")), text("to-read"));
    for (const Rule &rule : rules()) {
        EXPECT_EQ(rows[0].value(text(rule.column)), rule.incoming) << rule.column;
    }
    EXPECT_TRUE(isSqlNow(library, rows[0].value(text("date_synced"))));
    EXPECT_TRUE(isSqlNow(library, rows[0].value(text("date_modified"))));
    EXPECT_EQ(rows[0].value(text("hidden")), SQLiteValue(0));
    for (const char *column : {"cover_data", "cover_data_source", "notes"}) {
        EXPECT_EQ(rows[0].value(text(column)), null) << column;
    }
}

TEST(GoodreadsMerge, FieldsThatTheFeedIsSilentOnAreNull)
{
    TestLibrary library;
    import(library, {bareFeedBook(text("100"), text("Bare"))});
    for (const char *column : {"isbn", "average_rating", "num_pages", "description", "goodreads_url", "published_year",
             "cover_url", "goodreads_image_url", "read_at", "date_added"}) {
        EXPECT_EQ(cell(library, text(column)), null) << column;
    }
    // An author without a name is still a text.
    EXPECT_EQ(cell(library, text("author")), text(""));
    EXPECT_EQ(cell(library, text("user_rating")), SQLiteValue(0.0));
}

TEST(GoodreadsMerge, GapsAreFilledAndWhatIsThereStays)
{
    TestLibrary library;
    import(library, {fullFeedBook()});
    for (const Rule &rule : rules()) {
        for (const SQLiteValue &stored : rule.givingWay) {
            setCell(library, text(rule.column), stored);
            import(library, {fullFeedBook()});
            EXPECT_EQ(cell(library, text(rule.column)), rule.incoming) << rule.column;
        }
        for (const SQLiteValue &stored : rule.staying) {
            setCell(library, text(rule.column), stored);
            const SQLiteValue asStored = cell(library, text(rule.column));
            import(library, {fullFeedBook()});
            EXPECT_EQ(cell(library, text(rule.column)), asStored) << rule.column;
        }
    }
}

TEST(GoodreadsMerge, ASilentFeedEmptiesNothing)
{
    TestLibrary library;
    import(library, {fullFeedBook()});
    import(library, {bareFeedBook(text("100"), text("Bare"))});
    for (const Rule &rule : rules()) {
        EXPECT_EQ(cell(library, text(rule.column)), rule.incoming) << rule.column;
    }
}

TEST(GoodreadsMerge, ShelvesAdvanceAndDoNotFallBack)
{
    const char *const incoming[] = {"to-read", "currently-reading", "read", "did-not-finish", "gave-away", ""};
    const struct
    {
        SQLiteValue stored;
        const char *after[6];
    } table[] = {
        {null, {"to-read", "currently-reading", "read", "did-not-finish", "gave-away", ""}},
        {text(""), {"to-read", "currently-reading", "read", "did-not-finish", "gave-away", ""}},
        {text("to-read"), {"to-read", "currently-reading", "read", "did-not-finish", "gave-away", ""}},
        {text("currently-reading"),
            {"currently-reading", "currently-reading", "read", "did-not-finish", "gave-away", ""}},
        {text("read"), {"read", "read", "read", "read", "read", "read"}},
        {text("did-not-finish"),
            {"did-not-finish", "did-not-finish", "did-not-finish", "did-not-finish", "did-not-finish",
                "did-not-finish"}},
        {text("gave-away"), {"to-read", "currently-reading", "read", "did-not-finish", "gave-away", ""}},
    };
    TestLibrary library;
    import(library, {bareFeedBook(text("100"), text("Title"))});
    for (const auto &row : table) {
        for (int i = 0; i < 6; ++i) {
            setCell(library, text("shelf"), row.stored);
            import(library, {bareFeedBook(text("100"), text("Title"), text(incoming[i]))});
            EXPECT_EQ(cell(library, text("shelf")), text(row.after[i]))
                << qPrintable(row.stored.string(text("NULL"))) << " meets " << incoming[i];
        }
    }
}

TEST(GoodreadsMerge, EveryRowOfTheFeedCountsAsSyncedAndModified)
{
    TestLibrary library;
    import(library, {fullFeedBook(), fullFeedBook(text("200"))});
    library.execute(
        "UPDATE goodreads_books SET date_synced = '2001-01-01 00:00:00', date_modified = '2001-01-01 00:00:00'");
    const qint64 generation = library.scalar("SELECT generation FROM library_metadata").intValue().value();
    import(library, {fullFeedBook()});
    EXPECT_TRUE(isSqlNow(library, cell(library, text("date_synced"))));
    EXPECT_TRUE(isSqlNow(library, cell(library, text("date_modified"))));
    EXPECT_EQ(cell(library, text("date_modified"), text("200")), text("2001-01-01 00:00:00"));
    EXPECT_EQ(library.scalar("SELECT generation FROM library_metadata").intValue(), generation + 1);
}

TEST(GoodreadsMerge, AChangedFeedChangesNothingOfTheReaders)
{
    TestLibrary library;
    import(library, {fullFeedBook()});
    const qint64 id = cell(library, text("id")).intValue().value();
    await(library.store().updateBook(id, 2.5, text("did-not-finish"), text("My notes")));
    await(library.store().setBookHidden(id, true));
    ArtworkRequest request;
    request.id = id;
    await(library.store().storeArtwork(CoverBytes(QByteArrayLiteral("cover")), request, text("manual")));
    library.execute("INSERT INTO book_tags (book_id, tag) VALUES (?, 'mine')", {id});
    const auto tags = library.query("SELECT * FROM book_tags");

    GoodreadsFeedBook changed = fullFeedBook();
    changed.title = text("Another Title");
    changed.userRating = 5;
    changed.shelf = text("read");
    changed.numberOfPages = 1;
    changed.coverURL = url("https://covers.example/other.jpg");
    import(library, {changed, bareFeedBook(text("300"), text("New"))});

    EXPECT_EQ(cell(library, text("id")), SQLiteValue(id));
    EXPECT_EQ(cell(library, text("user_rating")), SQLiteValue(2.5));
    EXPECT_EQ(cell(library, text("notes")), text("My notes"));
    EXPECT_EQ(cell(library, text("shelf")), text("did-not-finish"));
    EXPECT_EQ(cell(library, text("hidden")), SQLiteValue(1));
    EXPECT_EQ(cell(library, text("title")), text("The Feed Title"));
    EXPECT_EQ(cell(library, text("num_pages")), SQLiteValue(320));
    EXPECT_EQ(cell(library, text("cover_data")), SQLiteValue(QByteArrayLiteral("cover")));
    EXPECT_EQ(cell(library, text("cover_data_source")), text("manual"));
    EXPECT_EQ(library.query("SELECT * FROM book_tags"), tags);
    EXPECT_EQ(library.scalar("SELECT COUNT(*) FROM goodreads_books").intValue(), 2);
}

TEST(GoodreadsMerge, ANewBookLeavesItsTrailAsApplied)
{
    TestLibrary library;
    import(library, {fullFeedBook()});
    const QMap<QString, QString> said{
        {text("author"), text("Feed Author")},
        {text("average_rating"), text("3.97")},
        {text("cover_url"), text("https://covers.example/100.jpg")},
        {text("description"), text("A summary of the feed.")},
        {text("goodreads_id"), text("100")},
        {text("goodreads_url"), text("https://books.example/show/100")},
        {text("isbn"), text("9780000000001")},
        {text("num_pages"), text("320")},
        {text("published_year"), text("1987")},
        {text("read_at"), text("Sat, 14 Mar 2020 00:00:00 -0700")},
        {text("shelf"), text("to-read")},
        {text("title"), text("The Feed Title")},
        {text("user_rating"), text("4.0")},
    };
    EXPECT_EQ(hashesOf(library, "book", 1, "goodreads"), hashesOf(said));
    for (const Trail &trail : trailOf(library, "book", 1, "goodreads")) {
        EXPECT_EQ(trail.applied, 1);
        EXPECT_EQ(trail.firstSeenAt, trail.lastSeenAt);
        EXPECT_TRUE(isSqlNow(library, trail.firstSeenAt));
    }
    EXPECT_EQ(library.scalar("SELECT COUNT(*) FROM field_provenance").intValue(), said.size());
}

TEST(GoodreadsMerge, ASilentFeedLeavesNoTrail)
{
    TestLibrary library;
    import(library, {bareFeedBook(text("100"), text("Bare"))});
    EXPECT_THAT(hashesOf(library, "book", 1, "goodreads").keys(),
        ::testing::ElementsAre(
            text("author"), text("goodreads_id"), text("shelf"), text("title"), text("user_rating")));
}

TEST(GoodreadsMerge, AGapThatIsFilledDoesNotCountAsApplied)
{
    TestLibrary library;
    library.execute("INSERT INTO goodreads_books (goodreads_id, title) VALUES ('100', 'Stored')");
    import(library, {fullFeedBook()});
    EXPECT_EQ(cell(library, text("author")), text("Feed Author"));
    const auto trail = trailOf(library, "book", 1, "goodreads");
    EXPECT_EQ(trail.size(), 13);
    for (const Trail &field : trail) {
        EXPECT_EQ(field.applied, 0);
    }
}

TEST(GoodreadsMerge, TheTrailKeepsWhenItBeganAndThatItWasApplied)
{
    TestLibrary library;
    import(library, {fullFeedBook()});
    library.execute(
        "UPDATE field_provenance SET first_seen_at = '2001-01-01 00:00:00', last_seen_at = '2001-01-01 00:00:00'");
    GoodreadsFeedBook changed = fullFeedBook();
    changed.title = text("Another Title");
    changed.isbn = std::nullopt;
    import(library, {changed});

    const auto trail = trailOf(library, "book", 1, "goodreads");
    EXPECT_EQ(trail[text("title")].firstSeenAt, text("2001-01-01 00:00:00"));
    EXPECT_TRUE(isSqlNow(library, trail[text("title")].lastSeenAt));
    EXPECT_EQ(trail[text("title")].hash, sha256(text("Another Title")));
    EXPECT_EQ(trail[text("title")].applied, 1);
    // Not said again, so not seen again.
    EXPECT_EQ(trail[text("isbn")].lastSeenAt, text("2001-01-01 00:00:00"));
    EXPECT_EQ(trail[text("isbn")].hash, sha256(text("9780000000001")));
}

TEST(GoodreadsMerge, ABatchThatFailsValidationStartsNothing)
{
    TestLibrary library;
    library.close();
    // Even a closed library is not asked about.
    EXPECT_THROW(import(library, {bareFeedBook(text(" "), text("Title"))}), QuireReliabilityError);
    try {
        import(library, {fullFeedBook()});
        FAIL();
    } catch (const DatabaseError &error) {
        EXPECT_EQ(error.kind(), DatabaseError::Kind::MissingDatabase);
    }
    library.open();
    const auto before = everything(library);
    EXPECT_THROW(import(library, {fullFeedBook(), fullFeedBook()}), QuireReliabilityError);
    EXPECT_EQ(everything(library), before);
}

TEST(GoodreadsMerge, ARowThatFailsInTheMiddleLeavesTheLibraryAsItWas)
{
    TestLibrary library;
    import(library, {fullFeedBook()});
    failOn(library, text("INSERT"), text("goodreads_books"), text("NEW.goodreads_id = '3'"));
    const auto before = everything(library);
    try {
        import(library,
            {fullFeedBook(), bareFeedBook(text("2"), text("Two")), bareFeedBook(text("3"), text("Three")),
                bareFeedBook(text("4"), text("Four"))});
        FAIL();
    } catch (const DatabaseError &error) {
        EXPECT_EQ(error, DatabaseError(DatabaseError::Kind::Step, text("refused by the test")));
    }
    EXPECT_EQ(everything(library), before);

    // And the next import finds nothing in its way.
    import(library, {bareFeedBook(text("2"), text("Two"))});
    EXPECT_EQ(cell(library, text("title"), text("2")), text("Two"));
}

TEST(GoodreadsMerge, ATrailThatFailsTakesTheImportBack)
{
    TestLibrary library;
    failOn(library, text("INSERT"), text("field_provenance"), text("NEW.field_name = 'user_rating'"));
    const auto before = everything(library);
    EXPECT_THROW(import(library, {fullFeedBook()}), DatabaseError);
    EXPECT_EQ(everything(library), before);
}

TEST(GoodreadsMerge, BlanksAroundAnIdentifierBelongToIt)
{
    TestLibrary library;
    import(library, {bareFeedBook(text("100"), text("Plain"))});
    import(library, {bareFeedBook(text(" 100 "), text("Blanks"))});
    EXPECT_EQ(cell(library, text("title"), text("100")), text("Plain"));
    EXPECT_EQ(cell(library, text("title"), text(" 100 ")), text("Blanks"));
}

TEST(GoodreadsMerge, IdentifiersThatSQLiteTakesForOneAreRefusedInStaging)
{
    TestLibrary library;
    const auto before = everything(library);
    // SQLite's text ends at the first NUL.
    const QString nul(QChar(u'\0'));
    EXPECT_THROW(import(library,
                     {bareFeedBook(text("1") + nul + text("a"), text("A")),
                         bareFeedBook(text("1") + nul + text("b"), text("B"))}),
        DatabaseError);
    EXPECT_EQ(everything(library), before);
}

TEST(GoodreadsMerge, HostileTextsComeThroughAsText)
{
    TestLibrary library;
    const QString quotes = text("Robert'); DROP TABLE goodreads_books;-- \"x\" `y` % _ ?1 :a");
    const QString huge(1 << 20, u'\u00e9');
    const QString emoji = text("\xf0\x9f\x93\x9a\xe2\x80\x8d\xf0\x9f\x91\xa9");
    import(
        library, {bareFeedBook(quotes, quotes), bareFeedBook(text("huge"), huge), bareFeedBook(text("emoji"), emoji)});
    EXPECT_EQ(cell(library, text("title"), quotes), quotes);
    EXPECT_EQ(cell(library, text("title"), text("huge")), huge);
    EXPECT_EQ(cell(library, text("title"), text("emoji")), emoji);

    // What is no valid text is stored as something that is.
    const QString lone = text("a") + QChar(0xd800) + text("b");
    const QString nul = text("before") + QChar(u'\0') + text("after");
    import(library, {bareFeedBook(text("lone"), lone), bareFeedBook(text("nul"), nul)});
    EXPECT_TRUE(cell(library, text("title"), text("lone")).string({}).isValidUtf16());
    EXPECT_EQ(cell(library, text("title"), text("nul")), text("before"));
    EXPECT_EQ(library.scalar("SELECT COUNT(*) FROM goodreads_books").intValue(), 5);
    EXPECT_EQ(library.scalar("PRAGMA integrity_check").string({}), text("ok"));
}

TEST(GoodreadsMerge, WrongTypesInTheRowsAreNoObstacle)
{
    TestLibrary library;
    library.execute("INSERT INTO goodreads_books (goodreads_id, title, author, shelf, user_rating, num_pages) "
                    "VALUES ('100', x'00ff', 12, 3.5, 'five', 'many')");
    import(library, {fullFeedBook()});
    EXPECT_EQ(cell(library, text("author")), text("12"));
    EXPECT_EQ(cell(library, text("num_pages")), text("many"));
    EXPECT_EQ(cell(library, text("user_rating")), text("five")); // greater than any number to SQLite
    EXPECT_EQ(cell(library, text("shelf")), text("to-read"));
}

TEST(GoodreadsMerge, NoStagingTableIsLeft)
{
    TestLibrary library;
    import(library, {fullFeedBook()});
    EXPECT_EQ(library.scalar("SELECT COUNT(*) FROM sqlite_master WHERE name LIKE '%stage%'").intValue(), 0);
}
