#include "ModelTest.h"
#include "testing/Pictures.h"

#include <gmock/gmock.h>

#include <QSignalSpy>

namespace quire {

namespace {

using testing::await;
using ::testing::ElementsAre;
using testing::eventually;
using ::testing::IsEmpty;
using testing::LoopbackReply;
using testing::pngPicture;

const QString checking = QStringLiteral("Checking locally stored artwork…");

class AppModelArtwork : public ModelTest
{
protected:
    void addBookWithoutCover(const QString &title, const std::optional<QUrl> &url = std::nullopt)
    {
        addBook(title);
        library.execute("UPDATE goodreads_books SET cover_data = NULL, cover_url = ? WHERE title = ?",
            {url ? SQLiteValue(url->toString()) : SQLiteValue(), title});
    }

    QString sourceOf(const QString &title) const
    {
        return library.scalar("SELECT cover_data_source FROM goodreads_books WHERE title = ?", {title})
            .optionalString()
            .value_or(QString());
    }

    // Lets the pass come to its end.
    void expectStatus(const QString &status)
    {
        EXPECT_TRUE(eventually([&] { return model->artworkStatus() == status; })) << qPrintable(model->artworkStatus());
    }

    // A cover for whatever Apple Books is asked for.
    void offerCovers(const QByteArray &title)
    {
        services.route(u"/search",
            LoopbackReply::ok(R"({"results":[{"trackName":")" + title
                + R"(","artistName":"Frank Herbert","artworkUrl100":")" + services.url(u"/100x100bb.jpg").toEncoded()
                + "\"}]}"));
        services.route(u"/600x900bb.jpg", LoopbackReply::ok(pngPicture()));
    }

    // A job of that kind that ends only with the test.
    QCoro::Task<std::optional<int>> hold(QuireBackgroundJob job)
    {
        return model->coordinated<int>(job, true, [this]() -> QCoro::Task<int> { return waitForEver(&clock); });
    }

