// Both halves of a publication, what the settings remember of it, and what is told
// when one half or both fail.

#include "PublishingTest.h"

#include "publishing/ReadingListRenderer.h"
#include "records/DateParser.h"
#include "testing/OwnVariable.h"

#include <QDir>
#include <QFile>

using namespace quire;
using namespace quire::testing;
using ::testing::ElementsAre;
using ::testing::IsEmpty;

namespace {

class PublishingServiceTest : public PublishingTest
{
protected:
    QString folder() const { return m_place.filePath(QStringLiteral("lists/of mine")); }
    QString file() const { return folder() + QStringLiteral("/quire.md"); }
    QByteArray markdown() const { return ReadingListRenderer::markdown(snapshot).toUtf8(); }
    QByteArray html() const { return ReadingListRenderer::html(snapshot).toUtf8(); }
    QString now() { return DateParser::iso8601(library.clock().now()); }

    QTemporaryDir m_place;
};

const QString noToken = QStringLiteral("Online: Netlify token not found. Add it in Settings.");

} // namespace

// Success. ----------------------------------------------------------------------------

TEST_F(PublishingServiceTest, BothHalvesSucceedAndAreNoted)
{
    set("localPublishPath", folder());
    const PublishResult result = publish();
    EXPECT_THAT(result.errors, IsEmpty());
    EXPECT_TRUE(result.localSucceeded);
    EXPECT_TRUE(result.onlineSucceeded);
    EXPECT_EQ(result.localPath->toQUrl().toLocalFile(), file());
    EXPECT_EQ(result.siteURL->text(), netlify.siteAddress());
    EXPECT_EQ(bytesOf(file()), markdown());
    EXPECT_EQ(netlify.page(), html());
    EXPECT_EQ(setting("localLastPublish"), now());
    EXPECT_EQ(setting("onlineLastPublish"), now());
    EXPECT_EQ(setting("publishLastRun"), now());
}

TEST_F(PublishingServiceTest, TheFolderIsCreatedAndHoldsTheListAlone)
{
    set("localPublishPath", folder());
    publish();
    EXPECT_THAT(namesIn(folder()), ElementsAre(QStringLiteral("quire.md")));
}

TEST_F(PublishingServiceTest, ATildeIsTheHomeFolder)
{
    const OwnVariable home("HOME", m_place.path());
    set("localPublishPath", QStringLiteral("~/lists/./of mine/"));
    const PublishResult result = publish();
    EXPECT_TRUE(result.localSucceeded);
    EXPECT_EQ(result.localPath->toQUrl().toLocalFile(), file());
    EXPECT_EQ(bytesOf(file()), markdown());
}

TEST_F(PublishingServiceTest, ATildeAloneIsTheHomeFolderItself)
{
    const OwnVariable home("HOME", m_place.path());
    set("localPublishPath", QStringLiteral("~"));
    EXPECT_TRUE(publish().localSucceeded);
    EXPECT_EQ(bytesOf(m_place.filePath(QStringLiteral("quire.md"))), markdown());
}

TEST_F(PublishingServiceTest, TheNextListReplacesTheFormer)
{
    set("localPublishPath", folder());
    publish();
    Book book;
    book.title = QStringLiteral("A New Title");
    snapshot.booksRead.append(book);
    publish();
    EXPECT_EQ(bytesOf(file()), markdown());
    EXPECT_TRUE(bytesOf(file()).contains("### A New Title\n"));
    EXPECT_THAT(namesIn(folder()), ElementsAre(QStringLiteral("quire.md")));
}

// One half. -----------------------------------------------------------------------------

TEST_F(PublishingServiceTest, WithoutAFolderThereIsNoFileAndNoError)
{
    for (const QString &blank : {QString(), QStringLiteral(" \n\t ")}) {
        set("localPublishPath", blank);
        const PublishResult result = publish();
        EXPECT_FALSE(result.localSucceeded);
        EXPECT_EQ(result.localPath, std::nullopt);
        EXPECT_TRUE(result.onlineSucceeded);
        EXPECT_THAT(result.errors, IsEmpty());
        EXPECT_EQ(setting("localLastPublish"), std::nullopt);
    }
}

TEST_F(PublishingServiceTest, WithoutATokenTheFileIsWrittenAllTheSame)
{
    set("localPublishPath", folder());
    for (const QString &blank : {QString(), QStringLiteral(" \n ")}) {
        set("netlifyToken", blank);
        const PublishResult result = publish();
        EXPECT_TRUE(result.localSucceeded);
        EXPECT_FALSE(result.onlineSucceeded);
        EXPECT_EQ(result.siteURL, std::nullopt);
        EXPECT_THAT(result.errors, ElementsAre(noToken));
        EXPECT_THAT(netlify.calls(), IsEmpty());
        EXPECT_EQ(setting("onlineLastPublish"), std::nullopt);
    }
}

