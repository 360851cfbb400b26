#include "persistence/BackupVerification.h"

#include "persistence/BackupTest.h"
#include "persistence/database/DatabaseError.h"
#include "persistence/LiveLibrary.h"
#include "persistence/QuireCredentialStore.h"
#include "reliability/FinishedBackup.h"
#include "testing/ThrownFailure.h"

#include <QFileInfo>

using namespace quire;
using namespace quire::testing;

namespace {

// A copy of the library and a connection to it that stands in for the store's.
class BackupVerificationTest : public BackupTest
{
protected:
    BackupVerificationTest()
    {
        library.close();
        SQLiteDatabase::backUp(library.databasePath(), copy);
    }

    QuireBackupManifest verify() { return BackupVerification::verify(copy, live); }

    void expectFailure(const QString &text)
    {
        EXPECT_EQ(thrownBy<DatabaseError>([&] { verify(); }), DatabaseError(DatabaseError::Kind::Backup, text));
        EXPECT_FALSE(QFileInfo::exists(copy + QStringLiteral(".manifest.json")));
        // Closed: nobody holds a lock on it, and it may be removed and read.
        SQLiteDatabase(copy).executeScript("BEGIN EXCLUSIVE; ROLLBACK;");
    }

    void change(const char *sql) { SQLiteDatabase(copy).executeScript(sql); }

    QString copy = library.file(QStringLiteral("copy.db"));
    SQLiteDatabase database{library.databasePath()};
    QuireCredentialStore credentials{library.file(QStringLiteral("Credentials.plist"))};
    LiveLibrary live{database, credentials, library.folder(), library.clock()};
};

constexpr auto countMessage = "The reopened backup record counts do not match the live library.";
constexpr auto contentMessage = "The reopened backup does not hold what the live library holds.";

} // namespace

TEST_F(BackupVerificationTest, DescribesAGoodCopy)
{
    const auto manifest = verify();

    EXPECT_EQ(QuireBackupManifest::read(copy + QStringLiteral(".manifest.json")), manifest);
    EXPECT_EQ(FinishedBackup::condition(copy), FinishedBackup::Condition::Good);
}

TEST_F(BackupVerificationTest, RefusesAnotherLibrarysFileByItsCounts)
{
    TestLibrary other;
    ASSERT_TRUE(QFile::remove(copy));
    SQLiteDatabase::backUp(other.databasePath(), copy);

    expectFailure(QString::fromUtf8(countMessage));
}

TEST_F(BackupVerificationTest, RefusesATitleTooManyOrTooFew)
{
    change("DELETE FROM audible_books");
    expectFailure(QString::fromUtf8(countMessage));
    change("INSERT INTO audible_books (asin) VALUES ('B1'), ('B2')");
    expectFailure(QString::fromUtf8(countMessage));
}

TEST_F(BackupVerificationTest, RefusesAFileThatIsNoDatabase)
{
    putFile(copy, QByteArray(8192, 'x'));
    const auto failure = thrownBy<DatabaseError>([&] { verify(); });
    EXPECT_EQ(failure, DatabaseError(DatabaseError::Kind::Backup, QStringLiteral("file is not a database")));
}

TEST_F(BackupVerificationTest, RefusesAFileOfNoBytesAndAMissingOne)
{
    putFile(copy, {});
    expectFailure(QStringLiteral("The backup is missing one or more required tables."));
    ASSERT_TRUE(QFile::remove(copy));
    expectFailure(QStringLiteral("The backup is missing one or more required tables."));
}

TEST_F(BackupVerificationTest, RefusesACopyWithoutAnyOneOfTheRequiredTables)
{
    for (const char *table : {"goodreads_books", "audible_books", "settings", "library_metadata", "field_provenance",
             "background_job_history"}) {
        SCOPED_TRACE(table);
        ASSERT_TRUE(QFile::remove(copy));
        SQLiteDatabase::backUp(library.databasePath(), copy);
        const QByteArray sql = QByteArray("DROP TABLE ") + table;
        change(sql.constData());
        expectFailure(QStringLiteral("The backup is missing one or more required tables."));
    }
}

