#include "sources/AudibleLibraryService.h"

#include "concurrency/Cancelled.h"
#include "files/FileError.h"
#include "persistence/database/DatabaseError.h"
#include "records/DateParser.h"
#include "reliability/QuireReliabilityError.h"
#include "sources/AudibleLibraryLocation.h"
#include "sources/ServiceError.h"
#include "testing/AudibleLibraryFile.h"
#include "testing/Await.h"
#include "testing/OwnVariable.h"
#include "testing/ResourceUse.h"
#include "testing/SmallDisk.h"
#include "testing/TestFiles.h"
#include "testing/TestLibrary.h"
#include "testing/ThrownFailure.h"
#include "testing/UnprivilegedUser.h"

#include <QDir>
#include <QFileInfo>
#include <QStorageInfo>
#include <QTemporaryDir>
#include <QTimer>

#include <gmock/gmock.h>

#include <memory>

#include <sys/stat.h>

using namespace quire;
using namespace quire::testing;

using ::testing::IsEmpty;
using ::testing::SizeIs;

namespace {

const QString install = QStringLiteral("Install Audible from the Mac App Store, open it, and sign in before syncing.");
const QString noDatabase = QStringLiteral("The selected Audible folder does not contain the local library database.");
const QString noSnapshot = QStringLiteral(
    "Quire could not create a read-only snapshot of Audible’s library: Could not copy the file “%1”: ");

class AudibleLibraryServiceTest : public ::testing::Test
{
protected:
    // A granted folder with the library of one title, in a home and with a
    // temporary directory of its own; backed up just now.
    AudibleLibraryServiceTest()
    {
        SmallDisk::isAvailable(); // before there are threads
        QDir().mkpath(folder);
        QDir().mkpath(temporary);
        application = std::make_unique<AudibleLibraryFile>(file);
        application->addTitle(QStringLiteral("A1"), QStringLiteral("Dune"));
        configure(folder);
        set(QStringLiteral("lastBackupAt"), DateParser::iso8601(library.clock().now()));
    }

    // However a run ended, it left nothing behind.
    ~AudibleLibraryServiceTest() override { EXPECT_THAT(namesIn(temporary), IsEmpty()); }

    void set(const QString &key, const QString &value) { await(library.store().setSetting(key, value)); }
    void configure(const QString &path) { set(QStringLiteral("audibleLibraryPath"), path); }

    AudibleSyncResult synchronize()
    {
        return await(AudibleLibraryService::synchronize(
            library.store(), ServiceEndpoints::standard(), library.clock(), stop.get_token()));
    }

    // The words of the failure that a run ends with, with the library as it was.
    QString failure()
    {
        QString words;
        EXPECT_TRUE(thrownByIs([this] { synchronize(); },
            [&words](const std::exception &error) {
                words = describe(error);
                return dynamic_cast<const ServiceError *>(&error) != nullptr;
            }));
        EXPECT_THAT(titles(), IsEmpty());
        EXPECT_EQ(lastSync(), std::nullopt);
        return words;
    }

    QStringList titles()
    {
        QStringList result;
        const auto audiobooks = await(library.store().audiobooks());
        for (const Audiobook &audiobook : audiobooks) {
            result.append(audiobook.title);
        }
        return result;
    }

    std::optional<QString> lastSync() { return await(library.store().setting(QStringLiteral("audibleLastSync"))); }

    QTemporaryDir home;
    QString folder = home.filePath(QStringLiteral("granted"));
    QString file = folder + QStringLiteral("/x-library.sqlite");
    QString temporary = home.filePath(QStringLiteral("tmp"));
    OwnVariable ownHome{"HOME", home.path()};
    OwnVariable ownTemporary{"TMPDIR", temporary};
    TestLibrary library;
    std::unique_ptr<AudibleLibraryFile> application;
    std::stop_source stop;
};

} // namespace

// Whether there is a library. -------------------------------------------------------

TEST_F(AudibleLibraryServiceTest, NothingConfiguredIsNotInstalled)
{
    const auto found = AudibleLibraryService::availability(std::nullopt);
    EXPECT_EQ(found, AudibleAppAvailability());
    EXPECT_EQ(AudibleLibraryService::availability(folder + QStringLiteral("/gone")), AudibleAppAvailability());
}

TEST_F(AudibleLibraryServiceTest, AFolderWithADatabaseIsInstalledWithThatDatabase)
{
    const auto found = AudibleLibraryService::availability(folder);
    EXPECT_TRUE(found.isInstalled());
    ASSERT_TRUE(found.libraryURL);
    EXPECT_EQ(found.libraryURL->toQUrl().toLocalFile(), file);
    EXPECT_EQ(AudibleLibraryService::availability(file), found);
}

