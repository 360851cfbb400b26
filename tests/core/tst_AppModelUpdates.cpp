#include "ModelTest.h"

#include "core/UserDefaults.h"
#include "testing/TestFiles.h"

#include <QDir>

#include <gmock/gmock.h>

namespace quire {

namespace {

using namespace std::chrono_literals;
using ::testing::ElementsAre;
using testing::eventually;
using ::testing::IsEmpty;
using testing::LoopbackReply;

const QStringList ok{QStringLiteral("OK")};

class AppModelUpdates : public ModelTest
{
protected:
    AppModelUpdates()
    {
        makeModel();
        desktop.pressed = 1;
    }

    // The version that the update host has.
    void publish(const QByteArray &version)
    {
        services.route(u"/quire/version.json",
            LoopbackReply::ok(R"({"version":")" + version + R"(","build":7,"downloadPage":")"
                    + services.url(u"/quire/get").toEncoded() + R"("})",
                "application/json"));
    }

    // A check that came to its end: the host was asked once more, and what was to
    // be told is told. One that nobody asked for succeeds.
    void check(bool manual)
    {
        const auto before = requests();
        const auto told = desktop.alerts.size();
        model->checkForUpdates(manual);
        ASSERT_TRUE(eventually([&] { return requests() > before; }));
        ASSERT_TRUE(eventually([&] { return manual ? desktop.alerts.size() > told : lastCheck() == clock.now(); }));
        settle();
    }

    qsizetype requests() const { return services.requests().size(); }

    std::optional<Instant> lastCheck() const { return UserDefaults(defaultsFile()).lastUpdateCheck(); }
};

} // namespace

TEST_F(AppModelUpdates, ANewerVersionIsToldOfWithTheWordsToGetIt)
{
    publish("1.3");
    for (const bool manual : {false, true}) {
        desktop.alerts.clear();
        check(manual);
        EXPECT_THAT(desktop.alerts,
            ElementsAre(DesktopAlert{.title = QStringLiteral("Quire 1.3 is available"),
                .message = QStringLiteral("Open the Quire website to get the newest version."),
                .buttons = {QStringLiteral("Open Website"), QStringLiteral("Later")}}));
        EXPECT_THAT(desktop.opened, IsEmpty());
    }
}

TEST_F(AppModelUpdates, OnlyTheFirstButtonOpensThePage)
{
    publish("1.3");
    desktop.pressed = 0;
    check(false);
    EXPECT_THAT(desktop.opened, ElementsAre(services.url(u"/quire/get")));
}

TEST_F(AppModelUpdates, ThatThereIsNoneIsToldToAReaderWhoAsked)
{
    publish("1.2");
    check(false);
    EXPECT_THAT(desktop.alerts, IsEmpty());

    check(true);
    EXPECT_THAT(desktop.alerts,
        ElementsAre(DesktopAlert{.title = QStringLiteral("Quire is up to date"),
            .message = QStringLiteral("You’re using the newest available version of Quire."),
            .buttons = ok}));
}

TEST_F(AppModelUpdates, AFailureIsToldToAReaderWhoAskedAndMovesNoDate)
{
    services.route(u"/quire/version.json", LoopbackReply::withStatus(500));
    model->checkForUpdates(false);
    ASSERT_TRUE(eventually([this] { return requests() == 1; }));
    settle();
    EXPECT_THAT(desktop.alerts, IsEmpty());

    check(true);
    EXPECT_THAT(desktop.alerts,
        ElementsAre(DesktopAlert{.title = QStringLiteral("Couldn’t check for updates"),
            .message = QStringLiteral("The update server is unavailable."),
            .buttons = ok}));
    EXPECT_EQ(lastCheck(), std::nullopt);
}

TEST_F(AppModelUpdates, WithinADayOfAnAnswerTheHostIsNotAsked)
{
    publish("1.2");
    for (const bool manual : {false, true}) {
        check(manual);
        EXPECT_EQ(lastCheck(), clock.now());
        const auto asked = requests();
        clock.advance(24h - 1s);
        model->checkForUpdatesIfNeeded();
        settle();
        EXPECT_EQ(requests(), asked);
        clock.advance(1s);
        model->checkForUpdatesIfNeeded();
        EXPECT_TRUE(eventually([&] { return requests() == asked + 1; }));
        settle();
    }
}

TEST_F(AppModelUpdates, ADateToComeKeepsTheHostFromBeingAsked)
{
    publish("1.2");
    UserDefaults(defaultsFile()).setLastUpdateCheck(clock.now() + 1h);
    model->checkForUpdatesIfNeeded();
    settle();
    EXPECT_EQ(requests(), 0);
}