TEST_F(BackupVerificationTest, RefusesAViewInPlaceOfATable)
{
    change("ALTER TABLE settings RENAME TO elsewhere; CREATE VIEW settings AS SELECT * FROM elsewhere");

    expectFailure(QStringLiteral("The backup is missing one or more required tables."));
}

TEST_F(BackupVerificationTest, RefusesOtherContentOfTheSameCounts)
{
    for (const char *sql : {"UPDATE goodreads_books SET notes = 'x' WHERE id = 2",
             "UPDATE goodreads_books SET cover_data = x'00' WHERE id = 3",
             "INSERT INTO book_tags (book_id, tag) VALUES (1, 't')",
             "UPDATE goodreads_books SET title = CAST(x'FF' AS TEXT) WHERE id = 1",
             "INSERT INTO settings VALUES ('a', 'b')", "CREATE TABLE more (a)", "DROP INDEX idx_audible_asin"}) {
        SCOPED_TRACE(sql);
        ASSERT_TRUE(QFile::remove(copy));
        SQLiteDatabase::backUp(library.databasePath(), copy);
        change(sql);
        expectFailure(QString::fromUtf8(contentMessage));
    }
}

TEST_F(BackupVerificationTest, TellsTextsApartThatAreBothNoText)
{
    database.executeScript("UPDATE goodreads_books SET title = CAST(x'FE' AS TEXT) WHERE id = 1");
    ASSERT_TRUE(QFile::remove(copy));
    SQLiteDatabase::backUp(library.databasePath(), copy);
    EXPECT_NO_THROW(verify());
    ASSERT_TRUE(QFile::remove(copy + QStringLiteral(".manifest.json")));

    change("UPDATE goodreads_books SET title = CAST(x'FF' AS TEXT) WHERE id = 1");

    expectFailure(QString::fromUtf8(contentMessage));
}

TEST_F(BackupVerificationTest, TakesAGenerationThatCannotBeReadForZero)
{
    database.executeScript("UPDATE library_metadata SET generation = x'00'");
    ASSERT_TRUE(QFile::remove(copy));
    SQLiteDatabase::backUp(library.databasePath(), copy);

    EXPECT_EQ(verify().generation, 0);
}

TEST_F(BackupVerificationTest, FailsWhenASideFileCannotBeRemoved)
{
    const QString sideFile = copy + QStringLiteral("-shm");
    ASSERT_TRUE(QDir().mkpath(sideFile + QStringLiteral("/full")));

    const auto failure = thrownBy<DatabaseError>([&] { verify(); });

    EXPECT_EQ(failure,
        DatabaseError(DatabaseError::Kind::Backup,
            QStringLiteral("Could not remove the file “%1”: Directory not empty").arg(sideFile)));
}

TEST_F(BackupVerificationTest, FailsWhenTheManifestCannotBeWritten)
{
    const QString manifest = copy + QStringLiteral(".manifest.json");
    ASSERT_TRUE(QDir().mkpath(manifest + QStringLiteral("/full")));

    const auto failure = thrownBy<DatabaseError>([&] { verify(); });

    ASSERT_TRUE(failure);
    EXPECT_EQ(failure->kind(), DatabaseError::Kind::Backup);
    EXPECT_TRUE(failure->text().startsWith(QStringLiteral("Could not write the file “%1”").arg(manifest)));
}

TEST_F(BackupVerificationTest, LeavesOneFileOfAWriteAheadCopy)
{
    change("PRAGMA journal_mode = WAL");
    SQLiteDatabase holder(copy); // keeps the side files
    holder.executeScript("PRAGMA wal_checkpoint");
    holder.close();

    verify();

    EXPECT_FALSE(QFileInfo::exists(copy + QStringLiteral("-wal")));
    EXPECT_FALSE(QFileInfo::exists(copy + QStringLiteral("-shm")));
    EXPECT_EQ(bytesOf(copy).mid(18, 2).toHex(), "0101");
}
