// The road to a page that readers see, and each way in which it can end before.

#include "PublishingTest.h"

#include "publishing/ReadingListRenderer.h"
#include "records/DateParser.h"

#include <QCryptographicHash>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QJsonObject>

using namespace quire;
using namespace quire::testing;
using ::testing::ElementsAre;
using ::testing::IsEmpty;

namespace {

class OnlineReadingListTest : public PublishingTest
{
protected:
    // What the reader is told of a publication that failed online; the empty text
    // when it did not.
    QString failure()
    {
        const PublishResult result = publish();
        EXPECT_EQ(result.onlineSucceeded, result.errors.isEmpty());
        EXPECT_EQ(result.siteURL.has_value(), result.onlineSucceeded);
        return result.errors.isEmpty() ? QString() : result.errors.first().mid(QStringView(u"Online: ").size());
    }

    void expectNothingVerified()
    {
        for (const char *key :
            {"onlineLastPublish", "netlifyLastDeployID", "netlifyLastVerifiedHash", "netlifyLastVerifiedAt"}) {
            EXPECT_EQ(setting(key), std::nullopt) << key;
        }
    }

    void knowSite(const QByteArray &content)
    {
        QDir().mkpath(QFileInfo(deployed(QStringLiteral(".site-id"))).path());
        putFile(deployed(QStringLiteral(".site-id")), content);
    }

    QByteArray html() const { return ReadingListRenderer::html(snapshot).toUtf8(); }
};

QByteArray hex(const QByteArray &bytes, QCryptographicHash::Algorithm algorithm)
{
    return QCryptographicHash::hash(bytes, algorithm).toHex();
}

LoopbackReply jsonText(const QByteArray &text, int status = 200)
{
    LoopbackReply reply = LoopbackReply::ok(text, "application/json");
    reply.status = status;
    return reply;
}

const QByteArrayList callsOfAFirstRun{"POST /api/v1/sites", "POST /api/v1/sites/site-1/deploys",
    "PUT /api/v1/deploys/deploy-1/files/index.html", "GET /api/v1/deploys/deploy-1", "GET /pages/list/index.html"};
const QString didNotBecomeLive
    = QStringLiteral("Netlify accepted the deployment, but it did not become live before verification timed out. "
                     "Quire will retry it.");
const QString deploymentFailed = QStringLiteral("Netlify reported that the deployment failed.");
const QString doesNotMatch
    = QStringLiteral("Netlify is live, but the published page does not match Quire’s current output. The update "
                     "remains queued for retry.");
const QString noAddress = QStringLiteral("Netlify did not return a published site address.");

} // namespace

// One site, once. ---------------------------------------------------------------------

TEST_F(OnlineReadingListTest, TheFirstRunMakesASiteAndTheSecondUsesIt)
{
    EXPECT_EQ(failure(), QString());
    EXPECT_EQ(netlify.calls(), callsOfAFirstRun);
    EXPECT_EQ(bytesOf(deployed(QStringLiteral(".site-id"))), "site-1");

    netlify.forgetRequests();
    snapshot.generatedAt += std::chrono::minutes(1);
    EXPECT_EQ(failure(), QString());
    EXPECT_EQ(netlify.calls().first(), "GET /api/v1/sites/site-1");
    EXPECT_EQ(netlify.count("POST /api/v1/sites/"), 1); // its deploy
    EXPECT_EQ(netlify.count("PUT "), 1);
}

TEST_F(OnlineReadingListTest, AnUnchangedPageIsNotSentAgainButWaitedForAndVerified)
{
    failure();
    netlify.forgetRequests();
    EXPECT_EQ(failure(), QString());
    EXPECT_THAT(netlify.calls(),
        ElementsAre("GET /api/v1/sites/site-1", "POST /api/v1/sites/site-1/deploys", "GET /api/v1/deploys/deploy-2",
            "GET /pages/list/index.html"));
    EXPECT_EQ(setting("netlifyLastDeployID"), QStringLiteral("deploy-2"));
}

TEST_F(OnlineReadingListTest, ADeployThatSaysNothingOfRequiredFilesIsSentNone)
{
    failure();
    netlify.forgetRequests();
    for (const QByteArray members :
        {"", R"(,"required":null)", R"(,"required":"all")", R"(,"required":["other"])", R"(,"required":[1,"%1"])"}) {
        QByteArray answer = R"({"id":"deploy-9")" + members + "}";
        answer.replace("%1", hex(html(), QCryptographicHash::Sha1));
        netlify.instead.insert("POST /api/v1/sites/site-1/deploys", jsonText(answer));
        EXPECT_EQ(failure(), QString()) << members.constData();
    }
    EXPECT_EQ(netlify.count("PUT "), 0);
}

