// An import that dies in the middle leaves the library as it was before or as
// it is after, and never between. The process that dies is a real one.

#include "persistence/CrashBatches.h"
#include "reliability/QuireFailureInjector.h"
#include "testing/Await.h"
#include "testing/ChildProcess.h"
#include "testing/ImportRecords.h"
#include "testing/TestLibrary.h"

#include <QElapsedTimer>
#include <QFile>
#include <QThread>

#include <gmock/gmock.h>

#include <random>

using namespace quire;
using namespace quire::testing;

namespace {

constexpr int count = 1000; // titles of the batch; half of them are there before

QString text(const char *value)
{
    return QString::fromUtf8(value);
}

enum class Kind { Goodreads, Audible };

// A closed library as it stands before the import.
class LibraryBefore
{
public:
    explicit LibraryBefore(Kind kind)
        : m_kind(kind)
    {
        if (kind == Kind::Goodreads) {
            await(m_library.store().upsertGoodreadsBooks(crashFeed(count / 2, false)));
        } else {
            await(m_library.store().mergeAudibleLibraryItems(crashItems(count / 2, false)));
        }
        m_library.close();
        m_rows = everything(m_library);
    }

    void copyTo(const TestLibrary &library) const
    {
        ASSERT_TRUE(QFile::copy(m_library.databasePath(), library.databasePath()));
    }

    bool isBefore(const TestLibrary &library) const { return everything(library) == m_rows; }

    bool isAfter(const TestLibrary &library) const
    {
        const QByteArray table = m_kind == Kind::Goodreads ? "goodreads_books" : "audible_books";
        const QByteArray status = m_kind == Kind::Goodreads ? "shelf" : "status";
        const QByteArray sql = "SELECT COUNT(*) FROM " + table + " WHERE author <> '' AND " + status + " = 'read'";
        const qint64 rows = library.scalar(sql.constData()).intValue().value();
        const qint64 trail = library.scalar("SELECT COUNT(*) FROM field_provenance").intValue().value();
        // Audible says nothing of an author at first, and every item has five
        // fields besides; a feed always says the same five.
        const qint64 fields = m_kind == Kind::Goodreads ? 5 : 6;
        return rows == count && trail == fields * count
            && library.scalar("SELECT generation FROM library_metadata").intValue() == count + count / 2;
    }

private:
    Kind m_kind;
    TestLibrary m_library;
    QMap<QString, QList<SQLiteRow>> m_rows;
};

// A process that imports `count` rows into a library and then ends.
class Child : public ChildProcess
{
public:
    Child(const TestLibrary &library, Kind kind, const QMap<QString, QString> &environment = {})
        : ChildProcess(text(QUIRE_IMPORT_CHILD),
            {library.folder(), kind == Kind::Goodreads ? text("goodreads") : text("audible"), QString::number(count)},
            environment)
    {
    }

    // False when the child ended without saying so.
    bool waitUntilReady() { return readLine() == "ready"; }
};

QMap<QString, QString> failureAt(const char *point, const char *enabled = "1")
{
    return {{text("QUIRE_ENABLE_FAILURE_TESTS"), text(enabled)}, {text("QUIRE_FAILURE_POINT"), text(point)}};
}

void expectBeforeAtFailurePoint(Kind kind, const char *point)
{
    const LibraryBefore before(kind);
    TestLibrary library(TestLibrary::Start::Closed);
    before.copyTo(library);
    Child child(library, kind, failureAt(point));
    EXPECT_TRUE(child.waitUntilReady());
    ASSERT_TRUE(child.waitUntilEnded());
    EXPECT_EQ(child.exitStatus(), QuireFailureInjector::exitStatus);
    library.open(true);
    EXPECT_TRUE(before.isBefore(library));

    // And the import can be made again.
    if (kind == Kind::Goodreads) {
        await(library.store().upsertGoodreadsBooks(crashFeed(count, true)));
    } else {
        await(library.store().mergeAudibleLibraryItems(crashItems(count, true)));
    }
    EXPECT_TRUE(before.isAfter(library));
}

void expectAfterWithEnvironment(Kind kind, const QMap<QString, QString> &environment)
{
    const LibraryBefore before(kind);
    TestLibrary library(TestLibrary::Start::Closed);
    before.copyTo(library);
    Child child(library, kind, environment);
    ASSERT_TRUE(child.waitUntilEnded());
    EXPECT_EQ(child.exitStatus(), 0);
    library.open();
    EXPECT_TRUE(before.isAfter(library));
    EXPECT_FALSE(before.isBefore(library));
}

void expectBeforeOrAfterWhenKilled(Kind kind)
{
    const unsigned seed = std::random_device{}();
    SCOPED_TRACE(::testing::Message() << "seed " << seed);
    std::mt19937 random(seed);

    const LibraryBefore before(kind);
    qint64 wholeTime = 0; // of an undisturbed import, in microseconds
    int befores = 0;
    int afters = 0;
    for (int round = 0; round < 12; ++round) {
        TestLibrary library(TestLibrary::Start::Closed);
        before.copyTo(library);
        Child child(library, kind);
        ASSERT_TRUE(child.waitUntilReady());
        QElapsedTimer clock;
        clock.start();
        if (round > 0) {
            QThread::usleep(random() % (wholeTime + wholeTime / 5));
            child.kill();
        }
        ASSERT_TRUE(child.waitUntilEnded());
        wholeTime = round > 0 ? wholeTime : clock.nsecsElapsed() / 1000;

        library.open(true);
        const bool isBefore = before.isBefore(library);
        const bool isAfter = before.isAfter(library);
        EXPECT_NE(isBefore, isAfter) << "round " << round;
        EXPECT_EQ(library.scalar("PRAGMA integrity_check").string({}), text("ok"));
        befores += isBefore;
        afters += isAfter;
    }
    EXPECT_GE(afters, 1); // the undisturbed one
    ::testing::Test::RecordProperty("befores", befores);
    ::testing::Test::RecordProperty("afters", afters);
}

} // namespace

TEST(ImportCrash, AFeedImportThatDiesAfterStagingLeavesTheLibraryAsBefore)
{
    expectBeforeAtFailurePoint(Kind::Goodreads, "goodreads-after-staging");
}

TEST(ImportCrash, AnAudibleMergeThatDiesAfterStagingLeavesTheLibraryAsBefore)
{
    expectBeforeAtFailurePoint(Kind::Audible, "audible-after-staging");
}

TEST(ImportCrash, AnotherPointOrAnotherSwitchLetsTheImportRunThrough)
{
    expectAfterWithEnvironment(Kind::Goodreads, failureAt("audible-after-staging"));
    expectAfterWithEnvironment(Kind::Audible, failureAt("goodreads-after-staging"));
    expectAfterWithEnvironment(Kind::Goodreads, failureAt("goodreads-after-staging", "true"));
    expectAfterWithEnvironment(Kind::Audible, failureAt("audible-after-staging", "2"));
    expectAfterWithEnvironment(Kind::Goodreads, {{text("QUIRE_FAILURE_POINT"), text("goodreads-after-staging")}});
}

TEST(ImportCrash, AFeedImportKilledAtAnyMomentLeavesBeforeOrAfter)
{
    expectBeforeOrAfterWhenKilled(Kind::Goodreads);
}

TEST(ImportCrash, AnAudibleMergeKilledAtAnyMomentLeavesBeforeOrAfter)
{
    expectBeforeOrAfterWhenKilled(Kind::Audible);
}
