// The library's file is moved, replaced or removed under the open store: nothing
// that is written from then on is told to be saved, unless it is in the file that
// stands in the library's place.

#include "faults/Deeds.h"
#include "faults/Torture.h"
#include "persistence/database/DatabaseError.h"
#include "persistence/database/SQLiteDatabase.h"
#include "persistence/database/SQLiteStatement.h"
#include "persistence/database/Transaction.h"
#include "testing/ThrownFailure.h"

#include <QFile>

#include <gmock/gmock.h>

#include <cstdio>

using namespace quire;
using namespace quire::testing;

namespace {

enum class Move { Rename, Remove, Replace, ReplaceByItself };

constexpr Move allMoves[] = {Move::Rename, Move::Remove, Move::Replace, Move::ReplaceByItself};

QString pathOf(const FaultBench &bench)
{
    return bench.folder() + QStringLiteral("/quire.db");
}

// As a sync service or a reader does it, behind the program's back.
void make(Move move, const FaultBench &bench)
{
    const QString path = pathOf(bench);
    const QString aside = bench.outside(QStringLiteral("aside.db"));
    const QString incoming = bench.outside(QStringLiteral("incoming.db"));
    QFile::remove(aside);
    QFile::remove(incoming);
    switch (move) {
    case Move::Rename:
        ASSERT_TRUE(QFile::rename(path, aside));
        return;
    case Move::Remove:
        ASSERT_TRUE(QFile::remove(path));
        return;
    case Move::Replace:
    case Move::ReplaceByItself:
        writeFolder(bench.outside({}),
            {{QStringLiteral("incoming.db"), filledLibrary(bench.place()).value(QStringLiteral("quire.db"))}});
        ASSERT_EQ(std::rename(QFile::encodeName(incoming).constData(), QFile::encodeName(path).constData()), 0);
        return;
    }
}

void refuseEveryDeedAfter(Place place, Move move, Torture &torture)
{
    FaultBench bench(place);
    for (const Deed &deed : allDeeds(place)) {
        if (deed.kind != Deed::Kind::Edit || qstrcmp(deed.name, "reload") == 0) {
            continue;
        }
        // Of the moves of a library one begins with the file at `place` and copies it.
        if (qstrcmp(deed.row, "R15") == 0 && qstrcmp(deed.name, "move to a chosen folder") != 0) {
            continue;
        }
        bench.reset(deed.start);
        bench.open();
        make(move, bench);
        torture.addRounds();
        try {
            deed.run(bench.store());
            torture.addFinding(QStringLiteral("%1 was told to be saved, after move %2")
                                   .arg(QLatin1String(deed.name), QString::number(int(move))));
        } catch (const DatabaseError &failure) {
            EXPECT_EQ(failure.description(),
                QStringLiteral("Could not update the Quire database: The library file was moved, replaced or removed "
                               "while it was open."))
                << deed.name;
        }
    }
}

void refuseEverything(Place place)
{
    Torture torture("R13", "the file is moved, replaced or removed");
    for (const Move move : allMoves) {
        refuseEveryDeedAfter(place, move, torture);
    }
}

class OpenDatabase
{
public:
    explicit OpenDatabase(const QString &path)
        : m_database(path)
    {
        m_database.executeScript("CREATE TABLE notes (text TEXT)");
    }

    SQLiteDatabase *operator->() { return &m_database; }
    SQLiteDatabase &operator*() { return m_database; }

private:
    SQLiteDatabase m_database;
};

} // namespace

TEST(FileReplaced, NothingIsToldToBeSavedInTheDefaultFolder)
{
    refuseEverything(Place::DefaultFolder);
}

TEST(FileReplaced, NothingIsToldToBeSavedInAChosenFolder)
{
    refuseEverything(Place::ChosenFolder);
}

TEST(FileReplaced, WhenItIsBackInItsPlaceTheStoreWritesAgain)
{
    FaultBench bench(Place::ChosenFolder);
    bench.open();
    const QString aside = bench.outside(QStringLiteral("aside.db"));
    ASSERT_TRUE(QFile::rename(pathOf(bench), aside));
    thrownBy<DatabaseError>([&] { done(bench.store().setSetting(QStringLiteral("a"), QStringLiteral("b"))); });
    ASSERT_TRUE(QFile::rename(aside, pathOf(bench)));
    done(bench.store().setSetting(QStringLiteral("a"), QStringLiteral("c")));
    bench.close();
    EXPECT_THAT(
        bench.content().rows.value(QStringLiteral("settings")), ::testing::Contains(QStringLiteral("key=a, value=c")));
}

TEST(FileReplaced, AMoveInTheMiddleOfATransactionIsSeenAtItsCommit)
{
    for (const char *journal : {"DELETE", "WAL"}) {
        const QTemporaryDir folder;
        const QString path = folder.filePath(QStringLiteral("library.db"));
        OpenDatabase database(path);
        database->executeScript(QByteArray("PRAGMA journal_mode = ") + journal);
        const auto write = [&] {
            inTransaction(*database, [&] {
                database->execute("INSERT INTO notes VALUES ('lost')");
                QFile::rename(path, folder.filePath(QStringLiteral("elsewhere.db")));
            });
        };
        EXPECT_EQ(thrownBy<DatabaseError>(write)->kind(), DatabaseError::Kind::Execute) << journal;
    }
}

// Through a link to its folder, a library is where it was.
TEST(FileReplaced, ALibraryThatIsReachedThroughALinkIsInItsPlace)
{
    const QTemporaryDir folder;
    ASSERT_TRUE(QFile::link(folder.path(), folder.filePath(QStringLiteral("link"))));
    OpenDatabase database(folder.filePath(QStringLiteral("link/library.db")));
    EXPECT_EQ(database->execute("INSERT INTO notes VALUES ('kept')"), 1);
    inTransaction(*database, [&] { database->execute("INSERT INTO notes VALUES ('kept')"); });
}

TEST(FileReplaced, ALibraryInMemoryIsInItsPlace)
{
    OpenDatabase database(QStringLiteral(":memory:"));
    EXPECT_EQ(database->execute("INSERT INTO notes VALUES ('kept')"), 1);
}

// The control: what SQLite itself says about a file that is gone.
TEST(FileReplaced, AWriteThatDoesNotLookIsToldToBeSaved)
{
    const QTemporaryDir folder;
    const QString path = folder.filePath(QStringLiteral("library.db"));
    OpenDatabase database(path);
    database->executeScript("PRAGMA journal_mode = WAL");
    SQLiteStatement insert(*database, "INSERT INTO notes VALUES ('a note')");
    EXPECT_EQ(insert.run(), 1);
    ASSERT_TRUE(QFile::remove(path));
    EXPECT_EQ(insert.run(), 1);
}