TEST_F(OnlineReadingListTest, ADeletedSiteIsAFailureAndNoNewOneIsMade)
{
    knowSite("deleted-site");
    EXPECT_EQ(failure(), QStringLiteral("Not Found"));
    EXPECT_THAT(netlify.calls(), ElementsAre("GET /api/v1/sites/deleted-site"));
    EXPECT_EQ(bytesOf(deployed(QStringLiteral(".site-id"))), "deleted-site");
    expectNothingVerified();
}

TEST_F(OnlineReadingListTest, BlanksAroundTheSiteIDAreNotPartOfIt)
{
    failure();
    knowSite(" site-1\r\n");
    netlify.forgetRequests();
    EXPECT_EQ(failure(), QString());
    EXPECT_EQ(netlify.calls().first(), "GET /api/v1/sites/site-1");
}

TEST_F(OnlineReadingListTest, ASiteIDThatIsBlankOrNoTextCountsAsNone)
{
    for (const QByteArray content : {"", " \n", "\xff\xfe"}) {
        knowSite(content);
        netlify.forgetRequests();
        EXPECT_EQ(failure(), QString());
        EXPECT_EQ(netlify.calls().first(), "POST /api/v1/sites");
        EXPECT_EQ(bytesOf(deployed(QStringLiteral(".site-id"))), "site-1");
    }
}

TEST_F(OnlineReadingListTest, ASiteIDThatMakesNoAddressIsSentNowhere)
{
    knowSite("a b");
    EXPECT_EQ(failure(), QStringLiteral("The service URL could not be created."));
    EXPECT_THAT(netlify.calls(), IsEmpty());
}

TEST_F(OnlineReadingListTest, ANewSiteMustHaveAnID)
{
    for (const QByteArray answer : {"{}", R"({"id":""})", R"({"id":7})", R"([{"id":"x"}])", "not JSON", ""}) {
        netlify.instead.insert("POST /api/v1/sites", jsonText(answer, 201));
        EXPECT_EQ(failure(), QStringLiteral("Netlify did not return a site identifier.")) << answer.constData();
        EXPECT_FALSE(QFile::exists(deployed(QStringLiteral(".site-id"))));
    }
}

// What is sent. --------------------------------------------------------------------------

TEST_F(OnlineReadingListTest, EveryCallCarriesTheTokenAndItsBodyAndThePageNeither)
{
    set("netlifyToken", QStringLiteral("  a-token\n"));
    EXPECT_EQ(failure(), QString());
    const QByteArray sha1 = hex(html(), QCryptographicHash::Sha1);
    const QList<LoopbackRequest> requests = netlify.requests();
    ASSERT_EQ(requests.size(), 5);
    for (const LoopbackRequest &request : requests.first(4)) {
        EXPECT_EQ(request.headers.value("authorization"), "Bearer a-token");
    }
    EXPECT_EQ(requests[0].body, "{}");
    EXPECT_EQ(requests[0].headers.value("content-type"), "application/json");
    EXPECT_EQ(requests[1].body, R"({"files":{"/index.html":")" + sha1 + R"("}})");
    EXPECT_EQ(requests[1].headers.value("content-type"), "application/json");
    EXPECT_EQ(requests[2].body, html());
    EXPECT_EQ(requests[2].headers.value("content-type"), "application/octet-stream");
    EXPECT_EQ(requests[3].body, "");
    EXPECT_FALSE(requests[3].headers.contains("content-type"));

    const LoopbackRequest &page = requests[4];
    EXPECT_FALSE(page.headers.contains("authorization"));
    EXPECT_EQ(page.headers.value("cache-control"), "no-cache");
    EXPECT_EQ(page.queryValue(QStringLiteral("quire_verify")).size(), 36);
}

TEST_F(OnlineReadingListTest, NoCacheHasSeenTheAddressOfThePage)
{
    failure();
    failure();
    QStringList marks;
    for (const LoopbackRequest &request : netlify.requests()) {
        if (request.path.startsWith(u"/pages/")) {
            marks.append(request.queryValue(QStringLiteral("quire_verify")));
        }
    }
    ASSERT_EQ(marks.size(), 2);
    EXPECT_NE(marks.first(), marks.last());
}

