#include "ModelTest.h"

#include "persistence/database/DatabaseError.h"
#include "reliability/QuireSessionHealth.h"

#include <gmock/gmock.h>

#include <QDir>
#include <QFile>
#include <QSignalSpy>

namespace quire {

namespace {

using testing::await;
using ::testing::Contains;

class AppModelLifeCycle : public ModelTest
{
protected:
    void putSession(const QByteArray &content)
    {
        QFile file(sessionFile());
        ASSERT_TRUE(file.open(QIODevice::WriteOnly));
        file.write(content);
    }

    std::optional<QuireSessionRecord> session() const { return QuireSessionHealth(sessionFile()).read(); }

    // The library's own trace of the checks that a recovery makes.
    bool didRecover() const { return history().contains(QStringLiteral("maintenance succeeded 1")); }

    void startWithSession()
    {
        makeModel(true);
        await(model->start());
    }
};

TEST_F(AppModelLifeCycle, ANewModelIsEmptyAndOpensOnInsights)
{
    makeModel();

    EXPECT_TRUE(model->books().isEmpty());
    EXPECT_TRUE(model->filteredBooks().isEmpty());
    EXPECT_EQ(model->bookPage(), 1);
    EXPECT_EQ(model->settings(), SettingsSnapshot());
    EXPECT_EQ(model->artworkStatus(), QStringLiteral("Artwork is stored locally as it becomes available."));
    EXPECT_EQ(model->audibleAvailability(), AudibleAppAvailability());
    EXPECT_FALSE(model->isReady());
    EXPECT_FALSE(model->isWorking());
    EXPECT_EQ(model->activeSidebarOperation(), std::nullopt);
    EXPECT_EQ(model->notice(), std::nullopt);
    EXPECT_EQ(model->selectedTab(), LibraryTab::Insights);
    EXPECT_EQ(model->selectedShelf(), LibraryShelf::Read);
    EXPECT_EQ(model->selectedSort(), LibrarySort::Recent);
    EXPECT_EQ(model->searchText(), QString());
}

TEST_F(AppModelLifeCycle, StartLoadsTheLibrary)
{
    addBook(QStringLiteral("Emma"));
    addBook(QStringLiteral("Middlemarch"), QStringLiteral("currently-reading"));
    addAudiobook(QStringLiteral("Dune"), QStringLiteral("reading"));
    setStored(QStringLiteral("backupIntervalDays"), QStringLiteral("9"));

    startModel();

    EXPECT_EQ(model->books().size(), 2);
    EXPECT_EQ(model->audiobooks().size(), 1);
    EXPECT_EQ(model->settings().backupIntervalDays, 9);
    EXPECT_EQ(model->settings().databaseFolderPath, library.folder());
    EXPECT_EQ(titlesShown(), QStringList{QStringLiteral("Emma")});
    ASSERT_TRUE(model->currentBook());
    EXPECT_EQ(model->currentBook()->title, QStringLiteral("Middlemarch"));
    ASSERT_TRUE(model->currentAudiobook());
    EXPECT_EQ(model->currentAudiobook()->title, QStringLiteral("Dune"));
    EXPECT_EQ(model->audibleStatistics().reading, 1);
    EXPECT_EQ(model->notice(), std::nullopt);
}

TEST_F(AppModelLifeCycle, ASecondStartReturnsAtOnceAndChangesNothing)
{
    startWithSession();
    const auto record = session();
    addBook(QStringLiteral("Behind its back"));

    await(model->start());

    EXPECT_EQ(session(), record);
    EXPECT_TRUE(model->books().isEmpty());
    EXPECT_EQ(model->notice(), std::nullopt);
}

TEST_F(AppModelLifeCycle, ASessionFileThatDoesNotExistStartsWithoutRecovery)
{
    startWithSession();

    EXPECT_TRUE(model->isReady());
    EXPECT_FALSE(didRecover());
    ASSERT_TRUE(session());
    EXPECT_FALSE(session()->clean);
    EXPECT_EQ(session()->closedAt, std::nullopt);
    EXPECT_EQ(session()->openedAt, QStringLiteral("2026-11-21T12:00:00.000Z"));
}

TEST_F(AppModelLifeCycle, ASessionFileOfGarbageStartsWithoutRecovery)
{
    for (const QByteArray &garbage : {QByteArray(), QByteArray("{\"clean\": fal"), QByteArray("\xff\xfe\0", 3)}) {
        putSession(garbage);
        startWithSession();
        EXPECT_TRUE(model->isReady());
        EXPECT_FALSE(didRecover());
        model.reset();
    }
}

TEST_F(AppModelLifeCycle, ASessionThatDidNotEndCleanlyStartsWithRecovery)
{
    QuireSessionHealth(sessionFile())
        .write({QUuid::createUuid(), QStringLiteral("2026-11-20T08:00:00.000Z"), {}, false});

    startWithSession();

    EXPECT_TRUE(model->isReady());
    EXPECT_TRUE(didRecover());
}

TEST_F(AppModelLifeCycle, ASessionThatEndedCleanlyStartsWithoutRecovery)
{
    startWithSession();
    await(model->shutdown());
    ASSERT_TRUE(session());
    EXPECT_TRUE(session()->clean);
    EXPECT_EQ(session()->closedAt, QStringLiteral("2026-11-21T12:00:00.000Z"));

    startWithSession();

    EXPECT_FALSE(didRecover());
}

TEST_F(AppModelLifeCycle, WithoutALaunchCacheFolderNoSessionIsRecorded)
{
    startModel();
    await(model->shutdown());

    EXPECT_FALSE(QFile::exists(sessionFile()));
}

TEST_F(AppModelLifeCycle, ASessionThatCannotBeRecordedEndsTheStart)
{
    QDir().mkpath(sessionFile());

    startWithSession();

    ASSERT_TRUE(model->notice());
    EXPECT_EQ(model->notice()->title, QStringLiteral("Quire Could Not Open"));
    EXPECT_FALSE(model->isReady());
    EXPECT_THROW(await(model->reload()), DatabaseError); // the library was not even tried
    await(model->shutdown());
    EXPECT_TRUE(QFileInfo(sessionFile()).isDir()); // nothing to close
}

TEST_F(AppModelLifeCycle, AStoreThatCannotOpenLeavesOneNoticeAndALogLine)
{
    QFile::remove(library.databasePath());
    QDir().mkpath(library.databasePath());

    startWithSession();

    ASSERT_TRUE(model->notice());
    EXPECT_EQ(model->notice()->kind, AppNotice::Kind::Error);
    EXPECT_EQ(model->notice()->title, QStringLiteral("Quire Could Not Open"));
    EXPECT_THAT(logLines(), Contains(QStringLiteral("Startup failed: ") + model->notice()->message));
    EXPECT_FALSE(model->isReady());

    await(model->start()); // no second try
    EXPECT_EQ(logLines().size(), 1);
    await(model->shutdown());
    ASSERT_TRUE(session());
    EXPECT_TRUE(session()->clean); // the next start is no recovery
}

TEST_F(AppModelLifeCycle, GoodreadsIsSyncedAtTheStartWhenItIsConfigured)
{
    configureGoodreads();
    serveFeed({QStringLiteral("Emma")});

    startModel();

    EXPECT_EQ(goodreads.requests().size(), 5);
    EXPECT_EQ(model->books().size(), 1);
    EXPECT_EQ(model->toastMessage(), QStringLiteral("Goodreads synced automatically: 1 titles"));
    EXPECT_EQ(history(),
        (QStringList{QStringLiteral("goodreadsSync running 1"), QStringLiteral("goodreadsSync succeeded 1")}));
}

TEST_F(AppModelLifeCycle, NoAutomaticSyncHappensWhenItIsSwitchedOffOrNotConfigured)
{
    configureGoodreads();
    serveFeed({QStringLiteral("Emma")});
    const QList<std::pair<QString, QString>> reasons{{QStringLiteral("showBooksSection"), QStringLiteral("0")},
        {QStringLiteral("automaticGoodreadsSync"), QStringLiteral("0")},
        {QStringLiteral("goodreadsUserId"), QString()}};
    for (const auto &[key, value] : reasons) {
        const auto before = stored(key);
        setStored(key, value);
        startModel();
        EXPECT_TRUE(goodreads.requests().isEmpty()) << qPrintable(key);
        model.reset();
        setStored(key, before.value_or(QStringLiteral("1")));
    }

    QFile::remove(library.file(QStringLiteral("Credentials.plist"))); // with the feed key
    startModel();
    EXPECT_TRUE(goodreads.requests().isEmpty());
}

TEST_F(AppModelLifeCycle, TheStoredTabIsRestoredWhenItMayBeShown)
{
    struct Case
    {
        const char *stored;
        const char *hidden;
        LibraryTab expected;
    };
    const QList<Case> cases{{"books", nullptr, LibraryTab::Books}, {"audio", nullptr, LibraryTab::Audio},
        {"insights", nullptr, LibraryTab::Insights}, {"Books", nullptr, LibraryTab::Insights},
        {"shelf", nullptr, LibraryTab::Insights}, {"", nullptr, LibraryTab::Insights},
        {"audio", "showAudioSection", LibraryTab::Insights}, {"books", "showBooksSection", LibraryTab::Insights},
        {"books", "showAudioSection", LibraryTab::Books}};
    for (const Case &one : cases) {
        library.execute("DELETE FROM settings");
        setStored(QStringLiteral("selectedTab"), QString::fromUtf8(one.stored));
        if (one.hidden) {
            setStored(QString::fromUtf8(one.hidden), QStringLiteral("0"));
        }
        startModel();
        EXPECT_EQ(model->selectedTab(), one.expected) << one.stored << ' ' << (one.hidden ? one.hidden : "");
        model.reset();
    }
}

TEST_F(AppModelLifeCycle, AReloadKeepsTheTabThatTheReaderChose)
{
    setStored(QStringLiteral("selectedTab"), QStringLiteral("audio"));
    startModel();
    model->setSelectedTab(LibraryTab::Books);

    await(model->reload());

    EXPECT_EQ(model->selectedTab(), LibraryTab::Books);
}

TEST_F(AppModelLifeCycle, AReloadBringsTheOpenBookUpToDate)
{
    addBook(QStringLiteral("Emma"));
    addAudiobook(QStringLiteral("Dune"));
    startModel();
    model->setSelectedBook(model->books().first());
    model->setSelectedAudiobook(model->audiobooks().first());
    library.execute("UPDATE goodreads_books SET notes = 'Fresh.', hidden = 1");
    library.execute("UPDATE audible_books SET notes = 'Heard.'");

    await(model->reload());

    EXPECT_EQ(model->selectedBook()->notes, QStringLiteral("Fresh."));
    EXPECT_EQ(model->selectedAudiobook()->notes, QStringLiteral("Heard."));
}

TEST_F(AppModelLifeCycle, AReloadKeepsTheOpenBookThatHasGone)
{
    addBook(QStringLiteral("Emma"));
    startModel();
    model->setSelectedBook(model->books().first());
    library.execute("DELETE FROM goodreads_books");

    await(model->reload());

    EXPECT_TRUE(model->books().isEmpty());
    ASSERT_TRUE(model->selectedBook());
    EXPECT_EQ(model->selectedBook()->title, QStringLiteral("Emma"));
}

TEST_F(AppModelLifeCycle, AReloadThatFailsPartlyChangesNoField)
{
    addBook(QStringLiteral("Emma"));
    startModel();
    const QSignalSpy books(model.get(), &AppModel::booksChanged);
    addBook(QStringLiteral("Persuasion"));
    library.execute("DROP TABLE settings");

    EXPECT_THROW(await(model->reload()), DatabaseError);

    EXPECT_EQ(model->books().size(), 1);
    EXPECT_EQ(titlesShown(), QStringList{QStringLiteral("Emma")});
    EXPECT_EQ(books.size(), 0);
    EXPECT_TRUE(model->isReady());
}

TEST_F(AppModelLifeCycle, OfTwoReloadsThatOverlapTheLaterStands)
{
    addBook(QStringLiteral("Emma"));
    startModel();
    addBook(QStringLiteral("Persuasion"));
    auto first = model->reload();
    auto second = model->reload();

    await(std::move(first));
    await(std::move(second));

    EXPECT_EQ(model->books().size(), 2);
    EXPECT_EQ(model->filteredBooks().size(), 2);
}

TEST_F(AppModelLifeCycle, AModelMayDieInTheMiddleOfAStart)
{
    for (int step = 0; step < 12; ++step) {
        makeModel(true);
        const auto starting = model->start();
        for (int turn = 0; turn < step; ++turn) {
            QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents, 5);
        }
        model.reset();
        settle();
    }
}

TEST_F(AppModelLifeCycle, AModelMayDieInTheMiddleOfAReload)
{
    for (int count = 0; count < 40; ++count) {
        addBook(QStringLiteral("Volume %1").arg(count));
    }
    for (int step = 0; step < 8; ++step) {
        startModel();
        const auto loading = model->reload();
        for (int turn = 0; turn < step; ++turn) {
            QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents, 5);
        }
        model.reset();
        settle();
    }
}

