#include "persistence/AudibleStatus.h"
#include "persistence/database/DatabaseError.h"
#include "records/DateParser.h"
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

AudibleSyncResult merge(TestLibrary &library, const QList<AudibleLibraryItem> &batch)
{
    return await(library.store().mergeAudibleLibraryItems(batch));
}

SQLiteValue cell(const TestLibrary &library, const QString &column, const QString &asin = QStringLiteral("B0FULL"))
{
    const QString sql = QStringLiteral("SELECT %1 FROM audible_books WHERE asin = ?").arg(column);
    return library.scalar(sql.toUtf8().constData(), {asin});
}

void setCell(TestLibrary &library, const QString &column, const SQLiteValue &value)
{
    const QString sql = QStringLiteral("UPDATE audible_books SET %1 = ? WHERE asin = 'B0FULL'").arg(column);
    library.execute(sql.toUtf8().constData(), {value});
}

void addRow(TestLibrary &library, const char *asin, const char *title, const SQLiteValue &author)
{
    library.execute("INSERT INTO audible_books (asin, title, author, status) VALUES (?, ?, ?, 'to-read')",
        {text(asin), text(title), author});
}

qint64 rowCount(const TestLibrary &library)
{
    return library.scalar("SELECT COUNT(*) FROM audible_books").intValue().value();
}

AudibleLibraryItem itemWithStatus(const QString &status)
{
    AudibleLibraryItem item = bareAudibleItem(text("B0FULL"), text("The Audio Title"));
    item.isFinished = status == text("read");
    item.isStarted = status == text("reading");
    return item;
}

const SQLiteValue null;

// For one column: what the application brings, and the stored values that give
// way to it and those that stay.
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
    const QList<SQLiteValue> someText{text("Mine"), text(" ")};
    return {
        {"author", text("Audio Author"), noText, someText},
        {"narrator", text("A Narrator"), noText, someText},
        {"series", text("A Series"), noText, someText},
        {"cover_url", text("https://covers.example/audio.jpg"), noText, someText},
        {"audible_url", text("https://audio.example/pd/B0FULL"), noText, someText},
        {"description", text("A summary of the application."), noText, someText},
        {"release_date", text("2019-05-07"), noText, someText},
        {"purchase_date", text("2020-06-01T10:00:00Z"), noText, someText},
        {"book_number", 2, {null}, {0, 7}},
        {"runtime_minutes", 640, {null}, {0, 7}},
        {"review_count", 1200, {null}, {0, 7}},
        {"average_rating", 4.5, {null}, {0.0, 2.5}},
        {"performance_rating", 4.25, {null}, {0.0, 2.5}},
        {"story_rating", 4.75, {null}, {0.0, 2.5}},
        {"listening_progress", 40.0, {null, 0.0, 39.5}, {40.5, 100.0}},
        {"audible_owned", 1, {null, 0}, {1}},
    };
}

} // namespace

TEST(AudibleStatus, FinishedIsReadAndStartedOrHeardInPartIsReading)
{
    AudibleLibraryItem item;
    EXPECT_EQ(derivedStatus(item), text("to-read"));
    item.listeningProgress = 0.5;
    EXPECT_EQ(derivedStatus(item), text("reading"));
    item.listeningProgress = 0;
    item.isStarted = true;
    EXPECT_EQ(derivedStatus(item), text("reading"));
    item.isFinished = true;
    EXPECT_EQ(derivedStatus(item), text("read"));
    item.isStarted = false;
    EXPECT_EQ(derivedStatus(item), text("read"));
}

TEST(AudibleMerge, AnEmptyBatchGivesNoughtsAndChangesNothing)
{
    TestLibrary library;
    merge(library, {fullAudibleItem()});
    const auto before = everything(library);
    EXPECT_EQ(merge(library, {}), (AudibleSyncResult{0, 0, 0}));
    EXPECT_EQ(everything(library), before);
}