TEST_F(OnlineReadingListTest, ASuccessIsRecordedWithItsDigestAndThePageKept)
{
    EXPECT_EQ(failure(), QString());
    EXPECT_EQ(setting("netlifySiteURL"), netlify.siteAddress());
    EXPECT_EQ(setting("netlifyLastDeployID"), QStringLiteral("deploy-1"));
    EXPECT_EQ(setting("netlifyLastVerifiedHash"), QString::fromLatin1(hex(html(), QCryptographicHash::Sha256)));
    EXPECT_EQ(setting("netlifyLastVerifiedAt"), DateParser::iso8601(library.clock().now()));
    EXPECT_EQ(bytesOf(deployed(QStringLiteral("index.html"))), html());
    EXPECT_THAT(
        namesIn(QFileInfo(deployed({})).path()), ElementsAre(QStringLiteral(".site-id"), QStringLiteral("index.html")));
}

// Addresses. ------------------------------------------------------------------------------

TEST_F(OnlineReadingListTest, AnOwnDomainIsWhereThePageIsLookedFor)
{
    netlify.siteMembers.insert(QStringLiteral("custom_domain"), netlify.siteAddress() + QStringLiteral("/"));
    netlify.siteMembers.insert(QStringLiteral("ssl_url"), QStringLiteral("https://other.example"));
    const PublishResult result = publish();
    EXPECT_THAT(result.errors, IsEmpty());
    EXPECT_EQ(result.siteURL->text(), netlify.siteAddress() + QStringLiteral("/"));
    EXPECT_EQ(netlify.calls().last(), "GET /pages/list/index.html");
}

TEST_F(OnlineReadingListTest, ThePageOfASiteThatFillsItsHostIsLookedForAtItsRoot)
{
    for (const QString &end : {QString(), QStringLiteral("/"), QStringLiteral("//"), QStringLiteral("?view=all")}) {
        netlify.siteMembers.insert(QStringLiteral("custom_domain"), netlify.origin().toString() + end);
        failure();
        EXPECT_EQ(netlify.calls().last(), "GET /index.html") << qUtf8Printable(end);
    }
    EXPECT_EQ(netlify.requests().last().queryValue(QStringLiteral("view")), QStringLiteral("all"));
}

TEST_F(OnlineReadingListTest, ADomainThatIsNoneIsAFailureWhateverStandsBesideIt)
{
    netlify.siteMembers.insert(QStringLiteral("custom_domain"), QStringLiteral("not a domain"));
    EXPECT_EQ(failure(), noAddress);
    EXPECT_EQ(netlify.count("POST /api/v1/sites/"), 0);
    EXPECT_EQ(setting("netlifySiteURL"), std::nullopt);
    EXPECT_EQ(bytesOf(deployed(QStringLiteral(".site-id"))), "site-1"); // it was made all the same
}

TEST_F(OnlineReadingListTest, ASiteWithoutAnAddressIsAFailure)
{
    netlify.siteMembers = {{QStringLiteral("url"), QJsonValue::Null}, {QStringLiteral("ssl_url"), QString()}};
    EXPECT_EQ(failure(), noAddress);
}

TEST_F(OnlineReadingListTest, AServiceAddressThatCouldNotBeReadIsSentNothing)
{
    ServiceEndpoints endpoints = ServiceEndpoints::standard();
    endpoints.netlify = QUrl();
    const PublishResult result = await(
        PublishingService::publish(snapshot, library.store(), network, endpoints, library.clock(), stop.get_token()));
    EXPECT_THAT(result.errors, ElementsAre(QStringLiteral("Online: The service URL could not be created.")));
}

// Becoming live. ---------------------------------------------------------------------------