TEST_F(AudibleLibraryServiceTest, AFolderWithoutADatabaseIsInstalledWithoutALibrary)
{
    const auto found = AudibleLibraryService::availability(temporary);
    EXPECT_TRUE(found.isInstalled());
    EXPECT_EQ(found.libraryURL, std::nullopt);
}

TEST_F(AudibleLibraryServiceTest, APathOfAnyLettersIsAnAddress)
{
    const QString odd = home.filePath(QStringLiteral("a b#c?d%41é"));
    QDir().mkpath(odd);
    putFile(odd + QStringLiteral("/x-library.sqlite"), "");
    const auto found = AudibleLibraryService::availability(odd);
    EXPECT_EQ(found.libraryURL->toQUrl().toLocalFile(), odd + QStringLiteral("/x-library.sqlite"));
}

// A sync. ---------------------------------------------------------------------------

TEST_F(AudibleLibraryServiceTest, TheTitlesAreMergedAndTheMomentNoted)
{
    application->addTitle(QStringLiteral("A2"), QStringLiteral("Emma"));
    EXPECT_EQ(synchronize(), (AudibleSyncResult{.count = 2, .added = 2, .refreshed = 0}));
    EXPECT_THAT(titles(), ::testing::UnorderedElementsAre(QStringLiteral("Dune"), QStringLiteral("Emma")));
    EXPECT_EQ(lastSync(), DateParser::iso8601(library.clock().now()));
    EXPECT_EQ(synchronize(), (AudibleSyncResult{.count = 2, .added = 0, .refreshed = 2}));
}

TEST_F(AudibleLibraryServiceTest, ATitleThatNobodyStartedIsToBeRead)
{
    synchronize();
    EXPECT_EQ(await(library.store().audiobooks()).value(0).status, QStringLiteral("to-read"));
}

TEST_F(AudibleLibraryServiceTest, AProgressOfAHundredWithoutTheFlagIsReading)
{
    application->addTitle(QStringLiteral("A0"), QStringLiteral("Emma"),
        {{QStringLiteral("json_data"), QStringLiteral(R"({"percentComplete": 100})")},
            {QStringLiteral("purchaseDate"), QStringLiteral("2999")}});
    synchronize();
    for (const Audiobook &audiobook : await(library.store().audiobooks())) {
        EXPECT_EQ(audiobook.status,
            audiobook.title == QStringLiteral("Emma") ? QStringLiteral("reading") : QStringLiteral("to-read"));
    }
}

TEST_F(AudibleLibraryServiceTest, AWriteAheadLogIsReadAndLeftAlone)
{
    application->database().executeScript("PRAGMA journal_mode = WAL; PRAGMA wal_autocheckpoint = 0;");
    application->addTitle(QStringLiteral("A2"), QStringLiteral("Emma"));
    const QString log = file + QStringLiteral("-wal");
    ASSERT_GT(QFileInfo(log).size(), 0);
    const QByteArray before = bytesOf(file);
    const QByteArray logBefore = bytesOf(log);
    EXPECT_EQ(synchronize().count, 2);
    EXPECT_TRUE(bytesOf(file) == before);
    EXPECT_TRUE(bytesOf(log) == logBefore);
    EXPECT_THAT(namesIn(folder), SizeIs(3)); // the memory shared by its owner is the third
}

TEST_F(AudibleLibraryServiceTest, ALogThatIsTornIsReadAsFarAsItGoes)
{
    application->database().executeScript("PRAGMA journal_mode = WAL; PRAGMA wal_autocheckpoint = 0;");
    application->addTitle(QStringLiteral("A2"), QStringLiteral("Emma"));
    const QString copy = home.filePath(QStringLiteral("torn"));
    QDir().mkpath(copy);
    const QByteArray log = bytesOf(file + QStringLiteral("-wal"));
    putFile(copy + QStringLiteral("/x-library.sqlite"), bytesOf(file));
    putFile(copy + QStringLiteral("/x-library.sqlite-wal"), log.first(log.size() - 100));
    configure(copy);
    EXPECT_EQ(synchronize().count, 1);
    EXPECT_EQ(bytesOf(copy + QStringLiteral("/x-library.sqlite-wal")), log.first(log.size() - 100));
}

TEST_F(AudibleLibraryServiceTest, ALogThatIsGarbageIsAsNone)
{
    application->database().close();
    putFile(file + QStringLiteral("-wal"), QByteArray(5000, '\x42'));
    EXPECT_EQ(synchronize().count, 1);
    EXPECT_EQ(bytesOf(file + QStringLiteral("-wal")), QByteArray(5000, '\x42'));
}

