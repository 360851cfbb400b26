#include "sources/NetworkClient.h"

#include "concurrency/Cancelled.h"
#include "reliability/TransportError.h"
#include "sources/ServiceError.h"
#include "testing/Await.h"
#include "testing/LoopbackServer.h"

#include <QElapsedTimer>
#include <QTimer>

#include <gmock/gmock.h>

#include <thread>

using namespace quire;
using namespace quire::testing;
using ::testing::IsEmpty;

namespace {

class NetworkClientTest : public ::testing::Test
{
protected:
    QByteArray get(QStringView path, std::chrono::milliseconds timeout = 5s)
    {
        return getFrom(server.url(path), timeout);
    }

    QByteArray getFrom(const QUrl &url, std::chrono::milliseconds timeout = 5s)
    {
        return await(client.get(url, timeout, stop.get_token()));
    }

    // The failure of a GET, by kind.
    TransportError transportErrorOf(const QUrl &url, std::chrono::milliseconds timeout = 5s)
    {
        try {
            getFrom(url, timeout);
        } catch (const TransportError &error) {
            return error;
        }
        throw std::runtime_error("no transport error");
    }

    ServiceError serviceErrorOf(const QUrl &url, std::chrono::milliseconds timeout = 5s)
    {
        try {
            getFrom(url, timeout);
        } catch (const ServiceError &error) {
            return error;
        }
        throw std::runtime_error("no service error");
    }

    QStringList pathsAsked() const
    {
        QStringList paths;
        for (const LoopbackRequest &request : server.requests()) {
            paths.append(request.path);
        }
        return paths;
    }

    LoopbackServer server;
    NetworkClient client;
    std::stop_source stop;
};

using Kind = TransportError::Kind;

} // namespace

// What get() makes of a status. -----------------------------------------------

TEST_F(NetworkClientTest, GetReturnsTheBytesOfAnAnswer)
{
    server.route(u"/feed", LoopbackReply::ok("<rss/>"));
    EXPECT_EQ(get(u"/feed"), "<rss/>");
}

class PassingStatus : public NetworkClientTest, public ::testing::WithParamInterface<int>
{
};

TEST_P(PassingStatus, IsAnAnswerToGet)
{
    server.route(u"/", LoopbackReply::withStatus(GetParam(), "body"));
    EXPECT_EQ(get(u"/"), "body");
}

INSTANTIATE_TEST_SUITE_P(Statuses, PassingStatus, ::testing::Values(200, 201, 299));

class FailingStatus : public NetworkClientTest, public ::testing::WithParamInterface<int>
{
};

TEST_P(FailingStatus, FailsGetWithItsNumber)
{
    server.route(u"/", LoopbackReply::withStatus(GetParam()));
    const ServiceError error = serviceErrorOf(server.url(u"/"));
    EXPECT_EQ(error.kind(), ServiceError::Kind::Http);
    EXPECT_EQ(error.status(), GetParam());
    EXPECT_EQ(error.description(), QStringLiteral("The service returned HTTP %1.").arg(GetParam()));
}

INSTANTIATE_TEST_SUITE_P(WithoutBody, FailingStatus, ::testing::Values(199, 304));
INSTANTIATE_TEST_SUITE_P(WithBody, FailingStatus,
    ::testing::Values(
        300, 305, 400, 401, 402, 403, 404, 405, 407, 408, 409, 410, 418, 429, 500, 501, 502, 503, 599, 600, 999));

class ExplainedStatus : public NetworkClientTest, public ::testing::WithParamInterface<int>
{
};

TEST_P(ExplainedStatus, DescribesItselfByTheTextOfItsBody)
{
    server.route(u"/", LoopbackReply::withStatus(GetParam(), "Closed for the night, é."));
    EXPECT_EQ(serviceErrorOf(server.url(u"/")).description(), QStringLiteral("Closed for the night, é."));
}

INSTANTIATE_TEST_SUITE_P(
    Statuses, ExplainedStatus, ::testing::Values(300, 302, 400, 401, 403, 404, 407, 418, 500, 503, 600));

