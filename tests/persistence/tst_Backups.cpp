// A backup from its folder to its last note, with every way in which it can end.

#include "persistence/BackupTest.h"

#include "files/FileError.h"
#include "persistence/database/DatabaseError.h"
#include "records/DateParser.h"
#include "reliability/FinishedBackup.h"
#include "reliability/QuireFailureInjector.h"
#include "testing/ChildProcess.h"
#include "testing/ThrownFailure.h"
#include "testing/UnprivilegedUser.h"

#include <QCryptographicHash>
#include <QFileInfo>

#include <cerrno>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

using namespace quire;
using namespace quire::testing;
using ::testing::ElementsAre;
using ::testing::IsEmpty;

namespace {

using Condition = FinishedBackup::Condition;

const QString firstName = QStringLiteral("Quire Database 2026-11-21T12-00-00.000Z.db");
const QString lastBackupAt = QStringLiteral("lastBackupAt");
const QString lastKnownGoodBackup = QStringLiteral("lastKnownGoodBackup");

QString manifestOf(const QString &backup)
{
    return backup + QStringLiteral(".manifest.json");
}

class Backups : public BackupTest
{
protected:
    // A good backup from before, and what the library says of it.
    void backUpBefore()
    {
        m_before = backUp();
        m_notedBefore = setting(lastBackupAt);
        library.clock().advance(1h);
    }

    void expectFailure(const QString &text)
    {
        const auto failure = thrownBy<DatabaseError>([&] { backUp(); });
        EXPECT_EQ(failure, DatabaseError(DatabaseError::Kind::Backup, text));
        expectOnlyTheBackupBefore();
    }

    // No trace of a failed one is left, and the one before is still trusted.
    void expectOnlyTheBackupBefore()
    {
        EXPECT_THAT(namesIn(folder()), ElementsAre(firstName, manifestOf(firstName)));
        EXPECT_EQ(FinishedBackup::condition(m_before), Condition::Good);
        EXPECT_EQ(setting(lastBackupAt), m_notedBefore);
        EXPECT_EQ(setting(lastKnownGoodBackup), m_before);
        EXPECT_EQ(library.scalar("SELECT COUNT(*) FROM backup_verifications").intValue(), 1);
    }

    QString m_before;
    std::optional<QString> m_notedBefore;
};

} // namespace

TEST_F(Backups, AreNamedForTheirMomentAndLeaveTheirManifestAlone)
{
    const QString backup = backUp();

    EXPECT_EQ(backup, folder() + u'/' + firstName);
    EXPECT_THAT(namesIn(folder()), ElementsAre(firstName, manifestOf(firstName)));

    library.clock().advance(123ms);
    EXPECT_EQ(QFileInfo(backUp()).fileName(), QStringLiteral("Quire Database 2026-11-21T12-00-00.123Z.db"));
}

TEST_F(Backups, HoldTheLibraryAndSaySo)
{
    const QString backup = backUp();

    const SQLiteDatabase copy(backup, true);
    EXPECT_EQ(copy.query("SELECT * FROM goodreads_books ORDER BY id"),
        library.query("SELECT * FROM goodreads_books ORDER BY id"));
    const auto manifest = QuireBackupManifest::read(manifestOf(backup));
    ASSERT_TRUE(manifest);
    EXPECT_EQ(manifest->formatVersion, 1);
    EXPECT_EQ(manifest->createdAt, QStringLiteral("2026-11-21T12:00:00.000Z"));
    EXPECT_EQ(manifest->databaseSHA256,
        QString::fromLatin1(QCryptographicHash::hash(bytesOf(backup), QCryptographicHash::Sha256).toHex()));
    EXPECT_EQ(manifest->schemaVersion, 2);
    EXPECT_EQ(manifest->libraryUUID, library.scalar("SELECT library_uuid FROM library_metadata").string({}));
    EXPECT_EQ(manifest->generation, library.scalar("SELECT generation FROM library_metadata").intValue());
    EXPECT_EQ(manifest->bookCount, 3);
    EXPECT_EQ(manifest->audiobookCount, 1);
    EXPECT_EQ(manifest->integrityCheck, QStringLiteral("ok"));
    EXPECT_EQ(FinishedBackup::condition(backup), Condition::Good);
}

