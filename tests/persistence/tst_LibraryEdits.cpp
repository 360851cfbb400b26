#include "persistence/database/DatabaseError.h"
#include "records/DateParser.h"
#include "testing/Await.h"
#include "testing/ImportRecords.h"
#include "testing/TestLibrary.h"

#include <QRegularExpression>

#include <gmock/gmock.h>

using namespace quire;
using namespace quire::testing;

namespace {

QString text(const char *value)
{
    return QString::fromUtf8(value);
}

const SQLiteValue null;
const QString past = QStringLiteral("2001-01-01 00:00:00");

SQLiteRow bookRow(const TestLibrary &library, qint64 id)
{
    return library.query("SELECT * FROM goodreads_books WHERE id = ?", {id}).value(0);
}

SQLiteRow audiobookRow(const TestLibrary &library, qint64 id)
{
    return library.query("SELECT * FROM audible_books WHERE id = ?", {id}).value(0);
}

// One book of an earlier day, with the id 1.
void addBook(TestLibrary &library)
{
    library.execute("INSERT INTO goodreads_books (goodreads_id, title, shelf, date_synced, date_modified, notes) "
                    "VALUES ('1', 'One', 'to-read', ?, ?, 'old')",
        {past, past});
}

void addAudiobookRow(TestLibrary &library)
{
    library.execute("INSERT INTO audible_books (asin, title, status, date_synced, notes) "
                    "VALUES ('B1', 'One', 'to-read', ?, 'old')",
        {past});
}

ManualBookDraft draft()
{
    ManualBookDraft made;
    made.title = text("Drafted");
    made.author = text("Draft Author");
    made.isbn = text("123");
    made.shelf = text("to-read");
    made.userRating = 3.5;
    made.numberOfPages = 250;
    made.summary = text("Summary");
    made.publishedYear = 1999;
    made.notes = text("Notes");
    return made;
}

AudibleCatalogBook catalogBook()
{
    return {
        .asin = text("B0CAT"),
        .title = text("Catalogued"),
        .author = text("Cat Author"),
        .narrator = text("Cat Narrator"),
        .series = text("Cat Series"),
        .bookNumber = 3,
        .coverURL = url("https://covers.example/cat.jpg"),
        .audibleURL = url("https://audio.example/pd/B0CAT"),
        .year = text("2020"),
        .summary = text("Cat summary"),
    };
}

const CoverBytes cover(QByteArrayLiteral("cover"));

} // namespace

TEST(LibraryEdits, ABookTakesTheReadersRatingShelfAndNotes)
{
    TestLibrary library;
    addBook(library);
    await(library.store().updateBook(1, 4, text("read"), text("new")));
    const SQLiteRow row = bookRow(library, 1);
    EXPECT_EQ(row.value(text("user_rating")), SQLiteValue(4.0));
    EXPECT_EQ(row.value(text("shelf")), text("read"));
    EXPECT_EQ(row.value(text("notes")), text("new"));
    EXPECT_TRUE(isSqlNow(library, row.value(text("date_modified"))));
    EXPECT_EQ(row.value(text("date_synced")), past);
    EXPECT_EQ(row.value(text("read_at")), null);
    EXPECT_EQ(hashesOf(library, "book", 1, "quire"),
        hashesOf({{text("notes"), text("new")}, {text("shelf"), text("read")}, {text("user_rating"), text("4.0")}}));
    for (const Trail &trail : trailOf(library, "book", 1, "quire")) {
        EXPECT_EQ(trail.applied, 1);
    }
}

TEST(LibraryEdits, HashesAreThoseOfSHA256InLowerCase)
{
    TestLibrary library;
    addBook(library);
    await(library.store().updateBook(1, 4, text("abc"), QString()));
    const auto hashes = hashesOf(library, "book", 1, "quire");
    EXPECT_EQ(hashes[text("shelf")], text("ba7816bf8f01cfea414140de5dae2223b00361a396177a9cb410ff61f20015ad"));
    EXPECT_EQ(hashes[text("notes")], text("e3b0c44298fc1c149afbf4c8996fb92427ae41e4649b934ca495991b7852b855"));
}

