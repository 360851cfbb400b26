#include "persistence/database/SQLiteDatabase.h"

#include "persistence/database/DatabaseError.h"
#include "testing/TestFiles.h"
#include "testing/ThrownFailure.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>

#include <gmock/gmock.h>

#include <thread>

using namespace quire;
using namespace quire::testing;
using Kind = DatabaseError::Kind;

namespace {

class SQLiteDatabaseTest : public ::testing::Test
{
protected:
    QString file(const QString &name) const { return m_folder.filePath(name); }

    void fill(const QString &name, const QByteArray &bytes) const { putFile(file(name), bytes); }

private:
    QTemporaryDir m_folder;
};

DatabaseError closed(Kind kind)
{
    return DatabaseError(kind, QStringLiteral("The database is closed."));
}

} // namespace

TEST_F(SQLiteDatabaseTest, AMissingFileIsCreatedUnlessReadOnly)
{
    const QString path = file(QStringLiteral("new.db"));
    EXPECT_EQ(thrownBy<DatabaseError>([&] { SQLiteDatabase database(path, true); }),
        DatabaseError(Kind::Open, QStringLiteral("unable to open database file")));
    EXPECT_FALSE(QFile::exists(path));
    SQLiteDatabase database(path);
    EXPECT_EQ(database.url(), path);
    EXPECT_TRUE(QFile::exists(path));
}

TEST_F(SQLiteDatabaseTest, AFolderIsNoDatabase)
{
    QDir().mkpath(file(QStringLiteral("folder")));
    EXPECT_EQ(thrownBy<DatabaseError>([&] { SQLiteDatabase database(file(QStringLiteral("folder"))); }),
        DatabaseError(Kind::Open, QStringLiteral("unable to open database file")));
}

TEST_F(SQLiteDatabaseTest, AReadOnlyConnectionCannotWrite)
{
    const QString path = file(QStringLiteral("a.db"));
    SQLiteDatabase(path).executeScript("CREATE TABLE t (x)");
    SQLiteDatabase reader(path, true);
    EXPECT_EQ(thrownBy<DatabaseError>([&] { reader.execute("INSERT INTO t VALUES (1)"); }),
        DatabaseError(Kind::Step, QStringLiteral("attempt to write a readonly database")));
}

TEST_F(SQLiteDatabaseTest, AFileOfAnotherKindFailsWhenItIsRead)
{
    const QByteArray garbage("This is not a database, but a text of some length.\n");
    fill(QStringLiteral("garbage.db"), garbage.repeated(100));
    SQLiteDatabase database(file(QStringLiteral("garbage.db")));
    EXPECT_EQ(thrownBy<DatabaseError>([&] { database.executeScript("CREATE TABLE t (x)"); }),
        DatabaseError(Kind::Execute, QStringLiteral("file is not a database")));
}

TEST_F(SQLiteDatabaseTest, EveryStorageClassComesBackAsItWent)
{
    SQLiteDatabase database(file(QStringLiteral("a.db")));
    database.executeScript("CREATE TABLE t (i, r, x, b, e, n)");
    const QByteArray bytes("\x00\xff\x00", 3);
    const QString words = QStringLiteral("Élan “Bücher” 本");
    EXPECT_EQ(database.execute("INSERT INTO t VALUES (?, ?, ?, ?, ?, ?)",
                  {std::numeric_limits<qint64>::min(), 0.1, words, bytes, QByteArray(), SQLiteValue()}),
        1);

    const auto rows = database.query("SELECT * FROM t");
    ASSERT_EQ(rows.size(), 1);
    EXPECT_EQ(rows[0].value(QStringLiteral("i")), SQLiteValue(std::numeric_limits<qint64>::min()));
    EXPECT_EQ(rows[0].value(QStringLiteral("r")), SQLiteValue(0.1));
    EXPECT_EQ(rows[0].value(QStringLiteral("x")), SQLiteValue(words));
    EXPECT_EQ(rows[0].value(QStringLiteral("b")), SQLiteValue(bytes));
    EXPECT_EQ(rows[0].value(QStringLiteral("e")), SQLiteValue(QByteArray()));
    EXPECT_EQ(rows[0].data(QStringLiteral("e")), std::nullopt);
    EXPECT_EQ(rows[0].value(QStringLiteral("n")), SQLiteValue());
    EXPECT_EQ(database.scalar("SELECT typeof(e) FROM t"), SQLiteValue(QStringLiteral("blob")));
}

TEST_F(SQLiteDatabaseTest, OfTwoColumnsOfOneNameTheLaterStands)
{
    const SQLiteDatabase database(file(QStringLiteral("a.db")));
    const auto rows = database.query("SELECT 1 AS a, 2 AS a, 3 AS b");
    ASSERT_EQ(rows.size(), 1);
    EXPECT_EQ(rows[0].size(), 2);
    EXPECT_EQ(rows[0].intValue(QStringLiteral("a")), 2);
}

