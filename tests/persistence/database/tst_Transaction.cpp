#include "persistence/database/Transaction.h"

#include "persistence/database/DatabaseError.h"
#include "persistence/database/SQLiteStatement.h"
#include "testing/ThrownFailure.h"

#include <QTemporaryDir>

#include <gmock/gmock.h>

#include <stdexcept>

using namespace quire;
using namespace quire::testing;
using Kind = DatabaseError::Kind;

namespace {

class TransactionTest : public ::testing::Test
{
    QTemporaryDir m_folder;

protected:
    TransactionTest() { m_database.executeScript("CREATE TABLE t (x)"); }

    qint64 rows() { return SQLiteDatabase(m_database.url()).scalar("SELECT count(*) FROM t")->intValue().value(); }

    SQLiteDatabase m_database{m_folder.filePath(QStringLiteral("a.db"))};
};

} // namespace

TEST_F(TransactionTest, CommitsTheWorkAndGivesItsResult)
{
    EXPECT_EQ(inTransaction(m_database, [&] { return m_database.execute("INSERT INTO t VALUES (1), (2)"); }), 2);
    EXPECT_EQ(rows(), 2);
}

TEST_F(TransactionTest, RollsBackWhenItIsLeftWithoutACommit)
{
    {
        const Transaction transaction(m_database);
        m_database.execute("INSERT INTO t VALUES (1)");
    }
    EXPECT_EQ(rows(), 0);
    EXPECT_EQ(inTransaction(m_database, [&] { return m_database.execute("INSERT INTO t VALUES (1)"); }), 1);
}

TEST_F(TransactionTest, PassesOnTheFailureOfTheWorkWithNothingChanged)
{
    EXPECT_THROW(inTransaction(m_database,
                     [&] {
                         m_database.execute("INSERT INTO t VALUES (1)");
                         throw std::runtime_error("the work");
                     }),
        std::runtime_error);
    EXPECT_EQ(rows(), 0);
}

TEST_F(TransactionTest, DropsTheFailureOfTheRollback)
{
    const auto failure = thrownBy<DatabaseError>([&] {
        inTransaction(m_database, [&] {
            m_database.executeScript("ROLLBACK"); // the second one can but fail
            throw DatabaseError(Kind::Step, QStringLiteral("the first failure"));
        });
    });
    EXPECT_EQ(failure, DatabaseError(Kind::Step, QStringLiteral("the first failure")));
}

TEST_F(TransactionTest, RollsBackWhenTheCommitFails)
{
    m_database.executeScript("PRAGMA foreign_keys = ON; CREATE TABLE parent (id INTEGER PRIMARY KEY);"
                             "CREATE TABLE child (id REFERENCES parent (id) DEFERRABLE INITIALLY DEFERRED);");
    const auto failure = thrownBy<DatabaseError>([&] {
        inTransaction(m_database, [&] {
            m_database.execute("INSERT INTO t VALUES (1)");
            m_database.execute("INSERT INTO child VALUES (99)");
        });
    });
    EXPECT_EQ(failure, DatabaseError(Kind::Execute, QStringLiteral("FOREIGN KEY constraint failed")));
    EXPECT_EQ(rows(), 0);
    EXPECT_EQ(inTransaction(m_database, [&] { return m_database.execute("INSERT INTO t VALUES (1)"); }), 1);
}

TEST_F(TransactionTest, MeetsAnotherWriterAtItsBeginning)
{
    SQLiteDatabase other(m_database.url());
    const Transaction theirs(other);
    m_database.executeScript("PRAGMA busy_timeout = 0");
    EXPECT_EQ(thrownBy<DatabaseError>([&] { const Transaction ours(m_database); }),
        DatabaseError(Kind::Execute, QStringLiteral("database is locked")));
}

TEST_F(TransactionTest, AReadSnapshotSeesOneStateThroughout)
{
    m_database.executeScript("PRAGMA journal_mode = WAL; INSERT INTO t VALUES (1);");
    SQLiteDatabase other(m_database.url());
    {
        const ReadSnapshot snapshot(m_database);
        EXPECT_EQ(m_database.scalar("SELECT count(*) FROM t"), SQLiteValue(1));
        other.execute("INSERT INTO t VALUES (2)");
        EXPECT_EQ(m_database.scalar("SELECT count(*) FROM t"), SQLiteValue(1));
    }
    EXPECT_EQ(m_database.scalar("SELECT count(*) FROM t"), SQLiteValue(2));
}