TEST(LibraryEdits, AnEmptyNoteIsStoredAsAText)
{
    TestLibrary library;
    addBook(library);
    await(library.store().updateBook(1, 0, text("read"), QString()));
    EXPECT_EQ(bookRow(library, 1).value(text("notes")), text(""));
}

TEST(LibraryEdits, ASecondEditMovesTheTrailAndKeepsItsBeginning)
{
    TestLibrary library;
    addBook(library);
    await(library.store().updateBook(1, 4, text("read"), text("first")));
    library.execute("UPDATE field_provenance SET first_seen_at = ?, last_seen_at = ?", {past, past});
    await(library.store().updateBook(1, 4, text("read"), text("second")));
    const auto trail = trailOf(library, "book", 1, "quire");
    EXPECT_EQ(trail.size(), 3);
    EXPECT_EQ(trail[text("notes")].firstSeenAt, past);
    EXPECT_TRUE(isSqlNow(library, trail[text("notes")].lastSeenAt));
    EXPECT_EQ(trail[text("notes")].hash, sha256(text("second")));
}

TEST(LibraryEdits, AnIdThatMatchesNoRowLeavesItsTrailAllTheSame)
{
    TestLibrary library;
    await(library.store().updateBook(77, 4, text("read"), text("x")));
    await(library.store().setBookHidden(78, true));
    await(library.store().updateAudiobook(79, 4, text("read"), text("x")));
    await(library.store().updateAudiobookCover(80, url("https://c.example/1"), cover));
    await(library.store().storeArtwork(cover, {}, text("manual")));
    EXPECT_EQ(library.scalar("SELECT COUNT(*) FROM goodreads_books").intValue(), 0);
    EXPECT_EQ(library.scalar("SELECT COUNT(*) FROM audible_books").intValue(), 0);
    EXPECT_EQ(trailOf(library, "book", 77, "quire").size(), 3);
    EXPECT_EQ(trailOf(library, "book", 78, "quire").size(), 1);
    EXPECT_EQ(trailOf(library, "audiobook", 79, "quire").size(), 3);
    EXPECT_EQ(library.scalar("SELECT COUNT(*) FROM field_provenance").intValue(), 7);
}

TEST(LibraryEdits, HidingIsReversible)
{
    TestLibrary library;
    addBook(library);
    await(library.store().setBookHidden(1, true));
    EXPECT_EQ(bookRow(library, 1).value(text("hidden")), SQLiteValue(1));
    EXPECT_TRUE(isSqlNow(library, bookRow(library, 1).value(text("date_modified"))));
    EXPECT_EQ(hashesOf(library, "book", 1, "quire"), hashesOf({{text("hidden"), text("1")}}));
    await(library.store().setBookHidden(1, false));
    EXPECT_EQ(bookRow(library, 1).value(text("hidden")), SQLiteValue(0));
    EXPECT_EQ(hashesOf(library, "book", 1, "quire"), hashesOf({{text("hidden"), text("0")}}));
}

TEST(LibraryEdits, ATrailThatFailsTakesTheEditBack)
{
    TestLibrary library;
    addBook(library);
    addAudiobookRow(library);
    failOn(library, text("INSERT"), text("field_provenance"), text("1"));
    const auto before = everything(library);
    EXPECT_THROW(await(library.store().updateBook(1, 4, text("read"), text("x"))), DatabaseError);
    EXPECT_THROW(await(library.store().setBookHidden(1, true)), DatabaseError);
    EXPECT_THROW(await(library.store().addManualBook(draft(), std::nullopt)), DatabaseError);
    EXPECT_THROW(await(library.store().updateAudiobook(1, 4, text("read"), text("x"))), DatabaseError);
    EXPECT_THROW(await(library.store().addAudiobook(catalogBook(), text("read"), std::nullopt, cover)), DatabaseError);
    EXPECT_EQ(everything(library), before);
}