TEST_F(PublishingServiceTest, AFolderThatCannotBeMadeFailsTheFileAlone)
{
    const QString inTheWay = m_place.filePath(QStringLiteral("a file"));
    putFile(inTheWay, "mine");
    set("localPublishPath", inTheWay + QStringLiteral("/lists"));
    const PublishResult result = publish();
    EXPECT_FALSE(result.localSucceeded);
    EXPECT_EQ(result.localPath, std::nullopt);
    EXPECT_TRUE(result.onlineSucceeded);
    EXPECT_THAT(result.errors,
        ElementsAre(QStringLiteral("Local: Could not create the folder “%1/lists”: Not a directory").arg(inTheWay)));
    EXPECT_EQ(setting("localLastPublish"), std::nullopt);
    EXPECT_EQ(setting("onlineLastPublish"), now());
    EXPECT_EQ(bytesOf(inTheWay), "mine");
}

// Both fail, or only the note of it. ----------------------------------------------------

TEST_F(PublishingServiceTest, TheRunIsNotedAlsoWhenBothHalvesFailed)
{
    set("localPublishPath", QStringLiteral("/proc/no such folder"));
    set("netlifyToken", QString());
    set("publishLastRun", QStringLiteral("2020-01-01T00:00:00.000Z"));
    const PublishResult result = publish();
    EXPECT_FALSE(result.localSucceeded || result.onlineSucceeded);
    ASSERT_EQ(result.errors.size(), 2);
    EXPECT_TRUE(result.errors.first().startsWith(u"Local: Could not create the folder “/proc/no such folder”: "));
    EXPECT_EQ(result.errors.last(), noToken);
    EXPECT_EQ(setting("publishLastRun"), now());
}

TEST_F(PublishingServiceTest, TheRunIsNotedAlsoWhenThereWasNothingToDo)
{
    set("netlifyToken", QString());
    publish();
    EXPECT_EQ(setting("publishLastRun"), now());
}

TEST_F(PublishingServiceTest, AFileThatCannotBeNotedIsThereAllTheSame)
{
    set("localPublishPath", folder());
    refuseSetting("localLastPublish");
    const PublishResult result = publish();
    EXPECT_TRUE(result.localSucceeded);
    EXPECT_TRUE(result.localPath);
    EXPECT_TRUE(result.onlineSucceeded);
    ASSERT_EQ(result.errors.size(), 1);
    EXPECT_TRUE(result.errors.first().startsWith(u"Local: ")) << qUtf8Printable(result.errors.first());
    EXPECT_TRUE(result.errors.first().contains(u"refused"));
}

TEST_F(PublishingServiceTest, APageThatCannotBeNotedIsThereAllTheSame)
{
    refuseSetting("onlineLastPublish");
    const PublishResult result = publish();
    EXPECT_TRUE(result.onlineSucceeded);
    EXPECT_EQ(result.siteURL->text(), netlify.siteAddress());
    ASSERT_EQ(result.errors.size(), 1);
    EXPECT_TRUE(result.errors.first().startsWith(u"Online: ")) << qUtf8Printable(result.errors.first());
    EXPECT_TRUE(result.errors.first().contains(u"refused"));
}

TEST_F(PublishingServiceTest, AVerifiedPageThatCannotBeRecordedCountsAsNotPublished)
{
    refuseSetting("netlifyLastVerifiedHash");
    const PublishResult result = publish();
    EXPECT_FALSE(result.onlineSucceeded);
    EXPECT_EQ(result.siteURL, std::nullopt);
    ASSERT_EQ(result.errors.size(), 1);
    EXPECT_TRUE(result.errors.first().startsWith(u"Online: "));
    EXPECT_EQ(netlify.page(), html());
    for (const char *key :
        {"netlifyLastDeployID", "netlifyLastVerifiedHash", "netlifyLastVerifiedAt", "onlineLastPublish"}) {
        EXPECT_EQ(setting(key), std::nullopt) << key; // one transaction
    }
}

TEST_F(PublishingServiceTest, ARunThatCannotBeNotedIsNoError)
{
    set("localPublishPath", folder());
    refuseSetting("publishLastRun");
    const PublishResult result = publish();
    EXPECT_TRUE(result.localSucceeded && result.onlineSucceeded);
    EXPECT_THAT(result.errors, IsEmpty());
}

TEST_F(PublishingServiceTest, WithoutALibraryBothHalvesFailAndNothingIsWritten)
{
    set("localPublishPath", folder());
    library.close();
    const PublishResult result = publish();
    EXPECT_FALSE(result.localSucceeded || result.onlineSucceeded);
    ASSERT_EQ(result.errors.size(), 2);
    EXPECT_TRUE(result.errors.first().startsWith(u"Local: "));
    EXPECT_TRUE(result.errors.last().startsWith(u"Online: "));
    EXPECT_FALSE(QFile::exists(folder()));
    EXPECT_THAT(netlify.calls(), IsEmpty());
}

TEST_F(PublishingServiceTest, AStopEndsTheOnlineHalfAsAnError)
{
    set("localPublishPath", folder());
    netlify.states = {QStringLiteral("building")};
    movesTime = false;
    auto publication = start();
    ASSERT_TRUE(eventually([&] { return pauses() == 1; }));
    stop.request_stop();
    const PublishResult result = await(std::move(publication));
    EXPECT_TRUE(result.localSucceeded);
    EXPECT_FALSE(result.onlineSucceeded);
    EXPECT_THAT(result.errors, ElementsAre(QStringLiteral("Online: The operation was cancelled.")));
    EXPECT_EQ(setting("publishLastRun"), now());
    EXPECT_EQ(setting("onlineLastPublish"), std::nullopt);
}