TEST(AudibleMerge, ANewTitleHasEveryFieldOfTheItem)
{
    TestLibrary library;
    EXPECT_EQ(merge(library, {fullAudibleItem()}), (AudibleSyncResult{1, 1, 0}));
    const auto rows = library.query("SELECT * FROM audible_books");
    ASSERT_EQ(rows.size(), 1);
    for (const Rule &rule : rules()) {
        EXPECT_EQ(rows[0].value(text(rule.column)), rule.incoming) << rule.column;
    }
    EXPECT_EQ(rows[0].value(text("asin")), text("B0FULL"));
    EXPECT_EQ(rows[0].value(text("title")), text("The Audio Title"));
    EXPECT_EQ(rows[0].value(text("status")), text("reading"));
    EXPECT_EQ(rows[0].value(text("notes")), text(""));
    EXPECT_EQ(rows[0].value(text("date_added")), text("2020-06-01T10:00:00Z"));
    EXPECT_TRUE(isSqlNow(library, rows[0].value(text("date_synced"))));
    EXPECT_TRUE(isSqlNow(library, rows[0].value(text("last_audible_sync"))));
    for (const char *column : {"finished_at", "user_rating", "cover_data", "cover_data_source"}) {
        EXPECT_EQ(rows[0].value(text(column)), null) << column;
    }
}

TEST(AudibleMerge, FieldsThatTheItemIsSilentOnAreNull)
{
    TestLibrary library;
    merge(library, {bareAudibleItem(text("B0FULL"), text("Bare"))});
    for (const Rule &rule : rules()) {
        const bool isNeverSilent
            = qstrcmp(rule.column, "listening_progress") == 0 || qstrcmp(rule.column, "audible_owned") == 0;
        EXPECT_EQ(cell(library, text(rule.column)).isNull(), !isNeverSilent) << rule.column;
    }
    EXPECT_EQ(cell(library, text("listening_progress")), SQLiteValue(0.0));
    EXPECT_EQ(cell(library, text("audible_owned")), SQLiteValue(0));
    EXPECT_EQ(cell(library, text("status")), text("to-read"));
    EXPECT_EQ(cell(library, text("date_added")), DateParser::iso8601(library.clock().now()));
    EXPECT_EQ(cell(library, text("finished_at")), null);
}

TEST(AudibleMerge, ANewFinishedTitleWasFinishedWhenItWasAdded)
{
    TestLibrary library;
    AudibleLibraryItem bought = fullAudibleItem(text("BOUGHT"));
    bought.isFinished = true;
    AudibleLibraryItem undated = bareAudibleItem(text("UNDATED"), text("Undated"));
    undated.isFinished = true;
    merge(library, {bought, undated});
    EXPECT_EQ(cell(library, text("finished_at"), text("BOUGHT")), text("2020-06-01T10:00:00Z"));
    const QString now = DateParser::iso8601(library.clock().now());
    EXPECT_EQ(cell(library, text("date_added"), text("UNDATED")), now);
    EXPECT_EQ(cell(library, text("finished_at"), text("UNDATED")), now);
}

TEST(AudibleMerge, GapsAreFilledAndWhatIsThereStays)
{
    TestLibrary library;
    merge(library, {fullAudibleItem()});
    for (const Rule &rule : rules()) {
        for (const SQLiteValue &stored : rule.givingWay) {
            setCell(library, text(rule.column), stored);
            EXPECT_EQ(merge(library, {fullAudibleItem()}), (AudibleSyncResult{1, 0, 1}));
            EXPECT_EQ(cell(library, text(rule.column)), rule.incoming) << rule.column;
        }
        for (const SQLiteValue &stored : rule.staying) {
            setCell(library, text(rule.column), stored);
            merge(library, {fullAudibleItem()});
            EXPECT_EQ(cell(library, text(rule.column)), stored) << rule.column;
        }
    }
}

TEST(AudibleMerge, ASilentItemEmptiesNothing)
{
    TestLibrary library;
    merge(library, {fullAudibleItem()});
    merge(library, {bareAudibleItem(text("B0FULL"), text("Bare"))});
    for (const Rule &rule : rules()) {
        EXPECT_EQ(cell(library, text(rule.column)), rule.incoming) << rule.column;
    }
}

TEST(AudibleMerge, ProgressNeverFallsAndOwnershipIsNeverLost)
{
    TestLibrary library;
    AudibleLibraryItem item = fullAudibleItem();
    item.listeningProgress = 0.8;
    merge(library, {item});
    item.listeningProgress = 0.5;
    item.ownedIndefinitely = false;
    merge(library, {item});
    EXPECT_EQ(cell(library, text("listening_progress")), SQLiteValue(0.8));
    EXPECT_EQ(cell(library, text("audible_owned")), SQLiteValue(1));
    item.listeningProgress = qQNaN(); // SQLite's NULL
    merge(library, {item});
    EXPECT_EQ(cell(library, text("listening_progress")), SQLiteValue(0.8));
}

