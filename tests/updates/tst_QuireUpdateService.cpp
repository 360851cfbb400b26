// Checks against a host on loopback that answers well, badly, slowly or not.

#include "updates/QuireUpdateService.h"

#include "concurrency/Cancelled.h"
#include "reliability/TransportError.h"
#include "sources/JSONDecodingError.h"
#include "testing/Await.h"
#include "testing/LoopbackServer.h"
#include "testing/ManualClock.h"
#include "testing/ThrownFailure.h"
#include "updates/QuireUpdateCheckError.h"
#include "updates/UpdateDownload.h"

#include <gtest/gtest.h>

#include <QCoroTask>

using namespace quire;
using namespace quire::testing;
using namespace std::chrono_literals;

namespace {

class QuireUpdateServiceTest : public ::testing::Test
{
protected:
    QuireUpdateService service(
        const std::optional<QString> &version = QStringLiteral("1.2"), const std::optional<QString> &build = {})
    {
        return {clock, server.origin(), {version, build}};
    }

    QByteArray manifest(const QString &version = QStringLiteral("1.2"), qint64 build = 8) const
    {
        const QString page = server.url(u"/quire/download").toString();
        return QuireUpdateManifest{version, build, Url::parse(page).value()}.encode();
    }

    // A manifest of exactly that many bytes.
    QByteArray manifestOfSize(qsizetype size) const { return manifest().leftJustified(size, ' '); }

    void serve(const LoopbackReply &reply) { server.route(u"/quire/version.json", reply); }
    void serve(const QByteArray &body) { serve(LoopbackReply::ok(body, "application/json")); }

    QuireUpdateCheckResult check() { return await(service().check()); }

    QString refusal()
    {
        const auto failure = thrownBy<QuireUpdateCheckError>([this] { check(); });
        return failure ? failure->description() : QStringLiteral("none");
    }

    std::optional<TransportError::Kind> transportFailure()
    {
        const auto failure = thrownBy<TransportError>([this] { check(); });
        return failure ? std::optional(failure->kind()) : std::nullopt;
    }

    LoopbackServer server;
    ManualClock clock;
    const QString invalidResponse = QStringLiteral("The update server returned an invalid response.");
    const QString unavailable = QStringLiteral("The update server is unavailable.");
};

// A check that is under way, and what became of it.
struct RunningCheck
{
    explicit RunningCheck(QCoro::Task<QuireUpdateCheckResult> task)
        : watching(watch(std::move(task), outcome))
    {
    }

    struct Outcome
    {
        bool isOver = false;
        std::exception_ptr failure;
    };

    static QCoro::Task<> watch(QCoro::Task<QuireUpdateCheckResult> task, std::shared_ptr<Outcome> outcome)
    {
        try {
            co_await task;
        } catch (...) {
            outcome->failure = std::current_exception();
        }
        outcome->isOver = true;
    }

    template<typename Failure>
    std::optional<Failure> failure() const
    {
        return thrownBy<Failure>([this] {
            if (outcome->failure) {
                std::rethrow_exception(outcome->failure);
            }
        });
    }

    std::shared_ptr<Outcome> outcome = std::make_shared<Outcome>();
    QCoro::Task<> watching;
};

} // namespace

TEST_F(QuireUpdateServiceTest, FindsANewerVersion)
{
    serve(manifest(QStringLiteral("1.3"), 1));

    const auto result = await(service(QStringLiteral("1.2.9"), QStringLiteral("99")).check());

    ASSERT_TRUE(result.available);
    EXPECT_EQ(result.available->version, QStringLiteral("1.3"));
    EXPECT_EQ(result.available->downloadPage.toQUrl(), server.url(u"/quire/download"));
}

TEST_F(QuireUpdateServiceTest, TellsEqualVersionsApartByTheirBuild)
{
    serve(manifest(QStringLiteral("1.2"), 8));
    EXPECT_FALSE(await(service(QStringLiteral("1.2.0"), QStringLiteral("7")).check()).isCurrent());
    EXPECT_TRUE(await(service(QStringLiteral("1.2.0"), QStringLiteral("8")).check()).isCurrent());

    serve(manifest(QStringLiteral("1.2"), 7));
    EXPECT_TRUE(await(service(QStringLiteral("1.2.0"), QStringLiteral("7")).check()).isCurrent());
}

TEST_F(QuireUpdateServiceTest, TakesNoBuildOfAnOlderVersionForNewer)
{
    serve(manifest(QStringLiteral("1.1"), 999));

    EXPECT_TRUE(await(service(QStringLiteral("1.2"), QStringLiteral("1")).check()).isCurrent());
}

TEST_F(QuireUpdateServiceTest, TakesAProgramWithoutAVersionForVersionZero)
{
    serve(manifest(QStringLiteral("0.0"), 1));

    EXPECT_FALSE(await(service(std::nullopt, std::nullopt).check()).isCurrent());
    EXPECT_FALSE(await(service(QStringLiteral("0"), QStringLiteral("seven")).check()).isCurrent());
    EXPECT_TRUE(await(service(std::nullopt, QStringLiteral("1")).check()).isCurrent());
}