TEST_F(NetworkClientTest, AnUnauthorizedAnswerWithAChallengeStillDescribesItself)
{
    server.route(
        u"/", LoopbackReply::withStatus(401, "No such token.").header("WWW-Authenticate", "Basic realm=\"x\""));
    const ServiceError error = serviceErrorOf(server.url(u"/"));
    EXPECT_EQ(error.status(), 401);
    EXPECT_EQ(error.description(), QStringLiteral("No such token."));
}

TEST_F(NetworkClientTest, AFailureWhoseBodyIsNoUtf8DescribesItselfByItsNumber)
{
    server.route(u"/", LoopbackReply::withStatus(500, "caf\xe9"));
    EXPECT_EQ(serviceErrorOf(server.url(u"/")).description(), QStringLiteral("The service returned HTTP 500."));
}

TEST_F(NetworkClientTest, DataLeavesTheStatusToItsCaller)
{
    server.route(u"/gone", LoopbackReply::withStatus(410, "gone").header("X-Note", "for good"));
    const NetworkResponse response = await(client.data({.url = server.url(u"/gone")}, 5s, {}));
    EXPECT_EQ(response.status, 410);
    EXPECT_EQ(response.body, "gone");
    EXPECT_EQ(response.header("x-note"), "for good");
    EXPECT_EQ(response.header("absent"), "");
    EXPECT_EQ(response.url, server.url(u"/gone"));
}

// What is sent. -----------------------------------------------------------------

TEST_F(NetworkClientTest, SendsMethodHeadersAndBodyAsGiven)
{
    server.route(u"/deploys", LoopbackReply::ok("{}"));
    await(client.data({.method = "PUT",
                          .url = server.url(u"/deploys?draft=a%26b"),
                          .headers = {{"Authorization", "Bearer t"}, {"Content-Type", "application/octet-stream"}},
                          .body = QByteArray("a\0b", 3)},
        5s, {}));
    ASSERT_EQ(server.requests().size(), 1);
    const LoopbackRequest &sent = server.requests().first();
    EXPECT_EQ(sent.method, "PUT");
    EXPECT_EQ(sent.target, "/deploys?draft=a%26b");
    EXPECT_EQ(sent.headers.value("authorization"), "Bearer t");
    EXPECT_EQ(sent.headers.value("content-type"), "application/octet-stream");
    EXPECT_EQ(sent.body, QByteArray("a\0b", 3));
}

TEST_F(NetworkClientTest, TheUserAgentIsFixedWhateverTheRequestSays)
{
    server.route(u"/", LoopbackReply::ok(""));
    await(client.data({.url = server.url(u"/"), .headers = {{"User-Agent", "another"}}}, 5s, {}));
    EXPECT_EQ(server.requests().first().headers.value("user-agent"), "Quire/0.3 (macOS; native build)");
}

TEST_F(NetworkClientTest, KeepsNoCookies)
{
    server.route(u"/", LoopbackReply::ok("").header("Set-Cookie", "id=1; Path=/"));
    get(u"/");
    get(u"/");
    ASSERT_EQ(server.requests().size(), 2);
    EXPECT_FALSE(server.requests().last().headers.contains("cookie"));
}

TEST_F(NetworkClientTest, AsksAgainForWhatAServerAllowsToBeKept)
{
    server.route(u"/", LoopbackReply::ok("x").header("Cache-Control", "max-age=3600"));
    get(u"/");
    get(u"/");
    EXPECT_EQ(server.requests().size(), 2);
}

// Schemes and redirects. ----------------------------------------------------------

class UnspokenTarget : public NetworkClientTest, public ::testing::WithParamInterface<const char *>
{
};

TEST_P(UnspokenTarget, IsAnInvalidUrlAfterARedirect)
{
    server.route(u"/", LoopbackReply::redirect(GetParam()));
    EXPECT_EQ(serviceErrorOf(server.url(u"/")).kind(), ServiceError::Kind::InvalidURL);
    EXPECT_EQ(server.requests().size(), 1);
}

