// Sites and deploys as the service really describes them, and what a publication
// makes of each. Built only when a folder of such answers is named.

#include "PublishingTest.h"

#include "publishing/NetlifyAnswer.h"
#include "publishing/ReadingListRenderer.h"

#include <QFile>

using namespace quire;
using namespace quire::testing;
using ::testing::IsEmpty;

namespace {

QByteArray sample(const QString &name)
{
    QFile file(QStringLiteral(QUIRE_SAMPLE_DATA "/netlify/") + name);
    EXPECT_TRUE(file.open(QIODevice::ReadOnly)) << qUtf8Printable(file.fileName());
    return file.readAll();
}

NetlifyAnswer answer(const QString &name)
{
    return NetlifyAnswer::parse(sample(name));
}

const QString oldSite = QStringLiteral("site_get_2013-docs.json");
const QString buildingDeploy = QStringLiteral("deploy_building_2018.json");
const QString readyDeploy = QStringLiteral("deploy_ready_2018.json");

class SamplePublishing : public PublishingTest
{
};

} // namespace

TEST_F(SamplePublishing, ASiteOfTheFirstYearsIsAtItsOwnDomain)
{
    const NetlifyAnswer site = answer(oldSite);
    EXPECT_EQ(site.text(u"id"), QStringLiteral("3970e0fe-8564-4903-9a55-c5f8de49fb8b"));
    EXPECT_EQ(site.text(u"ssl_url"), std::nullopt);
    EXPECT_EQ(netlifySiteURL(site)->text(), QStringLiteral("https://www.example.com"));
}

TEST_F(SamplePublishing, ADeployIsKnownByItsStateAndRequiresNothing)
{
    const NetlifyAnswer building = answer(buildingDeploy);
    EXPECT_EQ(building.text(u"state"), QStringLiteral("building"));
    EXPECT_EQ(building.text(u"id"), QStringLiteral("5b78192ac9659217dbf7c9aa"));
    EXPECT_THAT(building.texts(u"required"), IsEmpty());
    EXPECT_THAT(building.texts(u"required_functions"), IsEmpty()); // null
    EXPECT_EQ(answer(readyDeploy).text(u"state"), QStringLiteral("ready"));
    EXPECT_EQ(netlifySiteURL(building)->text(), QStringLiteral("https://objective-jepsen-35fbb2.netlify.com"));
}

TEST_F(SamplePublishing, AListAndWhatIsNoJSONAreAnswersWithoutMembers)
{
    for (const QString &name :
        {QStringLiteral("deploys_list_2013-docs.json"), QStringLiteral("event_deploy-and-site_masked_2023.jsonc")}) {
        EXPECT_FALSE(sample(name).isEmpty());
        EXPECT_EQ(answer(name).text(u"id"), std::nullopt);
        EXPECT_EQ(answer(name).text(u"state"), std::nullopt);
        EXPECT_EQ(netlifySiteURL(answer(name)), std::nullopt);
    }
}

TEST_F(SamplePublishing, APublicationGoesThroughTheRealAnswers)
{
    const auto json = [](const QString &name) { return LoopbackReply::ok(sample(name), "application/json"); };
    // The site's domain is somebody's: the page is looked for here instead.
    QByteArray site = sample(oldSite);
    site.replace("www.example.com\",\n  \"notification", netlify.siteAddress().toUtf8() + "\",\n  \"notification");
    netlify.instead = {
        {"POST /api/v1/sites", LoopbackReply::ok(site, "application/json")},
        {"POST /api/v1/sites/3970e0fe-8564-4903-9a55-c5f8de49fb8b/deploys", json(buildingDeploy)},
        {"GET /pages/", LoopbackReply::ok(ReadingListRenderer::html(snapshot).toUtf8(), "text/html")},
    };
    int polls = 0;
    netlify.insteadOf = [&](const LoopbackRequest &request) -> std::optional<LoopbackReply> {
        if (request.path != u"/api/v1/deploys/5b78192ac9659217dbf7c9aa") {
            return std::nullopt;
        }
        return json(++polls < 4 ? buildingDeploy : readyDeploy);
    };
    const PublishResult result = publish();
    EXPECT_THAT(result.errors, IsEmpty());
    EXPECT_EQ(result.siteURL->text(), netlify.siteAddress());
    EXPECT_EQ(pauses(), 3);
    EXPECT_EQ(netlify.count("PUT "), 0);
    EXPECT_EQ(setting("netlifyLastDeployID"), QStringLiteral("5b78192ac9659217dbf7c9aa"));
    EXPECT_EQ(bytesOf(deployed(QStringLiteral(".site-id"))), "3970e0fe-8564-4903-9a55-c5f8de49fb8b");
}
