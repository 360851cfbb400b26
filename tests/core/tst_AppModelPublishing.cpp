#include "ModelTest.h"

#include "publishing/NetlifyStandIn.h"
#include "publishing/PublishingSnapshot.h"
#include "testing/OwnDataDirectory.h"

#include <gmock/gmock.h>

#include <QFile>
#include <QSignalSpy>

namespace quire {

namespace {

using namespace std::chrono_literals;
using testing::await;
using ::testing::ElementsAre;
using ::testing::IsEmpty;
using testing::LoopbackReply;

const QString noToken = QStringLiteral("Online: Netlify token not found. Add it in Settings.");

// What the site is called is kept in the support folder, which is looked up in it.
struct OwnSupportFolder
{
    testing::OwnDataDirectory data;
};

class AppModelPublishing : private OwnSupportFolder, public ModelTest
{
protected:
    AppModelPublishing() { netlifyOrigin = netlify.origin(); }

    QString folder() const { return library.file(QStringLiteral("lists")); }
    QString file() const { return folder() + QStringLiteral("/quire.md"); }

    void configureFolder() { setStored(QStringLiteral("localPublishPath"), folder()); }
    void configureSite()
    {
        library.open();
        await(library.store().setSetting(QStringLiteral("netlifyToken"), QStringLiteral("a-token")));
        library.close();
    }

    // Lets no site be made.
    void breakSite() { netlify.instead.insert("POST /api/v1/sites", LoopbackReply::withStatus(422, "Not today.")); }

    // Where nothing can be written, whoever one is.
    void breakFolder()
    {
        QFile inTheWay(folder());
        ASSERT_TRUE(inTheWay.open(QIODevice::WriteOnly));
    }

    void publish(bool automatic = false) { await(model->publishReadingList(automatic)); }

    static AppNotice failed(const QString &message)
    {
        return AppNotice::error(QStringLiteral("Reading List Update Failed"), message);
    }

    // Of a publication that has begun and finds its page on the way at first.
    void endOnePoll()
    {
        EXPECT_TRUE(testing::eventually([this] { return clock.sleepers(2s) == 1; }));
        clock.advance(1500ms);
        EXPECT_TRUE(testing::eventually([this] { return !model->isWorking(); }));
    }

    // Sleeps under way that are no longer than this and no polls.
    std::size_t sleepersOf(std::chrono::nanoseconds longest) const
    {
        return clock.sleepers(longest + 1ns) - clock.sleepers(2s);
    }

    QByteArray list() const
    {
        QFile list(file());
        return list.open(QIODevice::ReadOnly) ? list.readAll() : QByteArray();
    }