TEST_F(SQLiteDatabaseTest, RowsComeInStepOrderAndScalarGivesTheFirst)
{
    const SQLiteDatabase database(file(QStringLiteral("a.db")));
    const char *const sql = "SELECT column1 AS n FROM (VALUES (3), (1), (2)) ORDER BY 1";
    const auto rows = database.query(sql);
    ASSERT_EQ(rows.size(), 3);
    EXPECT_EQ(rows[2].intValue(QStringLiteral("n")), 3);
    EXPECT_EQ(database.scalar(sql), SQLiteValue(1));
    EXPECT_EQ(database.scalar("SELECT 1 WHERE 0"), std::nullopt);
    EXPECT_EQ(database.scalar("SELECT NULL"), SQLiteValue());
}

TEST_F(SQLiteDatabaseTest, RowsAreHandedOverOneAtATimeInStepOrder)
{
    const SQLiteDatabase database(file(QStringLiteral("a.db")));
    QList<qint64> seen;
    const auto visit = [&seen](const SQLiteRow &row) {
        seen.append(row.intValue(QStringLiteral("x")).value_or(0));
        if (seen.size() == 2) {
            throw std::runtime_error("enough");
        }
    };
    EXPECT_THROW(database.forEachRow("SELECT 3 AS x UNION ALL SELECT 1 UNION ALL SELECT 2", visit), std::runtime_error);
    EXPECT_EQ(seen, QList<qint64>({3, 1}));
    EXPECT_EQ(database.scalar("SELECT 5"), SQLiteValue(5)); // and the connection is free again
}

TEST_F(SQLiteDatabaseTest, AValueBeyondTheMaximumLengthFailsWhateverReadsIt)
{
    const QString path = file(QStringLiteral("a.db"));
    SQLiteDatabase(path).executeScript("CREATE TABLE t (x, y); INSERT INTO t VALUES (zeroblob(2000), 'short')");
    SQLiteDatabase database(path);
    database.setMaximumLength(1000);
    EXPECT_EQ(thrownBy<DatabaseError>([&] { database.query("SELECT x FROM t"); }),
        DatabaseError(Kind::Step, QStringLiteral("string or blob too big")));
    EXPECT_EQ(database.scalar("SELECT y FROM t"), SQLiteValue(QStringLiteral("short")));
}

TEST_F(SQLiteDatabaseTest, AStatementEndsOnceItIsUnwanted)
{
    SQLiteDatabase database(file(QStringLiteral("a.db")));
    int questions = 0;
    database.interruptWhen([&questions] { return ++questions > 100; });
    constexpr auto endless = "WITH RECURSIVE n (x) AS (SELECT 1 UNION ALL SELECT x + 1 FROM n) SELECT MAX(x) FROM n";
    EXPECT_EQ(thrownBy<DatabaseError>([&] { database.scalar(endless); }),
        DatabaseError(Kind::Step, QStringLiteral("interrupted")));
    EXPECT_EQ(questions, 101);
}

TEST_F(SQLiteDatabaseTest, ExecuteTellsTheRowsChanged)
{
    SQLiteDatabase database(file(QStringLiteral("a.db")));
    database.executeScript("CREATE TABLE t (x); INSERT INTO t VALUES (1), (2), (3);");
    EXPECT_EQ(database.execute("UPDATE t SET x = x + 1 WHERE x > ?", {1}), 2);
    EXPECT_EQ(database.execute("DELETE FROM t WHERE x = 99"), 0);
}

TEST_F(SQLiteDatabaseTest, ExecuteOfAStatementWithRowsFails)
{
    SQLiteDatabase database(file(QStringLiteral("a.db")));
    EXPECT_EQ(thrownBy<DatabaseError>([&] { database.execute("SELECT 1"); })->kind(), Kind::Step);
}

TEST_F(SQLiteDatabaseTest, WhatCannotBePreparedFailsAsPrepare)
{
    SQLiteDatabase database(file(QStringLiteral("a.db")));
    const auto failure = thrownBy<DatabaseError>([&] { database.query("SELECT * FROM missing"); });
    EXPECT_EQ(failure, DatabaseError(Kind::Prepare, QStringLiteral("no such table: missing")));
    EXPECT_EQ(failure->description(), QStringLiteral("Could not prepare a database query: no such table: missing"));
    EXPECT_EQ(thrownBy<DatabaseError>([&] { database.execute("-- nothing"); })->kind(), Kind::Prepare);
}

