#include "ModelTest.h"

#include "concurrency/Cancelled.h"
#include "reliability/TransportError.h"
#include "sources/ServiceError.h"

#include <gmock/gmock.h>

#include <QSignalSpy>

namespace quire {

namespace {

using namespace std::chrono_literals;
using testing::await;
using ::testing::Contains;
using ::testing::ElementsAre;
using testing::eventually;
using ::testing::IsEmpty;
using testing::LoopbackReply;

// An operation that fails as often as it is told before it succeeds.
class Operation
{
public:
    explicit Operation(int failures, bool transient = true)
        : m_failures(failures)
        , m_transient(transient)
    {
    }

    int calls() const { return m_calls; }

    std::function<QCoro::Task<int>()> function()
    {
        return [this] { return run(); };
    }

private:
    QCoro::Task<int> run()
    {
        ++m_calls;
        if (m_calls <= m_failures) {
            if (m_transient) {
                throw TransportError(TransportError::Kind::TimedOut, 4, QStringLiteral("Too late."));
            }
            throw ServiceError::http(404, QStringLiteral("Nothing here."));
        }
        co_return m_calls;
    }

    int m_failures;
    bool m_transient;
    int m_calls = 0;
};

class AppModelJobs : public ModelTest
{
protected:
    using Outcome = std::optional<int>;

    QCoro::Task<Outcome> coordinated(Operation &operation, bool automatic, std::stop_token stop = {})
    {
        return model->coordinated<int>(QuireBackgroundJob::Publishing, automatic, operation.function(), stop);
    }

    // Ends the next pause before another try, once the job has come to it.
    void endPause(std::chrono::nanoseconds expected)
    {
        ASSERT_TRUE(eventually([this] { return sleepers() == 1; }));
        EXPECT_EQ(lastPause(), expected);
        clock.advance(expected - 1ns);
        settle();
        EXPECT_EQ(sleepers(), 1U);
        clock.advance(1ns);
    }

    std::optional<QString> lastMessage() const
    {
        return library
            .scalar("SELECT message FROM background_job_history WHERE job_kind <> 'backup' ORDER BY id DESC LIMIT 1")
            .optionalString();
    }