TEST(LibraryEdits, ABookTypedInByHandHasEveryFieldOfItsDraft)
{
    TestLibrary library;
    const qint64 id = await(library.store().addManualBook(draft(), cover));
    const SQLiteRow row = bookRow(library, id);
    const QRegularExpression manual(
        text("^manual:[0-9A-F]{8}-[0-9A-F]{4}-4[0-9A-F]{3}-[89AB][0-9A-F]{3}-[0-9A-F]{12}$"));
    EXPECT_TRUE(manual.match(row.string(text("goodreads_id"), {})).hasMatch())
        << qPrintable(row.string(text("goodreads_id"), {}));
    EXPECT_EQ(row.value(text("title")), text("Drafted"));
    EXPECT_EQ(row.value(text("author")), text("Draft Author"));
    EXPECT_EQ(row.value(text("isbn")), text("123"));
    EXPECT_EQ(row.value(text("shelf")), text("to-read"));
    EXPECT_EQ(row.value(text("user_rating")), SQLiteValue(3.5));
    EXPECT_EQ(row.value(text("num_pages")), SQLiteValue(250));
    EXPECT_EQ(row.value(text("description")), text("Summary"));
    EXPECT_EQ(row.value(text("published_year")), SQLiteValue(1999));
    EXPECT_EQ(row.value(text("notes")), text("Notes"));
    EXPECT_EQ(row.value(text("cover_url")), null);
    EXPECT_EQ(row.value(text("cover_data")), SQLiteValue(QByteArrayLiteral("cover")));
    EXPECT_EQ(row.value(text("cover_data_source")), text("manual"));
    EXPECT_EQ(row.value(text("read_at")), null);
    EXPECT_EQ(row.value(text("date_added")), DateParser::iso8601(library.clock().now()));
    EXPECT_TRUE(isSqlNow(library, row.value(text("date_synced"))));
    EXPECT_TRUE(isSqlNow(library, row.value(text("date_modified"))));
    EXPECT_EQ(row.value(text("hidden")), SQLiteValue(0));
    EXPECT_EQ(hashesOf(library, "book", id, "quire"),
        hashesOf({{text("author"), text("Draft Author")}, {text("notes"), text("Notes")},
            {text("shelf"), text("to-read")}, {text("title"), text("Drafted")}, {text("user_rating"), text("3.5")}}));
}

TEST(LibraryEdits, TwoBooksTypedInByHandAreTwo)
{
    TestLibrary library;
    const qint64 first = await(library.store().addManualBook(draft(), std::nullopt));
    const qint64 second = await(library.store().addManualBook(draft(), std::nullopt));
    EXPECT_NE(first, second);
    EXPECT_NE(
        bookRow(library, first).value(text("goodreads_id")), bookRow(library, second).value(text("goodreads_id")));
}

TEST(LibraryEdits, ABookOfTheCatalogueKeepsItsIdentifierAndCoverAddress)
{
    TestLibrary library;
    ManualBookDraft made = draft();
    made.sourceID = text("openlibrary:/works/OL1W");
    made.sourceCoverURL = url("https://covers.example/ol.jpg");
    made.shelf = text("read");
    const qint64 id = await(library.store().addManualBook(made, std::nullopt));
    const SQLiteRow row = bookRow(library, id);
    EXPECT_EQ(row.value(text("goodreads_id")), text("openlibrary:/works/OL1W"));
    EXPECT_EQ(row.value(text("cover_url")), text("https://covers.example/ol.jpg"));
    EXPECT_EQ(row.value(text("cover_data")), null);
    EXPECT_EQ(row.value(text("cover_data_source")), text("https://covers.example/ol.jpg"));
    EXPECT_EQ(row.value(text("read_at")), DateParser::iso8601(library.clock().now()));

    // A second time it is refused, and the first stays as it is.
    const auto before = everything(library);
    EXPECT_THROW(await(library.store().addManualBook(made, std::nullopt)), DatabaseError);
    EXPECT_EQ(everything(library), before);
}

TEST(LibraryEdits, OnlyATitleAddedAsReadHasADateOfReading)
{
    TestLibrary library;
    for (const char *word : {"to-read", "currently-reading", "reading", "did-not-finish", "Read", ""}) {
        ManualBookDraft made = draft();
        made.shelf = text(word);
        const qint64 book = await(library.store().addManualBook(made, std::nullopt));
        EXPECT_EQ(bookRow(library, book).value(text("read_at")), null) << word;
        AudibleCatalogBook typed;
        typed.title = text("Typed");
        const qint64 audiobook = await(library.store().addAudiobook(typed, text(word), std::nullopt, std::nullopt));
        EXPECT_EQ(audiobookRow(library, audiobook).value(text("finished_at")), null) << word;
    }
}

