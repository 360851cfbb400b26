#include "persistence/database/SQLiteStatement.h"

#include "persistence/database/DatabaseError.h"
#include "persistence/database/SQLiteDatabase.h"
#include "testing/ThrownFailure.h"

#include <QTemporaryDir>

#include <gmock/gmock.h>

using namespace quire;
using namespace quire::testing;
using Kind = DatabaseError::Kind;

namespace {

class SQLiteStatementTest : public ::testing::Test
{
    QTemporaryDir m_folder;

protected:
    SQLiteDatabase m_database{m_folder.filePath(QStringLiteral("a.db"))};
};

} // namespace

TEST_F(SQLiteStatementTest, RunsAgainAndAgainWithFreshValues)
{
    m_database.executeScript("CREATE TABLE t (x, y)");
    SQLiteStatement insert(m_database, "INSERT INTO t VALUES (?, ?)");
    EXPECT_EQ(insert.run({1, QStringLiteral("one")}), 1);
    EXPECT_EQ(insert.run({2, QStringLiteral("two")}), 1);
    EXPECT_EQ(m_database.scalar("SELECT group_concat(y) FROM t"), SQLiteValue(QStringLiteral("one,two")));
}

TEST_F(SQLiteStatementTest, CanRunAgainAfterAFailure)
{
    m_database.executeScript("CREATE TABLE t (x NOT NULL)");
    SQLiteStatement insert(m_database, "INSERT INTO t VALUES (?)");
    EXPECT_EQ(thrownBy<DatabaseError>([&] { insert.run({SQLiteValue()}); })->kind(), Kind::Step);
    EXPECT_EQ(insert.run({1}), 1);
}

TEST_F(SQLiteStatementTest, ALookupLeftInTheMiddleHoldsNoLock)
{
    m_database.executeScript("CREATE TABLE t (x); INSERT INTO t VALUES (1), (2);");
    SQLiteStatement lookup(m_database, "SELECT x FROM t");
    EXPECT_EQ(lookup.firstInteger(), 1);
    SQLiteDatabase other(m_database.url());
    other.executeScript("PRAGMA busy_timeout = 0");
    EXPECT_EQ(other.execute("INSERT INTO t VALUES (3)"), 1);
}

TEST_F(SQLiteStatementTest, ReadsEveryStorageClassAsTheValueDoes)
{
    SQLiteStatement row(m_database, R"sql(
        SELECT 7, 2.5, '12', 'word', '', x'0001', x'', NULL
    )sql");
    ASSERT_TRUE(row.step());
    ASSERT_EQ(row.columnCount(), 8);
    for (int column = 0; column < row.columnCount(); ++column) {
        const SQLiteValue value = row.value(column);
        EXPECT_EQ(row.intValue(column), value.intValue()) << column;
        EXPECT_EQ(row.string(column, QStringLiteral("d")), value.string(QStringLiteral("d"))) << column;
        EXPECT_EQ(row.optionalString(column), value.optionalString()) << column;
        EXPECT_EQ(row.doubleValue(column, 9), value.doubleValue(9)) << column;
        EXPECT_EQ(row.optionalDouble(column), value.optionalDouble()) << column;
    }
    EXPECT_EQ(row.string(1, {}), QStringLiteral("2.5"));
    EXPECT_EQ(row.intValue(1), 2);
    EXPECT_EQ(row.intValue(2), 12);
    EXPECT_EQ(row.string(5, QStringLiteral("d")), QStringLiteral("d"));
    EXPECT_FALSE(row.step());
}

TEST_F(SQLiteStatementTest, ATextIsReadInWholeAndWhateverItsEncoding)
{
    m_database.executeScript("PRAGMA encoding = 'UTF-16le'; CREATE TABLE t (x);");
    m_database.execute("INSERT INTO t VALUES (?)", {QStringLiteral("本を読む")});
    SQLiteStatement row(m_database, "SELECT x, CAST(x'61620063' AS TEXT), CAST(x'ff' AS TEXT) FROM t");
    ASSERT_TRUE(row.step());
    EXPECT_EQ(row.string(0, {}), QStringLiteral("本を読む"));
}

TEST_F(SQLiteStatementTest, BytesThatAreNoUtf8BecomeReplacementCharacters)
{
    SQLiteStatement row(m_database, "SELECT CAST(x'61ff62' AS TEXT)");
    ASSERT_TRUE(row.step());
    EXPECT_EQ(row.string(0, {}), QStringLiteral("a\uFFFDb"));
}