TEST_F(AudibleLibraryServiceTest, ADatabaseThatIsLockedIsReadAllTheSame)
{
    application->database().executeScript("BEGIN EXCLUSIVE; UPDATE products SET title = 'Uncommitted'");
    EXPECT_EQ(synchronize().count, 1);
    EXPECT_EQ(titles(), QStringList({QStringLiteral("Dune")}));
    EXPECT_NO_THROW(application->database().executeScript("COMMIT"));
}

TEST_F(AudibleLibraryServiceTest, TheLibrarysSafetyBackupIsMadeBeforeTheMerge)
{
    set(QStringLiteral("backupPath"), home.filePath(QStringLiteral("backups")));
    await(library.store().setSetting(QStringLiteral("lastBackupAt"), QString()));
    synchronize();
    const QStringList backups = QDir(home.filePath(QStringLiteral("backups"))).entryList({QStringLiteral("*.db")});
    ASSERT_THAT(backups, SizeIs(1));
    const SQLiteDatabase backup(home.filePath(QStringLiteral("backups/")) + backups.first(), true);
    EXPECT_EQ(backup.scalar("SELECT COUNT(*) FROM audible_books"), SQLiteValue(0));
}

TEST_F(AudibleLibraryServiceTest, WhatIsRememberedFromAnotherPlatformDoesNotStandInTheWay)
{
    for (const char *bookmark : {"Ym9vaw==", "no base64", ""}) {
        set(QStringLiteral("audibleLibraryBookmark"), QString::fromLatin1(bookmark));
        EXPECT_EQ(synchronize().count, 1) << bookmark;
    }
}

TEST_F(AudibleLibraryServiceTest, AFileOfTwoGigabytesNeitherHoldsTheInterfaceNorFillsTheMemory)
{
    constexpr qint64 size = 2LL << 30;
    const QStorageInfo disk(home.path());
    if (disk.fileSystemType() == "tmpfs" || disk.bytesAvailable() < 2 * size) {
        GTEST_SKIP() << "there is no room for its copy";
    }
    application->database().close();
    ASSERT_TRUE(QFile::resize(file, size)); // what a file has beyond its pages is passed over
    int turns = 0;
    QTimer interface;
    QObject::connect(&interface, &QTimer::timeout, [&turns] { ++turns; });
    interface.start(1);
    const ResourceUse use;
    const auto result = await(AudibleLibraryService::synchronize(
                                  library.store(), ServiceEndpoints::standard(), library.clock(), stop.get_token()),
        std::chrono::minutes(10)); // a slow disk is no failure
    EXPECT_EQ(result.count, 1);
    EXPECT_GT(turns, 10);
    if (!isInstrumented) {
        EXPECT_LT(use.peakMegabytes(), 256);
    }
}

// Failures. -------------------------------------------------------------------------

TEST_F(AudibleLibraryServiceTest, WithoutAPathTheReaderIsToldToInstall)
{
    configure(QString());
    EXPECT_EQ(failure(), install);
    configure(folder + QStringLiteral("/gone"));
    EXPECT_EQ(failure(), install);
}

TEST_F(AudibleLibraryServiceTest, AFolderWithoutADatabaseIsToldAsThat)
{
    configure(temporary);
    EXPECT_EQ(failure(), noDatabase);
    configure(home.filePath(QStringLiteral("file")));
    putFile(home.filePath(QStringLiteral("file")), "no folder");
    EXPECT_EQ(failure(), noDatabase);
}

TEST_F(AudibleLibraryServiceTest, AFolderThatMayNotBeListedIsToldAsThat)
{
    ::chmod(QFile::encodeName(folder).constData(), 0);
    {
        ::chmod(QFile::encodeName(temporary).constData(), 0777);
        const UnprivilegedUser nobody(home.path());
        EXPECT_EQ(thrownBy<ServiceError>([this] { synchronize(); })->description(), noDatabase);
    }
    ::chmod(QFile::encodeName(folder).constData(), 0755);
}

TEST_F(AudibleLibraryServiceTest, AFolderInTheDatabasesPlaceIsNoSnapshot)
{
    const QString odd = home.filePath(QStringLiteral("y-library.sqlite"));
    QDir().mkpath(odd);
    configure(odd);
    EXPECT_EQ(failure(), noSnapshot.arg(odd) + QStringLiteral("Is a directory"));
}

TEST_F(AudibleLibraryServiceTest, APipeInTheDatabasesPlaceIsNoSnapshot)
{
    const QString pipe = home.filePath(QStringLiteral("y-library.sqlite"));
    ASSERT_EQ(::mkfifo(QFile::encodeName(pipe).constData(), 0600), 0);
    configure(pipe);
    EXPECT_EQ(failure(), noSnapshot.arg(pipe) + QStringLiteral("Invalid argument"));
}