TEST_F(QuireUpdateServiceTest, ReadsARunningVersionWithAWordInIt)
{
    serve(manifest(QStringLiteral("1.1"), 1));
    EXPECT_FALSE(await(service(QStringLiteral("1.2beta")).check()).isCurrent()); // as 1.0
    serve(manifest(QStringLiteral("1.0"), 1));
    EXPECT_TRUE(await(service(QStringLiteral("1.2beta"), QStringLiteral("1")).check()).isCurrent());
}

TEST_F(QuireUpdateServiceTest, AsksForTheManifestWithoutAnythingOfItsOwn)
{
    serve(LoopbackReply::ok(manifest()).header("Set-Cookie", "a=b; Path=/").header("Cache-Control", "max-age=99999"));

    check();
    check();

    ASSERT_EQ(server.requests().size(), 2); // nothing is kept from one check to the next
    for (const LoopbackRequest &request : server.requests()) {
        EXPECT_EQ(request.method, "GET");
        EXPECT_EQ(request.target, "/quire/version.json");
        EXPECT_FALSE(request.headers.value("user-agent").contains("Quire"));
        EXPECT_FALSE(request.headers.contains("cookie"));
        EXPECT_FALSE(request.headers.contains("if-none-match"));
    }
}

TEST_F(QuireUpdateServiceTest, ReadsABodyUpToTheLimitAndNoByteMore)
{
    serve(manifestOfSize(65'536));
    EXPECT_NO_THROW(check());
    serve(LoopbackReply::ok(manifestOfSize(65'536)).chunked());
    EXPECT_NO_THROW(check());

    serve(manifestOfSize(65'537));
    EXPECT_EQ(refusal(), invalidResponse);
    serve(LoopbackReply::ok(manifestOfSize(65'537)).chunked());
    EXPECT_EQ(refusal(), invalidResponse);
}

TEST_F(QuireUpdateServiceTest, StopsReadingABodyWithoutAnEnd)
{
    serve(LoopbackReply::ok(QByteArray(1000, ' ')).repeatedForEver());
    EXPECT_EQ(refusal(), invalidResponse);

    serve(LoopbackReply::ok(qCompress(QByteArray(50'000'000, ' ')).sliced(4)).header("Content-Encoding", "deflate"));
    EXPECT_EQ(refusal(), invalidResponse);
}

TEST_F(QuireUpdateServiceTest, RefusesATooLongBodyWhateverItsStatus)
{
    serve(LoopbackReply::withStatus(500));
    EXPECT_EQ(refusal(), unavailable);
    serve(LoopbackReply::withStatus(500, QByteArray(65'536, ' ')));
    EXPECT_EQ(refusal(), unavailable);
    serve(LoopbackReply::withStatus(500, QByteArray(65'537, ' ')));
    EXPECT_EQ(refusal(), invalidResponse);
}

TEST_F(QuireUpdateServiceTest, RefusesEveryStatusThatIsNoSuccess)
{
    for (const int status : {300, 304, 400, 401, 403, 404, 407, 410, 429, 500, 503}) {
        serve(LoopbackReply::withStatus(status, manifest()));
        EXPECT_EQ(refusal(), unavailable) << status;
    }
    serve(LoopbackReply::withStatus(203, manifest()));
    EXPECT_NO_THROW(check());
}

TEST_F(QuireUpdateServiceTest, RefusesWhatIsNoHTTP)
{
    serve(LoopbackReply::raw("220 ready for mail\r\n"));
    EXPECT_TRUE(transportFailure());

    serve(LoopbackReply::ok("not packed at all").header("Content-Encoding", "gzip"));
    EXPECT_EQ(refusal(), unavailable);
}

TEST_F(QuireUpdateServiceTest, FollowsARedirectAndJudgesWhatIsThere)
{
    server.route(u"/moved", LoopbackReply::ok(manifest()));
    serve(LoopbackReply::redirect("/moved"));

    EXPECT_NO_THROW(check());

    server.route(u"/moved", LoopbackReply::withStatus(404));
    EXPECT_EQ(refusal(), unavailable);
}

TEST_F(QuireUpdateServiceTest, GivesUpOnRedirectsWithoutAnEnd)
{
    serve(LoopbackReply::redirect("/quire/version.json"));

    EXPECT_TRUE(transportFailure());
    EXPECT_LE(server.requests().size(), 25);
}

TEST_F(QuireUpdateServiceTest, FollowsNoRedirectToAnotherScheme)
{
    for (const QByteArray &target : {QByteArray("file:///etc/hostname"), QByteArray("data:application/json,{}"),
             QByteArray("qrc:/qt/qml/Quire/qmldir"), QByteArray("ftp://127.0.0.1/")}) {
        serve(LoopbackReply::redirect(target));
        EXPECT_THROW(check(), Failure) << target.constData();
    }
}

TEST_F(QuireUpdateServiceTest, PassesOnThatTheHostCannotBeReached)
{
    server.refuse();

    EXPECT_EQ(transportFailure(), TransportError::Kind::CannotConnectToHost);
}

TEST_F(QuireUpdateServiceTest, PassesOnThatTheAnswerWasCut)
{
    serve(LoopbackReply::ok(manifest()).cutAfter(10));
    EXPECT_EQ(transportFailure(), TransportError::Kind::NetworkConnectionLost);

    serve(LoopbackReply::hangUp());
    EXPECT_EQ(transportFailure(), TransportError::Kind::NetworkConnectionLost);
}

TEST_F(QuireUpdateServiceTest, PassesOnThatTheAnswerIsNoManifest)
{
    serve(R"({"version":"1.2","downloadPage":"https://quire.example/quire"})");

    const auto failure = thrownBy<JSONDecodingError>([this] { check(); });

    ASSERT_TRUE(failure);
    EXPECT_EQ(failure->kind(), JSONDecodingError::Kind::MissingMember);
    EXPECT_EQ(failure->path(), QStringLiteral("build"));
}

TEST_F(QuireUpdateServiceTest, DistrustsTheManifest)
{
    serve(manifest(QStringLiteral("2"), 8));

    EXPECT_EQ(refusal(), QStringLiteral("The update server returned an invalid download address."));
}

TEST_F(QuireUpdateServiceTest, NeedsAnAddressToAsk)
{
    for (const auto *address : {u"", u"quire.example", u"file:///tmp", u"https://"}) {
        const QuireUpdateService service(clock, QUrl(QString::fromUtf16(address)), {});
        const auto failure = thrownBy<QuireUpdateCheckError>([&] { await(service.check()); });
        ASSERT_TRUE(failure);
        EXPECT_EQ(failure->description(), QStringLiteral("Quire’s update address is invalid."));
    }
}

TEST_F(QuireUpdateServiceTest, EndsAfterFifteenSecondsHoweverSlowlyTheBytesDrip)
{
    // 65,537 bytes in a minute, eleven at a time.
    serve(LoopbackReply::ok(manifestOfSize(65'537)).dripping(10ms, 11));
    RunningCheck running(service().check());
    ASSERT_TRUE(eventually([this] { return clock.sleepers() == 1 && !server.requests().isEmpty(); }));

    clock.advance(14'999ms);
    EXPECT_FALSE(eventually([&] { return running.outcome->isOver; }, 100ms));
    clock.advance(1ms);

    ASSERT_TRUE(eventually([&] { return running.outcome->isOver; }));
    const auto failure = running.failure<TransportError>();
    ASSERT_TRUE(failure);
    EXPECT_EQ(failure->kind(), TransportError::Kind::TimedOut);
    EXPECT_TRUE(eventually([this] { return server.connections() == 0; }));
}

TEST_F(QuireUpdateServiceTest, EndsAfterFifteenSecondsOfSilence)
{
    serve(LoopbackReply::silence());
    RunningCheck running(service().check());
    ASSERT_TRUE(eventually([this] { return !server.requests().isEmpty(); }));

    clock.advance(QuireUpdateService::timeout);

    ASSERT_TRUE(eventually([&] { return running.outcome->isOver; }));
    EXPECT_EQ(running.failure<TransportError>()->kind(), TransportError::Kind::TimedOut);
}

TEST_F(QuireUpdateServiceTest, LeavesNoTimerBehind)
{
    serve(manifest());

    check();

    EXPECT_TRUE(eventually([this] { return clock.sleepers() == 0; }));
}

TEST_F(QuireUpdateServiceTest, EndsAsSoonAsItIsCancelled)
{
    serve(LoopbackReply::silence());
    std::stop_source source;
    RunningCheck running(service().check(source.get_token()));
    ASSERT_TRUE(eventually([this] { return !server.requests().isEmpty(); }));

    source.request_stop();

    ASSERT_TRUE(eventually([&] { return running.outcome->isOver; }));
    EXPECT_TRUE(running.failure<Cancelled>());
    EXPECT_TRUE(eventually([this] { return server.connections() == 0 && clock.sleepers() == 0; }));
}

TEST_F(QuireUpdateServiceTest, GoesOnWhenTheServiceIsGone)
{
    serve(LoopbackReply::ok(manifest()).after(20ms));
    auto service = std::make_unique<QuireUpdateService>(clock, server.origin(), RunningVersion());

    auto checking = service->check();
    service.reset();

    EXPECT_FALSE(await(std::move(checking)).isCurrent());
}

TEST_F(QuireUpdateServiceTest, DoesNotMixChecksThatOverlap)
{
    server.route(u"/quire/version.json",
        {LoopbackReply::ok(manifest(QStringLiteral("9.0"))).after(200ms), LoopbackReply::withStatus(500)});

    auto first = service().check();
    ASSERT_TRUE(eventually([this] { return server.requests().size() == 1; }));
    RunningCheck second(service().check());

    ASSERT_TRUE(eventually([&] { return second.outcome->isOver; }));
    EXPECT_TRUE(second.failure<QuireUpdateCheckError>());
    EXPECT_FALSE(await(std::move(first)).isCurrent());
}