TEST(LibraryEdits, ABookWithoutArtworkIsStillMarkedManual)
{
    TestLibrary library;
    const qint64 id = await(library.store().addManualBook(draft(), std::nullopt));
    EXPECT_EQ(bookRow(library, id).value(text("cover_data_source")), text("manual"));
    EXPECT_EQ(bookRow(library, id).value(text("cover_data")), null);
    const auto requests = await(library.store().artworkRequestsNeedingCache());
    ASSERT_EQ(requests.size(), 1);
    EXPECT_EQ(requests[0].id, id);
}

TEST(LibraryEdits, AnAudiobookTakesTheReadersWordsAndNoDateMoves)
{
    TestLibrary library;
    addAudiobookRow(library);
    await(library.store().updateAudiobook(1, 0, text("read"), text("new")));
    const SQLiteRow row = audiobookRow(library, 1);
    EXPECT_EQ(row.value(text("user_rating")), SQLiteValue(0.0));
    EXPECT_EQ(row.value(text("status")), text("read"));
    EXPECT_EQ(row.value(text("notes")), text("new"));
    EXPECT_EQ(row.value(text("date_synced")), past);
    EXPECT_EQ(row.value(text("finished_at")), null);
    EXPECT_EQ(hashesOf(library, "audiobook", 1, "quire"),
        hashesOf({{text("notes"), text("new")}, {text("status"), text("read")}, {text("user_rating"), text("0.0")}}));
}

TEST(LibraryEdits, AnAudiobookOfTheCatalogueHasEveryFieldOfIt)
{
    TestLibrary library;
    const qint64 id = await(library.store().addAudiobook(catalogBook(), text("reading"), std::nullopt, cover));
    const SQLiteRow row = audiobookRow(library, id);
    EXPECT_EQ(row.value(text("asin")), text("B0CAT"));
    EXPECT_EQ(row.value(text("title")), text("Catalogued"));
    EXPECT_EQ(row.value(text("author")), text("Cat Author"));
    EXPECT_EQ(row.value(text("narrator")), text("Cat Narrator"));
    EXPECT_EQ(row.value(text("series")), text("Cat Series"));
    EXPECT_EQ(row.value(text("book_number")), SQLiteValue(3));
    EXPECT_EQ(row.value(text("cover_url")), text("https://covers.example/cat.jpg"));
    EXPECT_EQ(row.value(text("audible_url")), text("https://audio.example/pd/B0CAT"));
    EXPECT_EQ(row.value(text("description")), text("Cat summary"));
    EXPECT_EQ(row.value(text("status")), text("reading"));
    EXPECT_EQ(row.value(text("notes")), text(""));
    EXPECT_EQ(row.value(text("user_rating")), null);
    EXPECT_EQ(row.value(text("finished_at")), null);
    EXPECT_EQ(row.value(text("date_added")), DateParser::iso8601(library.clock().now()));
    EXPECT_TRUE(isSqlNow(library, row.value(text("date_synced"))));
    EXPECT_EQ(row.value(text("cover_data")), SQLiteValue(QByteArrayLiteral("cover")));
    EXPECT_EQ(row.value(text("cover_data_source")), text("https://covers.example/cat.jpg"));
    EXPECT_EQ(hashesOf(library, "audiobook", id, "audible"),
        hashesOf({{text("asin"), text("B0CAT")}, {text("author"), text("Cat Author")}, {text("book_number"), text("3")},
            {text("cover_url"), text("https://covers.example/cat.jpg")}, {text("description"), text("Cat summary")},
            {text("narrator"), text("Cat Narrator")}, {text("series"), text("Cat Series")},
            {text("title"), text("Catalogued")}}));
    for (const Trail &trail : trailOf(library, "audiobook", id, "audible")) {
        EXPECT_EQ(trail.applied, 1);
    }
}