TEST_F(Backups, AreNotedInTheLibrary)
{
    const QString backup = backUp();

    const auto rows = library.query("SELECT * FROM backup_verifications");
    ASSERT_EQ(rows.size(), 1);
    const SQLiteRow &row = rows.first();
    EXPECT_EQ(row.string(QStringLiteral("backup_path"), {}), backup);
    EXPECT_EQ(row.string(QStringLiteral("manifest_path"), {}), manifestOf(backup));
    EXPECT_EQ(row.string(QStringLiteral("database_sha256"), {}),
        QuireBackupManifest::read(manifestOf(backup))->databaseSHA256);
    EXPECT_TRUE(DateParser::date(row.optionalString(QStringLiteral("verified_at"))));
    EXPECT_EQ(row.intValue(QStringLiteral("schema_version")), 2);
    EXPECT_EQ(row.intValue(QStringLiteral("book_count")), 3);
    EXPECT_EQ(row.intValue(QStringLiteral("audiobook_count")), 1);
    EXPECT_EQ(setting(lastKnownGoodBackup), backup);
    EXPECT_EQ(setting(lastBackupAt), QStringLiteral("2026-11-21T12:00:00.000Z"));
}

TEST_F(Backups, OfAWriteAheadLibraryAreOneFileWithoutItsMark)
{
    library.executeScript("PRAGMA journal_mode = WAL");
    await(library.store().setSetting(QStringLiteral("a"), QStringLiteral("b")));
    ASSERT_TRUE(QFileInfo::exists(library.databasePath() + QStringLiteral("-wal")));
    const auto versionsIn = [](const QString &file) { return bytesOf(file).mid(18, 2).toHex(); };
    const QString bare = library.file(QStringLiteral("bare"));
    SQLiteDatabase::backUp(library.databasePath(), bare);
    ASSERT_EQ(versionsIn(bare), "0202"); // what a copy alone would leave

    const QString backup = backUp();

    EXPECT_EQ(versionsIn(backup), "0101");
    EXPECT_THAT(namesIn(folder()), ElementsAre(firstName, manifestOf(firstName)));
    EXPECT_EQ(FinishedBackup::condition(backup), Condition::Good);
    EXPECT_EQ(SQLiteDatabase(backup, true).scalar("SELECT value FROM settings WHERE key = 'a'")->string({}),
        QStringLiteral("b"));
}

TEST_F(Backups, HoldNothingThatWasAskedForAfterThem)
{
    const auto backingUp = library.store().backUpDatabase(std::nullopt);
    const auto adding = library.store().addManualBook({.title = QStringLiteral("Later")}, std::nullopt);

    const QString backup = await(backingUp);
    await(adding);

    EXPECT_EQ(QuireBackupManifest::read(manifestOf(backup))->bookCount, 3);
    EXPECT_EQ(SQLiteDatabase(backup, true).scalar("SELECT COUNT(*) FROM goodreads_books")->intValue(), 3);
}

TEST_F(Backups, OfOneMillisecondDoNotMeet)
{
    const QString first = backUp();
    const QByteArray before = bytesOf(first);
    await(library.store().setSetting(QStringLiteral("a"), QStringLiteral("b")));

    const QString second = backUp();

    EXPECT_EQ(QFileInfo(second).fileName(), QStringLiteral("Quire Database 2026-11-21T12-00-00.001Z.db"));
    EXPECT_EQ(bytesOf(first), before);
    EXPECT_EQ(FinishedBackup::condition(first), Condition::Good);
    EXPECT_EQ(FinishedBackup::condition(second), Condition::Good);
}

TEST_F(Backups, FailWhileTheLibraryIsClosed)
{
    library.close();

    EXPECT_EQ(thrownBy<DatabaseError>([&] { backUp(folder()); }), DatabaseError(DatabaseError::Kind::MissingDatabase));
    EXPECT_EQ(thrownBy<DatabaseError>([&] { backUpIfDue(); }), DatabaseError(DatabaseError::Kind::MissingDatabase));
}

// The folder ------------------------------------------------------------------------

TEST_F(Backups, GoToTheFolderThatIsGivenInItsPlainForm)
{
    set(QStringLiteral("backupPath"), library.file(QStringLiteral("configured")));

    const QString backup = backUp(library.folder() + QStringLiteral("//a/./x/../It's 100% für Bücher/"));

    EXPECT_EQ(backup, library.file(QStringLiteral("a/It's 100% für Bücher/")) + firstName);
    EXPECT_EQ(FinishedBackup::condition(backup), Condition::Good);
    EXPECT_FALSE(QFileInfo::exists(library.file(QStringLiteral("configured"))));
}

