#include "files/FileError.h"
#include "persistence/AppDirectories.h"
#include "persistence/database/DatabaseError.h"
#include "persistence/LibraryOpening.h"
#include "testing/Await.h"
#include "testing/OwnDataDirectory.h"
#include "testing/TestFiles.h"
#include "testing/TestLibrary.h"
#include "testing/ThrownFailure.h"
#include "testing/UnprivilegedUser.h"

#include <QDir>
#include <QFile>

#include <gmock/gmock.h>

#include <sys/stat.h>

using namespace quire;
using namespace quire::testing;
using Kind = DatabaseError::Kind;

namespace {

const DatabaseError missing(Kind::MissingDatabase);

QList<QString> history(const TestLibrary &library)
{
    QList<QString> lines;
    for (const SQLiteRow &row : library.query("SELECT job_kind || ' ' || state || ' ' || attempt AS line "
                                              "FROM background_job_history ORDER BY id")) {
        lines.append(row.string(QStringLiteral("line"), {}));
    }
    return lines;
}

} // namespace

TEST(LibraryOpening, AStoreIsClosedUntilItIsPreparedAndAfterItsShutdown)
{
    TestLibrary library(TestLibrary::Start::Closed);
    EXPECT_FALSE(QFile::exists(library.databasePath()));
    EXPECT_EQ(await(library.store().databaseURL()), library.databasePath());
    const auto expectClosed = [&library] {
        EXPECT_EQ(thrownBy<DatabaseError>([&] { await(library.store().books()); }), missing);
        EXPECT_EQ(thrownBy<DatabaseError>([&] { await(library.store().audiobooks()); }), missing);
        EXPECT_EQ(thrownBy<DatabaseError>([&] { await(library.store().tags()); }), missing);
        EXPECT_EQ(thrownBy<DatabaseError>([&] { await(library.store().settings()); }), missing);
        EXPECT_EQ(thrownBy<DatabaseError>([&] { await(library.store().recordBackgroundJob({})); }), missing);
    };
    expectClosed();
    library.open();
    EXPECT_TRUE(await(library.store().books()).isEmpty());
    EXPECT_TRUE(library.isHeldOpen());
    library.close();
    expectClosed();
    EXPECT_FALSE(library.isHeldOpen());
    library.open();
    EXPECT_TRUE(await(library.store().books()).isEmpty());
}

TEST(LibraryOpening, PreparingTwiceIsHarmless)
{
    TestLibrary library;
    library.open(true); // not even the checks after a crash run again
    EXPECT_TRUE(history(library).isEmpty());
}

TEST(LibraryOpening, TheFolderIsCreatedWithItsParents)
{
    const QTemporaryDir parent;
    const ManualClock clock;
    LibraryStore store(clock, parent.filePath(QStringLiteral("a/b/c")));
    await(store.prepare(false));
    EXPECT_TRUE(QFile::exists(parent.filePath(QStringLiteral("a/b/c/quire.db"))));
}

TEST(LibraryOpening, AFileInThePlaceOfTheFolderIsAFileFailure)
{
    const QTemporaryDir parent;
    putFile(parent.filePath(QStringLiteral("a")), "x");
    const ManualClock clock;
    LibraryStore store(clock, parent.filePath(QStringLiteral("a/b")));
    EXPECT_EQ(
        thrownBy<FileError>([&] { await(store.prepare(false)); })->path(), parent.filePath(QStringLiteral("a/b")));
}

TEST(LibraryOpening, ALibraryInTheDefaultFolderWritesAhead)
{
    const OwnDataDirectory data;
    const ManualClock clock;
    LibraryStore store(clock);
    await(store.prepare(false));
    const QString path = AppDirectories::supportDirectory() + QStringLiteral("/quire.db");
    EXPECT_EQ(path, data.file(QStringLiteral(QUIRE_SUPPORT_DIRECTORY "/quire.db")));
    EXPECT_EQ(await(store.databaseURL()), path);
    EXPECT_EQ(SQLiteDatabase(path).scalar("PRAGMA journal_mode"), SQLiteValue(QStringLiteral("wal")));
}

TEST(LibraryOpening, TheSameFileInAnyOtherFolderKeepsNoSideFile)
{
    const OwnDataDirectory data;
    const ManualClock clock;
    {
        LibraryStore store(clock);
        await(store.prepare(false));
    }
    TestLibrary library(TestLibrary::Start::Closed);
    ASSERT_TRUE(QFile::copy(AppDirectories::supportDirectory() + QStringLiteral("/quire.db"), library.databasePath()));
    EXPECT_EQ(library.scalar("PRAGMA journal_mode"), SQLiteValue(QStringLiteral("wal")));
    library.open();
    EXPECT_EQ(library.scalar("PRAGMA journal_mode"), SQLiteValue(QStringLiteral("delete")));
    EXPECT_FALSE(QFile::exists(library.file(QStringLiteral("quire.db-wal"))));
    EXPECT_FALSE(QFile::exists(library.file(QStringLiteral("quire.db-shm"))));
}

