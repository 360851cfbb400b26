#include "LineageTest.h"

#include "files/FileError.h"
#include "persistence/CloudLineage.h"
#include "persistence/database/DatabaseError.h"
#include "persistence/database/SQLiteStatement.h"

using namespace quire;
using namespace quire::testing;
using ::testing::HasSubstr;

namespace {

class CloudLineageTest : public LineageTest
{
protected:
    // A remembered library of two books, closed, and an older state of it.
    void makePast()
    {
        library.open();
        addBook(QStringLiteral("First"));
        library.close();
        older = bytesOf(library.databasePath());
        library.open();
        addBook(QStringLiteral("Second"));
        library.close();
        newer = bytesOf(library.databasePath());
    }

    SQLiteValue generation() const { return library.scalar("SELECT generation FROM library_metadata"); }

    // The one copy, which holds `expected` titles.
    void expectOneCopy(const char *reason, const QStringList &expected)
    {
        ASSERT_EQ(copies().size(), 1);
        EXPECT_THAT(copies().first().toStdString(),
            ::testing::MatchesRegex(std::string("Quire ") + reason
                + " 2026-11-21T12-00-00\\.000Z [0-9A-F]+-[0-9A-F]+-[0-9A-F]+-[0-9A-F]+-[0-9A-F]+\\.db"));
        QStringList titles;
        for (const SQLiteRow &row :
            SQLiteDatabase(copy(copies().first())).query("SELECT title FROM goodreads_books ORDER BY id")) {
            titles.append(row.string(QStringLiteral("title"), {}));
        }
        EXPECT_EQ(titles, expected);
    }

    QByteArray older;
    QByteArray newer;
};

const QString first = QStringLiteral("First");
const QString second = QStringLiteral("Second");

} // namespace

TEST_F(CloudLineageTest, TheLineageIsWhatTheLibrarySaysOfItself)
{
    library.open();
    addBook(first);
    const SQLiteDatabase database(library.databasePath());
    const QuireCloudLineage lineage = CloudLineage::currentLineage(database, library.clock().now());
    EXPECT_EQ(SQLiteValue(lineage.libraryUUID), database.scalar("SELECT library_uuid FROM library_metadata"));
    EXPECT_EQ(SQLiteValue(lineage.lineageToken), database.scalar("SELECT lineage_token FROM library_metadata"));
    EXPECT_GT(lineage.generation, 0);
    EXPECT_EQ(lineage.recordedAt, QStringLiteral("2026-11-21T12:00:00.000Z"));
}

TEST_F(CloudLineageTest, ALibraryWithoutAnIdentityIsNotOpened)
{
    makePast();
    library.execute("DELETE FROM library_metadata");
    EXPECT_EQ(thrownBy<DatabaseError>([this] { library.open(); }),
        DatabaseError(DatabaseError::Kind::Open, QStringLiteral("The library identity record is missing.")));
    EXPECT_FALSE(library.isLeaseHeld());
}

TEST_F(CloudLineageTest, AGenerationThatCannotBeReadIsNone)
{
    makePast();
    library.execute("UPDATE library_metadata SET generation = 'many'");
    const SQLiteDatabase database(library.databasePath());
    EXPECT_EQ(CloudLineage::currentLineage(database, library.clock().now()).generation, 0);
    EXPECT_EQ(refusal(), QuireReliabilityError::cloudLibraryRolledBack());
}

TEST_F(CloudLineageTest, TheMemoryIsWrittenAtTheEndOfTheOpeningAndAtTheShutdownAndNotBetween)
{
    library.open();
    const auto opened = memory().read(library.databasePath());
    ASSERT_TRUE(opened);
    EXPECT_EQ(opened->generation, 0);
    addBook(first);
    EXPECT_EQ(memory().read(library.databasePath()), opened);
    library.clock().setNow(library.clock().now() + std::chrono::hours(1));
    library.close();
    const auto closed = memory().read(library.databasePath());
    ASSERT_TRUE(closed);
    EXPECT_EQ(SQLiteValue(closed->generation), generation());
    EXPECT_EQ(SQLiteValue(closed->lineageToken), library.scalar("SELECT lineage_token FROM library_metadata"));
    EXPECT_EQ(closed->recordedAt, QStringLiteral("2026-11-21T13:00:00.000Z"));
}

TEST_F(CloudLineageTest, AMemoryThatCannotBeSavedAtTheShutdownIsNoFailure)
{
    library.open();
    addBook(first);
    const QString folder = library.file(QStringLiteral("Cloud Library State"));
    QDir(folder).removeRecursively();
    putFile(folder, "in the way");
    library.close();
    EXPECT_FALSE(library.isLeaseHeld());
}

TEST_F(CloudLineageTest, AMemoryThatCannotBeSavedAtTheOpeningEndsIt)
{
    library.open();
    library.close();
    const QString folder = library.file(QStringLiteral("Cloud Library State"));
    QDir(folder).removeRecursively();
    putFile(folder, "in the way");
    EXPECT_EQ(thrownBy<FileError>([this] { library.open(); })->path(), folder);
    EXPECT_FALSE(library.isLeaseHeld());
    EXPECT_THROW(await(library.store().books()), DatabaseError);
}

