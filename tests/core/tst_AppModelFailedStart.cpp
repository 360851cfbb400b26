// Every way in which a start can fail ends in the same place.

#include "ModelTest.h"

#include "persistence/database/DatabaseError.h"
#include "persistence/database/SQLiteDatabase.h"
#include "reliability/QuireCloudLineage.h"
#include "reliability/QuireLibraryLease.h"
#include "reliability/QuireReliabilityError.h"
#include "testing/TestFiles.h"

#include <QDir>
#include <QFile>
#include <QSignalSpy>

#include <gmock/gmock.h>

#include <sys/stat.h>

namespace quire {

namespace {

using testing::await;
using ::testing::ElementsAre;
using ::testing::MatchesRegex;

class AppModelFailedStart : public ModelTest
{
protected:
    AppModelFailedStart()
    {
        addBook(QStringLiteral("Emma"));
        // Remembered as it is now.
        library.open();
        library.close();
    }

    void recordSession(bool clean, const QString &openedAt = QStringLiteral("2026-11-20T08:00:00.000Z")) const
    {
        QuireSessionHealth(sessionFile()).write({QUuid::createUuid(), openedAt, std::nullopt, clean});
    }

    std::optional<QuireSessionRecord> session() const { return QuireSessionHealth(sessionFile()).read(); }

    bool didRecover() const { return history().contains(QStringLiteral("maintenance succeeded 1")); }

    // What the library is said to have been when this machine saw it last.
    void remember(qint64 generation, const QString &token) const
    {
        const QuireCloudLineageStore memory(library.file(QStringLiteral("Cloud Library State")));
        auto lineage = memory.read(library.databasePath());
        ASSERT_TRUE(lineage);
        lineage->generation = generation < 0 ? lineage->generation : generation;
        lineage->lineageToken = token;
        memory.save(*lineage, library.databasePath());
    }

