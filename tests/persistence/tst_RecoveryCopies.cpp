#include "LineageTest.h"

#include "files/FileError.h"
#include "persistence/LibraryFile.h"
#include "persistence/RecoveryCopies.h"

#include <sys/stat.h>

using namespace quire;
using namespace quire::testing;
using LibraryFile::Content;
using LibraryFile::contentOf;

namespace {

class RecoveryCopiesTest : public LineageTest
{
protected:
    QString preserve(const QString &reason = QStringLiteral("Cloud Rollback"))
    {
        return RecoveryCopies::preserveDatabaseForRecovery(
            library.databasePath(), reason, library.folder(), library.clock().now());
    }
};

} // namespace

TEST_F(RecoveryCopiesTest, TheCopyIsNamedByReasonAndMomentAndNeverTwiceTheSame)
{
    putFile(library.databasePath(), "any");
    const QString one = preserve(QStringLiteral("Cloud/Conflict/"));
    EXPECT_THAT(one.toStdString(),
        ::testing::StartsWith(
            library.file(QStringLiteral("Recovery/Quire Cloud-Conflict- 2026-11-21T12-00-00.000Z ")).toStdString()));
    EXPECT_NE(preserve(QStringLiteral("Cloud/Conflict/")), one);
    EXPECT_EQ(copies().size(), 2);
}

TEST_F(RecoveryCopiesTest, ALibraryIsCopiedWithWhatItsLogHolds)
{
    library.open();
    library.close();
    SQLiteDatabase database(library.databasePath());
    database.executeScript("PRAGMA journal_mode = WAL; INSERT INTO settings VALUES ('inTheLog', 'yes');");
    database.setFoldsLogOnClose(false);
    database.close();
    EXPECT_EQ(SQLiteDatabase(preserve()).scalar("SELECT value FROM settings WHERE key = 'inTheLog'"),
        SQLiteValue(QStringLiteral("yes")));
}

TEST_F(RecoveryCopiesTest, ALogThatCameWithoutItsIndexIsCopiedAsWell)
{
    library.open();
    library.close();
    {
        SQLiteDatabase database(library.databasePath());
        database.executeScript("PRAGMA journal_mode = WAL; INSERT INTO settings VALUES ('inTheLog', 'yes');");
        database.setFoldsLogOnClose(false);
    }
    const QString index = library.databasePath() + QStringLiteral("-shm");
    QFile::remove(index);
    const QString copy = preserve();
    EXPECT_FALSE(QFile::exists(index));
    EXPECT_EQ(SQLiteDatabase(copy).scalar("SELECT value FROM settings WHERE key = 'inTheLog'"),
        SQLiteValue(QStringLiteral("yes")));
}

TEST_F(RecoveryCopiesTest, WhatSQLiteCannotReadIsCopiedByteForByte)
{
    library.open();
    library.close();
    QByteArray torn = bytesOf(library.databasePath());
    torn.replace(16, 40, QByteArray(40, '\x7f')); // a page size that no library has
    putFile(library.databasePath(), torn);
    putFile(library.databasePath() + QStringLiteral("-journal"), "half a journal");
    const QString copy = preserve();
    EXPECT_EQ(bytesOf(copy), torn);
    EXPECT_EQ(bytesOf(copy + QStringLiteral("-journal")), "half a journal");
    EXPECT_EQ(bytesOf(library.databasePath()), torn);
}

TEST_F(RecoveryCopiesTest, WhatCannotBeCopiedAtAllIsAFailure)
{
    EXPECT_EQ(thrownBy<FileError>([this] { preserve(); })->path(), library.databasePath());
    QDir().mkpath(library.databasePath());
    EXPECT_EQ(thrownBy<FileError>([this] { preserve(); })->path(), library.databasePath());
    EXPECT_TRUE(copies().isEmpty());
}

TEST_F(RecoveryCopiesTest, AFilesFirstBytesTellWhatItHolds)
{
    const QString path = library.databasePath();
    EXPECT_EQ(contentOf(path), Content::Missing);
    library.open();
    library.close();
    EXPECT_EQ(contentOf(path), Content::Database);
    const QByteArray whole = bytesOf(path);
    putFile(path, whole.left(512));
    EXPECT_EQ(contentOf(path), Content::Database); // torn, but SQLite's to tell
    for (const QByteArray &bytes : {QByteArray(), whole.left(16), whole.left(511), QByteArray(4096, '\0')}) {
        putFile(path, bytes);
        EXPECT_EQ(contentOf(path), Content::NoDatabase);
    }
    QFile::remove(path);
    QDir().mkpath(path);
    EXPECT_EQ(contentOf(path), Content::Unknown);
    QDir().rmdir(path);
    ASSERT_EQ(::mkfifo(QFile::encodeName(path).constData(), 0600), 0);
    EXPECT_EQ(contentOf(path), Content::Unknown);
}
