#include "reliability/LeaseHeartbeat.h"

#include "reliability/LeaseEvidence.h"

#include "testing/Await.h"
#include "testing/ManualClock.h"
#include "testing/TestFiles.h"

#include <gtest/gtest.h>

#include <QDir>
#include <QFile>
#include <QTemporaryDir>

#include <algorithm>

#include <sys/stat.h>

namespace quire {

namespace {

using namespace std::chrono_literals;

constexpr Instant noon = std::chrono::sys_days(std::chrono::year(2026) / 11 / 21) + 12h;

class LeaseHeartbeatTest : public ::testing::Test
{
protected:
    void put(const QByteArray &content) const { testing::putFile(path, content); }

    struct stat status() const
    {
        struct stat status = {};
        EXPECT_EQ(::stat(QFile::encodeName(path).constData(), &status), 0);
        return status;
    }

    std::optional<Instant> date() const { return LeaseEvidence::gather(folder.path(), path).ownerDate; }

    QTemporaryDir folder;
    QString path = folder.filePath(QStringLiteral("Owner.json"));
    QuireLibraryLeaseOwner owner{QUuid::createUuid(), 42, QStringLiteral("Shelf"), QStringLiteral("platform:ab"), noon};
};

} // namespace

TEST_F(LeaseHeartbeatTest, ABeatDatesTheRecordAndWritesNothing)
{
    put(owner.encoded());
    const auto before = status();
    EXPECT_TRUE(LeaseHeartbeat::beat(path, owner.token, noon + 250ms));
    const auto after = status(); // before anybody reads it
    EXPECT_EQ(date(), noon + 250ms);
    EXPECT_EQ(after.st_ino, before.st_ino);
    EXPECT_GE(after.st_atim.tv_sec, before.st_atim.tv_sec);
    EXPECT_EQ(QuireLibraryLeaseOwner::read(path), owner);
}

TEST_F(LeaseHeartbeatTest, ABeatBefore1970IsADateToo)
{
    put(owner.encoded());
    EXPECT_TRUE(LeaseHeartbeat::beat(path, owner.token, Instant(-1ms)));
    EXPECT_EQ(date(), Instant(-1ms));
}

TEST_F(LeaseHeartbeatTest, TheRecordOfASuccessorIsLeftAlone)
{
    put(owner.encoded());
    ASSERT_TRUE(LeaseHeartbeat::beat(path, owner.token, noon));
    EXPECT_FALSE(LeaseHeartbeat::beat(path, QUuid::createUuid(), noon + 1h));
    EXPECT_EQ(date(), noon);
}

TEST_F(LeaseHeartbeatTest, ATornOrMissingRecordIsLeftAlone)
{
    EXPECT_FALSE(LeaseHeartbeat::beat(path, owner.token, noon));
    EXPECT_FALSE(QFile::exists(path));

    put(owner.encoded().chopped(1));
    const auto before = date();
    EXPECT_FALSE(LeaseHeartbeat::beat(path, owner.token, noon));
    EXPECT_EQ(date(), before);
}

TEST_F(LeaseHeartbeatTest, ItBeatsOnAndOnAndEndsWhileItWaits)
{
    class Counting final : public Clock
    {
    public:
        Instant now() const override { return noon + std::chrono::seconds(++m_asked); }
        QCoro::Task<> sleep(std::chrono::nanoseconds, std::stop_token) override { co_return; }

    private:
        mutable std::atomic<int> m_asked = 0;
    };
    put(owner.encoded());
    const Counting clock;
    {
        const LeaseHeartbeat heartbeat(path, owner.token, clock, 1ms);
        while (date() < noon + 3s) {
            std::this_thread::yield();
        }
    }
    const LeaseHeartbeat slow(path, owner.token, clock, 24h); // destroyed at once
}

TEST_F(LeaseHeartbeatTest, ItBeatsOnAThreadOfItsOwnWithAName)
{
    const testing::ManualClock clock;
    const LeaseHeartbeat heartbeat(path, owner.token, clock, 24h);
    const auto isRunning = [] {
        const QDir threads(QStringLiteral("/proc/self/task"));
        const QStringList numbers = threads.entryList(QDir::Dirs | QDir::NoDotAndDotDot);
        return std::any_of(numbers.begin(), numbers.end(), [&threads](const QString &number) {
            QFile name(threads.filePath(number + QStringLiteral("/comm")));
            return name.open(QIODevice::ReadOnly) && name.readAll() == "com.corin.quire\n";
        });
    };
    EXPECT_TRUE(testing::eventually(isRunning));
}

} // namespace quire
