// Staging counts what arrived. SQLite offers no way to lose a row in between,
// so its count is made to lie.

#include "persistence/AudibleMerge.h"
#include "persistence/database/Transaction.h"
#include "persistence/GoodreadsMerge.h"
#include "reliability/QuireReliabilityError.h"
#include "testing/ImportRecords.h"
#include "testing/TestLibrary.h"

#include <gmock/gmock.h>

#include <sqlite3.h>

using namespace quire;
using namespace quire::testing;

namespace {

const QString prefix = QStringLiteral("Quire rejected imported library data before changing the database: ");

void countNothing(sqlite3_context *, int, sqlite3_value **) { }

void sayMinusOne(sqlite3_context *context)
{
    sqlite3_result_int(context, -1);
}

void sayNothing(sqlite3_context *context)
{
    sqlite3_result_null(context);
}

void overrideCount(SQLiteDatabase &database, void (*final)(sqlite3_context *))
{
    ASSERT_EQ(sqlite3_create_function_v2(
                  database.handle(), "count", 0, SQLITE_UTF8, nullptr, nullptr, countNothing, final, nullptr),
        SQLITE_OK);
}

template<typename Import>
QString refusalOf(SQLiteDatabase &database, Import import)
{
    try {
        inTransaction(database, [&] { import(); });
    } catch (const QuireReliabilityError &error) {
        return error.description();
    }
    return {};
}

class ImportStaging : public ::testing::TestWithParam<void (*)(sqlite3_context *)>
{
};

} // namespace

TEST_P(ImportStaging, AFeedThatDidNotArriveWholeIsRefused)
{
    TestLibrary library;
    const auto before = everything(library);
    SQLiteDatabase database(library.databasePath());
    overrideCount(database, GetParam());
    EXPECT_EQ(refusalOf(database, [&] { GoodreadsMerge::upsert(database, {fullFeedBook()}); }),
        prefix + QStringLiteral("the staged Goodreads record count did not match"));
    EXPECT_EQ(everything(library), before);
}

TEST_P(ImportStaging, AnAudibleBatchThatDidNotArriveWholeIsRefused)
{
    TestLibrary library;
    const auto before = everything(library);
    SQLiteDatabase database(library.databasePath());
    overrideCount(database, GetParam());
    EXPECT_EQ(refusalOf(database, [&] { AudibleMerge::merge(database, {fullAudibleItem()}, {}); }),
        prefix + QStringLiteral("the staged Audible record count did not match"));
    EXPECT_EQ(everything(library), before);
}

INSTANTIATE_TEST_SUITE_P(WrongAndUnreadable, ImportStaging, ::testing::Values(&sayMinusOne, &sayNothing));

TEST(ImportStagingTables, AStageThatAFailureLeftIsReplaced)
{
    TestLibrary library;
    SQLiteDatabase database(library.databasePath());
    database.executeScript(
        "CREATE TEMP TABLE quire_goodreads_stage (other); CREATE TEMP TABLE quire_audible_stage (other)");
    inTransaction(database, [&] { GoodreadsMerge::upsert(database, {fullFeedBook()}); });
    inTransaction(database, [&] { AudibleMerge::merge(database, {fullAudibleItem()}, {}); });
    EXPECT_EQ(database.scalar("SELECT COUNT(*) FROM temp.sqlite_master")->intValue(), 0);
    EXPECT_EQ(library.scalar("SELECT COUNT(*) FROM goodreads_books").intValue(), 1);
    EXPECT_EQ(library.scalar("SELECT COUNT(*) FROM audible_books").intValue(), 1);
}
