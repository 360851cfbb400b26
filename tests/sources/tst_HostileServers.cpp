// Servers that mean no good: each request ends in bounded time and memory, with
// a failure, and the interface goes on meanwhile.

#include "HostileFeeds.h"

#include "records/Failure.h"
#include "sources/GoodreadsService.h"
#include "testing/Await.h"
#include "testing/LoopbackServer.h"
#include "testing/TestFiles.h"
#include "testing/TestLibrary.h"

#include <QFile>
#include <QNetworkAccessManager>
#include <QNetworkReply>
#include <QTemporaryDir>
#include <QTimer>

#include <map>

#include <malloc.h>

using namespace quire;
using namespace quire::testing;

namespace {

enum class Fault { None, NoFailure, TooSlow, TooLarge };

struct Ending
{
    bool isFailure = false; // one of the program's own
    Cost cost;
};

// The judge: the worst that is to be said of it.
Fault faultOf(const Ending &ending)
{
    if (!isSmall(ending.cost)) {
        return Fault::TooLarge;
    }
    if (!isSoon(ending.cost)) {
        return Fault::TooSlow;
    }
    return ending.isFailure ? Fault::None : Fault::NoFailure;
}

// The control: a client that thinks well of every server. It waits for as long as
// it takes, keeps what comes, goes where it is sent, and asks for no failure.
class TrustingClient final : public QObject
{
public:
    void get(const QUrl &url)
    {
        QNetworkRequest request(url);
        request.setAttribute(QNetworkRequest::RedirectPolicyAttribute, QNetworkRequest::ManualRedirectPolicy);
        request.setDecompressedSafetyCheckThreshold(-1);
        QNetworkReply *const reply = m_manager.get(request);
        connect(reply, &QNetworkReply::readyRead, this, [this, reply] { m_body += reply->readAll(); });
        connect(reply, &QNetworkReply::finished, this, [this, reply] {
            const QUrl target = QUrl::fromEncoded(reply->rawHeader("Location"));
            reply->deleteLater();
            m_hasEnded = target.isEmpty();
            if (!m_hasEnded) {
                get(reply->url().resolved(target));
            }
        });
    }

    bool hasEnded() const { return m_hasEnded; }
    const QByteArray &body() const { return m_body; }

private:
    QNetworkAccessManager m_manager;
    QByteArray m_body;
    bool m_hasEnded = false;
};

class HostileServer : public ::testing::Test
{
protected:
    // One GET, whatever comes of it, measured.
    void get(const char *name, std::chrono::milliseconds timeout = 1s)
    {
        malloc_trim(0);
        const ResourceUse use;
        NetworkClient client;
        bool isFailure = false;
        try {
            await(client.get(server.url(u"/"), timeout, {}));
        } catch (const Failure &failure) {
            isFailure = !failure.description().isEmpty();
        }
        const Cost cost = measured(name, {use.milliseconds(), use.peakMegabytes()});
        EXPECT_EQ(faultOf({isFailure, cost}), Fault::None);
    }

    // What the judge says of the control, which ends by itself or not at all.
    Fault faultOfTrust(const char *name, QByteArray *body = nullptr)
    {
        malloc_trim(0);
        const ResourceUse use;
        const auto cost = [&use] { return Cost{use.milliseconds(), use.peakMegabytes()}; };
        TrustingClient client;
        client.get(server.url(u"/"));
        eventually([&] { return client.hasEnded() || isFarTooMuch(cost()); }, 120s);
        if (body) {
            *body = client.body();
        }
        return faultOf({false, measured(name, cost())});
    }

    void redirectToFile()
    {
        putFile(folder.filePath(QStringLiteral("secret")), "of the reader");
        server.route(
            u"/", LoopbackReply::redirect("file://" + QFile::encodeName(folder.filePath(QStringLiteral("secret")))));
    }
    void packBomb()
    {
        const QByteArray packed = qCompress(QByteArray(200'000'000, 'x')).sliced(4);
        server.route(u"/", LoopbackReply::ok(packed).header("Content-Encoding", "deflate"));
    }
    void neverEnd() { server.route(u"/", LoopbackReply::ok(QByteArray(64 * 1024, 'x')).repeatedForEver()); }
    void cutTheBody() { server.route(u"/", LoopbackReply::ok(feedOpening).cutAfter(10)); }

    LoopbackServer server;
    QTemporaryDir folder;
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
    neverEnd();
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
    packBomb();
    get("PackedBomb");
}

TEST_F(HostileServer, ThatCutsItsAnswer)
{
    cutTheBody();
    get("CutBody");
    server.route(u"/", LoopbackReply::ok(feedOpening).chunked().cutAfter(10));
    get("CutChunks");
    server.route(u"/", LoopbackReply::hangUp());
    get("HangsUp");
}

TEST_F(HostileServer, ThatSendsReadersToTheirOwnFiles)
{
    redirectToFile();
    get("RedirectsToAFile");
}

TEST_F(HostileServer, IsOneThatATrustingClientTakesForAnotherWithoutAFailure)
{
    cutTheBody();
    EXPECT_EQ(faultOfTrust("Trusting: CutBody"), Fault::NoFailure);
    redirectToFile();
    QByteArray body;
    EXPECT_EQ(faultOfTrust("Trusting: RedirectsToAFile", &body), Fault::NoFailure);
    EXPECT_EQ(body, "of the reader");
    server.refuse();
    EXPECT_EQ(faultOfTrust("Trusting: Refuses"), Fault::NoFailure);
}

TEST_F(HostileServer, FillsTheMemoryOfATrustingClient)
{
    if (isInstrumented) {
        GTEST_SKIP() << "memory is not measured here";
    }
    neverEnd();
    EXPECT_EQ(faultOfTrust("Trusting: NeverEnds"), Fault::TooLarge);
    packBomb();
    EXPECT_EQ(faultOfTrust("Trusting: PackedBomb"), Fault::TooLarge);
}

// All at once, since each would wait as long as the judge.
TEST_F(HostileServer, HoldsATrustingClientForEver)
{
    if (isInstrumented) {
        GTEST_SKIP() << "it has so much time here that the test would take a minute";
    }
    server.route(u"/silent", LoopbackReply::silence());
    server.route(u"/drips", LoopbackReply::ok(feedOpening).dripping(1s));
    server.route(u"/round", LoopbackReply::redirect("/round").after(10ms));
    const auto paths = {u"/silent", u"/drips", u"/round"};
    std::map<QStringView, TrustingClient> clients;
    const ResourceUse use;
    for (const QStringView path : paths) {
        clients[path].get(server.url(path));
    }
    eventually([&use] { return isFarTooMuch({use.milliseconds(), 0}); }, 120s);
    const Cost cost{use.milliseconds(), use.peakMegabytes()};
    for (const QStringView path : paths) {
        EXPECT_FALSE(clients[path].hasEnded()) << qPrintable(path.toString());
        EXPECT_EQ(faultOf({false, cost}), Fault::TooSlow);
    }
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