TEST_F(OnlineReadingListTest, ADeployThatIsReadyOnTheTwelfthPollSucceeds)
{
    netlify.states = QList<QJsonValue>(11, QStringLiteral("building")) + QList<QJsonValue>{QStringLiteral("ready")};
    const auto before = library.clock().now();
    EXPECT_EQ(failure(), QString());
    EXPECT_EQ(netlify.count("GET /api/v1/deploys/"), 12);
    EXPECT_EQ(pauses(), 11);
    EXPECT_EQ(library.clock().now() - before, std::chrono::milliseconds(16'500));
}

TEST_F(OnlineReadingListTest, ADeployThatWouldBeReadyOnTheThirteenthPollFails)
{
    netlify.states = QList<QJsonValue>(12, QStringLiteral("building")) + QList<QJsonValue>{QStringLiteral("ready")};
    EXPECT_EQ(failure(), didNotBecomeLive);
    EXPECT_EQ(netlify.count("GET /api/v1/deploys/"), 12);
    EXPECT_EQ(pauses(), 11);
    EXPECT_EQ(netlify.count("GET /pages/"), 0);
    EXPECT_EQ(bytesOf(deployed(QStringLiteral("index.html"))), html()); // it was sent
    expectNothingVerified();
}

TEST_F(OnlineReadingListTest, AStateInCapitalsIsTheSameState)
{
    netlify.states = {QStringLiteral("Building"), QStringLiteral("READY")};
    EXPECT_EQ(failure(), QString());
    EXPECT_EQ(pauses(), 1);
}

TEST_F(OnlineReadingListTest, EachStateOfFailureEndsTheWait)
{
    for (const char *state : {"error", "failed", "canceled", "cancelled", "Error", "CANCELLED", "CANCELED"}) {
        netlify.forgetRequests();
        netlify.states = {QStringLiteral("processing"), QLatin1String(state)};
        EXPECT_EQ(failure(), deploymentFailed) << state;
        EXPECT_EQ(netlify.count("GET /api/v1/deploys/"), 2);
        EXPECT_EQ(netlify.count("GET /pages/"), 0);
    }
    expectNothingVerified();
}

TEST_F(OnlineReadingListTest, AStateThatIsMissingOrNoTextIsWaitedOn)
{
    netlify.states
        = {QJsonValue::Null, 7, QJsonObject(), QString(), QStringLiteral(" ready "), QStringLiteral("ready")};
    EXPECT_EQ(failure(), QString());
    EXPECT_EQ(pauses(), 5);
}

TEST_F(OnlineReadingListTest, APollThatFailsEndsTheWait)
{
    netlify.instead.insert("GET /api/v1/deploys/", jsonText(R"({"message":"Not now"})", 503));
    EXPECT_EQ(failure(), QStringLiteral("Not now"));
    EXPECT_EQ(netlify.count("GET /api/v1/deploys/"), 1);
}

TEST_F(OnlineReadingListTest, ADeployMustHaveAnID)
{
    for (const QByteArray answer : {"{}", R"({"id":7})", R"({"id":null})", "[]", "<html>"}) {
        netlify.instead.insert("POST /api/v1/sites/site-1/deploys", jsonText(answer));
        EXPECT_EQ(failure(), QStringLiteral("Netlify did not return a deploy identifier.")) << answer.constData();
    }
    EXPECT_EQ(netlify.count("PUT "), 0);
}

// The page itself. --------------------------------------------------------------------------

TEST_F(OnlineReadingListTest, APageThatDiffersIsAFailureAndDoneAgainNextTime)
{
    const LoopbackReply other = LoopbackReply::ok(html() + ' ', "text/html");
    netlify.instead.insert("GET /pages/", other);
    EXPECT_EQ(failure(), doesNotMatch);
    expectNothingVerified();

    netlify.instead.clear();
    netlify.forgetRequests();
    EXPECT_EQ(failure(), QString());
    EXPECT_EQ(netlify.count("POST /api/v1/sites/site-1/deploys"), 1);
    EXPECT_EQ(netlify.count("PUT "), 0);
}

TEST_F(OnlineReadingListTest, AnEmptyPageDiffers)
{
    netlify.instead.insert("GET /pages/", LoopbackReply::ok({}, "text/html"));
    EXPECT_EQ(failure(), doesNotMatch);
}

TEST_F(OnlineReadingListTest, APageThatCannotBeDownloadedIsAFailure)
{
    for (const int status : {401, 404, 503}) {
        netlify.instead.insert("GET /pages/", LoopbackReply::withStatus(status, "words of the server"));
        EXPECT_EQ(failure(), QStringLiteral("The published page could not be downloaded for verification."));
    }
    expectNothingVerified();
}

TEST_F(OnlineReadingListTest, APageThatHasMovedIsFollowed)
{
    netlify.instead.insert("GET /pages/", LoopbackReply::redirect("/moved", 301));
    netlify.insteadOf = [this](const LoopbackRequest &request) -> std::optional<LoopbackReply> {
        return request.path == u"/moved" ? std::optional(LoopbackReply::ok(netlify.page(), "text/html")) : std::nullopt;
    };
    EXPECT_EQ(failure(), QString());
}

// Refusals. ---------------------------------------------------------------------------------

TEST_F(OnlineReadingListTest, AWrongTokenIsToldInTheServicesWords)
{
    set("netlifyToken", QStringLiteral("another"));
    EXPECT_EQ(failure(), QStringLiteral("Access Denied"));
    EXPECT_THAT(netlify.calls(), ElementsAre("POST /api/v1/sites"));
}

TEST_F(OnlineReadingListTest, EveryCallIsRefusedInTheServicesWordsOrOurs)
{
    for (const QByteArray call : {"POST /api/v1/sites", "POST /api/v1/sites/site-1/deploys", "GET /api/v1/deploys/"}) {
        const auto told = [&](const QByteArray &body, int status) {
            QFile::remove(deployed(QStringLiteral(".site-id")));
            netlify.instead = {{call, jsonText(body, status)}};
            return failure();
        };
        for (const int status : {301, 401, 422, 429, 503}) {
            EXPECT_EQ(told(R"({"code":1,"message":"The reason"})", status), QStringLiteral("The reason")) << status;
        }
        for (const QByteArray body : {"", "<h1>Oh</h1>", R"({"message":3})"}) {
            EXPECT_EQ(told(body, 500), QStringLiteral("Netlify returned HTTP 500.")) << body.constData();
        }
    }
    expectNothingVerified();
}

TEST_F(OnlineReadingListTest, ARefusalWithAnEmptyMessageIsToldByItsNumber)
{
    netlify.instead.insert("POST /api/v1/sites", jsonText(R"({"message":""})", 422));
    EXPECT_EQ(failure(), QStringLiteral("The service returned HTTP 422."));
}

TEST_F(OnlineReadingListTest, ARefusedUploadIsToldInTheServicesWords)
{
    const std::pair<QByteArray, QString> refusals[]{
        {"the disk is full", QStringLiteral("the disk is full")},
        {R"({"message":"not unpacked"})", QStringLiteral(R"({"message":"not unpacked"})")},
        {"", QStringLiteral("The service returned HTTP 422.")},
        {"\xff\xfe", QStringLiteral("Netlify upload failed.")},
    };
    for (const auto &[body, words] : refusals) {
        netlify.instead.insert("PUT ", LoopbackReply::withStatus(422, body));
        EXPECT_EQ(failure(), words);
        EXPECT_EQ(netlify.count("GET /api/v1/deploys/"), 0);
    }
    EXPECT_FALSE(QFile::exists(deployed(QStringLiteral("index.html")))); // the last one that was sent
    expectNothingVerified();
}

TEST_F(OnlineReadingListTest, AServiceThatRepeatsTheTokenDoesNotShowIt)
{
    set("netlifyToken", QStringLiteral("nfp_secret"));
    netlify.instead.insert("POST /api/v1/sites", jsonText(R"({"message":"No such token: nfp_secret"})", 401));
    EXPECT_EQ(failure(), QStringLiteral("No such token: …"));
    set("netlifyToken", QStringLiteral("a-token"));
    netlify.instead = {{"PUT ", LoopbackReply::withStatus(403, "Bearer a-token is not enough")}};
    EXPECT_EQ(failure(), QStringLiteral("Bearer … is not enough"));
}

TEST_F(OnlineReadingListTest, AConnectionThatBreaksIsAFailureAtEveryCall)
{
    for (const QByteArray call :
        {"POST /api/v1/sites", "POST /api/v1/sites/site-1/deploys", "PUT ", "GET /api/v1/deploys/", "GET /pages/"}) {
        QFile::remove(deployed(QStringLiteral(".site-id")));
        netlify.instead = {{call, LoopbackReply::hangUp()}};
        snapshot.generatedAt += std::chrono::minutes(1);
        EXPECT_NE(failure(), QString()) << call.constData();
        netlify.instead = {{call, LoopbackReply::ok(R"({"id":"site-1"})").cutAfter(5)}};
        EXPECT_NE(failure(), QString()) << call.constData();
    }
    expectNothingVerified();
}

TEST_F(OnlineReadingListTest, AnEndlessAnswerIsAFailure)
{
    netlify.instead.insert("POST /api/v1/sites", LoopbackReply::ok(QByteArray(64 * 1024, ' ')).repeatedForEver());
    EXPECT_EQ(failure(), QStringLiteral("The service's answer is too long."));
}

TEST_F(OnlineReadingListTest, AFolderThatCannotBeMadeEndsTheRunBeforeAnyCall)
{
    QDir().mkpath(AppDirectories::supportDirectory());
    putFile(AppDirectories::supportDirectory() + QStringLiteral("/deploy"), "in the way");
    EXPECT_TRUE(failure().startsWith(u"Could not create the folder “"));
    EXPECT_THAT(netlify.calls(), IsEmpty());
}
