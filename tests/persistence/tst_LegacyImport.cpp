#include "files/FileError.h"
#include "persistence/AppDirectories.h"
#include "persistence/BaseSchema.h"
#include "persistence/database/DatabaseError.h"
#include "persistence/database/SQLiteDatabase.h"
#include "persistence/LegacyImport.h"
#include "persistence/LibraryStore.h"
#include "testing/Await.h"
#include "testing/ManualClock.h"
#include "testing/OwnDataDirectory.h"
#include "testing/ThrownFailure.h"
#include "testing/UnprivilegedUser.h"

#include <QDir>

#include <gmock/gmock.h>

#include <sys/stat.h>

using namespace quire;
using namespace quire::testing;
using Kind = DatabaseError::Kind;

namespace {

void fill(const QString &path, const QByteArray &bytes)
{
    QDir().mkpath(QFileInfo(path).path());
    QFile file(path);
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    file.write(bytes);
}

QByteArray bytesOf(const QString &path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

// The data directory of a reader who may have used the older program.
class LegacyImportTest : public ::testing::Test
{
protected:
    // A library of the older program: the first schema, without a version.
    void makeLegacyLibrary(const char *journalMode = "DELETE")
    {
        QDir().mkpath(books);
        SQLiteDatabase database(books + QStringLiteral("/books.db"));
        database.executeScript(QByteArray("PRAGMA journal_mode = ") + journalMode);
        BaseSchema::create(database);
        database.execute("INSERT INTO goodreads_books (goodreads_id, title) VALUES ('1', 'Preserved')");
    }

    std::unique_ptr<LibraryStore> store(bool imports = true) const
    {
        return std::make_unique<LibraryStore>(clock, std::nullopt, imports);
    }

    QStringList titles() const
    {
        QStringList result;
        for (const SQLiteRow &row : SQLiteDatabase(url).query("SELECT title FROM goodreads_books")) {
            result.append(row.string(QStringLiteral("title"), {}));
        }
        return result;
    }

    QString file(const QString &name) const { return supportDirectory + QStringLiteral("/") + name; }
    QStringList names(const QString &folder) const
    {
        return QDir(folder).entryList(QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot);
    }

    const OwnDataDirectory data;
    const ManualClock clock;
    const QString books = AppDirectories::legacyBooksSupportDirectory() + QStringLiteral("/Books");
    const QString supportDirectory = AppDirectories::supportDirectory();
    const QString url = file(QStringLiteral("quire.db"));
    const QStringList preserved{QStringLiteral("Preserved")};
};

} // namespace

TEST_F(LegacyImportTest, AFirstLaunchTakesTheLibraryOverAtThePresentSchema)
{
    makeLegacyLibrary();
    const QByteArray before = bytesOf(books + QStringLiteral("/books.db"));
    const auto opened = store();
    await(opened->prepare(false));
    EXPECT_EQ(await(opened->books()).value(0).title, QStringLiteral("Preserved"));
    await(opened->shutdown());
    EXPECT_EQ(SQLiteDatabase(url).scalar("PRAGMA user_version"), SQLiteValue(2));
    EXPECT_EQ(bytesOf(books + QStringLiteral("/books.db")), before);
    EXPECT_EQ(names(books), QStringList{QStringLiteral("books.db")});
    EXPECT_FALSE(QFile::exists(file(QStringLiteral("deploy"))));
    EXPECT_TRUE(names(supportDirectory).filter(QStringLiteral("importing")).isEmpty());
}

TEST_F(LegacyImportTest, ALibraryThatWritesAheadIsTakenOverWithWhatItsLogHolds)
{
    makeLegacyLibrary("WAL");
    SQLiteDatabase running(books + QStringLiteral("/books.db"));
    running.execute("INSERT INTO goodreads_books (goodreads_id, title) VALUES ('2', 'In the log')");
    ASSERT_GT(QFileInfo(books + QStringLiteral("/books.db-wal")).size(), 0);
    const QByteArray before = bytesOf(books + QStringLiteral("/books.db-wal"));
    await(store()->prepare(false));
    EXPECT_EQ(titles(), (QStringList{QStringLiteral("Preserved"), QStringLiteral("In the log")}));
    EXPECT_EQ(bytesOf(books + QStringLiteral("/books.db-wal")), before);
}

TEST_F(LegacyImportTest, TheNoteTellsTheMomentAndThatBothLibrariesAreApart)
{
    makeLegacyLibrary();
    await(store()->prepare(false));
    EXPECT_EQ(QString::fromUtf8(bytesOf(file(QStringLiteral("Quire Import.txt")))),
        QStringLiteral("Quire created this isolated database from the preserved Books library on %1.\n"
                       "Changes made in Quire do not change the preserved Books database.")
            .arg(QStringLiteral("2026-11-21T12:00:00.000Z")));
}

TEST_F(LegacyImportTest, ThePublishedSiteIsKept)
{
    makeLegacyLibrary();
    fill(books + QStringLiteral("/deploy/.site-id"), "site-7\n");
    await(store()->prepare(false));
    EXPECT_EQ(bytesOf(file(QStringLiteral("deploy/.site-id"))), "site-7\n");
}

TEST_F(LegacyImportTest, AnExistingLibraryIsNeverReplaced)
{
    await(store(false)->prepare(false)); // as an earlier launch made it
    makeLegacyLibrary();
    await(store()->prepare(false));
    EXPECT_TRUE(titles().isEmpty());
    EXPECT_FALSE(QFile::exists(file(QStringLiteral("Quire Import.txt"))));
}

TEST_F(LegacyImportTest, TheLibraryIsTakenOverOnce)
{
    makeLegacyLibrary();
    await(store()->prepare(false));
    SQLiteDatabase(books + QStringLiteral("/books.db")).executeScript("UPDATE goodreads_books SET title = 'Later'");
    await(store()->prepare(false));
    EXPECT_EQ(titles(), preserved);
}

TEST_F(LegacyImportTest, AStoreThatIsNotToldToImportDoesNot)
{
    makeLegacyLibrary();
    await(store(false)->prepare(false));
    EXPECT_TRUE(titles().isEmpty());
}

TEST_F(LegacyImportTest, WithoutALegacyLibraryNothingIsNoted)
{
    fill(books + QStringLiteral("/deploy/.site-id"), "site-7");
    fill(AppDirectories::legacyBooksSupportDirectory() + QStringLiteral("/books.db"), "one folder too high");
    await(store()->prepare(false));
    EXPECT_TRUE(titles().isEmpty());
    EXPECT_FALSE(QFile::exists(file(QStringLiteral("Quire Import.txt"))));
    EXPECT_FALSE(QFile::exists(file(QStringLiteral("deploy"))));
}

TEST_F(LegacyImportTest, ADamagedLibraryIsRefusedAndTheNextStartTriesAgain)
{
    makeLegacyLibrary();
    const QString source = books + QStringLiteral("/books.db");
    const QByteArray whole = bytesOf(source);
    const qint64 page = SQLiteDatabase(source)
                            .scalar("SELECT rootpage FROM sqlite_master WHERE name = 'goodreads_books'")
                            ->intValue()
                            .value();
    QByteArray damaged = whole;
    damaged[(page - 1) * 4096 + 5] = '\xff'; // where the content of the page begins
    damaged[(page - 1) * 4096 + 6] = '\xff';
    fill(source, damaged);
    const auto opened = store();
    EXPECT_EQ(thrownBy<DatabaseError>([&] { await(opened->prepare(false)); }),
        DatabaseError(Kind::Backup, QStringLiteral("The imported Books database failed its integrity check.")));
    EXPECT_FALSE(names(supportDirectory).join(u' ').contains(QStringLiteral("quire.db")));
    EXPECT_EQ(bytesOf(source), damaged);
    EXPECT_FALSE(QFile::exists(file(QStringLiteral("Quire Import.txt"))));

    fill(source, whole);
    await(opened->prepare(false));
    EXPECT_EQ(await(opened->books()).size(), 1);
}

TEST_F(LegacyImportTest, WhatIsNoDatabaseIsRefusedAndLeavesNothing)
{
    fill(books + QStringLiteral("/books.db"), QByteArray("Not a library at all. ").repeated(1'000));
    EXPECT_EQ(thrownBy<DatabaseError>([&] { await(store()->prepare(false)); })->kind(), Kind::Backup);
    EXPECT_FALSE(names(supportDirectory).join(u' ').contains(QStringLiteral("quire.db")));
}

TEST_F(LegacyImportTest, AFolderInThePlaceOfTheLibraryIsRefused)
{
    QDir().mkpath(books + QStringLiteral("/books.db"));
    EXPECT_EQ(thrownBy<DatabaseError>([&] { await(store()->prepare(false)); }),
        DatabaseError(Kind::Backup, QStringLiteral("The source database could not be opened.")));
    EXPECT_FALSE(QFile::exists(url));
}

TEST_F(LegacyImportTest, ACopyThatACrashLeftUnfinishedIsMadeAnew)
{
    makeLegacyLibrary();
    fill(url + QStringLiteral(".importing"), "half a page");
    fill(url + QStringLiteral(".importing-journal"), "half a journal");
    await(store()->prepare(false));
    EXPECT_EQ(titles(), preserved);
    EXPECT_TRUE(names(supportDirectory).filter(QStringLiteral("importing")).isEmpty());
}

TEST_F(LegacyImportTest, ASiteThatCannotBeCopiedIsAFileFailure)
{
    makeLegacyLibrary();
    fill(books + QStringLiteral("/deploy/.site-id"), "site-7");
    fill(file(QStringLiteral("deploy")), "a file in the way");
    EXPECT_EQ(thrownBy<FileError>([&] { await(store()->prepare(false)); })->path(), file(QStringLiteral("deploy")));
    await(store()->prepare(false)); // the library itself is there
    EXPECT_EQ(titles(), preserved);
}

TEST_F(LegacyImportTest, ASiteThatCannotBeReadIsAFileFailureAndNotAnEmptyOne)
{
    makeLegacyLibrary();
    const QString site = books + QStringLiteral("/deploy/.site-id");
    fill(site, "site-7");
    for (const QString &folder : {books, QString(books + QStringLiteral("/deploy")), supportDirectory}) {
        QDir().mkpath(folder);
        ::chmod(QFile::encodeName(folder).constData(), 0777);
    }
    ::chmod(QFile::encodeName(data.file(QStringLiteral("Books"))).constData(), 0755);
    ::chmod(QFile::encodeName(site).constData(), 0000);
    {
        const UnprivilegedUser user(data.path());
        EXPECT_EQ(thrownBy<FileError>([&] { await(store()->prepare(false)); })->path(), site);
    }
    EXPECT_FALSE(QFile::exists(file(QStringLiteral("deploy/.site-id"))));
}