TEST(LibraryOpening, ALinkToTheDefaultFolderIsTheDefaultFolder)
{
    const OwnDataDirectory data;
    QDir().mkpath(AppDirectories::supportDirectory());
    const QTemporaryDir elsewhere;
    const QString link = elsewhere.filePath(QStringLiteral("link"));
    ASSERT_TRUE(QFile::link(AppDirectories::supportDirectory(), link));
    const ManualClock clock;
    LibraryStore store(clock, link);
    await(store.prepare(false));
    EXPECT_EQ(SQLiteDatabase(link + QStringLiteral("/quire.db")).scalar("PRAGMA journal_mode"),
        SQLiteValue(QStringLiteral("wal")));
}

TEST(LibraryOpening, TheConnectionKeepsTheRulesOfItsPlace)
{
    const OwnDataDirectory data;
    const QString defaultFolder = AppDirectories::supportDirectory();
    const struct
    {
        QString folder;
        const char *journalMode;
        int synchronous; // 1: normal, 2: full
    } places[] = {{defaultFolder, "wal", 1}, {data.file(QStringLiteral("elsewhere")), "delete", 2}};
    for (const auto &place : places) {
        QDir().mkpath(place.folder);
        const auto database
            = LibraryOpening::openPrepared(place.folder + QStringLiteral("/quire.db"), place.folder, defaultFolder);
        EXPECT_EQ(database->scalar("PRAGMA journal_mode"), SQLiteValue(QString::fromLatin1(place.journalMode)));
        EXPECT_EQ(database->scalar("PRAGMA synchronous"), SQLiteValue(place.synchronous));
        EXPECT_EQ(database->scalar("PRAGMA foreign_keys"), SQLiteValue(1));
        EXPECT_EQ(database->scalar("PRAGMA busy_timeout"), SQLiteValue(5000));
    }
}

TEST(LibraryOpening, AFileOfNoBytesIsAFreshLibrary)
{
    TestLibrary library(TestLibrary::Start::Closed);
    putFile(library.databasePath(), {});
    library.open();
    EXPECT_EQ(library.scalar("PRAGMA user_version"), SQLiteValue(2));
}

TEST(LibraryOpening, AFolderInThePlaceOfTheFileCannotBeOpened)
{
    TestLibrary library(TestLibrary::Start::Closed);
    QDir().mkpath(library.databasePath());
    const auto failure = thrownBy<DatabaseError>([&] { library.open(); });
    EXPECT_EQ(failure, DatabaseError(Kind::Open, QStringLiteral("unable to open database file")));
    EXPECT_EQ(
        failure->description(), QStringLiteral("Could not open the Quire database: unable to open database file"));
}