class UnspokenUrl : public NetworkClientTest, public ::testing::WithParamInterface<const char *>
{
protected:
    QUrl url() const { return QUrl(QString::fromUtf8(GetParam())); }
};

TEST_P(UnspokenUrl, IsAnInvalidUrlForTheFirstRequest)
{
    EXPECT_EQ(serviceErrorOf(url()).kind(), ServiceError::Kind::InvalidURL);
}

constexpr auto otherSchemes = {"file:///etc/hostname", "data:text/plain,hello", "qrc:/qt-project.org/imports",
    "ftp://127.0.0.1/x", "javascript:1", "about:blank", "http://", "http:///path"};

INSTANTIATE_TEST_SUITE_P(OtherSchemes, UnspokenUrl, ::testing::ValuesIn(otherSchemes));
INSTANTIATE_TEST_SUITE_P(NoAddress, UnspokenUrl, ::testing::Values("", "/relative", "http://[broken"));
INSTANTIATE_TEST_SUITE_P(OtherSchemes, UnspokenTarget, ::testing::ValuesIn(otherSchemes));

TEST_F(NetworkClientTest, ARedirectIsFollowedWithItsQuery)
{
    server.route(u"/old", LoopbackReply::redirect("/new?a=%23b", 301));
    server.route(u"/new", LoopbackReply::ok("here"));
    const NetworkResponse response = await(client.data({.url = server.url(u"/old")}, 5s, {}));
    EXPECT_EQ(response.body, "here");
    EXPECT_EQ(response.url, server.url(u"/new?a=%23b"));
    EXPECT_EQ(server.requests().last().target, "/new?a=%23b");
}

TEST_F(NetworkClientTest, TheBodyOfARedirectIsNotPartOfTheAnswer)
{
    server.route(u"/old", LoopbackReply::withStatus(302, "moved").header("Location", "/new"));
    server.route(u"/new", LoopbackReply::ok("here"));
    EXPECT_EQ(get(u"/old"), "here");
}

TEST_F(NetworkClientTest, ARedirectWithoutATargetFailsAsItsStatus)
{
    server.route(u"/", LoopbackReply::withStatus(302));
    EXPECT_EQ(serviceErrorOf(server.url(u"/")).status(), 302);
}

TEST_F(NetworkClientTest, ARedirectInCirclesEnds)
{
    server.route(u"/a", LoopbackReply::redirect("/b"));
    server.route(u"/b", LoopbackReply::redirect("/a"));
    EXPECT_EQ(transportErrorOf(server.url(u"/a")).kind(), Kind::TooManyRedirects);
    EXPECT_EQ(server.requests().size(), 21);
}

TEST_F(NetworkClientTest, SeeOtherAfterAPostIsFetchedPlainly)
{
    server.route(u"/form", LoopbackReply::redirect("/result", 303));
    server.route(u"/result", LoopbackReply::ok("done"));
    await(client.data(
        {.method = "POST", .url = server.url(u"/form"), .headers = {{"Content-Type", "text/plain"}}, .body = "x"}, 5s,
        {}));
    EXPECT_EQ(server.requests().last().method, "GET");
    EXPECT_EQ(server.requests().last().body, "");
    EXPECT_FALSE(server.requests().last().headers.contains("content-type"));
}

TEST_F(NetworkClientTest, ATemporaryRedirectKeepsMethodAndBody)
{
    server.route(u"/form", LoopbackReply::redirect("/other", 307));
    server.route(u"/other", LoopbackReply::ok("done"));
    await(client.data(
        {.method = "PUT", .url = server.url(u"/form"), .headers = {{"Content-Type", "text/plain"}}, .body = "x"}, 5s,
        {}));
    EXPECT_EQ(server.requests().last().method, "PUT");
    EXPECT_EQ(server.requests().last().body, "x");
}