    testing::NetlifyStandIn netlify;
};

} // namespace

// By hand -------------------------------------------------------------------------------

TEST_F(AppModelPublishing, AListThatReachedBothPlacesIsToldOfInPassing)
{
    configureFolder();
    configureSite();
    startModel();

    publish();

    EXPECT_EQ(model->toastMessage(), QStringLiteral("Updated the local Quire file and reading website"));
    EXPECT_EQ(model->notice(), std::nullopt);
    EXPECT_THAT(
        history(), ElementsAre(QStringLiteral("publishing running 1"), QStringLiteral("publishing succeeded 1")));
    EXPECT_FALSE(list().isEmpty());
    EXPECT_FALSE(netlify.page().isEmpty());
    EXPECT_EQ(model->settings().netlifySiteURL, netlify.siteAddress()); // it was loaded anew
    EXPECT_FALSE(model->isWorking());
    EXPECT_EQ(model->activityLabel(), QString());
    clock.advance(3200ms);
    settle();
    EXPECT_EQ(model->toastMessage(), std::nullopt);
}

TEST_F(AppModelPublishing, WithoutAFolderTheSiteAloneIsUpdated)
{
    configureSite();
    startModel();

    publish();

    EXPECT_EQ(model->toastMessage(), QStringLiteral("Updated the reading website"));
    EXPECT_EQ(model->notice(), std::nullopt);
}

TEST_F(AppModelPublishing, AListThatReachedTheFolderAloneIsASuccessWithANotice)
{
    configureFolder();
    startModel();

    publish();

    EXPECT_EQ(model->notice(),
        AppNotice::information(QStringLiteral("Reading List Partially Updated"),
            QStringLiteral("The local file was updated.\n") + noToken));
    EXPECT_EQ(model->toastMessage(), std::nullopt);
    EXPECT_THAT(
        history(), ElementsAre(QStringLiteral("publishing running 1"), QStringLiteral("publishing succeeded 1")));
    EXPECT_FALSE(list().isEmpty());
}

TEST_F(AppModelPublishing, AListThatReachedTheSiteAloneTellsWhatTheFolderSaid)
{
    configureFolder();
    configureSite();
    breakFolder();
    startModel();

    publish();

    ASSERT_TRUE(model->notice());
    EXPECT_EQ(model->notice()->title, QStringLiteral("Reading List Partially Updated"));
    EXPECT_TRUE(model->notice()->message.startsWith(QStringLiteral("The online site was updated.\nLocal: ")))
        << qPrintable(model->notice()->message);
}

TEST_F(AppModelPublishing, AListThatReachedNothingIsAFailedJobAndSaysWhy)
{
    startModel();

    publish();

    EXPECT_EQ(model->notice(), failed(noToken));
    EXPECT_THAT(history(), ElementsAre(QStringLiteral("publishing running 1"), QStringLiteral("publishing failed 1")));
    EXPECT_FALSE(model->isWorking());
}

TEST_F(AppModelPublishing, BothReasonsAreTold)
{
    configureFolder();
    configureSite();
    breakFolder();
    breakSite();
    startModel();

    publish();

    ASSERT_TRUE(model->notice());
    EXPECT_EQ(model->notice()->title, QStringLiteral("Reading List Update Failed"));
    EXPECT_TRUE(model->notice()->message.startsWith(QStringLiteral("Local: ")));
    EXPECT_TRUE(model->notice()->message.contains(QStringLiteral("\nOnline: ")));
}

TEST_F(AppModelPublishing, OneAtATimeIsPublished)
{
    configureFolder();
    configureSite();
    startModel();
    auto first = model->publishReadingList(false);

    publish();

    await(std::move(first));
    EXPECT_THAT(
        history(), ElementsAre(QStringLiteral("publishing running 1"), QStringLiteral("publishing succeeded 1")));
    EXPECT_EQ(model->notice(), std::nullopt);
}

TEST_F(AppModelPublishing, ItTellsThatItIsAtWork)
{
    startModel();
    auto publishing = model->publishReadingList(false);

    EXPECT_TRUE(model->isWorking());
    EXPECT_EQ(model->activeSidebarOperation(), SidebarOperation::LibraryUpdate);
    EXPECT_EQ(model->activityLabel(), QStringLiteral("Updating reading lists…"));

    await(std::move(publishing));
}

TEST_F(AppModelPublishing, WhatIsPublishedIsTheLibraryWhenItWasAskedFor)
{
    addBook(QStringLiteral("The Salt Road"));
    configureFolder();
    startModel();
    auto publishing = model->publishReadingList(false);
    addBook(QStringLiteral("Come Later"));

    await(std::move(publishing));

    EXPECT_TRUE(list().contains("The Salt Road"));
    EXPECT_FALSE(list().contains("Come Later"));
}

TEST_F(AppModelPublishing, TheModelMayDieInTheMiddle)
{
    configureFolder();
    configureSite();
    for (int turns = 0; turns < 8; ++turns) {
        startModel();
        const auto publishing = model->publishReadingList(false);
        for (int turn = 0; turn < turns; ++turn) {
            QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents, 5);
        }
        model.reset();
        settle();
    }
    startModel();
    publish();
    EXPECT_EQ(model->notice(), std::nullopt); // nothing of those before is in the way
    EXPECT_FALSE(list().isEmpty());
}

// The snapshot ----------------------------------------------------------------------------

TEST_F(AppModelPublishing, TheSnapshotHoldsWhatIsInSightAtThatMoment)
{
    addBook(QStringLiteral("Read"));
    addBook(QStringLiteral("Reading"), QStringLiteral("currently-reading"));
    addBook(QStringLiteral("Someday"), QStringLiteral("to-read"));
    addAudiobook(QStringLiteral("Unrated"));
    startModel();

    const PublishingSnapshot snapshot = model->publishingSnapshot(clock.now());

    EXPECT_EQ(snapshot.generatedAt, clock.now());
    ASSERT_EQ(snapshot.booksRead.size(), 1);
    EXPECT_EQ(snapshot.booksRead[0].title, QStringLiteral("Read"));
    ASSERT_EQ(snapshot.currentlyReading.size(), 1);
    EXPECT_EQ(snapshot.currentlyReading[0].title, QStringLiteral("Reading"));
    EXPECT_THAT(snapshot.ratedAudiobooks, IsEmpty());
    EXPECT_EQ(snapshot.statistics, model->goodreadsStatistics());
}

// By itself -------------------------------------------------------------------------------

