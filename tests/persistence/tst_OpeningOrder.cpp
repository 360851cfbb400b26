// The order of the opening, and what it lets go of when it fails.

#include "files/FileError.h"
#include "persistence/AppDirectories.h"
#include "persistence/database/DatabaseError.h"
#include "reliability/QuireLibraryLease.h"
#include "reliability/QuireReliabilityError.h"
#include "testing/Await.h"
#include "testing/OwnDataDirectory.h"
#include "testing/TestFiles.h"
#include "testing/TestLibrary.h"
#include "testing/ThrownFailure.h"
#include "testing/UnprivilegedUser.h"

#include <QDir>
#include <QFile>

#include <gtest/gtest.h>

#include <functional>

#include <sys/stat.h>
#include <unistd.h>

using namespace quire;
using namespace quire::testing;
using Kind = DatabaseError::Kind;

namespace {

// Each step of the opening with a way to make it fail, the first step first.
struct Step
{
    const char *what;
    std::function<void(TestLibrary &)> spoil;
    std::function<bool(const std::exception &)> isItsFailure;
};

template<typename Expected>
std::function<bool(const std::exception &)> is(std::function<bool(const Expected &)> test)
{
    return [test](const std::exception &failure) {
        const auto *expected = dynamic_cast<const Expected *>(&failure);
        return expected && test(*expected);
    };
}

std::function<bool(const std::exception &)> isAbout(const char *file)
{
    return is<FileError>([file](const FileError &failure) { return failure.path().endsWith(QString::fromUtf8(file)); });
}

QList<Step> steps(QuireLibraryLease &rival)
{
    const auto inTheWay = [](const char *name) {
        return [name](TestLibrary &library) {
            QDir(library.file(QString::fromUtf8(name))).removeRecursively();
            putFile(library.file(QString::fromUtf8(name)), "in the way");
        };
    };
    return {
        {"conflict copies", [](TestLibrary &library) { putFile(library.file(QStringLiteral("conflict.db")), "x"); },
            is<QuireReliabilityError>([](const QuireReliabilityError &failure) {
                return failure.kind() == QuireReliabilityError::Kind::CloudConflictCopy;
            })},
        {"lease", [&rival](TestLibrary &) { rival.acquire(); },
            is<DatabaseError>([](const DatabaseError &failure) { return failure.kind() == Kind::LibraryBusy; })},
        {"opening", [](TestLibrary &library) { library.executeScript("PRAGMA user_version = 3"); },
            is<DatabaseError>([](const DatabaseError &failure) { return failure.text().contains(u"newer version"); })},
        {"lineage",
            [](TestLibrary &library) { library.execute("UPDATE library_metadata SET library_uuid = 'another'"); },
            is<QuireReliabilityError>([](const QuireReliabilityError &failure) {
                return failure.kind() == QuireReliabilityError::Kind::CloudLibraryDiverged;
            })},
        {"credentials",
            [](TestLibrary &library) {
                library.execute("INSERT INTO settings VALUES ('netlifyToken', 'token')");
                QDir().mkpath(library.file(QStringLiteral("Credentials.plist")));
            },
            isAbout("Credentials.plist")},
        {"checks after a crash",
            [](TestLibrary &library) {
                library.executeScript("DROP TABLE background_job_history; CREATE VIEW background_job_history AS "
                                      "SELECT 1 AS id, 'goodreadsSync' AS job_kind, 'running' AS state, 1 AS attempt");
            },
            is<DatabaseError>([](const DatabaseError &failure) { return failure.kind() == Kind::Prepare; })},
        {"memory of the lineage", inTheWay("Cloud Library State"), isAbout("Cloud Library State")},
    };
}

} // namespace

TEST(OpeningOrder, StopsAtTheFirstFailureInItsOrderAndLetsGoOfEverything)
{
    for (qsizetype first = 0;; ++first) {
        TestLibrary library;
        library.close();
        QuireLibraryLease rival(library.folder(), library.clock());
        const QList<Step> all = steps(rival);
        if (first == all.size()) {
            break;
        }
        // All steps from this one on would fail: its own failure is the one told.
        for (qsizetype step = all.size() - 1; step >= first; --step) {
            const bool takesTheMemory = step == all.size() - 1;
            if (!takesTheMemory || first > 3) { // or there would be no lineage to compare with
                all[step].spoil(library);
            }
        }
        EXPECT_TRUE(thrownByIs([&] { library.open(true); }, all[first].isItsFailure)) << all[first].what;
        rival.release();
        EXPECT_FALSE(library.isLeaseHeld()) << all[first].what;
        EXPECT_FALSE(library.isHeldOpen()) << all[first].what;
        EXPECT_EQ(
            thrownBy<DatabaseError>([&] { await(library.store().books()); }), DatabaseError(Kind::MissingDatabase))
            << all[first].what;
    }
}