    // The slot is free again: a job of the same kind runs.
    bool isSlotFree()
    {
        Operation next(0);
        return await(coordinated(next, false)).has_value();
    }
};

TEST_F(AppModelJobs, AJobThatSucceedsLeavesTwoLines)
{
    startModel();
    Operation operation(0);

    EXPECT_EQ(await(coordinated(operation, false)), Outcome(1));

    EXPECT_THAT(
        history(), ElementsAre(QStringLiteral("publishing running 1"), QStringLiteral("publishing succeeded 1")));
    EXPECT_EQ(lastMessage(), std::nullopt);
}

TEST_F(AppModelJobs, AManualJobIsTriedTwiceAtMost)
{
    startModel();
    Operation operation(5);
    auto running = coordinated(operation, false);
    endPause(750ms);

    EXPECT_THROW(await(std::move(running)), TransportError);

    EXPECT_EQ(operation.calls(), 2);
    EXPECT_THAT(history(),
        ElementsAre(QStringLiteral("publishing running 1"), QStringLiteral("publishing retrying 1"),
            QStringLiteral("publishing running 2"), QStringLiteral("publishing failed 2")));
    EXPECT_EQ(lastMessage(), QStringLiteral("Too late."));
    EXPECT_TRUE(isSlotFree());
}

TEST_F(AppModelJobs, AnAutomaticJobIsTriedThreeTimesAtMost)
{
    startModel();
    Operation operation(5);
    auto running = coordinated(operation, true);
    endPause(750ms);
    endPause(1250ms);

    EXPECT_THROW(await(std::move(running)), TransportError);

    EXPECT_EQ(operation.calls(), 3);
    EXPECT_THAT(history(),
        ElementsAre(QStringLiteral("publishing running 1"), QStringLiteral("publishing retrying 1"),
            QStringLiteral("publishing running 2"), QStringLiteral("publishing retrying 2"),
            QStringLiteral("publishing running 3"), QStringLiteral("publishing failed 3")));
    EXPECT_TRUE(isSlotFree());
}

TEST_F(AppModelJobs, ASecondTryMaySucceed)
{
    startModel();
    Operation operation(1);
    auto running = coordinated(operation, false);
    endPause(750ms);

    EXPECT_EQ(await(std::move(running)), Outcome(2));

    EXPECT_EQ(history().last(), QStringLiteral("publishing succeeded 2"));
}

TEST_F(AppModelJobs, AFailureThatIsNotTransientFailsAtOnce)
{
    startModel();
    Operation operation(1, false);

    EXPECT_THROW(await(coordinated(operation, true)), ServiceError);

    EXPECT_EQ(operation.calls(), 1);
    EXPECT_THAT(history(), ElementsAre(QStringLiteral("publishing running 1"), QStringLiteral("publishing failed 1")));
    EXPECT_EQ(lastMessage(), QStringLiteral("Nothing here."));
    EXPECT_TRUE(isSlotFree());
}

TEST_F(AppModelJobs, TheSlotIsHeldThroughThePause)
{
    startModel();
    Operation first(1);
    Operation same(0);
    Operation other(0);
    auto running = coordinated(first, false);
    ASSERT_TRUE(eventually([this] { return sleepers() == 1; }));
    const auto waiting = model->coordinated<int>(QuireBackgroundJob::Artwork, false, other.function());

    EXPECT_EQ(await(coordinated(same, false)), std::nullopt); // turned away
    settle();
    EXPECT_EQ(same.calls(), 0);
    EXPECT_EQ(other.calls(), 0);
    EXPECT_THAT(
        history(), ElementsAre(QStringLiteral("publishing running 1"), QStringLiteral("publishing retrying 1")));

    clock.advance(1s);
    EXPECT_EQ(await(std::move(running)), Outcome(2));
    EXPECT_TRUE(eventually([&other] { return other.calls() == 1; }));
}

TEST_F(AppModelJobs, ACancelledPauseEndsTheHistoryInRetryingAndGivesTheSlotBack)
{
    startModel();
    Operation operation(1);
    std::stop_source stop;
    auto running = coordinated(operation, true, stop.get_token());
    ASSERT_TRUE(eventually([this] { return sleepers() == 1; }));

    stop.request_stop();

    EXPECT_THROW(await(std::move(running)), Cancelled);
    EXPECT_EQ(history().last(), QStringLiteral("publishing retrying 1"));
    EXPECT_TRUE(isSlotFree());
}

TEST_F(AppModelJobs, AHistoryThatCannotBeWrittenStopsNoJob)
{
    startModel();
    library.execute("DROP TABLE background_job_history");
    Operation operation(0);

    EXPECT_EQ(await(coordinated(operation, false)), Outcome(1));
}

TEST_F(AppModelJobs, AModelMayDieWhileAJobWaitsToTryAgain)
{
    startModel();
    Operation operation(1);
    const auto running = coordinated(operation, true);
    ASSERT_TRUE(eventually([this] { return sleepers() == 1; }));

    model.reset();
    clock.advance(1s);
    settle();

    EXPECT_EQ(operation.calls(), 1);
}

// Goodreads ------------------------------------------------------------------------

TEST_F(AppModelJobs, AManualGoodreadsSyncTellsItsCount)
{
    configureGoodreads();
    setStored(QStringLiteral("automaticGoodreadsSync"), QStringLiteral("0"));
    startModel();
    serveFeed({QStringLiteral("Emma"), QStringLiteral("Persuasion")});
    const QSignalSpy working(model.get(), &AppModel::isWorkingChanged);

    auto running = model->synchronizeGoodreads(false);
    EXPECT_TRUE(model->isWorking());
    EXPECT_EQ(model->activityLabel(), QStringLiteral("Syncing Goodreads…"));
    EXPECT_EQ(model->activeSidebarOperation(), SidebarOperation::GoodreadsSync);
    await(std::move(running));

    EXPECT_EQ(model->books().size(), 2);
    EXPECT_EQ(model->toastMessage(), QStringLiteral("Synced 2 Goodreads titles"));
    EXPECT_EQ(lastPause(), 3200ms);
    EXPECT_EQ(working.size(), 2);
    EXPECT_FALSE(model->isWorking());
    EXPECT_EQ(model->activityLabel(), QString());
    EXPECT_EQ(model->activeSidebarOperation(), std::nullopt);
    EXPECT_EQ(model->notice(), std::nullopt);
    EXPECT_TRUE(model->settings().goodreadsLastSync);
}

TEST_F(AppModelJobs, WarningsOfASyncGoToTheLogAlone)
{
    configureGoodreads();
    makeModel();
    serveFeed({QStringLiteral("Emma")});
    goodreads.route(u"/review/list_rss/42",
        {testing::LoopbackReply::ok(
             "<rss><channel><item><book_id>1</book_id><title>Emma</title></item></channel></rss>"),
            testing::LoopbackReply::withStatus(503, "Down."), testing::LoopbackReply::ok("<html/>"),
            testing::LoopbackReply::ok("<rss><channel/></rss>")});

    await(model->start());

    EXPECT_EQ(model->toastMessage(), QStringLiteral("Goodreads synced automatically: 1 titles"));
    EXPECT_THAT(logLines(),
        Contains(QStringLiteral("Goodreads sync warnings: currently-reading: Down. | read: feed body was not RSS")));
    EXPECT_EQ(model->notice(), std::nullopt);
}

TEST_F(AppModelJobs, AFailedManualSyncShowsANotice)
{
    configureGoodreads();
    setStored(QStringLiteral("automaticGoodreadsSync"), QStringLiteral("0"));
    startModel();
    goodreads.routeEverythingElse(
        [](const testing::LoopbackRequest &) { return testing::LoopbackReply::withStatus(503, "Down for repairs."); });

    await(model->synchronizeGoodreads(false));

    EXPECT_EQ(model->notice(),
        AppNotice::error(QStringLiteral("Goodreads Sync Failed"), QStringLiteral("All shelves: Down for repairs.")));
    EXPECT_EQ(model->toastMessage(), std::nullopt);
    EXPECT_THAT(logLines(), ElementsAre(QStringLiteral("Goodreads sync failed: All shelves: Down for repairs.")));
    EXPECT_FALSE(model->isWorking());
    EXPECT_TRUE(model->settings().goodreadsLastSync); // it was reloaded all the same
}

TEST_F(AppModelJobs, AFailedAutomaticSyncShowsAToastAndNoNotice)
{
    configureGoodreads();
    goodreads.routeEverythingElse(
        [](const testing::LoopbackRequest &) { return testing::LoopbackReply::ok("<html>Welcome</html>"); });

    startModel();

    const QString text = QStringLiteral("currently-reading: feed body was not RSS");
    EXPECT_EQ(model->toastMessage(), QStringLiteral("Automatic Goodreads sync failed: ") + text);
    EXPECT_EQ(lastPause(), 7s);
    EXPECT_EQ(model->notice(), std::nullopt);
    EXPECT_THAT(logLines(), ElementsAre(QStringLiteral("Goodreads sync failed: ") + text));
}

TEST_F(AppModelJobs, AStoreThatFailsDuringASyncShowsItsOwnText)
{
    configureGoodreads();
    setStored(QStringLiteral("automaticGoodreadsSync"), QStringLiteral("0"));
    startModel();
    serveFeed({QStringLiteral("Emma")});
    library.executeScript("CREATE TRIGGER refused BEFORE INSERT ON goodreads_books"
                          " BEGIN SELECT RAISE(ABORT, 'no room for books'); END;");

    await(model->synchronizeGoodreads(false));

    ASSERT_TRUE(model->notice());
    EXPECT_EQ(model->notice()->title, QStringLiteral("Goodreads Sync Failed"));
    EXPECT_TRUE(model->notice()->message.contains(QStringLiteral("no room for books")));
    EXPECT_TRUE(model->books().isEmpty());
    EXPECT_THAT(
        history(), ElementsAre(QStringLiteral("goodreadsSync running 1"), QStringLiteral("goodreadsSync failed 1")));
}

TEST_F(AppModelJobs, ASyncThatIsTurnedAwayIsSilent)
{
    configureGoodreads();
    setStored(QStringLiteral("automaticGoodreadsSync"), QStringLiteral("0"));
    startModel();
    goodreads.routeEverythingElse([](const testing::LoopbackRequest &) { return testing::LoopbackReply::silence(); });
    const auto first = model->synchronizeGoodreads(false);
    ASSERT_TRUE(eventually([this] { return goodreads.requests().size() == 1; }));
    const QSignalSpy loads(model.get(), &AppModel::booksChanged);

    await(model->synchronizeGoodreads(true));

    EXPECT_EQ(loads.size(), 0);
    EXPECT_EQ(model->toastMessage(), std::nullopt);
    EXPECT_EQ(model->notice(), std::nullopt);
    EXPECT_TRUE(logLines().isEmpty());
    EXPECT_THAT(history(), ElementsAre(QStringLiteral("goodreadsSync running 1")));
    EXPECT_FALSE(model->isWorking()); // a plain flag: whoever clears it clears it for all
}

TEST_F(AppModelJobs, AModelMayDieInTheMiddleOfASync)
{
    configureGoodreads();
    serveFeed({QStringLiteral("Emma")});
    for (const int requests : {1, 2, 5}) {
        goodreads.forgetRequests();
        makeModel();
        const auto starting = model->start();
        EXPECT_TRUE(eventually([&] { return goodreads.requests().size() >= requests; }));
        model.reset();
        settle();
    }
}

TEST_F(AppModelJobs, AShutdownInTheMiddleOfASyncTellsNothing)
{
    for (const bool automatic : {false, true}) {
        configureGoodreads();
        setStored(QStringLiteral("automaticGoodreadsSync"), QStringLiteral("0"));
        goodreads.routeEverythingElse([](const testing::LoopbackRequest &) { return LoopbackReply::silence(); });
        goodreads.forgetRequests();
        startModel();
        const auto running = model->synchronizeGoodreads(automatic);
        ASSERT_TRUE(eventually([this] { return !goodreads.requests().isEmpty(); }));
        await(model->shutdown());
        EXPECT_TRUE(eventually([&running] { return running.isReady(); })); // not when the server's time is up
        EXPECT_EQ(model->notice(), std::nullopt);
        EXPECT_EQ(model->toastMessage(), std::nullopt);
        EXPECT_THAT(logLines(), IsEmpty());
    }
}

// Everything -----------------------------------------------------------------------

TEST_F(AppModelJobs, AFullSyncWithoutCredentialsIsSkippedInTheLog)
{
    startModel();
    const QSignalSpy changes(model.get(), &AppModel::isSyncingAllChanged);

    await(model->synchronizeAll());

    EXPECT_THAT(logLines(),
        ElementsAre(QStringLiteral("Sync skipped Goodreads because credentials are not configured."),
            QStringLiteral("Sync skipped Audible because local library access is unavailable.")));
    EXPECT_EQ(changes.size(), 2);
    EXPECT_FALSE(model->isSyncingAll());
    EXPECT_EQ(model->notice()->title, QStringLiteral("Reading List Update Failed")); // of the skips nobody is told
    EXPECT_TRUE(goodreads.requests().isEmpty());
}

TEST_F(AppModelJobs, AFullSyncGoesOnAfterAFailedStep)
{
    configureGoodreads();
    setStored(QStringLiteral("automaticGoodreadsSync"), QStringLiteral("0"));
    startModel();

    auto running = model->synchronizeAll();
    EXPECT_TRUE(model->isSyncingAll());
    await(std::move(running)); // every request is answered with 404

    EXPECT_FALSE(logLines().filter(QStringLiteral("Goodreads sync failed: ")).isEmpty());
    EXPECT_EQ(model->notice()->title, QStringLiteral("Reading List Update Failed")); // the later of two failures
    EXPECT_EQ(logLines().last(), QStringLiteral("Sync skipped Audible because local library access is unavailable."));
    EXPECT_FALSE(model->isSyncingAll());
}

TEST_F(AppModelJobs, AFullSyncDoesNotAskWhetherTheBooksAreShown)
{
    configureGoodreads();
    setStored(QStringLiteral("showBooksSection"), QStringLiteral("0"));
    startModel();
    serveFeed({QStringLiteral("Emma")});

    await(model->synchronizeAll());

    EXPECT_EQ(model->books().size(), 1);
}

TEST_F(AppModelJobs, AFullSyncDoesNothingWhileAJobRuns)
{
    configureGoodreads();
    setStored(QStringLiteral("automaticGoodreadsSync"), QStringLiteral("0"));
    startModel();
    goodreads.routeEverythingElse([](const testing::LoopbackRequest &) { return testing::LoopbackReply::silence(); });
    const auto running = model->synchronizeGoodreads(false);
    ASSERT_TRUE(model->isWorking());

    await(model->synchronizeAll());

    EXPECT_FALSE(model->isSyncingAll());
    EXPECT_TRUE(logLines().isEmpty());
}

} // namespace

} // namespace quire