TEST_F(SQLiteDatabaseTest, ATooLongListOfValuesFailsAsStep)
{
    SQLiteDatabase database(file(QStringLiteral("a.db")));
    EXPECT_EQ(thrownBy<DatabaseError>([&] {
        database.query("SELECT ?", {1, 2});
    }),
        DatabaseError(Kind::Step, QStringLiteral("column index out of range")));
}

TEST_F(SQLiteDatabaseTest, AFailureInTheMiddleOfAQueryDropsItsRows)
{
    SQLiteDatabase database(file(QStringLiteral("a.db")));
    const char *const sql = "SELECT abs(column1) FROM (VALUES (1), (-9223372036854775808))";
    const DatabaseError overflow(Kind::Step, QStringLiteral("integer overflow"));
    EXPECT_EQ(thrownBy<DatabaseError>([&] { database.query(sql); }), overflow);
    EXPECT_EQ(thrownBy<DatabaseError>([&] { database.scalar(sql); }), overflow) << "though the first row was good";
}

TEST_F(SQLiteDatabaseTest, AConstraintFailsAsStepAndLeavesTheConnectionUsable)
{
    SQLiteDatabase database(file(QStringLiteral("a.db")));
    database.executeScript("CREATE TABLE t (x UNIQUE); INSERT INTO t VALUES (1);");
    EXPECT_EQ(thrownBy<DatabaseError>([&] { database.execute("INSERT INTO t VALUES (1)"); }),
        DatabaseError(Kind::Step, QStringLiteral("UNIQUE constraint failed: t.x")));
    EXPECT_EQ(database.execute("INSERT INTO t VALUES (2)"), 1);
}

TEST_F(SQLiteDatabaseTest, AScriptStopsAtItsFirstFailure)
{
    SQLiteDatabase database(file(QStringLiteral("a.db")));
    EXPECT_EQ(thrownBy<DatabaseError>(
                  [&] { database.executeScript("CREATE TABLE a (x); CREATE TABEL b (x); CREATE TABLE c (x);"); }),
        DatabaseError(Kind::Execute, QStringLiteral("near \"TABEL\": syntax error")));
    EXPECT_EQ(database.scalar("SELECT group_concat(name) FROM sqlite_master"), SQLiteValue(QStringLiteral("a")));
}

TEST_F(SQLiteDatabaseTest, OnceClosedEveryOperationSaysSo)
{
    SQLiteDatabase database(file(QStringLiteral("a.db")));
    database.close();
    database.close();
    EXPECT_FALSE(database.isOpen());
    EXPECT_EQ(thrownBy<DatabaseError>([&] { database.executeScript("SELECT 1"); }), closed(Kind::Execute));
    EXPECT_EQ(thrownBy<DatabaseError>([&] { database.execute("SELECT 1"); }), closed(Kind::Prepare));
    EXPECT_EQ(thrownBy<DatabaseError>([&] { database.query("SELECT 1"); }), closed(Kind::Prepare));
    EXPECT_EQ(thrownBy<DatabaseError>([&] { database.scalar("SELECT 1"); }), closed(Kind::Prepare));
    EXPECT_EQ(thrownBy<DatabaseError>([&] { database.quickCheck(); }), closed(Kind::Prepare));
    EXPECT_EQ(thrownBy<DatabaseError>([&] { database.integrityCheck(); }), closed(Kind::Prepare));
}

TEST_F(SQLiteDatabaseTest, AWriterWaitsForAnotherToFinish)
{
    SQLiteDatabase first(file(QStringLiteral("a.db")));
    first.executeScript("CREATE TABLE t (x); BEGIN IMMEDIATE; INSERT INTO t VALUES (1);");
    std::thread other([&first] {
        std::this_thread::sleep_for(std::chrono::milliseconds(300));
        first.executeScript("COMMIT");
    });
    SQLiteDatabase second(file(QStringLiteral("a.db")));
    EXPECT_EQ(second.execute("INSERT INTO t VALUES (2)"), 1); // at once, this were "database is locked"
    other.join();
    EXPECT_EQ(second.scalar("PRAGMA busy_timeout"), SQLiteValue(5000));
}

TEST_F(SQLiteDatabaseTest, AnUndamagedFilePassesBothChecks)
{
    SQLiteDatabase database(file(QStringLiteral("a.db")));
    database.executeScript("CREATE TABLE t (x); INSERT INTO t VALUES (1);");
    EXPECT_TRUE(database.quickCheck());
    EXPECT_TRUE(database.integrityCheck());
}

TEST_F(SQLiteDatabaseTest, ACheckThatFindsSomethingIsFalseAndNoFailure)
{
    const QString path = file(QStringLiteral("a.db"));
    {
        SQLiteDatabase database(path);
        database.executeScript("CREATE TABLE t (x); INSERT INTO t VALUES (1), (2), (3); CREATE INDEX i ON t (x);");
    }
    QFile damaged(path);
    ASSERT_TRUE(damaged.open(QIODevice::ReadWrite));
    damaged.seek(2 * 4096 + 3); // the number of cells on the page of the index
    damaged.write(QByteArray("\x00\x02", 2));
    damaged.close();
    const SQLiteDatabase database(path);
    EXPECT_FALSE(database.integrityCheck());
    EXPECT_FALSE(database.quickCheck());
}