TEST(OpeningOrder, StaleFilesComeAfterTheChecksAndBeforeTheMemoryAndEndTheOpeningToo)
{
    TestLibrary library;
    library.close();
    const QString memory = library.file(QStringLiteral("Cloud Library State"));
    const QString record = memory + u'/' + namesIn(memory).value(0);
    const QByteArray remembered = bytesOf(record);
    library.clock().advance(std::chrono::hours(1));
    const QString folder = library.file(QStringLiteral("Database Backups"));
    QDir().mkpath(folder);
    QFile::setPermissions(folder, {});
    for (const char *name : {"Cloud Library State", ".Quire Locks", "quire.db"}) {
        ASSERT_EQ(::chmod(QFile::encodeName(library.file(QString::fromUtf8(name))).constData(), 0777), 0);
    }
    // Where the checks after a crash leave their note.
    ASSERT_TRUE(::geteuid() != 0 || ::chown(QFile::encodeName(library.folder()).constData(), 65534, 65534) == 0);
    const UnprivilegedUser user(library.folder());

    const auto failure = thrownBy<FileError>([&] { library.open(true); });

    ASSERT_TRUE(failure);
    EXPECT_EQ(failure->path(), folder);

    EXPECT_FALSE(library.isLeaseHeld());
    EXPECT_FALSE(library.isHeldOpen());
    EXPECT_EQ(library.scalar("SELECT message FROM background_job_history"),
        SQLiteValue(QStringLiteral("Post-crash recovery checks completed")));
    EXPECT_EQ(bytesOf(record), remembered);
}

TEST(OpeningOrder, TheOlderProgramsLibraryIsTakenOverUnderTheLease)
{
    const OwnDataDirectory data;
    const ManualClock clock;
    const QString books = AppDirectories::legacyBooksSupportDirectory() + QStringLiteral("/Books");
    QDir().mkpath(books);
    putFile(books + QStringLiteral("/books.db"), "no database");
    QuireLibraryLease rival(AppDirectories::supportDirectory(), clock);
    rival.acquire();
    LibraryStore store(clock, std::nullopt, true);
    EXPECT_EQ(thrownBy<DatabaseError>([&] { await(store.prepare(false)); })->kind(), Kind::LibraryBusy);
    rival.release();

    // It comes next: before the opening, which would make a library of its own.
    EXPECT_NE(thrownBy<DatabaseError>([&] { await(store.prepare(false)); })->kind(), Kind::LibraryBusy);
    EXPECT_FALSE(QFile::exists(AppDirectories::supportDirectory() + QStringLiteral("/quire.db")));
    EXPECT_TRUE(namesIn(AppDirectories::supportDirectory() + QStringLiteral("/.Quire Locks")).isEmpty());
}

TEST(OpeningOrder, TheLeaseIsHeldWhileTheLibraryIsOpen)
{
    TestLibrary library;
    EXPECT_TRUE(library.isLeaseHeld());
    const QByteArray owner = bytesOf(library.file(QStringLiteral(".Quire Locks/Quire Library.lock/Owner.json")));
    library.open(); // a second time: the lease is not taken again
    EXPECT_EQ(bytesOf(library.file(QStringLiteral(".Quire Locks/Quire Library.lock/Owner.json"))), owner);
    library.close();
    EXPECT_FALSE(library.isLeaseHeld());
}

TEST(OpeningOrder, ALibraryThatAnotherHasOpenIsRefusedUntilItIsClosed)
{
    TestLibrary library;
    LibraryStore second(library.clock(), library.folder());
    EXPECT_EQ(thrownBy<DatabaseError>([&] { await(second.prepare(false)); })->kind(), Kind::LibraryBusy);
    EXPECT_TRUE(await(library.store().books()).isEmpty()) << "the first is none the worse";
    EXPECT_TRUE(library.isLeaseHeld());
    library.close();
    await(second.prepare(false));
    EXPECT_TRUE(await(second.books()).isEmpty());
    await(second.shutdown());
}

TEST(OpeningOrder, AStoreThatDiesOpenGivesUpItsLease)
{
    const QTemporaryDir folder;
    const ManualClock clock;
    for (int count = 0; count < 2; ++count) {
        LibraryStore store(clock, folder.path());
        await(store.prepare(false));
    }
}

TEST(OpeningOrder, ANewerLibraryKeepsItsLogBesideItByteForByte)
{
    TestLibrary library;
    library.close();
    {
        SQLiteDatabase database(library.databasePath());
        database.executeScript("PRAGMA journal_mode = WAL; PRAGMA user_version = 3; CREATE TABLE works (id);");
        database.setFoldsLogOnClose(false);
    }
    const QString log = library.databasePath() + QStringLiteral("-wal");
    const QByteArray file = bytesOf(library.databasePath());
    const QByteArray logged = bytesOf(log);
    ASSERT_TRUE(logged.startsWith("\x37\x7f")) << "no log";
    EXPECT_EQ(thrownBy<DatabaseError>([&] { library.open(); })->text(),
        QStringLiteral("This library was created by a newer version of Quire (schema 3)."));
    EXPECT_EQ(bytesOf(library.databasePath()), file);
    EXPECT_EQ(bytesOf(log), logged);
    EXPECT_FALSE(library.isLeaseHeld());
}
