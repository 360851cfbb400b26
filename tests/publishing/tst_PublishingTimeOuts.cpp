// A service that takes a call and says nothing, or an answer byte by byte: each
// call ends at its own time-out, and the publication with it.

#include "NetlifyStandIn.h"

#include "concurrency/Detach.h"
#include "persistence/AppDirectories.h"
#include "publishing/NetlifyAPI.h"
#include "publishing/PublishingService.h"
#include "sources/NetworkClient.h"
#include "testing/Await.h"
#include "testing/OwnDataDirectory.h"
#include "testing/TestFiles.h"
#include "testing/TestLibrary.h"

#include <QDeadlineTimer>
#include <QDir>
#include <QElapsedTimer>
#include <QJsonDocument>

#include <gmock/gmock.h>

#include <memory>
#include <vector>

using namespace quire;
using namespace quire::testing;
using ::testing::ElementsAre;

namespace {

// One to a service of its own that gives a site's description and then, at one
// call, `reply`.
class Publication
{
public:
    Publication(const QByteArray &call, const LoopbackReply &reply)
    {
        await(m_library.store().setSetting(QStringLiteral("netlifyToken"), QStringLiteral("a-token")));
        const QJsonObject site{{QStringLiteral("url"), m_netlify.siteAddress()}};
        const QJsonObject deploy{{QStringLiteral("id"), QStringLiteral("deploy-1")}};
        m_netlify.instead = {
            {"GET /api/v1/sites/", LoopbackReply::ok(QJsonDocument(site).toJson(), "application/json")},
            {call, reply},
        };
        if (!m_netlify.instead.contains("PUT ")) { // nothing is asked for otherwise
            m_netlify.instead.insert(
                "POST /api/v1/sites/", LoopbackReply::ok(QJsonDocument(deploy).toJson(), "application/json"));
        } else {
            m_netlify.instead.remove("GET /api/v1/sites/");
            m_netlify.knowSite(QStringLiteral("site-1"));
        }
    }

    // One that did not end in its time is stopped: what it uses goes with this.
    ~Publication()
    {
        m_stop.request_stop();
        EXPECT_TRUE(eventually([this] { return !m_isUnderWay; })) << "a publication goes on after its stop";
    }
    Publication(const Publication &) = delete;
    Publication &operator=(const Publication &) = delete;

    void start()
    {
        m_isUnderWay = true;
        detach(run());
    }

    // Nothing when it has not ended by then.
    std::optional<PublishResult> result(const QDeadlineTimer &deadline)
    {
        eventually([this] { return !m_isUnderWay; }, std::chrono::milliseconds(deadline.remainingTime()));
        return m_result;
    }

private:
    QCoro::Task<> run()
    {
        ServiceEndpoints endpoints = ServiceEndpoints::standard();
        endpoints.netlify = m_netlify.origin();
        const auto publishing = PublishingService::publish(
            {}, m_library.store(), m_network, endpoints, m_library.clock(), m_stop.get_token());
        m_result = co_await publishing;
        m_isUnderWay = false;
    }

    TestLibrary m_library;
    NetlifyStandIn m_netlify;
    NetworkClient m_network;
    std::stop_source m_stop;
    bool m_isUnderWay = false;
    std::optional<PublishResult> m_result;
};

} // namespace

TEST(PublishingTimeOuts, EndEachCallThatIsNotAnsweredInItsTime)
{
    using namespace std::chrono_literals;
    const OwnDataDirectory data; // one site for them all
    QDir().mkpath(AppDirectories::supportDirectory() + QStringLiteral("/deploy"));
    putFile(AppDirectories::supportDirectory() + QStringLiteral("/deploy/.site-id"), "site-1");

    const LoopbackReply silence = LoopbackReply::silence();
    const LoopbackReply drip = LoopbackReply::ok(QByteArray(100'000, ' ')).dripping(500ms);
    std::vector<std::unique_ptr<Publication>> publications; // at once, so that their waits are one
    publications.push_back(std::make_unique<Publication>("GET /api/v1/sites/site-1", silence));
    publications.push_back(std::make_unique<Publication>("GET /api/v1/sites/site-1", drip));
    publications.push_back(std::make_unique<Publication>("PUT ", silence));
    publications.push_back(std::make_unique<Publication>("GET /api/v1/deploys/", silence));
    publications.push_back(std::make_unique<Publication>("GET /pages/", silence));
    QElapsedTimer time;
    time.start();
    for (const auto &publication : publications) {
        publication->start();
    }
    const QDeadlineTimer deadline(2min);
    for (const auto &publication : publications) {
        const auto result = publication->result(deadline);
        ASSERT_TRUE(result) << "it waits for ever";
        EXPECT_FALSE(result->onlineSucceeded);
        EXPECT_THAT(result->errors, ElementsAre(QStringLiteral("Online: The request timed out.")));
    }
    EXPECT_GE(time.elapsed(), std::chrono::milliseconds(NetlifyAPI::requestTimeout).count());
}