TEST_F(NetworkClientTest, CredentialsDoNotFollowToAnotherOrigin)
{
    LoopbackServer elsewhere;
    elsewhere.route(u"/", LoopbackReply::ok(""));
    server.route(u"/here", LoopbackReply::redirect("/there"));
    server.route(u"/there", LoopbackReply::redirect(elsewhere.url(u"/").toEncoded()));
    await(client.data({.url = server.url(u"/here"), .headers = {{"Authorization", "Bearer t"}}}, 5s, {}));
    EXPECT_EQ(server.requests().last().headers.value("authorization"), "Bearer t");
    EXPECT_FALSE(elsewhere.requests().first().headers.contains("authorization"));
}

// Transport failures. ---------------------------------------------------------------

TEST_F(NetworkClientTest, ARefusedConnectionCannotConnectToHost)
{
    const TransportError error = transportErrorOf(LoopbackServer::refusingOrigin());
    EXPECT_EQ(error.kind(), Kind::CannotConnectToHost);
    EXPECT_EQ(error.code(), 1);
    EXPECT_EQ(error.description(), QStringLiteral("Connection refused"));
}

TEST_F(NetworkClientTest, AnUnknownHostCannotBeFound)
{
    EXPECT_EQ(transportErrorOf(QUrl(QStringLiteral("http://nowhere.invalid/"))).kind(), Kind::CannotFindHost);
}

TEST_F(NetworkClientTest, ASilentServerTimesOut)
{
    server.route(u"/", LoopbackReply::silence());
    EXPECT_EQ(transportErrorOf(server.url(u"/"), 100ms).kind(), Kind::TimedOut);
}

TEST_F(NetworkClientTest, ADrippingServerTimesOutInAll)
{
    server.route(u"/", LoopbackReply::ok(QByteArray(1000, 'x')).dripping(20ms));
    QElapsedTimer clock;
    clock.start();
    EXPECT_EQ(transportErrorOf(server.url(u"/"), 200ms).kind(), Kind::TimedOut);
    EXPECT_LT(clock.elapsed(), 1000);
}

TEST_F(NetworkClientTest, RedirectsShareOneTimeout)
{
    server.route(u"/", LoopbackReply::redirect("/").after(60ms));
    EXPECT_EQ(transportErrorOf(server.url(u"/"), 200ms).kind(), Kind::TimedOut);
    EXPECT_LE(server.requests().size(), 5);
}

TEST_F(NetworkClientTest, AConnectionClosedWithoutAnAnswerIsLost)
{
    server.route(u"/", LoopbackReply::hangUp());
    EXPECT_EQ(transportErrorOf(server.url(u"/")).kind(), Kind::NetworkConnectionLost);
}

TEST_F(NetworkClientTest, ABodyShorterThanItsLengthIsALostConnection)
{
    server.route(u"/", LoopbackReply::ok(QByteArray(1000, 'x')).cutAfter(500));
    EXPECT_EQ(transportErrorOf(server.url(u"/")).kind(), Kind::NetworkConnectionLost);
}

TEST_F(NetworkClientTest, AChunkedBodyWithoutItsEndIsALostConnection)
{
    server.route(u"/", LoopbackReply::ok(QByteArray(1000, 'x')).chunked().cutAfter(500));
    EXPECT_EQ(transportErrorOf(server.url(u"/")).kind(), Kind::NetworkConnectionLost);
}

TEST_F(NetworkClientTest, AChunkedFailureCutShortIsALostConnectionToo)
{
    server.route(u"/", LoopbackReply::withStatus(503, QByteArray(1000, 'x')).chunked().cutAfter(500));
    EXPECT_EQ(transportErrorOf(server.url(u"/")).kind(), Kind::NetworkConnectionLost);
}

TEST_F(NetworkClientTest, ABodyThatEndsWithItsConnectionIsWhole)
{
    server.route(u"/", LoopbackReply::ok("until the end").untilClose());
    EXPECT_EQ(get(u"/"), "until the end");
}

TEST_F(NetworkClientTest, AChunkedBodyIsPutTogether)
{
    server.route(u"/", LoopbackReply::ok("in small pieces").chunked().dripping(1ms, 3));
    EXPECT_EQ(get(u"/"), "in small pieces");
}

