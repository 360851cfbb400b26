#include "QuireApp/ViewModels/AlertViewModel.h"

#include <QSignalSpy>

#include <gmock/gmock.h>

namespace quire {

namespace {

using ::testing::IsEmpty;

const DesktopAlert newer{.title = QStringLiteral("Quire 2.0 is available"),
    .message = QStringLiteral("Open the Quire website to get the newest version."),
    .buttons = {QStringLiteral("Open Website"), QStringLiteral("Later")}};
const DesktopAlert current{.title = QStringLiteral("Quire is up to date"),
    .message = QStringLiteral("You’re using the newest available version of Quire."),
    .buttons = {QStringLiteral("OK")}};

} // namespace

TEST(AlertViewModel, ShowsNothingBeforeItIsAsked)
{
    const AlertViewModel alerts;
    EXPECT_FALSE(alerts.isOpen());
    EXPECT_EQ(alerts.title(), QString());
    EXPECT_EQ(alerts.message(), QString());
    EXPECT_THAT(alerts.buttons(), IsEmpty());
}

TEST(AlertViewModel, ShowsAnAlertUntilAButtonIsPressed)
{
    for (const int button : {0, 1}) {
        AlertViewModel alerts;
        const QSignalSpy changed(&alerts, &AlertViewModel::changed);
        const auto answer = alerts.show(newer);
        EXPECT_TRUE(alerts.isOpen());
        EXPECT_EQ(alerts.title(), newer.title);
        EXPECT_EQ(alerts.message(), newer.message);
        EXPECT_EQ(alerts.buttons(), newer.buttons);
        EXPECT_EQ(changed.size(), 1);
        EXPECT_FALSE(answer.isFinished());

        alerts.press(button);
        EXPECT_FALSE(alerts.isOpen());
        EXPECT_EQ(changed.size(), 2);
        ASSERT_TRUE(answer.isFinished());
        EXPECT_EQ(answer.result(), button);
    }
}

TEST(AlertViewModel, PuttingAnAlertAwayIsItsLastButton)
{
    AlertViewModel alerts;
    const auto offered = alerts.show(newer);
    alerts.putAway();
    EXPECT_EQ(offered.result(), 1);
    const auto told = alerts.show(current);
    alerts.putAway();
    EXPECT_EQ(told.result(), 0);
}

TEST(AlertViewModel, ShowsOneAfterTheOther)
{
    AlertViewModel alerts;
    const QSignalSpy changed(&alerts, &AlertViewModel::changed);
    const auto first = alerts.show(newer);
    const auto second = alerts.show(current);
    EXPECT_EQ(alerts.title(), newer.title);
    EXPECT_EQ(changed.size(), 1); // what is seen is what it was

    alerts.press(0);
    EXPECT_TRUE(first.isFinished());
    EXPECT_FALSE(second.isFinished());
    EXPECT_TRUE(alerts.isOpen());
    EXPECT_EQ(alerts.title(), current.title);
    EXPECT_EQ(alerts.buttons(), current.buttons);
    EXPECT_EQ(changed.size(), 2);

    alerts.press(0);
    EXPECT_TRUE(second.isFinished());
    EXPECT_FALSE(alerts.isOpen());
}

TEST(AlertViewModel, AnAnswerMayAskForTheNextAlert)
{
    AlertViewModel alerts;
    QFuture<int> next;
    alerts.show(newer).then([&](int) { next = alerts.show(current); });
    alerts.press(0);
    EXPECT_EQ(alerts.title(), current.title);
    alerts.press(0);
    EXPECT_TRUE(next.isFinished());
}

TEST(AlertViewModel, AButtonWithoutAnAlertIsNothing)
{
    AlertViewModel alerts;
    const QSignalSpy changed(&alerts, &AlertViewModel::changed);
    alerts.press(0);
    alerts.putAway();
    EXPECT_EQ(changed.size(), 0);
}

TEST(AlertViewModel, WhatStandsAtTheEndIsPutAway)
{
    QFuture<int> first;
    QFuture<int> second;
    {
        AlertViewModel alerts;
        first = alerts.show(newer);
        second = alerts.show(current);
    }
    ASSERT_TRUE(first.isFinished());
    EXPECT_EQ(first.result(), 1);
    ASSERT_TRUE(second.isFinished());
    EXPECT_EQ(second.result(), 0);
}

} // namespace quire