TEST(AudibleMerge, StatusesAdvanceAndDoNotFallBack)
{
    const char *const incoming[] = {"to-read", "reading", "read"};
    const struct
    {
        SQLiteValue stored;
        const char *after[3];
    } table[] = {
        {null, {"to-read", "reading", "read"}},
        {text(""), {"to-read", "reading", "read"}},
        {text("to-read"), {"to-read", "reading", "read"}},
        {text("reading"), {"reading", "reading", "read"}},
        {text("read"), {"read", "read", "read"}},
        {text("did-not-finish"), {"did-not-finish", "did-not-finish", "did-not-finish"}},
        {text("gave-away"), {"to-read", "reading", "read"}},
    };
    TestLibrary library;
    merge(library, {fullAudibleItem()});
    for (const auto &row : table) {
        for (int i = 0; i < 3; ++i) {
            setCell(library, text("status"), row.stored);
            merge(library, {itemWithStatus(text(incoming[i]))});
            EXPECT_EQ(cell(library, text("status")), text(row.after[i]))
                << qPrintable(row.stored.string(text("NULL"))) << " meets " << incoming[i];
        }
    }
}

TEST(AudibleMerge, TheDateOfFinishingIsSetOnceAndOnlyByAFinishedItem)
{
    TestLibrary library;
    merge(library, {bareAudibleItem(text("B0FULL"), text("The Audio Title"))});
    merge(library, {itemWithStatus(text("reading"))});
    EXPECT_EQ(cell(library, text("finished_at")), null);

    merge(library, {itemWithStatus(text("read"))}); // without a purchase date
    EXPECT_TRUE(isSqlNow(library, cell(library, text("finished_at"))));

    setCell(library, text("finished_at"), null);
    AudibleLibraryItem bought = itemWithStatus(text("read"));
    bought.purchaseDate = text("2018-01-01");
    merge(library, {bought});
    EXPECT_EQ(cell(library, text("finished_at")), text("2018-01-01"));

    setCell(library, text("finished_at"), text("2017-07-07"));
    merge(library, {bought});
    EXPECT_EQ(cell(library, text("finished_at")), text("2017-07-07"));
    setCell(library, text("finished_at"), text("")); // an empty text is a date that is there
    merge(library, {bought});
    EXPECT_EQ(cell(library, text("finished_at")), text(""));
}

TEST(AudibleMerge, WhatIsTheReadersIsNotTouched)
{
    TestLibrary library;
    merge(library, {fullAudibleItem()});
    const qint64 id = cell(library, text("id")).intValue().value();
    await(library.store().updateAudiobook(id, 1.5, text("did-not-finish"), text("My notes")));
    await(library.store().updateAudiobookCover(
        id, url("https://mine.example/c.jpg"), CoverBytes(QByteArrayLiteral("cover"))));
    setCell(library, text("title"), text(""));
    setCell(library, text("date_added"), null);

    AudibleLibraryItem changed = fullAudibleItem();
    changed.isFinished = true;
    changed.author = text("Someone Else");
    merge(library, {changed});
    EXPECT_EQ(cell(library, text("user_rating")), SQLiteValue(1.5));
    EXPECT_EQ(cell(library, text("status")), text("did-not-finish"));
    EXPECT_EQ(cell(library, text("notes")), text("My notes"));
    EXPECT_EQ(cell(library, text("cover_data")), SQLiteValue(QByteArrayLiteral("cover")));
    EXPECT_EQ(cell(library, text("cover_data_source")), text("https://mine.example/c.jpg"));
    EXPECT_EQ(cell(library, text("cover_url")), text("https://mine.example/c.jpg"));
    // Not even an empty title is filled.
    EXPECT_EQ(cell(library, text("title")), text(""));
    EXPECT_EQ(cell(library, text("date_added")), null);
    EXPECT_EQ(cell(library, text("author")), text("Audio Author"));
}

TEST(AudibleMerge, EveryMatchedRowCountsAsSynced)
{
    TestLibrary library;
    merge(library, {fullAudibleItem()});
    library.execute(
        "UPDATE audible_books SET date_synced = '2001-01-01 00:00:00', last_audible_sync = '2001-01-01 00:00:00'");
    merge(library, {fullAudibleItem()});
    EXPECT_TRUE(isSqlNow(library, cell(library, text("date_synced"))));
    EXPECT_TRUE(isSqlNow(library, cell(library, text("last_audible_sync"))));
}

