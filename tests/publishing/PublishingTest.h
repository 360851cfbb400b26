// A library, a stand-in for the site's service, and a clock that moves on by
// itself whenever the publication sleeps.

#pragma once

#include "NetlifyStandIn.h"

#include "persistence/AppDirectories.h"
#include "publishing/PublishingService.h"
#include "sources/NetworkClient.h"
#include "testing/Await.h"
#include "testing/OwnDataDirectory.h"
#include "testing/TestFiles.h"
#include "testing/TestLibrary.h"

#include <QTimer>

#include <gmock/gmock.h>

namespace quire::testing {

class PublishingTest : public ::testing::Test
{
protected:
    PublishingTest()
    {
        set("netlifyToken", QStringLiteral("a-token"));
        snapshot.generatedAt = library.clock().now();
        QObject::connect(&m_hand, &QTimer::timeout, &m_hand, [this] {
            if (movesTime && library.clock().sleepers(std::chrono::seconds(2)) > 0) {
                library.clock().advance(std::chrono::milliseconds(1500));
            }
        });
        m_hand.start(0);
    }

    // A publication that did not end is stopped: what it uses goes with the fixture.
    ~PublishingTest() override
    {
        stop.request_stop();
        EXPECT_TRUE(eventually([this] { return m_underWay == 0; })) << "a publication goes on after its stop";
    }

    void set(const char *key, const QString &value) { await(library.store().setSetting(QLatin1String(key), value)); }
    std::optional<QString> setting(const char *key) { return await(library.store().setting(QLatin1String(key))); }

    // The store refuses to note this one from now on.
    void refuseSetting(const char *key)
    {
        library.executeScript(QByteArray("CREATE TRIGGER refused BEFORE INSERT ON settings WHEN NEW.key = '"
            + QByteArray(key) + "' BEGIN SELECT RAISE(ABORT, 'refused'); END")
                                  .constData());
    }

    QCoro::Task<PublishResult> start()
    {
        ServiceEndpoints endpoints = ServiceEndpoints::standard();
        endpoints.netlify = netlify.origin();
        return counted(PublishingService::publish(
            snapshot, library.store(), network, endpoints, library.clock(), stop.get_token()));
    }
    PublishResult publish() { return await(start()); }

    // How often a publication slept between two polls.
    qsizetype pauses() const
    {
        const auto sleeps = library.clock().requestedSleeps();
        return std::count(sleeps.begin(), sleeps.end(), std::chrono::milliseconds(1500));
    }

    // Absolute path of a file in the folder of the last page.
    static QString deployed(const QString &name)
    {
        return AppDirectories::supportDirectory() + QStringLiteral("/deploy/") + name;
    }

    OwnDataDirectory data; // first: the support folder is looked up in it
    mutable TestLibrary library;
    NetlifyStandIn netlify;
    NetworkClient network;
    PublishingSnapshot snapshot;
    std::stop_source stop;
    bool movesTime = true;

private:
    QCoro::Task<PublishResult> counted(QCoro::Task<PublishResult> publication)
    {
        ++m_underWay;
        const auto result = co_await publication;
        --m_underWay;
        co_return result;
    }

    QTimer m_hand;
    int m_underWay = 0;
};

} // namespace quire::testing