// The network layer drops a connection that does not begin with a status line,
// and does not tell this from one that was dropped by the server.
TEST_F(NetworkClientTest, AnAnswerThatIsNotHttpIsALostConnection)
{
    server.route(u"/", LoopbackReply::raw("SSH-2.0-OpenSSH_9.2\r\n"));
    EXPECT_EQ(transportErrorOf(server.url(u"/")).kind(), Kind::NetworkConnectionLost);
}

// The cap. ---------------------------------------------------------------------------

TEST_F(NetworkClientTest, ABodyOfExactlyTheCapPasses)
{
    server.route(u"/", LoopbackReply::ok(QByteArray(100'000, 'x')));
    const QByteArray body = await(client.get(server.url(u"/"), 5s, {}, 100'000));
    EXPECT_EQ(body.size(), 100'000);
}

class OneByteTooMany : public NetworkClientTest, public ::testing::WithParamInterface<LoopbackReply>
{
};

TEST_P(OneByteTooMany, IsTooLong)
{
    server.route(u"/", GetParam());
    try {
        await(client.get(server.url(u"/"), 5s, {}, 99'999));
        FAIL() << "the body passed";
    } catch (const TransportError &error) {
        EXPECT_EQ(error.kind(), Kind::BodyTooLong);
    }
}

INSTANTIATE_TEST_SUITE_P(Framings, OneByteTooMany,
    ::testing::Values(LoopbackReply::ok(QByteArray(100'000, 'x')),
        LoopbackReply::ok(QByteArray(100'000, 'x')).chunked(),
        LoopbackReply::ok(QByteArray(100'000, 'x')).untilClose()));

TEST_F(NetworkClientTest, AnAnnouncedLengthAboveTheCapEndsBeforeTheBody)
{
    server.route(u"/", LoopbackReply::ok(QByteArray(100'000, 'x')).dripping(1s));
    QElapsedTimer clock;
    clock.start();
    EXPECT_THROW(await(client.get(server.url(u"/"), 5s, {}, 99'999)), TransportError);
    EXPECT_LT(clock.elapsed(), 900);
}

TEST_F(NetworkClientTest, AnEndlessBodyStopsAtTheCap)
{
    server.route(u"/", LoopbackReply::ok(QByteArray(64 * 1024, 'x')).repeatedForEver());
    EXPECT_EQ(transportErrorOf(server.url(u"/")).kind(), Kind::BodyTooLong);
    EXPECT_TRUE(eventually([this] { return server.connections() == 0; }));
}

TEST_F(NetworkClientTest, ACompressedBodyIsUnpacked)
{
    const QByteArray zlib = qCompress("<rss/>").sliced(4); // without the length that Qt puts in front
    server.route(u"/", LoopbackReply::ok(zlib).header("Content-Encoding", "deflate"));
    EXPECT_EQ(get(u"/"), "<rss/>");
}

TEST_F(NetworkClientTest, ACompressedBodyIsMeasuredUnpacked)
{
    const QByteArray zlib = qCompress(QByteArray(70 * 1024 * 1024, 'x')).sliced(4);
    ASSERT_LT(zlib.size(), 200'000);
    server.route(u"/", LoopbackReply::ok(zlib).header("Content-Encoding", "deflate"));
    EXPECT_EQ(transportErrorOf(server.url(u"/")).kind(), Kind::BodyTooLong);
}

TEST_F(NetworkClientTest, ACompressedBodyThatCannotBeUnpackedIsAFailure)
{
    const QByteArray zlib = qCompress(QByteArray(10'000, 'x') + "</rss>").sliced(4);
    QByteArray damaged = zlib;
    damaged[zlib.size() / 2] = char(~damaged[zlib.size() / 2]);
    for (const QByteArray &body : {QByteArray("<rss/> and not packed"), damaged}) {
        server.route(u"/", LoopbackReply::ok(body).header("Content-Encoding", "deflate"));
        EXPECT_EQ(serviceErrorOf(server.url(u"/")).kind(), ServiceError::Kind::InvalidResponse);
    }
}

// What a failure tells. --------------------------------------------------------------

// The address may hold a secret, and descriptions go to the log and to the screen.
class FailingReply : public NetworkClientTest, public ::testing::WithParamInterface<LoopbackReply>
{
};

TEST_P(FailingReply, IsDescribedWithoutItsAddress)
{
    server.route(u"/feed", GetParam());
    try {
        get(u"/feed?key=s3cret", 300ms);
        FAIL() << "no failure";
    } catch (const Failure &failure) {
        EXPECT_FALSE(failure.description().isEmpty());
        EXPECT_FALSE(failure.description().contains(QStringLiteral("s3cret"))) << qPrintable(failure.description());
    }
}

INSTANTIATE_TEST_SUITE_P(Replies, FailingReply,
    ::testing::Values(LoopbackReply::silence(), LoopbackReply::hangUp(), LoopbackReply::raw("SSH-2.0-OpenSSH_9.2\r\n"),
        LoopbackReply::ok("x").dripping(1s), LoopbackReply::ok(QByteArray(1000, 'x')).cutAfter(500),
        LoopbackReply::withStatus(503, QByteArray(1000, 'x')).cutAfter(500),
        LoopbackReply::withStatus(503, QByteArray(1000, 'x')).chunked().cutAfter(500),
        LoopbackReply::ok("not packed").header("Content-Encoding", "deflate"),
        LoopbackReply::withStatus(404, "not packed").header("Content-Encoding", "deflate"),
        LoopbackReply::withStatus(401).header("WWW-Authenticate", "Basic realm=\"x\""),
        LoopbackReply::withStatus(407).header("Proxy-Authenticate", "Basic realm=\"x\""),
        LoopbackReply::withStatus(400), LoopbackReply::withStatus(403), LoopbackReply::withStatus(418),
        LoopbackReply::withStatus(503), LoopbackReply::withStatus(600), LoopbackReply::redirect("/feed?key=s3cret"),
        LoopbackReply::redirect("file:///feed?key=s3cret"),
        LoopbackReply::redirect("http://nowhere.invalid/?key=s3cret")));

// Cancelling. ------------------------------------------------------------------------

TEST_F(NetworkClientTest, AStopEndsTheRequestAtOnce)
{
    server.route(u"/", LoopbackReply::silence());
    QTimer::singleShot(50ms, [this] { stop.request_stop(); });
    EXPECT_THROW(get(u"/"), Cancelled);
    EXPECT_TRUE(eventually([this] { return server.connections() == 0; }));
}

TEST_F(NetworkClientTest, AStopFromAnotherThreadEndsTheRequest)
{
    server.route(u"/", LoopbackReply::silence());
    std::jthread other([this] {
        std::this_thread::sleep_for(50ms);
        stop.request_stop();
    });
    EXPECT_THROW(get(u"/"), Cancelled);
}

TEST_F(NetworkClientTest, AStopBeforeTheRequestSendsNothing)
{
    server.route(u"/", LoopbackReply::ok(""));
    stop.request_stop();
    EXPECT_THROW(get(u"/"), Cancelled);
    EXPECT_THAT(pathsAsked(), IsEmpty());
}

TEST_F(NetworkClientTest, DestroyingTheClientEndsItsRequests)
{
    server.route(u"/", LoopbackReply::silence());
    auto shortLived = std::make_unique<NetworkClient>();
    auto task = shortLived->get(server.url(u"/"), 5s, {});
    ASSERT_TRUE(eventually([this] { return server.requests().size() == 1; }));
    shortLived.reset();
    EXPECT_THROW(await(std::move(task)), Cancelled);
}

TEST_F(NetworkClientTest, RequestsRunSideBySide)
{
    server.route(u"/slow", LoopbackReply::ok("slow").after(100ms));
    server.route(u"/quick", LoopbackReply::ok("quick"));
    auto slow = client.get(server.url(u"/slow"), 5s, {});
    auto quick = client.get(server.url(u"/quick"), 5s, {});
    EXPECT_EQ(await(std::move(quick)), "quick");
    EXPECT_EQ(await(std::move(slow)), "slow");
}
