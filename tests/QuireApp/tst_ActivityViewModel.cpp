#include "ModelTest.h"
#include "QuireApp/ViewModels/ActivityViewModel.h"

#include <QSignalSpy>

namespace quire {

namespace {

using testing::eventually;

class ActivityViewModelTest : public ModelTest
{
};

TEST_F(ActivityViewModelTest, TheOverlayStaysAwayWhileAJobHasAButtonOfItsOwn)
{
    configureGoodreads();
    setStored(QStringLiteral("automaticGoodreadsSync"), QStringLiteral("0"));
    serveFeed({QStringLiteral("Emma")});
    startModel();
    const ActivityViewModel activity(*model);

    const auto syncing = model->synchronizeGoodreads(false);

    EXPECT_TRUE(model->isWorking());
    EXPECT_FALSE(activity.canWork());
    EXPECT_EQ(activity.activityLabel(), QStringLiteral("Syncing Goodreads…"));
    EXPECT_FALSE(activity.showsOverlay());
    EXPECT_TRUE(eventually([&] { return activity.canWork(); }));
    EXPECT_FALSE(activity.showsOverlay());
    EXPECT_EQ(activity.toast(), QStringLiteral("Synced 1 Goodreads titles"));
}

TEST_F(ActivityViewModelTest, TheOverlayStandsWhileABookIsAdded)
{
    startModel();
    const ActivityViewModel activity(*model);
    EXPECT_FALSE(activity.showsOverlay());
    ManualBookDraft draft;
    draft.title = QStringLiteral("Emma");

    const auto adding = model->addBook(draft);

    EXPECT_TRUE(activity.showsOverlay());
    EXPECT_EQ(activity.activityLabel(), QStringLiteral("Adding Emma…"));
    EXPECT_TRUE(eventually([&] { return activity.canWork(); }));
    EXPECT_FALSE(activity.showsOverlay());
}

TEST_F(ActivityViewModelTest, NothingIsOfferedThatNeedsTheLibraryBeforeItIsOpen)
{
    makeModel();
    const ActivityViewModel activity(*model);
    EXPECT_FALSE(activity.isReady());
    EXPECT_FALSE(activity.canWork());

    testing::await(model->start());

    EXPECT_TRUE(activity.isReady());
    EXPECT_TRUE(eventually([&] { return activity.canWork(); }));
}

TEST_F(ActivityViewModelTest, ANoticeIsReplacedByTheNextAndGoesWhenDismissed)
{
    makeModel();
    ActivityViewModel activity(*model);
    EXPECT_FALSE(activity.hasNotice());
    model->setNotice(AppNotice::error(QStringLiteral("First"), QStringLiteral("one")));
    model->setNotice(AppNotice::information(QStringLiteral("Second"), QStringLiteral("two")));
    EXPECT_EQ(activity.noticeTitle(), QStringLiteral("Second"));
    EXPECT_EQ(activity.noticeMessage(), QStringLiteral("two"));
    activity.dismissNotice();
    EXPECT_FALSE(activity.hasNotice());
    EXPECT_EQ(model->notice(), std::nullopt);
}

TEST_F(ActivityViewModelTest, ToastsComeFromTheModel)
{
    makeModel();
    const ActivityViewModel activity(*model);
    const QSignalSpy changed(&activity, &ActivityViewModel::toastChanged);
    model->showToast(QStringLiteral("Settings saved"), std::chrono::milliseconds(3200));
    EXPECT_EQ(activity.toast(), QStringLiteral("Settings saved"));
    clock.advance(std::chrono::milliseconds(3200));
    EXPECT_TRUE(eventually([&] { return activity.toast().isEmpty(); }));
    EXPECT_EQ(changed.size(), 2);
}

// A failing service's own page can be megabytes, and laying it out would hold the
// interface for as long as it takes.
TEST_F(ActivityViewModelTest, WhatIsTooLongToReadIsShownFromItsStart)
{
    makeModel();
    const ActivityViewModel activity(*model);
    const QString page = QStringLiteral("<html>") + QString(5'000'000, u'x');
    model->setNotice(AppNotice::error(QStringLiteral("Goodreads Sync Failed"), page));
    model->showToast(page, std::chrono::milliseconds(7000));
    for (const QString &shown : {activity.noticeMessage(), activity.toast()}) {
        EXPECT_EQ(shown.size(), 10'001);
        EXPECT_TRUE(shown.startsWith(QStringLiteral("<html>xxx")));
        EXPECT_TRUE(shown.endsWith(QStringLiteral("x…")));
    }
    EXPECT_EQ(model->notice()->message, page);

    const QString longest(10'000, u'x');
    model->setNotice(AppNotice::error(QStringLiteral("Goodreads Sync Failed"), longest));
    EXPECT_EQ(activity.noticeMessage(), longest);
}

} // namespace

} // namespace quire