TEST(AudibleMerge, ATitleTypedInByHandIsAdoptedAndKeepsItsIdentifier)
{
    TestLibrary library;
    addRow(library, "manual:X", "The audio title!", text("A. Author"));
    for (int time = 0; time < 2; ++time) {
        EXPECT_EQ(merge(library, {fullAudibleItem()}), (AudibleSyncResult{1, 0, 1}));
    }
    EXPECT_EQ(rowCount(library), 1);
    EXPECT_EQ(cell(library, text("title"), text("manual:X")), text("The audio title!"));
    EXPECT_EQ(cell(library, text("runtime_minutes"), text("manual:X")), SQLiteValue(640));
    EXPECT_EQ(hashesOf(library, "audiobook", 1, "audible")[text("asin")], sha256(text("B0FULL")));
}

TEST(AudibleMerge, InitialsMatchAFullNameThroughTheSurname)
{
    TestLibrary library;
    addRow(library, "manual:X", "The Hobbit", text("J. R. R. Tolkien"));
    AudibleLibraryItem item = bareAudibleItem(text("B1"), text("The Hobbit"));
    item.author = text("John Ronald Reuel Tolkien");
    EXPECT_EQ(merge(library, {item}), (AudibleSyncResult{1, 0, 1}));
}

TEST(AudibleMerge, AnotherAuthorsTitleOfTheSameNameIsAnotherTitle)
{
    TestLibrary library;
    addRow(library, "manual:X", "Poems", text("Emily Dickinson"));
    AudibleLibraryItem item = bareAudibleItem(text("B1"), text("Poems"));
    item.author = text("John Donne");
    EXPECT_EQ(merge(library, {item}), (AudibleSyncResult{1, 1, 0}));
}

TEST(AudibleMerge, ARowWithoutAnAuthorMatchesOnTheTitleAlone)
{
    TestLibrary library;
    addRow(library, "OTHER", "Poems", null);
    AudibleLibraryItem item = bareAudibleItem(text("B1"), text("Poems"));
    item.author = text("John Donne");
    EXPECT_EQ(merge(library, {item}), (AudibleSyncResult{1, 0, 1}));
    EXPECT_EQ(cell(library, text("author"), text("OTHER")), text("John Donne"));
}

TEST(AudibleMerge, TwoEditionsInOneBatchBecomeOneRow)
{
    TestLibrary library;
    AudibleLibraryItem first = bareAudibleItem(text("B1"), text("Caf\u00e9 & Co."));
    first.author = text("Ann Writer");
    AudibleLibraryItem second = bareAudibleItem(text("B2"), text("cafe and co"));
    second.author = text("Ann B. Writer");
    second.runtimeMinutes = 99;
    EXPECT_EQ(merge(library, {first, second}), (AudibleSyncResult{2, 1, 1}));
    EXPECT_EQ(rowCount(library), 1);
    EXPECT_EQ(cell(library, text("runtime_minutes"), text("B1")), SQLiteValue(99));
}

TEST(AudibleMerge, AnAsinWinsOverTheTitleOfAnEarlierRow)
{
    TestLibrary library;
    addRow(library, "manual:X", "The Audio Title", null);
    addRow(library, "B0FULL", "Renamed", null);
    merge(library, {fullAudibleItem()});
    EXPECT_EQ(cell(library, text("runtime_minutes"), text("manual:X")), null);
    EXPECT_EQ(cell(library, text("runtime_minutes")), SQLiteValue(640));
}

TEST(AudibleMerge, ANewTitleLeavesItsTrailAsApplied)
{
    TestLibrary library;
    merge(library, {fullAudibleItem()});
    const QMap<QString, QString> said{
        {text("asin"), text("B0FULL")},
        {text("audible_owned"), text("1")},
        {text("author"), text("Audio Author")},
        {text("book_number"), text("2")},
        {text("cover_url"), text("https://covers.example/audio.jpg")},
        {text("description"), text("A summary of the application.")},
        {text("listening_progress"), text("40.0")},
        {text("narrator"), text("A Narrator")},
        {text("purchase_date"), text("2020-06-01T10:00:00Z")},
        {text("release_date"), text("2019-05-07")},
        {text("runtime_minutes"), text("640")},
        {text("series"), text("A Series")},
        {text("status"), text("reading")},
        {text("title"), text("The Audio Title")},
    };
    EXPECT_EQ(hashesOf(library, "audiobook", 1, "audible"), hashesOf(said));
    EXPECT_EQ(library.scalar("SELECT COUNT(*) FROM field_provenance WHERE applied = 1").intValue(), said.size());
    EXPECT_EQ(library.scalar("SELECT COUNT(*) FROM field_provenance").intValue(), said.size());
}