TEST_F(Backups, GoToTheConfiguredFolderWithItsTildeAndWithoutItsBlanks)
{
    const HomeFolder home(library.file(QStringLiteral("home")));
    set(QStringLiteral("backupPath"), QStringLiteral(" \n~/My Backups/ "));

    EXPECT_EQ(backUp(), library.file(QStringLiteral("home/My Backups/")) + firstName);
}

TEST_F(Backups, GoBesideTheLibraryWhenTheConfiguredFolderIsBlank)
{
    set(QStringLiteral("backupPath"), QStringLiteral(" \t\n"));

    EXPECT_EQ(backUp(), folder() + u'/' + firstName);
}

TEST_F(Backups, NeedAnAbsoluteFolderAndWriteNothingWithoutOne)
{
    const DatabaseError expected(
        DatabaseError::Kind::Backup, QStringLiteral("The configured backup folder is not an absolute path."));
    const QStringList before = namesIn(library.folder());

    EXPECT_EQ(thrownBy<DatabaseError>([&] { backUp(QStringLiteral("backups")); }), expected);
    EXPECT_EQ(thrownBy<DatabaseError>([&] { backUp(QString()); }), expected);
    set(QStringLiteral("backupPath"), QStringLiteral("backups"));
    EXPECT_EQ(thrownBy<DatabaseError>([&] { backUp(); }), expected);
    EXPECT_EQ(thrownBy<DatabaseError>([&] { backUpIfDue(); }), expected);

    EXPECT_EQ(namesIn(library.folder()), before);
    EXPECT_FALSE(QFileInfo::exists(QStringLiteral("backups")));
    EXPECT_EQ(setting(lastBackupAt), std::nullopt);
}

TEST_F(Backups, FailWithTypeWhereAFileIsInTheWayOfTheFolder)
{
    putFile(library.file(QStringLiteral("a file")), "x");

    const auto failure = thrownBy<FileError>([&] { backUp(library.file(QStringLiteral("a file"))); });

    ASSERT_TRUE(failure);
    EXPECT_EQ(failure->code(), ENOTDIR);
    EXPECT_EQ(bytesOf(library.file(QStringLiteral("a file"))), "x");
}

// Failures --------------------------------------------------------------------------

TEST_F(Backups, ThatFailTheIntegrityCheckLeaveNothing)
{
    backUpBefore();
    library.executeScript(
        "PRAGMA ignore_check_constraints = ON;"
        "INSERT INTO library_metadata SELECT 2, library_uuid, generation, lineage_token, parent_token,"
        " updated_at FROM library_metadata");

    expectFailure(QStringLiteral("The backup failed its complete integrity check."));
}

TEST_F(Backups, ThatLackATableLeaveNothing)
{
    backUpBefore();
    library.executeScript("DROP TABLE field_provenance");

    expectFailure(QStringLiteral("The backup is missing one or more required tables."));
}

TEST_F(Backups, OfAnotherSchemaLeaveNothing)
{
    backUpBefore();
    for (const char *version : {"PRAGMA user_version = 1", "PRAGMA user_version = 3"}) {
        library.executeScript(version);
        expectFailure(QStringLiteral("The backup schema version is unexpected."));
    }
}

TEST_F(Backups, WithoutAnIdentityLeaveNothing)
{
    backUpBefore();
    library.executeScript("DELETE FROM library_metadata");

    expectFailure(QStringLiteral("The backup has no library identity."));
}

TEST_F(Backups, ThatCannotBeNotedLeaveNothing)
{
    backUpBefore();
    library.executeScript("CREATE TRIGGER refuse BEFORE INSERT ON backup_verifications"
                          " BEGIN SELECT RAISE(ABORT, 'not this one'); END");

    expectFailure(QStringLiteral("not this one"));
}

TEST_F(Backups, ThatCannotBeNotedAsGoodLeaveNoNoteAtAll)
{
    backUpBefore();
    library.executeScript("CREATE TRIGGER refuse BEFORE INSERT ON settings WHEN new.key = 'lastKnownGoodBackup'"
                          " BEGIN SELECT RAISE(ABORT, 'not this one'); END");

    expectFailure(QStringLiteral("not this one"));
}