TEST_F(AppModelLifeCycle, ShutdownClosesTheLibraryAndEndsTheTasks)
{
    startWithSession();
    model->showToast(QStringLiteral("Hello"), std::chrono::seconds(3));
    model->setSelectedTab(LibraryTab::Audio);

    await(model->shutdown());

    EXPECT_THROW(await(model->reload()), DatabaseError);
    EXPECT_EQ(clock.sleepers(), 0U);
    clock.advance(std::chrono::seconds(10));
    settle();
    EXPECT_EQ(model->toastMessage(), QStringLiteral("Hello")); // its task was cancelled
    EXPECT_EQ(stored(QStringLiteral("selectedTab")), std::nullopt);
    EXPECT_TRUE(logLines().isEmpty());
}

TEST_F(AppModelLifeCycle, AShutdownInTheMiddleOfAStartIsTheLastWord)
{
    configureGoodreads();
    serveFeed({QStringLiteral("Emma")});
    for (int step = 0; step < 8; ++step) {
        makeModel(true);
        auto starting = model->start();
        for (int turn = 0; turn < step; ++turn) {
            QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents, 5);
        }
        const bool wasReady = model->isReady();

        await(model->shutdown());
        await(std::move(starting));

        EXPECT_THROW(await(model->reload()), DatabaseError) << step; // nothing opened it again
        ASSERT_TRUE(session()) << step;
        EXPECT_TRUE(session()->clean) << step;
        if (!wasReady) {
            EXPECT_EQ(model->notice(), std::nullopt) << step;
            EXPECT_FALSE(model->isReady()) << step;
        }
        model.reset();
    }
}

TEST_F(AppModelLifeCycle, ShutdownIgnoresASessionThatCannotBeClosed)
{
    startWithSession();
    QFile::remove(sessionFile());
    QDir().mkpath(sessionFile());

    await(model->shutdown());

    EXPECT_EQ(model->notice(), std::nullopt);
}

} // namespace

} // namespace quire