TEST(LibraryEdits, AnAudiobookAddedAsReadWasFinishedNow)
{
    TestLibrary library;
    const qint64 id = await(library.store().addAudiobook(catalogBook(), text("read"), std::nullopt, std::nullopt));
    EXPECT_EQ(audiobookRow(library, id).value(text("finished_at")), DateParser::iso8601(library.clock().now()));
}

TEST(LibraryEdits, ThePreferredCoverStandsInPlaceOfTheCataloguesCover)
{
    TestLibrary library;
    const qint64 id
        = await(library.store().addAudiobook(catalogBook(), text("reading"), url("https://mine.example/c.jpg"), cover));
    const SQLiteRow row = audiobookRow(library, id);
    EXPECT_EQ(row.value(text("cover_url")), text("https://mine.example/c.jpg"));
    EXPECT_EQ(row.value(text("cover_data_source")), text("https://mine.example/c.jpg"));
    EXPECT_EQ(
        hashesOf(library, "audiobook", id, "audible")[text("cover_url")], sha256(text("https://mine.example/c.jpg")));
}

TEST(LibraryEdits, AnAudiobookWithoutArtworkHasNoSourceOfIt)
{
    TestLibrary library;
    const qint64 id = await(library.store().addAudiobook(catalogBook(), text("reading"), std::nullopt, std::nullopt));
    EXPECT_EQ(audiobookRow(library, id).value(text("cover_data")), null);
    EXPECT_EQ(audiobookRow(library, id).value(text("cover_data_source")), null);
}

TEST(LibraryEdits, AnAudiobookTypedInByHandIsTheReaders)
{
    TestLibrary library;
    AudibleCatalogBook typed;
    typed.title = text("Typed");
    const qint64 id = await(library.store().addAudiobook(typed, text("to-read"), std::nullopt, std::nullopt));
    const QString asin = audiobookRow(library, id).string(text("asin"), {});
    EXPECT_TRUE(QRegularExpression(text("^manual:[0-9A-F-]{36}$")).match(asin).hasMatch()) << qPrintable(asin);
    EXPECT_EQ(
        hashesOf(library, "audiobook", id, "quire"), hashesOf({{text("asin"), asin}, {text("title"), text("Typed")}}));
    EXPECT_TRUE(trailOf(library, "audiobook", id, "audible").isEmpty());
}

TEST(LibraryEdits, AddingATitleThatIsThereLosesNothingAndFillsGaps)
{
    const struct
    {
        const char *column;
        SQLiteValue incoming;
        QList<SQLiteValue> givingWay;
        QList<SQLiteValue> staying;
    } rules[] = {
        {"title", text("Catalogued"), {null, text("")}, {text("Mine"), text(" ")}},
        {"author", text("Cat Author"), {null, text("")}, {text("Mine")}},
        {"narrator", text("Cat Narrator"), {null, text("")}, {text("Mine")}},
        {"series", text("Cat Series"), {null, text("")}, {text("Mine")}},
        {"cover_url", text("https://covers.example/cat.jpg"), {null, text("")}, {text("mine")}},
        {"audible_url", text("https://audio.example/pd/B0CAT"), {null, text("")}, {text("mine")}},
        {"description", text("Cat summary"), {null, text("")}, {text("Mine")}},
        {"book_number", 3, {null}, {0, 9}},
        {"finished_at", text("2026-11-21T12:00:00.000Z"), {null}, {text(""), past}},
        {"cover_data", QByteArrayLiteral("cover"), {null}, {QByteArray(""), QByteArrayLiteral("mine")}},
        {"cover_data_source", text("https://covers.example/cat.jpg"), {null}, {text(""), text("manual")}},
        {"status", text("read"), {null, text(""), text("to-read"), text("reading"), text("gave-away")},
            {text("read"), text("did-not-finish")}},
    };
    TestLibrary library;
    const qint64 id = await(library.store().addAudiobook(catalogBook(), text("read"), std::nullopt, cover));
    const auto addAgain
        = [&] { return await(library.store().addAudiobook(catalogBook(), text("read"), std::nullopt, cover)); };
    for (const auto &rule : rules) {
        const QByteArray set = QByteArrayLiteral("UPDATE audible_books SET ") + rule.column + QByteArrayLiteral(" = ?");
        for (const SQLiteValue &stored : rule.givingWay) {
            library.execute(set.constData(), {stored});
            EXPECT_EQ(addAgain(), id);
            EXPECT_EQ(audiobookRow(library, id).value(text(rule.column)), rule.incoming) << rule.column;
        }
        for (const SQLiteValue &stored : rule.staying) {
            library.execute(set.constData(), {stored});
            EXPECT_EQ(addAgain(), id);
            EXPECT_EQ(audiobookRow(library, id).value(text(rule.column)), stored) << rule.column;
        }
    }
    EXPECT_EQ(library.scalar("SELECT COUNT(*) FROM audible_books").intValue(), 1);
}

