// Servers that mean no good: each request ends in bounded time and memory, with
// a failure, and the interface goes on meanwhile.

#include "HostileFeeds.h"

#include "sources/GoodreadsService.h"
#include "testing/Await.h"
#include "testing/LoopbackServer.h"
#include "testing/TestLibrary.h"

#include <QTimer>

#include <malloc.h>

using namespace quire;
using namespace quire::testing;

namespace {

class HostileServer : public ::testing::Test
{
protected:
    // One GET, whatever comes of it, measured.
    void get(const char *name, std::chrono::milliseconds timeout = 1s)
    {
        malloc_trim(0);
        const ResourceUse use;
        NetworkClient client;
        EXPECT_ANY_THROW(await(client.get(server.url(u"/"), timeout, {})));
        expectCheap(use, name, use.milliseconds());
    }

    LoopbackServer server;
};

} // namespace

TEST_F(HostileServer, ThatRefuses)
{
    server.refuse();
    get("Refuses");
}

TEST_F(HostileServer, ThatNeverAnswers)
{
    server.route(u"/", LoopbackReply::silence());
    get("NeverAnswers");
}

TEST_F(HostileServer, ThatDripsAByteASecond)
{
    server.route(u"/", LoopbackReply::ok(feedOpening).dripping(1s));
    get("Drips", 1500ms);
}

TEST_F(HostileServer, ThatNeverEnds)
{
    server.route(u"/", LoopbackReply::ok(QByteArray(64 * 1024, 'x')).repeatedForEver());
    get("NeverEnds");
}

TEST_F(HostileServer, ThatRedirectsForEver)
{
    server.route(u"/", LoopbackReply::redirect("/"));
    get("RedirectsForEver");
}

TEST_F(HostileServer, ThatSendsAnEndlessHead)
{
    server.route(u"/", LoopbackReply::raw("HTTP/1.1 200 OK\r\nX: " + QByteArray(50'000'000, 'x')));
    get("EndlessHead");
}

TEST_F(HostileServer, ThatPacksABomb)
{
    const QByteArray packed = qCompress(QByteArray(200'000'000, 'x')).sliced(4);
    server.route(u"/", LoopbackReply::ok(packed).header("Content-Encoding", "deflate"));
    get("PackedBomb");
}

// The whole road: the interface thread goes on while a feed is read.
TEST_F(HostileServer, ThatSendsTheLongestFeedDoesNotHoldTheInterface)
{
    TestLibrary library;
    await(library.store().setSettings({{QStringLiteral("goodreadsUserId"), QStringLiteral("1")},
        {QStringLiteral("goodreadsRssKey"), QStringLiteral("k")}}));
    server.route(u"/review/list_rss/1",
        {LoopbackReply::ok(filledWith(ordinaryItem())), LoopbackReply::ok("<rss><channel/></rss>")});
    ServiceEndpoints endpoints = ServiceEndpoints::standard();
    endpoints.goodreads = server.origin();

    QElapsedTimer sinceTick;
    qint64 longestPause = 0;
    QTimer ticks;
    QObject::connect(&ticks, &QTimer::timeout, [&] { longestPause = std::max(longestPause, sinceTick.restart()); });
    NetworkClient client;
    auto run = GoodreadsService::synchronize(library.store(), client, endpoints, library.clock(), {});
    sinceTick.start();
    ticks.start(1ms);
    EXPECT_TRUE(await(std::move(run), 120s).succeeded);
    std::printf(
        "[ MEASURED ] %-28s %5lld ms at most between two ticks\n", "Interface", static_cast<long long>(longestPause));
    EXPECT_LE(longestPause, 100 * patience);
}