TEST_F(SQLiteDatabaseTest, ACheckThatCannotRunFails)
{
    SQLiteDatabase database(file(QStringLiteral("a.db")));
    database.executeScript("CREATE TABLE t (x); PRAGMA busy_timeout = 0;");
    SQLiteDatabase other(database.url());
    other.executeScript("BEGIN EXCLUSIVE");
    const DatabaseError locked(Kind::Step, QStringLiteral("database is locked"));
    EXPECT_EQ(thrownBy<DatabaseError>([&] { database.integrityCheck(); }), locked);
    EXPECT_EQ(thrownBy<DatabaseError>([&] { database.quickCheck(); }), locked);
}

TEST_F(SQLiteDatabaseTest, TheConnectionTrustsNothingInTheFile)
{
    SQLiteDatabase database(file(QStringLiteral("a.db")));
    EXPECT_EQ(database.scalar("PRAGMA trusted_schema"), SQLiteValue(0));
    EXPECT_EQ(database.scalar("PRAGMA cell_size_check"), SQLiteValue(1));
    EXPECT_EQ(database.scalar("PRAGMA mmap_size"), SQLiteValue(0));
    database.executeScript("CREATE TABLE t (x); PRAGMA writable_schema = ON;");
    EXPECT_EQ(thrownBy<DatabaseError>([&] { database.execute("DELETE FROM sqlite_master"); }),
        DatabaseError(Kind::Prepare, QStringLiteral("table sqlite_master may not be modified")));
}

TEST_F(SQLiteDatabaseTest, ACopyHoldsWhatWasCommitted)
{
    SQLiteDatabase source(file(QStringLiteral("a.db")));
    source.executeScript("PRAGMA journal_mode = WAL; CREATE TABLE t (x); INSERT INTO t VALUES (1);");
    source.executeScript("BEGIN IMMEDIATE; INSERT INTO t VALUES (2);");
    SQLiteDatabase::backUp(source.url(), file(QStringLiteral("copy.db")));
    source.executeScript("COMMIT");
    EXPECT_EQ(SQLiteDatabase(file(QStringLiteral("copy.db"))).scalar("SELECT count(*) FROM t"), SQLiteValue(1));
}

TEST_F(SQLiteDatabaseTest, ACopyReplacesWhatTheDestinationHeld)
{
    SQLiteDatabase(file(QStringLiteral("a.db"))).executeScript("CREATE TABLE new (x)");
    SQLiteDatabase(file(QStringLiteral("b.db"))).executeScript("CREATE TABLE old (x)");
    SQLiteDatabase::backUp(file(QStringLiteral("a.db")), file(QStringLiteral("b.db")));
    EXPECT_EQ(SQLiteDatabase(file(QStringLiteral("b.db"))).scalar("SELECT group_concat(name) FROM sqlite_master"),
        SQLiteValue(QStringLiteral("new")));
}

TEST_F(SQLiteDatabaseTest, ACopyTellsWhichEndCouldNotBeOpened)
{
    const QString present = file(QStringLiteral("a.db"));
    SQLiteDatabase(present).executeScript("CREATE TABLE t (x)");
    EXPECT_EQ(thrownBy<DatabaseError>(
                  [&] { SQLiteDatabase::backUp(file(QStringLiteral("none.db")), file(QStringLiteral("copy.db"))); }),
        DatabaseError(Kind::Backup, QStringLiteral("The source database could not be opened.")));
    EXPECT_FALSE(QFile::exists(file(QStringLiteral("copy.db"))));
    const auto failure
        = thrownBy<DatabaseError>([&] { SQLiteDatabase::backUp(present, file(QStringLiteral("no folder/copy.db"))); });
    EXPECT_EQ(failure, DatabaseError(Kind::Backup, QStringLiteral("The destination database could not be opened.")));
    EXPECT_EQ(failure->description(),
        QStringLiteral("Could not copy the Quire database: The destination database could not be opened."));
}

TEST_F(SQLiteDatabaseTest, ACopyOfAFileOfAnotherKindFails)
{
    fill(QStringLiteral("garbage.db"), QByteArray(8192, 'x'));
    const auto failure = thrownBy<DatabaseError>(
        [&] { SQLiteDatabase::backUp(file(QStringLiteral("garbage.db")), file(QStringLiteral("copy.db"))); });
    EXPECT_EQ(failure, DatabaseError(Kind::Backup, QStringLiteral("file is not a database")));
}