    // Starts the model, which must fail with that text, and looks at all that a
    // failed start leaves behind; then quits.
    void expectFailedStart(const std::string &message)
    {
        makeModel(true);
        const QSignalSpy books(model.get(), &AppModel::booksChanged);
        await(model->start());

        ASSERT_TRUE(model->notice());
        EXPECT_EQ(model->notice()->kind, AppNotice::Kind::Error);
        EXPECT_EQ(model->notice()->title, QStringLiteral("Quire Could Not Open"));
        EXPECT_THAT(model->notice()->message.toStdString(), MatchesRegex(message));
        EXPECT_THAT(logLines(), ElementsAre(QStringLiteral("Startup failed: ") + model->notice()->message));
        EXPECT_FALSE(model->isReady());
        EXPECT_EQ(books.size(), 0);
        EXPECT_EQ(clock.sleepers(), 0U) << "a schedule was started";
        EXPECT_TRUE(goodreads.requests().isEmpty());
        EXPECT_THROW(await(model->reload()), DatabaseError);

        await(model->start()); // no second try
        EXPECT_EQ(logLines().size(), 1);
        EXPECT_FALSE(model->isReady());

        ASSERT_TRUE(session());
        EXPECT_FALSE(session()->clean);
        await(model->shutdown());
        EXPECT_TRUE(session()->clean) << "the next start would be a recovery";
    }
};

TEST_F(AppModelFailedStart, ALibraryThatAnotherHasOpen)
{
    QuireLibraryLease rival(library.folder(), clock);
    rival.acquire();
    const std::string host = rival.owner().hostName.toStdString();

    expectFailedStart("This Quire library is already in use. It is currently open on " + host
        + ". Close Quire on the other Mac, allow the cloud service to finish syncing, and then open Quire again.");

    EXPECT_TRUE(library.isLeaseHeld()) << "the other's";
    rival.release();
    model.reset();
    startModel();
    EXPECT_EQ(model->books().size(), 1);
}

TEST_F(AppModelFailedStart, AConflictCopyBesideTheLibrary)
{
    QFile::copy(library.databasePath(), library.file(QStringLiteral("quire (conflicted copy).db")));
    expectFailedStart("The cloud service created a conflicting Quire database named “quire \\(conflicted copy\\).db”. "
                      "Quire will not write until the conflicting copies are reviewed.");
    EXPECT_FALSE(library.isLeaseHeld());
}

TEST_F(AppModelFailedStart, ALibraryThatWasRolledBack)
{
    remember(1'000, QStringLiteral("later"));
    expectFailedStart("This cloud library is older than the copy previously opened on this Mac. .*");
    EXPECT_FALSE(library.isLeaseHeld());
}

TEST_F(AppModelFailedStart, AFileWithoutBytesWhereALibraryIsRemembered)
{
    QFile(library.databasePath()).resize(0);
    makeModel(true);
    await(model->start());
    ASSERT_TRUE(model->notice());
    EXPECT_EQ(model->notice()->message, QuireReliabilityError::cloudLibraryRolledBack().description());
    EXPECT_EQ(QFileInfo(library.databasePath()).size(), 0);
}

TEST_F(AppModelFailedStart, ALibraryThatDiverged)
{
    remember(-1, QStringLiteral("another"));
    expectFailedStart("This cloud library has diverged from the copy previously opened on this Mac. .*");
    EXPECT_FALSE(library.isLeaseHeld());
}

TEST_F(AppModelFailedStart, ALibraryThatFailsItsCheckAfterACrash)
{
    const qint64 page
        = library.scalar("SELECT rootpage FROM sqlite_master WHERE name = 'sqlite_autoindex_goodreads_books_1'")
              .intValue()
              .value();
    QFile damaged(library.databasePath());
    ASSERT_TRUE(damaged.open(QIODevice::ReadWrite));
    damaged.seek((page - 1) * 4096 + 3); // the number of cells: none, though the table has a row
    damaged.write(QByteArray("\x00\x00", 2));
    damaged.close();
    recordSession(false);
    expectFailedStart("Could not open the Quire database: The library failed its post-crash integrity check\\.");
    EXPECT_FALSE(library.isLeaseHeld());
}

TEST_F(AppModelFailedStart, AMigrationThatFails)
{
    // The second step finds this in the place of a table and cannot index it.
    library.executeScript("PRAGMA user_version = 1; DROP TABLE background_job_history;"
                          "CREATE VIEW background_job_history AS SELECT 1 AS job_kind, 2 AS recorded_at");
    makeModel(true);
    await(model->start());
    ASSERT_TRUE(model->notice());
    EXPECT_EQ(model->notice()->title, QStringLiteral("Quire Could Not Open"));
    EXPECT_THAT(model->notice()->message.toStdString(), MatchesRegex("Could not update the Quire database: .*"));
    const QStringList lines = logLines();
    ASSERT_EQ(lines.size(), 2);
    EXPECT_TRUE(lines[0].startsWith(u"Schema migration 2 rolled back. Recovery copy: "));
    EXPECT_EQ(lines[1], QStringLiteral("Startup failed: ") + model->notice()->message);
    EXPECT_FALSE(library.isLeaseHeld());
}

TEST_F(AppModelFailedStart, ALibraryOfANewerVersion)
{
    library.executeScript("PRAGMA user_version = 3");
    makeModel(true);
    await(model->start());
    ASSERT_TRUE(model->notice());
    EXPECT_EQ(model->notice()->message,
        QStringLiteral("Could not open the Quire database: This library was created by a newer version of Quire "
                       "(schema 3)."));
    EXPECT_FALSE(library.isLeaseHeld());
}

TEST_F(AppModelFailedStart, ALibraryThatOpensButCannotBeRead)
{
    library.executeScript("ALTER TABLE goodreads_books RENAME TO elsewhere;"
                          "CREATE VIEW goodreads_books AS SELECT goodreads_id FROM elsewhere");
    makeModel(true);
    await(model->start());
    ASSERT_TRUE(model->notice());
    EXPECT_EQ(model->notice()->title, QStringLiteral("Quire Could Not Open"));
    EXPECT_THAT(
        model->notice()->message.toStdString(), MatchesRegex("Could not prepare a database query: no such column: .*"));
    EXPECT_THAT(logLines(), ElementsAre(QStringLiteral("Startup failed: ") + model->notice()->message));
    EXPECT_FALSE(model->isReady());
    EXPECT_EQ(clock.sleepers(), 0U) << "a schedule was started";
    await(model->shutdown());
    EXPECT_FALSE(library.isLeaseHeld());
    EXPECT_TRUE(session()->clean);
}

// The session record: whatever it is, the start is the rule's. ------------------

TEST_F(AppModelFailedStart, AHostileSessionRecordIsNoneAndIsReplaced)
{
    for (const QByteArray &bytes : {QByteArray(R"({"clean": false, "openedAt": "2026)"),
             QByteArray(R"({"clean": false, "openedAt": 5, "sessionID": "67C8770B-44F1-410A-AB9A-F9B5446F13EE"})"),
             QByteArray(100'000, '['), QByteArray(3 << 20, ' ') + "{}", QByteArray(4096, '\0')}) {
        testing::putFile(sessionFile(), bytes);
        makeModel(true);
        await(model->start());
        EXPECT_TRUE(model->isReady());
        EXPECT_FALSE(didRecover());
        ASSERT_TRUE(session());
        EXPECT_FALSE(session()->clean);
        await(model->shutdown());
        model.reset();
    }
}

TEST_F(AppModelFailedStart, APipeInTheRecordsPlaceDoesNotHoldUpTheStart)
{
    ASSERT_EQ(::mkfifo(QFile::encodeName(sessionFile()).constData(), 0600), 0);
    makeModel(true);
    await(model->start());
    EXPECT_TRUE(model->isReady());
    EXPECT_FALSE(didRecover());
}

TEST_F(AppModelFailedStart, TheDatesOfARecordMeanNothing)
{
    for (const bool clean : {true, false}) {
        library.execute("DELETE FROM background_job_history");
        recordSession(clean, QStringLiteral("9999-12-31T23:59:59.999Z"));
        makeModel(true);
        await(model->start());
        EXPECT_TRUE(model->isReady());
        EXPECT_EQ(didRecover(), !clean);
        EXPECT_EQ(session()->openedAt, QStringLiteral("2026-11-21T12:00:00.000Z"));
        await(model->shutdown());
        model.reset();
    }
}

TEST_F(AppModelFailedStart, AJobThatACrashCutShortIsMarkedOnceAndNotAgain)
{
    library.execute(
        "INSERT INTO background_job_history (job_kind, state, attempt) VALUES ('goodreadsSync', 'running', 2)");
    for (int start = 0; start < 2; ++start) {
        recordSession(false);
        makeModel(true);
        await(model->start());
        ASSERT_TRUE(model->isReady());
        model.reset(); // a crash: no shutdown
        settle();
    }
    EXPECT_EQ(history().count(QStringLiteral("goodreadsSync interrupted 2")), 1);
    EXPECT_EQ(history().count(QStringLiteral("maintenance succeeded 1")), 2);
}

} // namespace

} // namespace quire