    static QCoro::Task<int> waitForEver(testing::ManualClock *clock)
    {
        const auto waiting = clock->sleep(std::chrono::hours(1), {});
        co_await waiting;
        co_return 1;
    }
};

// The pass ---------------------------------------------------------------------------

TEST_F(AppModelArtwork, TheStatusBeforeAnyPassIsTold)
{
    makeModel();
    EXPECT_EQ(model->artworkStatus(), QStringLiteral("Artwork is stored locally as it becomes available."));
}

TEST_F(AppModelArtwork, AStartRunsOnePassAfterTheSyncs)
{
    configureGoodreads();
    serveFeed({QStringLiteral("Emma")});
    startModel();
    EXPECT_THAT(
        artworkHistory(), ElementsAre(QStringLiteral("artwork running 1"), QStringLiteral("artwork succeeded 1")));
    EXPECT_EQ(history().first(), QStringLiteral("goodreadsSync running 1"));
    EXPECT_EQ(model->artworkStatus(), QStringLiteral("1 book covers and 0 audio covers stored locally."));
    EXPECT_TRUE(model->books().constFirst().coverData); // the titles were read anew
}

TEST_F(AppModelArtwork, APassThatFetchedNothingDoesNotReloadAndTellsTheCoverage)
{
    addBook(QStringLiteral("Emma"));
    addAudiobook(QStringLiteral("Dune"));
    addAudiobook(QStringLiteral("Momo"));
    startModel();
    const QSignalSpy loads(model.get(), &AppModel::booksChanged);

    model->scheduleArtworkCaching();

    EXPECT_EQ(model->artworkStatus(), checking);
    expectStatus(QStringLiteral("1 book covers and 2 audio covers stored locally."));
    EXPECT_EQ(loads.size(), 0);
    EXPECT_THAT(logLines(), IsEmpty());
}

TEST_F(AppModelArtwork, ADownloadedCoverIsShownAndNotLogged)
{
    services.route(u"/emma.png", LoopbackReply::ok(pngPicture()));
    addBookWithoutCover(QStringLiteral("Emma"), services.url(u"/emma.png"));
    startModel();
    EXPECT_EQ(model->books().constFirst().coverData, CoverBytes(pngPicture()));
    EXPECT_THAT(logLines(), IsEmpty());
}

TEST_F(AppModelArtwork, DrawnCoversAreLoggedWithThoseDownloaded)
{
    services.route(u"/emma.png", LoopbackReply::ok(pngPicture()));
    addBookWithoutCover(QStringLiteral("Emma"), services.url(u"/emma.png"));
    addBookWithoutCover(QStringLiteral("Momo"));
    startModel();
    EXPECT_THAT(logLines(), ElementsAre(QStringLiteral("Stored 1 downloaded covers and 1 offline placeholders.")));
}

TEST_F(AppModelArtwork, AManualSyncIsFollowedByAPass)
{
    configureGoodreads();
    setStored(QStringLiteral("automaticGoodreadsSync"), QStringLiteral("0"));
    startModel();
    serveFeed({QStringLiteral("Emma")});
    await(model->synchronizeGoodreads(false));
    expectStatus(QStringLiteral("1 book covers and 0 audio covers stored locally."));
    EXPECT_EQ(artworkHistory().size(), 4);
}

TEST_F(AppModelArtwork, APassThatIsTurnedAwayLeavesItsStatusStanding)
{
    startModel();
    const auto held = hold(QuireBackgroundJob::Artwork);
    ASSERT_TRUE(eventually([this] { return sleepers() == 1; }));
    model->scheduleArtworkCaching();
    settle();
    EXPECT_EQ(model->artworkStatus(), checking);
    clock.advance(std::chrono::hours(1));
    settle();
    EXPECT_EQ(model->artworkStatus(), checking);
}

TEST_F(AppModelArtwork, AStoreThatFailsEndsThePass)
{
    startModel();
    addBookWithoutCover(QStringLiteral("Emma"));
    library.executeScript("CREATE TRIGGER refused BEFORE UPDATE OF cover_data ON goodreads_books"
                          " BEGIN SELECT RAISE(ABORT, 'no room for covers'); END;");
    model->scheduleArtworkCaching();
    expectStatus(QStringLiteral("Local artwork check could not finish."));
    const QStringList lines = logLines();
    ASSERT_EQ(lines.size(), 1);
    EXPECT_TRUE(lines[0].startsWith(u"Artwork caching failed: ")) << qPrintable(lines[0]);
    EXPECT_TRUE(lines[0].contains(u"no room for covers")) << qPrintable(lines[0]);
    EXPECT_EQ(model->notice(), std::nullopt);
    EXPECT_EQ(model->toastMessage(), std::nullopt);
}

TEST_F(AppModelArtwork, AShutdownStoresNothingForADownloadItInterrupts)
{
    startModel();
    services.route(u"/slow.png", LoopbackReply::silence());
    addBookWithoutCover(QStringLiteral("Emma"), services.url(u"/slow.png"));
    model->scheduleArtworkCaching();
    ASSERT_TRUE(eventually([this] { return services.requests().size() == 1; }));
    await(model->shutdown());
    settle();
    EXPECT_EQ(sourceOf(QStringLiteral("Emma")), QString());
    EXPECT_EQ(model->artworkStatus(), checking);
    EXPECT_THAT(logLines(), IsEmpty());
}

TEST_F(AppModelArtwork, AModelMayDieInTheMiddleOfAPass)
{
    startModel();
    services.route(u"/slow.png", LoopbackReply::silence());
    addBookWithoutCover(QStringLiteral("Emma"), services.url(u"/slow.png"));
    model->scheduleArtworkCaching();
    ASSERT_TRUE(eventually([this] { return services.requests().size() == 1; }));
    model.reset();
    settle();
}

// Refreshing -----------------------------------------------------------------------------

TEST_F(AppModelArtwork, RefreshingTellsHowManyCoversAreNew)
{
    addAudiobook(QStringLiteral("Foundation"));
    addAudiobook(QStringLiteral("Hyperion"));
    startModel();
    offerCovers("Hyperion");

    const auto refreshing = model->refreshAudiobookCovers();
    EXPECT_TRUE(model->isWorking());
    EXPECT_EQ(model->activityLabel(), QStringLiteral("Refreshing audio covers…"));
    EXPECT_EQ(model->activeSidebarOperation(), std::nullopt);
    ASSERT_TRUE(eventually([this] { return model->notice().has_value(); }));

    EXPECT_EQ(model->notice(),
        AppNotice::information(QStringLiteral("Audio Covers Refreshed"),
            QStringLiteral("Updated 1 of 2 covers. 1 retained their existing artwork.")));
    EXPECT_FALSE(model->isWorking());
    EXPECT_EQ(model->activityLabel(), QString());
    EXPECT_EQ(std::count_if(model->audiobooks().begin(), model->audiobooks().end(),
                  [](const Audiobook &title) { return title.coverData == CoverBytes(pngPicture()); }),
        1);
    expectStatus(QStringLiteral("0 book covers and 2 audio covers stored locally."));
    EXPECT_EQ(artworkHistory().size(), 6); // of the start, of this, and of the pass that follows
}

TEST_F(AppModelArtwork, RefreshingDoesNothingWhileAJobRuns)
{
    configureGoodreads();
    setStored(QStringLiteral("automaticGoodreadsSync"), QStringLiteral("0"));
    startModel();
    goodreads.routeEverythingElse([](const testing::LoopbackRequest &) { return LoopbackReply::silence(); });
    const auto syncing = model->synchronizeGoodreads(false);
    ASSERT_TRUE(model->isWorking());
    await(model->refreshAudiobookCovers());
    EXPECT_EQ(model->activityLabel(), QStringLiteral("Syncing Goodreads…"));
    EXPECT_EQ(artworkHistory().size(), 2);
}

TEST_F(AppModelArtwork, RefreshingThatIsTurnedAwayLeavesTheOverlayUp)
{
    startModel();
    const auto held = hold(QuireBackgroundJob::Artwork);
    ASSERT_TRUE(eventually([this] { return sleepers() == 1; }));
    await(model->refreshAudiobookCovers());
    EXPECT_TRUE(model->isWorking());
    EXPECT_EQ(model->activityLabel(), QStringLiteral("Refreshing audio covers…"));
    EXPECT_EQ(model->notice(), std::nullopt);
    clock.advance(std::chrono::hours(1));
}

TEST_F(AppModelArtwork, RefreshingThatFailsTellsTheStoresReason)
{
    addAudiobook(QStringLiteral("Hyperion"));
    startModel();
    offerCovers("Hyperion");
    library.executeScript("CREATE TRIGGER refused BEFORE UPDATE OF cover_data ON audible_books"
                          " BEGIN SELECT RAISE(ABORT, 'no room for covers'); END;");
    await(model->refreshAudiobookCovers());
    ASSERT_TRUE(model->notice());
    EXPECT_EQ(model->notice()->title, QStringLiteral("Covers Could Not Be Refreshed"));
    EXPECT_TRUE(model->notice()->message.contains(u"no room for covers"));
    EXPECT_FALSE(model->isWorking());
    EXPECT_EQ(model->activityLabel(), QString());
}

} // namespace

} // namespace quire