TEST(AudibleMerge, ASilentItemLeavesOnlyTheTrailOfWhatEveryItemHas)
{
    TestLibrary library;
    merge(library, {bareAudibleItem(text("B1"), text("Bare"))});
    EXPECT_EQ(hashesOf(library, "audiobook", 1, "audible"),
        hashesOf(
            {{text("asin"), text("B1")}, {text("audible_owned"), text("0")}, {text("listening_progress"), text("0.0")},
                {text("status"), text("to-read")}, {text("title"), text("Bare")}}));
}

TEST(AudibleMerge, ARowThatWasThereLeavesATrailThatWasNotApplied)
{
    TestLibrary library;
    addRow(library, "B0FULL", "The Audio Title", null);
    merge(library, {fullAudibleItem()});
    EXPECT_EQ(library.scalar("SELECT COUNT(*) FROM field_provenance WHERE applied = 0").intValue(), 14);
    EXPECT_EQ(library.scalar("SELECT COUNT(*) FROM field_provenance").intValue(), 14);
}

TEST(AudibleMerge, ABatchThatFailsValidationStartsNothing)
{
    TestLibrary library;
    library.close();
    EXPECT_THROW(merge(library, {bareAudibleItem(text(" "), text("Title"))}), QuireReliabilityError);
    try {
        merge(library, {fullAudibleItem()});
        FAIL();
    } catch (const DatabaseError &error) {
        EXPECT_EQ(error.kind(), DatabaseError::Kind::MissingDatabase);
    }
    library.open();
    const auto before = everything(library);
    EXPECT_THROW(merge(library, {bareAudibleItem(text("B1"), text("One")), bareAudibleItem(text("B1 "), text("Two"))}),
        QuireReliabilityError);
    EXPECT_EQ(everything(library), before);
}

TEST(AudibleMerge, ARowThatFailsInTheMiddleLeavesTheLibraryAsItWas)
{
    TestLibrary library;
    merge(library, {fullAudibleItem()});
    failOn(library, text("INSERT"), text("audible_books"), text("NEW.asin = 'B3'"));
    const auto before = everything(library);
    try {
        merge(library,
            {fullAudibleItem(), bareAudibleItem(text("B2"), text("Two")), bareAudibleItem(text("B3"), text("Three"))});
        FAIL();
    } catch (const DatabaseError &error) {
        EXPECT_EQ(error, DatabaseError(DatabaseError::Kind::Step, text("refused by the test")));
    }
    EXPECT_EQ(everything(library), before);
    EXPECT_EQ(merge(library, {bareAudibleItem(text("B2"), text("Two"))}), (AudibleSyncResult{1, 1, 0}));
}

TEST(AudibleMerge, HostileTextsComeThroughAsText)
{
    TestLibrary library;
    const QString quotes = text("Robert'); DROP TABLE audible_books;-- \"x\" ?1 :a");
    const QString huge(1 << 20, u'\u00e9');
    const QString lone = text("a") + QChar(0xd800) + text("b");
    const QString nul = text("before") + QChar(u'\0') + text("after");
    const QList<AudibleLibraryItem> batch{bareAudibleItem(text("B1"), quotes), bareAudibleItem(text("B2"), huge),
        bareAudibleItem(text("B3"), lone), bareAudibleItem(text("B4"), nul)};
    EXPECT_EQ(merge(library, batch), (AudibleSyncResult{4, 4, 0}));
    EXPECT_EQ(cell(library, text("title"), text("B1")), quotes);
    EXPECT_EQ(cell(library, text("title"), text("B2")), huge);
    EXPECT_TRUE(cell(library, text("title"), text("B3")).string({}).isValidUtf16());
    EXPECT_EQ(cell(library, text("title"), text("B4")), text("before"));
    EXPECT_EQ(merge(library, batch), (AudibleSyncResult{4, 0, 4}));
}

TEST(AudibleMerge, WrongTypesInTheRowsAreNoObstacle)
{
    TestLibrary library;
    library.execute("INSERT INTO audible_books (asin, title, author, status, listening_progress) "
                    "VALUES ('B0FULL', x'00ff', x'', 7, 'half')");
    library.execute("INSERT INTO audible_books (asin, title) VALUES (x'01', NULL)");
    EXPECT_EQ(merge(library, {fullAudibleItem()}), (AudibleSyncResult{1, 0, 1}));
    EXPECT_EQ(cell(library, text("status")), text("reading"));
}
