#include "ModelTest.h"
#include "QuireApp/QuireApp/QuireAppDelegate.h"
#include "QuireApp/QuireApp/TerminationSignals.h"

#include <QSignalSpy>

#include <csignal>

namespace quire {

namespace {

using testing::eventually;

class QuireAppDelegateTest : public ModelTest
{
protected:
    QuireAppDelegate delegate;
    QSignalSpy proceeds{&delegate, &QuireAppDelegate::terminationMayProceed};
};

TEST_F(QuireAppDelegateTest, WithoutAModelTheProgramMayGoAtOnce)
{
    EXPECT_EQ(delegate.applicationShouldTerminate(), TerminateReply::Now);
    EXPECT_FALSE(delegate.terminationInProgress());
    makeModel();
    delegate.setModel(model.get());
    model.reset();
    EXPECT_EQ(delegate.applicationShouldTerminate(), TerminateReply::Now);
    EXPECT_EQ(proceeds.size(), 0);
}

TEST_F(QuireAppDelegateTest, ASecondQuitDuringShutdownWaitsForTheFirst)
{
    makeModel(true);
    testing::await(model->start());
    delegate.setModel(model.get());

    EXPECT_EQ(delegate.applicationShouldTerminate(), TerminateReply::Later);
    EXPECT_EQ(delegate.applicationShouldTerminate(), TerminateReply::Later);
    EXPECT_EQ(delegate.applicationShouldTerminate(), TerminateReply::Later);

    EXPECT_TRUE(eventually([this] { return proceeds.size() == 1; }));
    settle();
    EXPECT_EQ(proceeds.size(), 1); // shut down once
    EXPECT_EQ(delegate.applicationShouldTerminate(), TerminateReply::Later);
    settle();
    EXPECT_EQ(proceeds.size(), 1);
}

TEST_F(QuireAppDelegateTest, TheLastWindowTakesTheProgramWithIt)
{
    EXPECT_TRUE(delegate.applicationShouldTerminateAfterLastWindowClosed());
}

TEST(CloseRule, TheMainWindowIsKnownByItsIdentifierOrItsTitle)
{
    EXPECT_TRUE(isMainWindow({QStringLiteral("MAIN"), QStringLiteral("anything")}));
    EXPECT_TRUE(isMainWindow({QString(), QStringLiteral("Quire")}));
    EXPECT_FALSE(isMainWindow({QStringLiteral("settings"), QStringLiteral("Quire Settings")}));
    EXPECT_FALSE(isMainWindow({QStringLiteral("quire-help"), QStringLiteral("Quire Help")}));
    EXPECT_FALSE(isMainWindow({QString(), QStringLiteral("quire")}));
}

TEST(CloseRule, SettingsAndTheColourPanelGoWithTheMainWindowAndHelpStays)
{
    EXPECT_TRUE(closesWithMainWindow({QStringLiteral("com.quire.Settings"), QString()}));
    EXPECT_TRUE(closesWithMainWindow({QString(), QStringLiteral("QUIRE SETTINGS")}));
    EXPECT_TRUE(closesWithMainWindow({QString(), QStringLiteral("Colours"), WindowTraits::Kind::ColorPanel}));
    EXPECT_FALSE(closesWithMainWindow({QStringLiteral("quire-help"), QStringLiteral("Quire Help")}));
}

TEST(TerminationSignals, EachSignalOfTheEndBecomesAnEvent)
{
    TerminationSignals signalsOfTheEnd;
    const QSignalSpy requested(&signalsOfTheEnd, &TerminationSignals::terminationRequested);
    int sent = 0;
    for (const int number : {SIGTERM, SIGINT, SIGHUP}) {
        std::raise(number);
        ++sent;
        EXPECT_TRUE(eventually([&] { return requested.size() == sent; })) << number;
    }
}

} // namespace

} // namespace quire