TEST_F(Backups, OfALibraryThatAnotherProgramWritesLeaveNothing)
{
    backUpBefore();
    SQLiteDatabase other(library.databasePath());
    other.executeScript("BEGIN EXCLUSIVE");

    const auto failure = thrownBy<DatabaseError>([&] { backUp(folder()); });

    EXPECT_EQ(failure->kind(), DatabaseError::Kind::Backup);
    other.executeScript("ROLLBACK");
    expectOnlyTheBackupBefore();
}

TEST_F(Backups, CanBeMadeAgainAfterAFailure)
{
    library.executeScript("PRAGMA user_version = 3");
    EXPECT_THROW(backUp(), DatabaseError);
    library.executeScript("PRAGMA user_version = 2");

    EXPECT_EQ(FinishedBackup::condition(backUp()), Condition::Good);
}

TEST_F(Backups, ThatDieAfterTheCopyLeaveTheMarkerThatTellsSo)
{
    library.close();
    ChildProcess child(QString::fromUtf8(QUIRE_BACKUP_CHILD), {library.folder(), folder()},
        {{QStringLiteral("QUIRE_ENABLE_FAILURE_TESTS"), QStringLiteral("1")},
            {QStringLiteral("QUIRE_FAILURE_POINT"), QStringLiteral("backup-after-copy")}});
    ASSERT_TRUE(child.waitUntilEnded());
    EXPECT_EQ(child.exitStatus(), QuireFailureInjector::exitStatus);

    const QStringList left = namesIn(folder());
    ASSERT_EQ(left.size(), 2);
    EXPECT_EQ(left[1], left[0] + QStringLiteral(".incomplete"));
    EXPECT_EQ(bytesOf(folder() + u'/' + left[1]), "");
    EXPECT_EQ(FinishedBackup::condition(folder() + u'/' + left[0]), Condition::Unfinished);
    EXPECT_EQ(setting(lastBackupAt), std::nullopt);
    EXPECT_EQ(setting(lastKnownGoodBackup), std::nullopt);
}

TEST_F(Backups, PassAnotherFailurePoint)
{
    library.close();
    ChildProcess child(QString::fromUtf8(QUIRE_BACKUP_CHILD), {library.folder(), folder()},
        {{QStringLiteral("QUIRE_ENABLE_FAILURE_TESTS"), QStringLiteral("1")},
            {QStringLiteral("QUIRE_FAILURE_POINT"), QStringLiteral("relocation-after-copy")}});
    ASSERT_TRUE(child.waitUntilEnded());

    EXPECT_EQ(child.exitStatus(), 0);
    EXPECT_EQ(namesIn(folder()).size(), 2);
}

// The number of files ---------------------------------------------------------------

TEST_F(Backups, KeepTheConfiguredNumberOfFiles)
{
    const QList<std::pair<QString, qsizetype>> cases{{QStringLiteral("0"), 1}, {QStringLiteral("-3"), 1},
        {QStringLiteral("1"), 1}, {QStringLiteral("7"), 7}, {QStringLiteral("500"), 200}, {QStringLiteral("200"), 200},
        {QStringLiteral("x"), 20}, {QStringLiteral(" 7"), 20}, {QString(), 20}};
    for (const auto &[stored, kept] : cases) {
        SCOPED_TRACE(stored.toStdString());
        const QString target = library.file(QStringLiteral("kept ") + stored);
        ASSERT_TRUE(QDir().mkpath(target));
        for (int i = 0; i < 205; ++i) {
            putFile(target + QStringLiteral("/%1.db").arg(i), "x");
        }
        set(QStringLiteral("maximumBackupFiles"), stored);

        const QString backup = backUp(target);

        EXPECT_EQ(QDir(target).entryList({QStringLiteral("*.db")}).size(), kept);
        EXPECT_TRUE(QFileInfo::exists(backup));
    }
}

TEST_F(Backups, KeepTwentyFilesUnlessToldOtherwise)
{
    for (int i = 0; i < 21; ++i) {
        backUp();
    }

    const QStringList left = QDir(folder()).entryList({QStringLiteral("*.db")});
    EXPECT_EQ(left.size(), 20);
    EXPECT_FALSE(left.contains(firstName)); // the oldest went, with its manifest
    EXPECT_FALSE(QFileInfo::exists(manifestOf(folder() + u'/' + firstName)));
    EXPECT_EQ(namesIn(folder()).size(), 40);
}