TEST_F(CloudLineageTest, AnOldBackupInThePlaceOfTheLibraryIsRolledBack)
{
    makePast();
    putFile(library.databasePath(), older);

    const auto failure = refusal();

    EXPECT_EQ(failure, QuireReliabilityError::cloudLibraryRolledBack());
    EXPECT_EQ(failure->description(),
        QStringLiteral(
            "This cloud library is older than the copy previously opened on this Mac. Quire preserved it for "
            "recovery and will not overwrite it. Allow the cloud service to finish syncing, then reopen "
            "Quire."));
    EXPECT_EQ(bytesOf(library.databasePath()), older);
    expectOneCopy("Cloud Rollback", {first});
}

TEST_F(CloudLineageTest, ARefusedLibraryIsRefusedAgainUntilTheRightFileIsBack)
{
    makePast();
    putFile(library.databasePath(), older);
    refusal();
    EXPECT_EQ(refusal(), QuireReliabilityError::cloudLibraryRolledBack());
    EXPECT_EQ(copies().size(), 2);
    putFile(library.databasePath(), newer);
    library.open();
    EXPECT_EQ(await(library.store().books()).size(), 2);
}

TEST_F(CloudLineageTest, AnotherLibraryAtThePathIsAnIdentityConflict)
{
    makePast();
    TestLibrary other;
    for (int count = 0; count < 5; ++count) { // further than ours
        addBook(other.store(), QStringLiteral("Theirs"));
    }
    other.close();
    const QByteArray theirs = bytesOf(other.databasePath());
    putFile(library.databasePath(), theirs);

    const auto failure = refusal();

    EXPECT_EQ(failure, QuireReliabilityError::cloudLibraryDiverged());
    EXPECT_EQ(failure->description(),
        QStringLiteral(
            "This cloud library has diverged from the copy previously opened on this Mac. Quire preserved it "
            "for recovery and will not overwrite either history."));
    EXPECT_EQ(bytesOf(library.databasePath()), theirs);
    expectOneCopy("Library Identity Conflict", QStringList(5, QStringLiteral("Theirs")));
}

TEST_F(CloudLineageTest, TwoHistoriesOfOneLengthHaveDiverged)
{
    makePast();
    putFile(library.databasePath(), older);
    library.execute("INSERT INTO goodreads_books (goodreads_id, title) VALUES ('x', 'Elsewhere')");
    while (generation() != SQLiteValue(memory().read(library.databasePath())->generation)) {
        library.execute("UPDATE goodreads_books SET notes = 'x' WHERE id = 1");
    }
    const QByteArray theirs = bytesOf(library.databasePath());

    EXPECT_EQ(refusal(), QuireReliabilityError::cloudLibraryDiverged());
    EXPECT_EQ(bytesOf(library.databasePath()), theirs);
    expectOneCopy("Cloud Divergence", {first, QStringLiteral("Elsewhere")});
}

TEST_F(CloudLineageTest, AnUnchangedLibraryAndOneThatMovedOnAreOpened)
{
    makePast();
    library.open();
    library.close();
    library.execute("INSERT INTO goodreads_books (goodreads_id, title) VALUES ('x', 'Elsewhere')");
    library.open();
    EXPECT_EQ(SQLiteValue(memory().read(library.databasePath())->generation), generation());
    EXPECT_TRUE(copies().isEmpty());
}

TEST_F(CloudLineageTest, ALongerHistoryIsOpenedEvenIfItForked)
{
    makePast();
    putFile(library.databasePath(), older);
    for (int count = 0; count < 5; ++count) {
        library.execute("UPDATE goodreads_books SET notes = 'x'");
    }
    library.open();
    EXPECT_EQ(await(library.store().books()).size(), 1);
}

TEST_F(CloudLineageTest, WithoutAMemoryTheOpeningPassesAndBeginsANewOne)
{
    makePast();
    putFile(library.databasePath(), older);
    for (const QByteArray &lost : {QByteArray(), QByteArray("{\"generation\": 9")}) {
        const QString record = memory().recordURL(library.databasePath());
        QFile::remove(record);
        if (!lost.isEmpty()) {
            putFile(record, lost);
        }
        library.open();
        library.close();
        ASSERT_TRUE(memory().read(library.databasePath()));
        EXPECT_EQ(SQLiteValue(memory().read(library.databasePath())->generation), generation());
    }
    EXPECT_TRUE(copies().isEmpty());
}

TEST_F(CloudLineageTest, ACopyThatCannotBeMadeIsTheFailureThatIsTold)
{
    makePast();
    putFile(library.databasePath(), older);
    QDir(library.file(QStringLiteral("Recovery"))).removeRecursively();
    putFile(library.file(QStringLiteral("Recovery")), "in the way");
    EXPECT_EQ(thrownBy<FileError>([this] { library.open(); })->path(), library.file(QStringLiteral("Recovery")));
    EXPECT_FALSE(library.isLeaseHeld());
    EXPECT_EQ(bytesOf(library.databasePath()), older);
}