TEST_F(AudibleLibraryServiceTest, APipeInTheLogsPlaceIsNoSnapshot)
{
    application->database().close();
    const QString log = file + QStringLiteral("-wal");
    ASSERT_EQ(::mkfifo(QFile::encodeName(log).constData(), 0600), 0);
    EXPECT_EQ(failure(), noSnapshot.arg(log) + QStringLiteral("Invalid argument"));
}

TEST_F(AudibleLibraryServiceTest, ADatabaseThatMayNotBeReadIsNoSnapshot)
{
    ::chmod(QFile::encodeName(file).constData(), 0);
    ::chmod(QFile::encodeName(temporary).constData(), 0777);
    const UnprivilegedUser nobody(home.path());
    ::chmod(QFile::encodeName(folder).constData(), 0755);
    EXPECT_EQ(thrownBy<ServiceError>([this] { synchronize(); })->description(),
        noSnapshot.arg(file) + QStringLiteral("Permission denied"));
}

TEST_F(AudibleLibraryServiceTest, ALinkToADatabaseIsReadAsTheDatabase)
{
    const QString link = temporary + QStringLiteral("/../y-library.sqlite");
    QFile::link(file, link);
    configure(link);
    EXPECT_EQ(synchronize().count, 1);
}

TEST_F(AudibleLibraryServiceTest, AFullTemporaryDirectoryIsNoSnapshotAndNothingIsLeft)
{
    if (!SmallDisk::isAvailable()) {
        GTEST_SKIP() << "this system lets no test mount a disk of its own";
    }
    application->database().execute("INSERT INTO library_item (asin, json_data) VALUES ('x', zeroblob(1000000))");
    SmallDisk disk(temporary);
    disk.leaveBlocks(20);
    EXPECT_EQ(failure(), noSnapshot.arg(file) + QStringLiteral("No space left on device"));
    EXPECT_THAT(namesIn(temporary), IsEmpty());
}

TEST_F(AudibleLibraryServiceTest, ATemporaryDirectoryThatCannotBeMadeIsTheFilesFailure)
{
    const OwnVariable nowhere("TMPDIR", file + QStringLiteral("/below"));
    const auto error = thrownBy<FileError>([this] { synchronize(); });
    EXPECT_TRUE(error->description().startsWith(QStringLiteral("Could not create the folder “")));
    EXPECT_EQ(error->code(), ENOTDIR);
}

TEST_F(AudibleLibraryServiceTest, ADamagedCopyIsToldAsThat)
{
    for (int title = 0; title < 300; ++title) {
        application->addTitle(QStringLiteral("B%1").arg(title), QStringLiteral("Title"));
    }
    application->database().close();
    QByteArray bytes = bytesOf(file);
    const qsizetype page = bytes.size() / 4096 / 2;
    bytes.replace(page * 4096, 4096, QByteArray(4096, '\x7f'));
    putFile(file, bytes);
    EXPECT_EQ(failure(), QStringLiteral("Audible’s local library did not pass its integrity check."));
}

TEST_F(AudibleLibraryServiceTest, WhatIsNoDatabaseFailsAsTheDatabaseDoes)
{
    application->database().close();
    putFile(file, QByteArray(8192, '\x5a'));
    EXPECT_EQ(thrownBy<DatabaseError>([this] { synchronize(); })->text(), QStringLiteral("file is not a database"));
    EXPECT_THAT(titles(), IsEmpty());
}

TEST_F(AudibleLibraryServiceTest, ABatchThatIsNotValidChangesNothing)
{
    application->addTitle(QStringLiteral("A1"), QStringLiteral("Dune again"));
    EXPECT_NE(thrownBy<QuireReliabilityError>([this] { synchronize(); }), std::nullopt);
    EXPECT_THAT(titles(), IsEmpty());
    EXPECT_EQ(lastSync(), std::nullopt);
}

// Cancelling. -----------------------------------------------------------------------

TEST_F(AudibleLibraryServiceTest, ARunThatIsCancelledAtAnyMomentChangesNothing)
{
    for (int turn = 0; turn < 4; ++turn) {
        stop = std::stop_source();
        int turns = 0;
        QTimer timer;
        QObject::connect(&timer, &QTimer::timeout, [&] {
            if (turns++ == turn) {
                stop.request_stop();
            }
        });
        timer.start(0);
        if (turn == 0) {
            stop.request_stop();
        }
        try {
            synchronize();
        } catch (const Cancelled &) {
            EXPECT_THAT(titles(), IsEmpty());
        }
        EXPECT_THAT(namesIn(temporary), IsEmpty());
        if (lastSync()) {
            break; // faster than the stop
        }
    }
}