TEST(LibraryEdits, AnAudiobookAddedTwiceKeepsTheReadersWords)
{
    TestLibrary library;
    const qint64 id = await(library.store().addAudiobook(catalogBook(), text("reading"), std::nullopt, std::nullopt));
    await(library.store().updateAudiobook(id, 4.5, text("read"), text("Loved it")));
    library.execute("UPDATE audible_books SET date_synced = ?, date_added = ?", {past, past});
    EXPECT_EQ(await(library.store().addAudiobook(catalogBook(), text("reading"), std::nullopt, std::nullopt)), id);
    const SQLiteRow row = audiobookRow(library, id);
    EXPECT_EQ(row.value(text("user_rating")), SQLiteValue(4.5));
    EXPECT_EQ(row.value(text("notes")), text("Loved it"));
    EXPECT_EQ(row.value(text("status")), text("read"));
    EXPECT_EQ(row.value(text("date_added")), past);
    EXPECT_EQ(row.value(text("finished_at")), null);
    EXPECT_TRUE(isSqlNow(library, row.value(text("date_synced"))));
}

TEST(LibraryEdits, AnAudiobookThatIsGoneOnceSavedIsAFailure)
{
    TestLibrary library;
    library.executeScript("CREATE TRIGGER swallow AFTER INSERT ON audible_books BEGIN DELETE FROM audible_books; END");
    try {
        await(library.store().addAudiobook(catalogBook(), text("read"), std::nullopt, std::nullopt));
        FAIL();
    } catch (const DatabaseError &error) {
        EXPECT_EQ(
            error, DatabaseError(DatabaseError::Kind::Execute, text("The audiobook was saved without an identifier.")));
    }
    EXPECT_EQ(library.scalar("SELECT COUNT(*) FROM field_provenance").intValue(), 0);
}

TEST(LibraryEdits, EveryEditOfAClosedLibraryFails)
{
    TestLibrary library;
    library.close();
    const auto isMissing = [](auto future) {
        try {
            await(std::move(future));
        } catch (const DatabaseError &error) {
            return error.kind() == DatabaseError::Kind::MissingDatabase;
        }
        return false;
    };
    LibraryStore &store = library.store();
    EXPECT_TRUE(isMissing(store.updateBook(1, 1, {}, {})));
    EXPECT_TRUE(isMissing(store.setBookHidden(1, true)));
    EXPECT_TRUE(isMissing(store.addManualBook(draft(), std::nullopt)));
    EXPECT_TRUE(isMissing(store.updateAudiobook(1, 1, {}, {})));
    EXPECT_TRUE(isMissing(store.addAudiobook(catalogBook(), {}, std::nullopt, std::nullopt)));
    EXPECT_TRUE(isMissing(store.artworkCoverage()));
    EXPECT_TRUE(isMissing(store.artworkRequestsNeedingCache()));
    EXPECT_TRUE(isMissing(store.updateAudiobookCover(1, url("https://c.example/1"), cover)));
    EXPECT_TRUE(isMissing(store.storeArtwork(cover, {}, {})));
    EXPECT_TRUE(isMissing(store.setting(text("selectedTab"))));
    EXPECT_TRUE(isMissing(store.setting(text("netlifyToken"))));
    EXPECT_TRUE(isMissing(store.setSetting(text("selectedTab"), {})));
    EXPECT_TRUE(isMissing(store.setSetting(text("netlifyToken"), text("secret"))));
    EXPECT_TRUE(isMissing(store.setSettings({})));
    library.open();
    EXPECT_EQ(await(store.setting(text("netlifyToken"))), std::nullopt);
}
