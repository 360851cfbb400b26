#include "sources/ServiceEndpoints.h"

#include <QFile>
#include <QTemporaryDir>

#include <gmock/gmock.h>

using namespace quire;

namespace {

class ServiceEndpointsTest : public ::testing::Test
{
protected:
    ServiceEndpoints readFrom(const QByteArray &settings)
    {
        QFile file(folder.filePath(QStringLiteral("Quire.conf")));
        EXPECT_TRUE(file.open(QIODevice::WriteOnly));
        file.write(settings);
        file.close();
        return ServiceEndpoints::read(file.fileName());
    }

    QTemporaryDir folder;
};

} // namespace

TEST_F(ServiceEndpointsTest, AreTheRealServicesWithoutAFile)
{
    const auto endpoints = ServiceEndpoints::read(folder.filePath(QStringLiteral("absent.conf")));
    EXPECT_EQ(endpoints, ServiceEndpoints::standard());
    EXPECT_EQ(endpoints.goodreads, QUrl(QStringLiteral("https://www.goodreads.com")));
    EXPECT_FALSE(QFile::exists(folder.filePath(QStringLiteral("absent.conf"))));
}

TEST_F(ServiceEndpointsTest, AbsentKeysKeepTheRealService)
{
    ServiceEndpoints expected = ServiceEndpoints::standard();
    expected.goodreads = QUrl(QStringLiteral("http://127.0.0.1:8080"));
    EXPECT_EQ(readFrom("[endpoints]\ngoodreads=http://127.0.0.1:8080\n"), expected);
}

TEST_F(ServiceEndpointsTest, EveryServiceHasItsKey)
{
    const auto endpoints
        = readFrom("[endpoints]\n"
                   "goodreads=http://a.test\naudibleAPI=http://b.test\naudibleWeb=http://c.test\n"
                   "openLibrary=http://d.test\nopenLibraryCovers=http://e.test\nappleBooks=http://f.test\n"
                   "netlify=http://g.test\nupdate=http://h.test\nhelp=http://i.test\n");
    QStringList hosts;
    for (const QUrl &url : {endpoints.goodreads, endpoints.audibleAPI, endpoints.audibleWeb, endpoints.openLibrary,
             endpoints.openLibraryCovers, endpoints.appleBooks, endpoints.netlify, endpoints.update, endpoints.help}) {
        hosts.append(url.host().first(1));
    }
    EXPECT_EQ(hosts.join(QString()), QStringLiteral("abcdefghi"));
}

TEST_F(ServiceEndpointsTest, OnlySchemeAndAuthorityCount)
{
    EXPECT_EQ(readFrom("[endpoints]\ngoodreads=\"https://x.test:1/path?query#part\"\n").goodreads,
        QUrl(QStringLiteral("https://x.test:1")));
}

TEST_F(ServiceEndpointsTest, AnOverrideThatCannotBeReadIsNoAddressAtAll)
{
    for (const char *value : {"", "x.test", "file:///etc", "ftp://x.test", "http://", "127.0.0.1:80", "http://x y"}) {
        EXPECT_TRUE(readFrom(QByteArray("[endpoints]\ngoodreads=") + value + "\n").goodreads.isEmpty()) << value;
    }
}

TEST_F(ServiceEndpointsTest, TheFileIsInThePerUserConfiguration)
{
    qputenv("XDG_CONFIG_HOME", folder.path().toUtf8());
    EXPECT_EQ(ServiceEndpoints::userSettingsFile(), folder.filePath(QStringLiteral("Quire/Quire.conf")));
}