TEST(BackupRotationFailure, LeavesTheNewBackupVerifiedAndTheTimeUnnoted)
{
    // A folder from which nobody may take what is not his own.
    const QTemporaryDir shared;
    const QString foreign = shared.filePath(QStringLiteral("a.db"));
    QFile file(foreign);
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    file.close();
    const timespec longAgo[] = {{0, 0}, {0, 0}};
    ASSERT_EQ(::utimensat(AT_FDCWD, QFile::encodeName(foreign).constData(), longAgo, 0), 0);
    if (::geteuid() != 0) {
        GTEST_SKIP() << "only root can leave a file that another user may not remove";
    }
    const UnprivilegedUser nobody(shared.path());
    TestLibrary library;
    library.execute("INSERT INTO settings VALUES ('maximumBackupFiles', '1')");
    library.execute("INSERT INTO settings VALUES ('lastBackupAt', 'before')");
    ASSERT_EQ(::seteuid(0), 0);
    ASSERT_EQ(::chmod(QFile::encodeName(shared.path()).constData(), 01777), 0);
    ASSERT_EQ(::seteuid(65534), 0);

    const auto failure = thrownBy<FileError>([&] { await(library.store().backUpDatabase(shared.path())); });

    ASSERT_TRUE(failure);
    EXPECT_EQ(failure->path(), foreign);
    EXPECT_EQ(failure->code(), EPERM);
    const QString backup = library.scalar("SELECT value FROM settings WHERE key = 'lastKnownGoodBackup'").string({});
    EXPECT_EQ(FinishedBackup::condition(backup), Condition::Good);
    EXPECT_EQ(
        library.scalar("SELECT value FROM settings WHERE key = 'lastBackupAt'").string({}), QStringLiteral("before"));
}

// When one is due -------------------------------------------------------------------

TEST_F(Backups, AreDueWhenThereWasNone)
{
    const auto backup = backUpIfDue();

    ASSERT_TRUE(backup);
    EXPECT_EQ(*backup, folder() + u'/' + firstName);
    EXPECT_EQ(backUpIfDue(), std::nullopt); // and now there was one
}

TEST_F(Backups, AreDueAtExactlyTheAgeOfTheInterval)
{
    set(QStringLiteral("backupIntervalDays"), QStringLiteral("3"));
    backUp();

    library.clock().advance(72h - 1ms);
    EXPECT_EQ(backUpIfDue(), std::nullopt);
    library.clock().advance(1ms);
    EXPECT_TRUE(backUpIfDue());
}

TEST_F(Backups, AreDueByTheDayWhenTheIntervalIsUnreadable)
{
    for (const QString &days : {QStringLiteral("x"), QString(), QStringLiteral("0"), QStringLiteral("1")}) {
        SCOPED_TRACE(days.toStdString());
        set(QStringLiteral("backupIntervalDays"), days);
        backUp();
        library.clock().advance(24h - 1ms);
        EXPECT_EQ(backUpIfDue(), std::nullopt);
        library.clock().advance(1ms);
        EXPECT_TRUE(backUpIfDue());
    }
}

TEST_F(Backups, AreDueByWholeDaysOfAnIntervalInMinutes)
{
    set(QStringLiteral("backupIntervalMinutes"), QStringLiteral("2881"));
    backUp();

    library.clock().advance(48h - 1ms);
    EXPECT_EQ(backUpIfDue(), std::nullopt);
    library.clock().advance(1ms);
    EXPECT_TRUE(backUpIfDue());
}

TEST_F(Backups, AreNotDueWhileTheLastOneIsInTheFuture)
{
    backUp();
    library.clock().setNow(library.clock().now() - 1000h);

    EXPECT_EQ(backUpIfDue(), std::nullopt);
}