TEST(LibraryOpening, AFileOfAnotherKindIsRefusedUnchangedAndLetGo)
{
    TestLibrary library(TestLibrary::Start::Closed);
    const QByteArray garbage = QByteArray("Not a library at all. ").repeated(1'000);
    putFile(library.databasePath(), garbage);
    EXPECT_EQ(thrownBy<DatabaseError>([&] { library.open(); }),
        DatabaseError(Kind::Execute, QStringLiteral("file is not a database")));
    EXPECT_FALSE(library.isHeldOpen());
    EXPECT_EQ(bytesOf(library.databasePath()), garbage);
    EXPECT_EQ(thrownBy<DatabaseError>([&] { await(library.store().books()); }), missing);
}

TEST(LibraryOpening, AReadOnlyLibraryCanBeReadAndRefusesEveryWrite)
{
    TestLibrary library;
    library.execute("INSERT INTO goodreads_books (goodreads_id, title) VALUES ('1', 'One')");
    library.close();
    QFile::setPermissions(library.databasePath(), QFile::ReadOwner | QFile::ReadGroup | QFile::ReadOther);
    // The memory of it is kept all the same.
    ASSERT_EQ(::chmod(QFile::encodeName(library.file(QStringLiteral("Cloud Library State"))).constData(), 0777), 0);
    const UnprivilegedUser user(library.folder());
    library.open();
    EXPECT_EQ(await(library.store().books()).size(), 1);
    const auto failure = thrownBy<DatabaseError>(
        [&] { await(library.store().updateBook(1, 5, QStringLiteral("read"), QStringLiteral("note"))); });
    EXPECT_EQ(failure->text(), QStringLiteral("attempt to write a readonly database"));
}

TEST(LibraryOpening, AFileThatNobodyMayReadCannotBeOpened)
{
    TestLibrary library;
    library.close();
    QFile::setPermissions(library.databasePath(), {});
    const UnprivilegedUser user(library.folder());
    EXPECT_EQ(thrownBy<DatabaseError>([&] { library.open(); })->kind(), Kind::Open);
}

TEST(LibraryOpening, SecretsLeaveTheTableForTheCredentialFile)
{
    TestLibrary library;
    library.close();
    library.executeScript("INSERT INTO settings VALUES ('goodreadsRssKey', ' feed key '), ('netlifyToken', 'token'),"
                          " ('goodreadsUserID', '42');");
    ASSERT_TRUE(bytesOf(library.databasePath()).contains("feed key"));
    library.open();
    EXPECT_EQ(library.scalar("SELECT group_concat(key) FROM settings"), SQLiteValue(QStringLiteral("goodreadsUserID")));
    const auto settings = await(library.store().settings());
    EXPECT_EQ(settings.value(QStringLiteral("goodreadsRssKey")), QStringLiteral("feed key"));
    EXPECT_EQ(settings.value(QStringLiteral("netlifyToken")), QStringLiteral("token"));
    EXPECT_EQ(settings.value(QStringLiteral("goodreadsUserID")), QStringLiteral("42"));
    library.close();
    EXPECT_FALSE(bytesOf(library.databasePath()).contains("feed key")) << "not even in what the file no longer uses";
}

TEST(LibraryOpening, ASecretInBothPlacesStaysTheOneOfTheFileAndABlankRowStays)
{
    TestLibrary library;
    await(library.store().setSetting(QStringLiteral("netlifyToken"), QStringLiteral("of the file")));
    library.close();
    library.executeScript("INSERT INTO settings VALUES ('netlifyToken', 'of the table'), ('goodreadsRssKey', '  ');");
    library.open();
    EXPECT_EQ(await(library.store().setting(QStringLiteral("netlifyToken"))), QStringLiteral("of the file"));
    EXPECT_EQ(library.scalar("SELECT group_concat(key) FROM settings"), SQLiteValue(QStringLiteral("goodreadsRssKey")));
}

TEST(LibraryOpening, ASecretThatCannotBeSavedKeepsItsRowAndTheLibraryShut)
{
    TestLibrary library;
    library.close();
    library.execute("INSERT INTO settings VALUES ('netlifyToken', 'token')");
    QDir().mkpath(library.file(QStringLiteral("Credentials.plist")));
    EXPECT_EQ(thrownBy<FileError>([&] { library.open(); })->path(), library.file(QStringLiteral("Credentials.plist")));
    EXPECT_FALSE(library.isHeldOpen());
    EXPECT_EQ(library.scalar("SELECT value FROM settings"), SQLiteValue(QStringLiteral("token")));
}

TEST(LibraryOpening, AfterACrashEachUnfinishedJobIsMarkedOnce)
{
    TestLibrary library;
    const auto record = [&library](QuireBackgroundJob job, const char *state, qint64 attempt) {
        await(library.store().recordBackgroundJob({job, QString::fromLatin1(state), attempt, std::nullopt}));
    };
    record(QuireBackgroundJob::GoodreadsSync, "running", 1);
    record(QuireBackgroundJob::GoodreadsSync, "running", 2);
    record(QuireBackgroundJob::AudibleSync, "retrying", 3);
    record(QuireBackgroundJob::Publishing, "failed", 1);
    record(QuireBackgroundJob::Backup, "succeeded", 1);
    record(QuireBackgroundJob::Maintenance, "running", 1);
    library.close();
    const qsizetype before = history(library).size();

    library.open(true);
    EXPECT_EQ(history(library).mid(before),
        (QList<QString>{QStringLiteral("goodreadsSync interrupted 2"), QStringLiteral("audibleSync interrupted 3"),
            QStringLiteral("maintenance succeeded 1")}));
    EXPECT_EQ(library.scalar("SELECT message FROM background_job_history WHERE state = 'interrupted'"),
        SQLiteValue(QStringLiteral("The previous Quire session ended before this operation completed.")));
    EXPECT_EQ(
        library.scalar("SELECT message FROM background_job_history WHERE job_kind = 'maintenance' ORDER BY id DESC"),
        SQLiteValue(QStringLiteral("Post-crash recovery checks completed")));
    EXPECT_TRUE(library.scalar("SELECT message FROM background_job_history ORDER BY id").isNull());

    library.close();
    library.open(true);
    EXPECT_EQ(history(library).mid(before + 3), QList<QString>{QStringLiteral("maintenance succeeded 1")});
}

TEST(LibraryOpening, WithoutACrashNothingIsMarkedOrChecked)
{
    TestLibrary library;
    await(library.store().recordBackgroundJob({QuireBackgroundJob::Artwork, QStringLiteral("running"), 1, {}}));
    library.close();
    library.open(false);
    EXPECT_EQ(history(library).size(), 1);
}

TEST(LibraryOpening, ADamagedLibraryIsNotOpenedAfterACrash)
{
    TestLibrary library;
    library.execute("INSERT INTO goodreads_books (goodreads_id, title) VALUES ('1', 'One')");
    library.close();
    const qint64 page
        = library.scalar("SELECT rootpage FROM sqlite_master WHERE name = 'sqlite_autoindex_goodreads_books_1'")
              .intValue()
              .value();
    QFile damaged(library.databasePath());
    ASSERT_TRUE(damaged.open(QIODevice::ReadWrite));
    damaged.seek((page - 1) * 4096 + 3); // the number of cells: none, though the table has a row
    damaged.write(QByteArray("\x00\x00", 2));
    damaged.close();
    EXPECT_EQ(thrownBy<DatabaseError>([&] { library.open(true); }),
        DatabaseError(Kind::Open, QStringLiteral("The library failed its post-crash integrity check.")));
    EXPECT_FALSE(library.isHeldOpen());
    library.open(false); // checked only after a crash
}
