#include "QuireApp/Covers/RemoteCoverLoader.h"

#include "sources/NetworkClient.h"
#include "testing/Await.h"
#include "testing/LoopbackServer.h"
#include "testing/Pictures.h"

#include <QElapsedTimer>

#include <gtest/gtest.h>

#include <memory>

namespace quire {

namespace {

using testing::eventually;
using testing::LoopbackReply;
using testing::pngPicture;

class RemoteCoverLoaderTest : public ::testing::Test
{
protected:
    ~RemoteCoverLoaderTest() override
    {
        loader.reset();
        settle();
    }

    void load(const QUrl &url)
    {
        loader->load(url, stop.get_token(), [this](const std::optional<CoverBytes> &cover) { answers.append(cover); });
    }

    static void settle()
    {
        QElapsedTimer time;
        time.start();
        eventually([&time] { return time.hasExpired(50); });
    }

    testing::LoopbackServer server;
    NetworkClient network;
    std::unique_ptr<RemoteCoverLoader> loader = std::make_unique<RemoteCoverLoader>(network);
    std::stop_source stop;
    QList<std::optional<CoverBytes>> answers;
};

TEST_F(RemoteCoverLoaderTest, APictureComesAsItWasSent)
{
    server.route(u"/1", LoopbackReply::ok(pngPicture()));
    load(server.url(u"/1"));
    EXPECT_TRUE(eventually([this] { return answers.size() == 1; }));
    EXPECT_EQ(answers.constFirst(), CoverBytes(pngPicture()));
}

TEST_F(RemoteCoverLoaderTest, WhatIsNoPictureOrNotOfTheWebGivesNothing)
{
    server.route(u"/html", LoopbackReply::ok("<html></html>", "image/png"));
    server.route(u"/gone", LoopbackReply::withStatus(404, pngPicture()));
    server.route(u"/local", LoopbackReply::redirect("file:///etc/passwd"));
    load(server.url(u"/html"));
    load(server.url(u"/gone"));
    load(server.url(u"/local"));
    load(QUrl(QStringLiteral("file:///etc/passwd")));
    load(QUrl(QStringLiteral("qrc:/cover.png")));
    load(QUrl(QStringLiteral("data:image/png;base64,AAAA")));
    EXPECT_TRUE(eventually([this] { return answers.size() == 6; }));
    for (const auto &answer : answers) {
        EXPECT_EQ(answer, std::nullopt);
    }
}

TEST_F(RemoteCoverLoaderTest, OneThatHasComeIsKeptAndOneThatHasNotIsAskedForAgain)
{
    server.route(u"/1", LoopbackReply::ok(pngPicture()));
    server.route(u"/2", {LoopbackReply::withStatus(503), LoopbackReply::ok(pngPicture())});
    load(server.url(u"/1"));
    load(server.url(u"/2"));
    ASSERT_TRUE(eventually([this] { return answers.size() == 2; }));
    load(server.url(u"/1"));
    EXPECT_EQ(answers.size(), 3); // at once
    load(server.url(u"/2"));
    ASSERT_TRUE(eventually([this] { return answers.size() == 4; }));
    EXPECT_TRUE(answers.constLast());
    EXPECT_EQ(server.requests().size(), 3);
}

TEST_F(RemoteCoverLoaderTest, AFewComeAtATimeAndThoseNotWantedAnyMoreAreNotFetched)
{
    server.routeEverythingElse([](const testing::LoopbackRequest &) { return LoopbackReply::silence(); });
    for (int number = 0; number < 12; ++number) {
        load(server.url(QStringLiteral("/%1").arg(number)));
    }
    ASSERT_TRUE(eventually([this] { return server.requests().size() == RemoteCoverLoader::mostDownloads; }));
    settle();
    EXPECT_EQ(server.requests().size(), RemoteCoverLoader::mostDownloads);
    stop.request_stop();
    settle();
    EXPECT_EQ(server.requests().size(), RemoteCoverLoader::mostDownloads);
    EXPECT_TRUE(answers.isEmpty());

    stop = std::stop_source();
    server.route(u"/new", LoopbackReply::ok(pngPicture()));
    load(server.url(u"/new"));
    EXPECT_TRUE(eventually([this] { return answers.size() == 1; })); // the way is free
}

TEST_F(RemoteCoverLoaderTest, ItMayDieInTheMiddleOfADownload)
{
    server.route(u"/1", LoopbackReply::silence());
    load(server.url(u"/1"));
    ASSERT_TRUE(eventually([this] { return server.requests().size() == 1; }));
    loader.reset();
    stop.request_stop();
    settle();
    EXPECT_TRUE(answers.isEmpty());
}

} // namespace

} // namespace quire