TEST_F(Backups, AreDueByTheNewestFileWhenTheTimeIsUnreadable)
{
    const QString backup = backUp();
    const auto at = [&](Instant moment) {
        const auto seconds = std::chrono::floor<std::chrono::seconds>(moment.time_since_epoch()).count();
        const timespec times[] = {{0, UTIME_OMIT}, {seconds, 0}};
        ASSERT_EQ(::utimensat(AT_FDCWD, QFile::encodeName(backup).constData(), times, 0), 0);
    };
    set(lastBackupAt, QStringLiteral("some day"));

    at(library.clock().now() - 23h);
    EXPECT_EQ(backUpIfDue(), std::nullopt);
    EXPECT_EQ(setting(lastBackupAt), QStringLiteral("2026-11-20T13:00:00.000Z")); // from now on it is known

    set(lastBackupAt, QString());
    at(library.clock().now() - 24h);
    EXPECT_TRUE(backUpIfDue());
}

TEST_F(Backups, OfAKnownTimeAreNotLookedForInTheFolder)
{
    backUp();
    ASSERT_TRUE(QDir(folder()).removeRecursively());

    EXPECT_EQ(backUpIfDue(), std::nullopt);
    EXPECT_EQ(setting(lastBackupAt), QStringLiteral("2026-11-21T12:00:00.000Z"));
}

// The second copy -------------------------------------------------------------------

namespace {

class ICloudBackups : public BackupTest
{
protected:
    ICloudBackups()
    {
        qputenv("QUIRE_LOG_PATH", QFile::encodeName(library.file(QStringLiteral("test.log"))));
        EXPECT_TRUE(QDir().mkpath(drive));
    }
    ~ICloudBackups() override { qunsetenv("QUIRE_LOG_PATH"); }

    QByteArray log() const { return bytesOf(library.file(QStringLiteral("test.log"))); }

    HomeFolder home{library.file(QStringLiteral("home"))};
    QString drive = library.file(QStringLiteral("home/Library/Mobile Documents/com~apple~CloudDocs/Apps"));
    QString copies = drive + QStringLiteral("/Quire/Database Backups");
};

} // namespace

TEST_F(ICloudBackups, AreCopiedWithTheirManifest)
{
    const QString backup = backUp();

    EXPECT_THAT(namesIn(copies), ElementsAre(firstName, manifestOf(firstName)));
    EXPECT_EQ(bytesOf(copies + u'/' + firstName), bytesOf(backup));
    EXPECT_EQ(FinishedBackup::condition(copies + u'/' + firstName), Condition::Good);
}

TEST_F(ICloudBackups, ReplaceWhatHasTheirName)
{
    ASSERT_TRUE(QDir().mkpath(copies));
    putFile(copies + u'/' + firstName, "old");
    putFile(copies + u'/' + manifestOf(firstName), "old");

    backUp();

    EXPECT_EQ(FinishedBackup::condition(copies + u'/' + firstName), Condition::Good);
}

TEST_F(ICloudBackups, ThatCannotBeCopiedInWholeLeaveNoPart)
{
    ASSERT_TRUE(QDir().mkpath(copies + u'/' + firstName + QStringLiteral("/in the way")));

    backUp();

    EXPECT_THAT(namesIn(copies), ElementsAre(firstName));
    EXPECT_TRUE(eventually([&] { return log().contains("Could not copy a database backup to iCloud: "); }));
}

TEST_F(ICloudBackups, AreRotatedAsWell)
{
    set(QStringLiteral("maximumBackupFiles"), QStringLiteral("2"));
    for (int i = 0; i < 4; ++i) {
        backUp();
    }

    EXPECT_EQ(QDir(copies).entryList({QStringLiteral("*.db")}).size(), 2);
    EXPECT_EQ(namesIn(copies).size(), 4);
}

TEST_F(ICloudBackups, AreNotMadeWithoutTheDrive)
{
    ASSERT_TRUE(QDir(library.file(QStringLiteral("home/Library"))).removeRecursively());

    backUp();

    EXPECT_THAT(namesIn(library.file(QStringLiteral("home"))), IsEmpty());
}

TEST_F(ICloudBackups, ThatFailAreToldToTheLogAlone)
{
    putFile(drive + QStringLiteral("/Quire"), "x");

    const QString backup = backUp();

    EXPECT_EQ(FinishedBackup::condition(backup), Condition::Good);
    EXPECT_NE(setting(lastBackupAt), std::nullopt);
    EXPECT_TRUE(eventually([&] {
        return log().contains("Could not copy a database backup to iCloud: Could not create the folder");
    })) << log().constData();
}
