#include "LineageTest.h"

#include "files/FileError.h"
#include "persistence/ConflictCopies.h"
#include "testing/UnprivilegedUser.h"

using namespace quire;
using namespace quire::testing;
using ::testing::StartsWith;

namespace {

class ConflictCopiesTest : public LineageTest
{
protected:
    void makeLibrary()
    {
        library.open();
        addBook(QStringLiteral("Ours"));
        library.close();
        bytes = bytesOf(library.databasePath());
    }

    QByteArray bytes;
};

} // namespace

TEST_F(ConflictCopiesTest, ACopyBesideTheLibraryStopsTheOpeningAndIsNamed)
{
    makeLibrary();
    const QString name = QStringLiteral("quire (Anna's conflicted copy 2026-11-20).db");
    putFile(library.file(name), bytes);
    const QStringList before = QDir(library.folder()).entryList(QDir::AllEntries | QDir::Hidden);

    const auto failure = refusal();

    EXPECT_EQ(failure, QuireReliabilityError::cloudConflictCopy(name));
    EXPECT_EQ(failure->description(),
        QStringLiteral("The cloud service created a conflicting Quire database named “%1”. Quire will not write until "
                       "the conflicting copies are reviewed.")
            .arg(name));
    EXPECT_EQ(bytesOf(library.file(name)), bytes);
    EXPECT_EQ(bytesOf(library.databasePath()), bytes);
    const QStringList kept = copies();
    ASSERT_EQ(kept.size(), 2);
    EXPECT_THAT(kept[0].toStdString(), StartsWith("Quire Cloud Conflict 2026-11-21T12-00-00.000Z "));
    EXPECT_THAT(kept[1].toStdString(), StartsWith("Quire Cloud Conflict Current 2026-11-21T12-00-00.000Z "));
    for (const QString &one : kept) {
        EXPECT_EQ(
            SQLiteDatabase(copy(one)).scalar("SELECT title FROM goodreads_books"), SQLiteValue(QStringLiteral("Ours")));
    }
}

TEST_F(ConflictCopiesTest, ItStopsTheOpeningUntilItHasGone)
{
    makeLibrary();
    const QString conflict = library.file(QStringLiteral("conflict.db"));
    putFile(conflict, bytes);
    refusal();
    refusal();
    QFile::remove(conflict);
    library.open();
    EXPECT_EQ(await(library.store().books()).size(), 1);
}

TEST_F(ConflictCopiesTest, OnlyTheTextOfTheNameCounts)
{
    makeLibrary();
    for (const char *name : {"quire.sync-conflict-20261120-101500-ABCDEFG.db", "quire_conflict-20261120-101500.db",
             "quire (conflicted copy 2026-11-20 101500).db", "quire (Case Conflict).DB", "My CONFLICT notes.Db",
             ".conflict.db", "Konflikt conflicts.db"}) {
        const QString path = library.file(QString::fromUtf8(name));
        putFile(path, "any bytes");
        EXPECT_EQ(refusal(), QuireReliabilityError::cloudConflictCopy(QString::fromUtf8(name)));
        QFile::remove(path);
    }
    QDir().mkpath(library.file(QStringLiteral("conflict folder.db")));
    EXPECT_EQ(refusal(), QuireReliabilityError::cloudConflictCopy(QStringLiteral("conflict folder.db")));
}

TEST_F(ConflictCopiesTest, OtherNamesAndOtherExtensionsAreNone)
{
    makeLibrary();
    for (const char *name : {"quire (conflicted copy).db.bak", "conflicted copy.db-wal", "conflict.txt", "conflict db",
             "conflict", "quire 2.db", "quire (1).db", "notes.db"}) {
        putFile(library.file(QString::fromUtf8(name)), bytes);
    }
    library.open();
    EXPECT_EQ(await(library.store().books()).size(), 1);
    EXPECT_TRUE(copies().isEmpty());
}

TEST_F(ConflictCopiesTest, NothingIsWrittenToTheFolderBeforeTheLease)
{
    const QTemporaryDir shared;
    putFile(shared.filePath(QStringLiteral("conflict.db")), "theirs");
    EXPECT_EQ(thrownBy<QuireReliabilityError>([&] {
        ConflictCopies::rejectCloudConflictCopies(
            shared.filePath(QStringLiteral("quire.db")), library.folder(), library.clock().now());
    }),
        QuireReliabilityError::cloudConflictCopy(QStringLiteral("conflict.db")));
    EXPECT_EQ(QDir(shared.path()).entryList(QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot),
        QStringList{QStringLiteral("conflict.db")});
    ASSERT_EQ(copies().size(), 1); // there is no library beside it
    EXPECT_EQ(bytesOf(copy(copies().first())), "theirs");
}

// Reading such a file through SQLite makes a log and an index beside it, which a
// sync service would carry to the other machine.
TEST_F(ConflictCopiesTest, NorIsAnythingWrittenBesideFilesThatWroteAhead)
{
    makeLibrary();
    SQLiteDatabase(library.databasePath()).executeScript("PRAGMA journal_mode = WAL");
    const QTemporaryDir shared;
    const QStringList names{QStringLiteral("conflict.db"), QStringLiteral("quire.db")};
    for (const QString &name : names) {
        ASSERT_TRUE(QFile::copy(library.databasePath(), shared.filePath(name)));
    }
    EXPECT_THROW(ConflictCopies::rejectCloudConflictCopies(
                     shared.filePath(QStringLiteral("quire.db")), library.folder(), library.clock().now()),
        QuireReliabilityError);
    EXPECT_EQ(QDir(shared.path()).entryList(QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot), names);
    ASSERT_EQ(copies().size(), 2);
    for (const QString &one : copies()) {
        EXPECT_EQ(
            SQLiteDatabase(copy(one)).scalar("SELECT title FROM goodreads_books"), SQLiteValue(QStringLiteral("Ours")));
    }
}

TEST_F(ConflictCopiesTest, AnOpeningThatStopsAtACopyTakesNoLease)
{
    putFile(library.file(QStringLiteral("conflict.db")), "theirs");
    refusal();
    EXPECT_FALSE(QFile::exists(library.file(QStringLiteral(".Quire Locks"))));
    EXPECT_FALSE(QFile::exists(library.databasePath()));
}

TEST_F(ConflictCopiesTest, ACopyThatCannotBeKeptStopsTheOpeningAllTheSame)
{
    makeLibrary();
    QDir(library.file(QStringLiteral("Recovery"))).removeRecursively();
    putFile(library.file(QStringLiteral("Recovery")), "in the way");
    putFile(library.file(QStringLiteral("conflict.db")), bytes);
    EXPECT_EQ(refusal(), QuireReliabilityError::cloudConflictCopy(QStringLiteral("conflict.db")));
}

TEST_F(ConflictCopiesTest, AFolderThatIsNotThereHasNone)
{
    ConflictCopies::rejectCloudConflictCopies(
        library.file(QStringLiteral("missing/quire.db")), library.folder(), library.clock().now());
    EXPECT_FALSE(QFile::exists(library.file(QStringLiteral("missing"))));
}

TEST_F(ConflictCopiesTest, AFolderThatCannotBeListedIsAFailure)
{
    const QString folder = library.file(QStringLiteral("closed"));
    QDir().mkpath(folder);
    QFile::setPermissions(folder, {});
    const UnprivilegedUser user(library.folder());
    EXPECT_EQ(thrownBy<FileError>([&] {
        ConflictCopies::rejectCloudConflictCopies(
            folder + QStringLiteral("/quire.db"), library.folder(), library.clock().now());
    })->path(),
        folder);
}
