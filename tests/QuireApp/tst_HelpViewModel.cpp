#include "QuireApp/ViewModels/HelpViewModel.h"
#include "testing/Await.h"

#include <gtest/gtest.h>

#include <QSignalSpy>

namespace quire {

namespace {

class HelpViewModelTest : public ::testing::Test
{
protected:
    AlertViewModel alerts;
    HelpViewModel help{{QStringLiteral("1.2"), QStringLiteral("34"), QUrl(QStringLiteral("https://help.example")),
                           QStringLiteral("maker@help.example")},
        alerts};
    QSignalSpy links{&help, &HelpViewModel::linkRequested};
};

TEST_F(HelpViewModelTest, TheVersionIsToldWithItsBuild)
{
    EXPECT_EQ(help.versionDescription(), QStringLiteral("Version 1.2 (34)"));
}

TEST_F(HelpViewModelTest, WhatIsNotKnownIsToldSo)
{
    const HelpViewModel bare({}, alerts);
    EXPECT_EQ(bare.versionDescription(), QStringLiteral("Version Unknown (Unknown)"));
}

TEST_F(HelpViewModelTest, HelpAndFeedbackHaveTheirAddresses)
{
    EXPECT_EQ(help.helpPage(), QUrl(QStringLiteral("https://help.example/quire/help.html")));
    EXPECT_EQ(help.feedbackURL().toString(QUrl::FullyEncoded),
        QStringLiteral("mailto:maker@help.example?subject=Quire%20Feedback"));
}

TEST_F(HelpViewModelTest, TheAboutDialogTellsTheVersionAndOpensALetter)
{
    help.showQuireAboutDialog();
    ASSERT_TRUE(alerts.isOpen());
    EXPECT_EQ(alerts.title(), QStringLiteral("Quire"));
    EXPECT_EQ(
        alerts.message(), QStringLiteral("Version 1.2 (34)\n\nYour personal, local-first reading library for macOS."));
    EXPECT_EQ(alerts.buttons(), QStringList({QStringLiteral("OK"), QStringLiteral("Send Feedback…")}));

    alerts.press(1);

    ASSERT_TRUE(testing::eventually([this] { return links.size() == 1; }));
    EXPECT_EQ(links.first().first().toUrl(), help.feedbackURL());
}

TEST_F(HelpViewModelTest, TheAboutDialogThatIsReadOpensNothing)
{
    help.showQuireAboutDialog();
    alerts.press(0);
    QCoreApplication::processEvents();
    EXPECT_TRUE(links.isEmpty());
    EXPECT_FALSE(alerts.isOpen());
}

} // namespace

} // namespace quire