TEST_F(AppModelPublishing, AnAutomaticPartialSuccessIsInTheLogAlone)
{
    configureFolder();
    startModel();

    publish(true);

    EXPECT_EQ(model->notice(), std::nullopt);
    EXPECT_EQ(model->toastMessage(), std::nullopt);
    EXPECT_THAT(logLines(),
        ElementsAre(QStringLiteral("Automatic publishing partially succeeded: The local file was updated."), noToken));
}

TEST_F(AppModelPublishing, AnAutomaticSuccessIsToldToNobody)
{
    configureFolder();
    configureSite();
    startModel();

    publish(true);

    EXPECT_FALSE(list().isEmpty());
    EXPECT_EQ(model->notice(), std::nullopt);
    EXPECT_EQ(model->toastMessage(), std::nullopt);
    EXPECT_THAT(logLines(), IsEmpty());
}

TEST_F(AppModelPublishing, AnAutomaticFailureIsInTheLogAlone)
{
    startModel();

    publish(true);

    EXPECT_EQ(model->notice(), std::nullopt);
    EXPECT_EQ(model->toastMessage(), std::nullopt);
    EXPECT_THAT(logLines(), ElementsAre(QStringLiteral("Automatic publishing failed: ") + noToken));
}

TEST_F(AppModelPublishing, ItIsPublishedAfterEachInterval)
{
    configureFolder();
    configureSite();
    setStored(QStringLiteral("automaticPublishing"), QStringLiteral("1"));
    setStored(QStringLiteral("publishIntervalMinutes"), QStringLiteral("2"));
    startModel();
    clock.advance(2min - 1ms);
    settle();
    EXPECT_THAT(history(), IsEmpty());

    for (int run = 1; run <= 2; ++run) {
        clock.advance(run == 1 ? 1ms : 120'000ms);
        ASSERT_TRUE(testing::eventually([this, run] { return history().size() == 2 * run; })) << run;
        settle();
    }
    EXPECT_EQ(history().last(), QStringLiteral("publishing succeeded 1"));
}

TEST_F(AppModelPublishing, AnIntervalOfNothingIsAMinute)
{
    configureFolder();
    setStored(QStringLiteral("automaticPublishing"), QStringLiteral("1"));
    setStored(QStringLiteral("publishIntervalMinutes"), QStringLiteral("0"));
    startModel();

    clock.advance(1min - 1ms);
    settle();
    EXPECT_THAT(history(), IsEmpty());
    clock.advance(1ms);
    EXPECT_TRUE(testing::eventually([this] { return history().size() == 2; }));
}

TEST_F(AppModelPublishing, NothingIsPublishedByItselfUntilItIsSwitchedOn)
{
    configureFolder();
    startModel();
    clock.advance(72h);
    settle();
    EXPECT_THAT(history(), IsEmpty());

    setStored(QStringLiteral("automaticPublishing"), QStringLiteral("1"));
    setStored(QStringLiteral("publishIntervalMinutes"), QStringLiteral("5"));
    await(model->reload());
    model->scheduleAutomaticPublishing();
    clock.advance(5min);
    EXPECT_TRUE(testing::eventually([this] { return history().size() == 2; }));
}

TEST_F(AppModelPublishing, NothingIsPublishedAfterTheEnd)
{
    configureFolder();
    setStored(QStringLiteral("automaticPublishing"), QStringLiteral("1"));
    startModel();
    await(model->shutdown());

    clock.advance(24h);
    settle();

    EXPECT_THAT(history(), IsEmpty());
}

// While a publication waits for its page ---------------------------------------------------

TEST_F(AppModelPublishing, AShutdownEndsAPublicationThatWaitsForItsPageAndTellsNothing)
{
    for (const bool automatic : {false, true}) {
        SCOPED_TRACE(automatic);
        configureFolder();
        configureSite();
        netlify.states = {QStringLiteral("building")};
        startModel();
        logLines();
        auto publishing = model->publishReadingList(automatic);
        ASSERT_TRUE(testing::eventually([this] { return clock.sleepers(2s) == 1; }));

        await(model->shutdown());
        await(std::move(publishing)); // at once: nobody moves the clock

        EXPECT_EQ(model->notice(), std::nullopt);
        EXPECT_EQ(model->toastMessage(), std::nullopt);
        EXPECT_THAT(logLines(), IsEmpty());
        EXPECT_FALSE(model->isWorking());
        EXPECT_EQ(stored(QStringLiteral("onlineLastPublish")), std::nullopt);
        EXPECT_FALSE(list().isEmpty());
    }
}

TEST_F(AppModelPublishing, AShutdownEndsTheSchedulesPublicationToo)
{
    configureSite();
    setStored(QStringLiteral("automaticPublishing"), QStringLiteral("1"));
    netlify.states = {QStringLiteral("building")};
    startModel();
    clock.advance(15min);
    ASSERT_TRUE(testing::eventually([this] { return clock.sleepers(2s) == 1; }));

    await(model->shutdown());
    ASSERT_TRUE(testing::eventually([this] { return !model->isWorking(); }));

    const auto asked = netlify.calls().size();
    clock.advance(24h);
    settle();
    EXPECT_EQ(netlify.calls().size(), asked);
    EXPECT_EQ(model->notice(), std::nullopt);
}

TEST_F(AppModelPublishing, SavedSettingsBeginTheIntervalAnewAndLetWhatRunsEnd)
{
    configureSite();
    setStored(QStringLiteral("automaticPublishing"), QStringLiteral("1"));
    netlify.states = {QStringLiteral("building"), QStringLiteral("ready")};
    startModel();
    clock.advance(15min);
    ASSERT_TRUE(testing::eventually([this] { return clock.sleepers(2s) == 1; }));
    setStored(QStringLiteral("publishIntervalMinutes"), QStringLiteral("2"));
    await(model->reload());
    model->scheduleAutomaticPublishing();

    clock.advance(1500ms);
    ASSERT_TRUE(testing::eventually([this] { return !model->isWorking(); }));
    EXPECT_THAT(
        history(), ElementsAre(QStringLiteral("publishing running 1"), QStringLiteral("publishing succeeded 1")));
    settle();
    EXPECT_EQ(sleepersOf(15min), 1U); // the former schedule does not sleep once more

    clock.advance(2min - 1500ms - 1ms);
    settle();
    EXPECT_EQ(history().size(), 2);
    clock.advance(1ms);
    endOnePoll();
    EXPECT_EQ(history().size(), 4);
}

TEST_F(AppModelPublishing, SwitchingItOffWhileOneRunsEndsTheSchedule)
{
    configureSite();
    setStored(QStringLiteral("automaticPublishing"), QStringLiteral("1"));
    netlify.states = {QStringLiteral("building"), QStringLiteral("ready")};
    startModel();
    clock.advance(15min);
    ASSERT_TRUE(testing::eventually([this] { return clock.sleepers(2s) == 1; }));
    setStored(QStringLiteral("automaticPublishing"), QStringLiteral("0"));
    await(model->reload());
    model->scheduleAutomaticPublishing();

    clock.advance(1500ms);
    ASSERT_TRUE(testing::eventually([this] { return !model->isWorking(); }));
    clock.advance(23h);
    settle();

    EXPECT_THAT(
        history(), ElementsAre(QStringLiteral("publishing running 1"), QStringLiteral("publishing succeeded 1")));
}

TEST_F(AppModelPublishing, TheIntervalRunsFromTheEndOfAPublication)
{
    configureSite();
    setStored(QStringLiteral("automaticPublishing"), QStringLiteral("1"));
    setStored(QStringLiteral("publishIntervalMinutes"), QStringLiteral("1"));
    netlify.states = {QStringLiteral("building"), QStringLiteral("ready")};
    startModel();
    clock.advance(1min);
    ASSERT_TRUE(testing::eventually([this] { return clock.sleepers(2s) == 1; }));
    clock.advance(50s); // a long one
    ASSERT_TRUE(testing::eventually([this] { return !model->isWorking(); }));
    settle();

    clock.advance(1min - 1ms);
    settle();
    EXPECT_EQ(history().size(), 2);
    clock.advance(1ms);
    endOnePoll();
    EXPECT_EQ(history().size(), 4);
}

TEST_F(AppModelPublishing, AFailedPublicationLeavesTheScheduleRunning)
{
    setStored(QStringLiteral("automaticPublishing"), QStringLiteral("1"));
    setStored(QStringLiteral("publishIntervalMinutes"), QStringLiteral("1"));
    startModel();
    for (int run = 1; run <= 3; ++run) {
        clock.advance(1min);
        ASSERT_TRUE(testing::eventually([this, run] { return history().size() == 2 * run; })) << run;
        settle();
    }
    EXPECT_EQ(history().last(), QStringLiteral("publishing failed 1"));
    EXPECT_EQ(model->notice(), std::nullopt);
}

// With everything else ----------------------------------------------------------------------

TEST_F(AppModelPublishing, AFullSyncWithNothingToSyncPublishesAllTheSame)
{
    configureFolder();
    configureSite();
    startModel();

    await(model->synchronizeAll());

    EXPECT_THAT(
        history(), ElementsAre(QStringLiteral("publishing running 1"), QStringLiteral("publishing succeeded 1")));
    EXPECT_EQ(model->toastMessage(), QStringLiteral("Updated the local Quire file and reading website"));
    EXPECT_FALSE(model->isSyncingAll());
}

} // namespace quire