TEST_F(CloudLineageTest, StoringACoverCountsAndStoringASettingDoesNot)
{
    library.open();
    addBook(first);
    const auto before = generation();
    await(library.store().setSetting(QStringLiteral("maximumBackupFiles"), QStringLiteral("5")));
    await(library.store().recordBackgroundJob({QuireBackgroundJob::Artwork, QStringLiteral("running"), 1, {}}));
    EXPECT_EQ(generation(), before);
    const auto requests = await(library.store().artworkRequestsNeedingCache());
    ASSERT_EQ(requests.size(), 1);
    await(library.store().storeArtwork(
        CoverBytes(QByteArray("cover")), requests.first(), QStringLiteral("generated:placeholder")));
    EXPECT_GT(generation().intValue(), before.intValue());
}

TEST_F(CloudLineageTest, AFileThatIsNoLibraryWhereOneIsRememberedIsRefusedUnwritten)
{
    makePast();
    QByteArray cut = newer.left(300);
    QByteArray zeros(newer.size(), '\0'); // as many services lay out what they have not fetched
    for (const QByteArray &bytes :
        {QByteArray(), QByteArray("x"), cut, zeros, QByteArray("Not a library").repeated(999)}) {
        putFile(library.databasePath(), bytes);
        EXPECT_EQ(refusal(), QuireReliabilityError::cloudLibraryRolledBack()) << bytes.size();
        EXPECT_EQ(bytesOf(library.databasePath()), bytes);
        ASSERT_EQ(copies().size(), 1);
        EXPECT_THAT(copies().first().toStdString(), HasSubstr("Quire Cloud Rollback "));
        EXPECT_EQ(bytesOf(copy(copies().first())), bytes);
        QFile::remove(copy(copies().first()));
    }
}

TEST_F(CloudLineageTest, TheLogBesideAFileOfNoBytesIsNotLost)
{
    makePast();
    putFile(library.databasePath(), {});
    const QString log = library.databasePath() + QStringLiteral("-wal");
    putFile(log, "what SQLite would delete");
    EXPECT_EQ(refusal(), QuireReliabilityError::cloudLibraryRolledBack());
    EXPECT_EQ(bytesOf(log), "what SQLite would delete");
    const QStringList kept = copies();
    ASSERT_EQ(kept.size(), 2);
    EXPECT_EQ(bytesOf(copy(kept[1])), "what SQLite would delete");
    EXPECT_EQ(kept[1], kept[0] + QStringLiteral("-wal"));
}

TEST_F(CloudLineageTest, AFileOfNoBytesWithoutAMemoryMakesANewLibrary)
{
    putFile(library.databasePath(), {});
    library.open();
    EXPECT_TRUE(await(library.store().books()).isEmpty());
    EXPECT_TRUE(copies().isEmpty());
}

TEST_F(CloudLineageTest, NoFileWhereALibraryIsRememberedIsRefusedAndNoneMade)
{
    makePast();
    QFile::remove(library.databasePath());
    EXPECT_EQ(refusal(), QuireReliabilityError::cloudLibraryDiverged());
    EXPECT_FALSE(QFile::exists(library.databasePath()));
    putFile(library.databasePath(), newer);
    library.open();
    EXPECT_EQ(await(library.store().books()).size(), 2);
}

TEST_F(CloudLineageTest, ARefusedLibraryKeepsItsLogBesideIt)
{
    makePast();
    // An older file whose last change is still in the log, as after a crash.
    putFile(library.databasePath(), older);
    const QString log = library.databasePath() + QStringLiteral("-wal");
    {
        SQLiteDatabase database(library.databasePath());
        database.executeScript("PRAGMA journal_mode = WAL; UPDATE settings SET value = value;"
                               "INSERT INTO settings VALUES ('inTheLog', 'yes');");
        database.setFoldsLogOnClose(false);
    }
    const QByteArray file = bytesOf(library.databasePath());
    const QByteArray logged = bytesOf(log);
    ASSERT_TRUE(logged.startsWith("\x37\x7f")) << "no log";
    SQLiteDatabase opened(library.databasePath());
    const LineageSurroundings surroundings{library.databasePath(), memory(), library.folder(), library.clock().now()};

    EXPECT_EQ(thrownBy<QuireReliabilityError>([&] { CloudLineage::validateCloudLineage(opened, surroundings); }),
        QuireReliabilityError::cloudLibraryRolledBack());

    EXPECT_FALSE(opened.isOpen());
    EXPECT_EQ(bytesOf(library.databasePath()), file);
    EXPECT_EQ(bytesOf(log), logged);
    ASSERT_EQ(copies().size(), 1);
    EXPECT_EQ(SQLiteDatabase(copy(copies().first())).scalar("SELECT value FROM settings WHERE key = 'inTheLog'"),
        SQLiteValue(QStringLiteral("yes")));
}