TEST_F(AppModelUpdates, WhatIsNoInstantCountsAsNone)
{
    publish("1.2");
    for (const QByteArray value : {"yesterday", "", R"("")", "9999", "4102444800", "true", "@Invalid()", "9999-12-31",
             R"("Fri, 31 Dec 2049 10:00:00 +0000")", "2049-12-31T10:00:00.000Z, 2049-12-31T10:00:00.000Z",
             "2049-13-31T10:00:00.000Z", R"("2049-12-31T10:00:00.000Z and more")", "@DateTime(\\0)"}) {
        SCOPED_TRACE(value.constData());
        testing::putFile(defaultsFile(), "[General]\nquireLastAutomaticUpdateCheck=" + value + "\n");
        EXPECT_EQ(lastCheck(), std::nullopt);
        const auto before = requests();
        model->checkForUpdatesIfNeeded();
        EXPECT_TRUE(eventually([&] { return requests() == before + 1; }));
        EXPECT_TRUE(eventually([this] { return lastCheck() == clock.now(); }));
        settle();
    }
}

TEST_F(AppModelUpdates, AnInstantIsWhatWasStored)
{
    const Instant times[] = {clock.now(), clock.now() + 7ms, distantPast,
        std::chrono::sys_days(std::chrono::year(9999) / 12 / 31) + 23h + 59min};
    for (const Instant time : times) {
        UserDefaults(defaultsFile()).setLastUpdateCheck(time);
        EXPECT_EQ(lastCheck(), time);
    }
}

TEST_F(AppModelUpdates, AnInstantLongAgoDoesNotKeepTheHostFromBeingAsked)
{
    publish("1.2");
    UserDefaults(defaultsFile()).setLastUpdateCheck(distantPast);
    model->checkForUpdatesIfNeeded();
    EXPECT_TRUE(eventually([this] { return requests() == 1; }));
    settle();
}

TEST_F(AppModelUpdates, ADateThatCannotBeStoredIsNoFailure)
{
    publish("1.2");
    ASSERT_TRUE(QDir().mkpath(defaultsFile())); // a folder in its place
    check(true);
    EXPECT_EQ(desktop.alerts.size(), 1);
    EXPECT_EQ(desktop.alerts[0].title, QStringLiteral("Quire is up to date"));
    EXPECT_EQ(lastCheck(), std::nullopt);
}

TEST_F(AppModelUpdates, WhatStandsBesideTheDateStays)
{
    publish("1.2");
    testing::putFile(defaultsFile(), "[General]\nother=7\n\n[endpoints]\nnetlify=http://127.0.0.1:1\n");
    check(true);
    const QByteArray bytes = testing::bytesOf(defaultsFile());
    EXPECT_TRUE(bytes.contains("other=7")) << bytes.constData();
    EXPECT_TRUE(bytes.contains("netlify=http://127.0.0.1:1")) << bytes.constData();
    EXPECT_EQ(lastCheck(), clock.now());
}

TEST_F(AppModelUpdates, AnAutomaticCheckThatIsReplacedByAManualOneSaysNothingOfItself)
{
    services.route(u"/quire/version.json", LoopbackReply::silence());
    model->checkForUpdates(false);
    ASSERT_TRUE(eventually([this] { return requests() == 1; }));
    services.route(u"/quire/version.json", LoopbackReply::withStatus(500));
    check(true);
    EXPECT_EQ(desktop.alerts.size(), 1);
    EXPECT_EQ(lastCheck(), std::nullopt);
}

TEST_F(AppModelUpdates, TheEndOfTheProgramDoesNotEndACheck)
{
    startModel();
    services.route(u"/quire/version.json", LoopbackReply::silence());
    const auto before = requests();
    model->checkForUpdates(true);
    ASSERT_TRUE(eventually([&] { return requests() > before; }));
    testing::await(model->shutdown());
    settle();
    EXPECT_THAT(desktop.alerts, IsEmpty());

    clock.advance(15s); // its own
    ASSERT_TRUE(eventually([this] { return !desktop.alerts.isEmpty(); }));
    EXPECT_EQ(desktop.alerts[0].message, QStringLiteral("The request timed out."));
}

TEST_F(AppModelUpdates, TheModelMayDieInTheMiddleOfACheck)
{
    services.route(u"/quire/version.json", LoopbackReply::silence());
    model->checkForUpdates(true);
    ASSERT_TRUE(eventually([this] { return requests() == 1; }));
    model.reset();
    settle();
    EXPECT_THAT(desktop.alerts, IsEmpty());
    EXPECT_EQ(lastCheck(), std::nullopt);
}

TEST_F(AppModelUpdates, ASecondCheckTakesTheFirstOnesPlace)
{
    services.route(u"/quire/version.json", LoopbackReply::silence());
    model->checkForUpdates(true);
    ASSERT_TRUE(eventually([this] { return requests() == 1; }));
    publish("1.2");
    check(true);
    EXPECT_EQ(desktop.alerts.size(), 1);
}

} // namespace quire
