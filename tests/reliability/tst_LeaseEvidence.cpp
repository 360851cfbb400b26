#include "reliability/LeaseEvidence.h"

#include "testing/ChildProcess.h"

#include <gtest/gtest.h>

#include <QFile>
#include <QTemporaryDir>

#include <cerrno>
#include <csignal>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace quire {

namespace {

using namespace std::chrono_literals;

constexpr Instant now = std::chrono::sys_days(std::chrono::year(2026) / 11 / 21) + 12h;
const QString ownHostID = QStringLiteral("platform:own");
const QSet<QString> legacyKeys{QStringLiteral("corinsshelf"), QStringLiteral("readingroom")};

// The number of a process that is no more.
pid_t gone()
{
    testing::ChildProcess child(QStringLiteral("/bin/true"), {});
    EXPECT_TRUE(child.waitUntilEnded());
    return child.processID();
}

struct Signs
{
    std::optional<QString> hostID = QStringLiteral("platform:other");
    QString hostName = QStringLiteral("Other");
    pid_t process = ::getpid();
    Instant::duration age = 0ms;
};

LeaseEvidence heldBy(const Signs &signs)
{
    const QuireLibraryLeaseOwner owner{
        QUuid::createUuid(), signs.process, signs.hostName, signs.hostID, now - signs.age};
    return {owner, now - signs.age, now - signs.age};
}

bool isTaken(const LeaseEvidence &evidence, const std::optional<QString> &hostID = ownHostID)
{
    return isAbandoned(evidence, hostID, legacyKeys, now, LeasePatience());
}

} // namespace

TEST(LeaseEvidence, TheHeartbeatIsTheLastSignOfLife)
{
    LeaseEvidence evidence = heldBy({.age = 10min});
    evidence.ownerDate = now;
    EXPECT_EQ(evidence.lastSign(), now);
    EXPECT_FALSE(isTaken(evidence));
}

TEST(LeaseEvidence, WithoutTheHeartbeatItIsTheMomentOfTaking)
{
    LeaseEvidence evidence = heldBy({.age = 10min});
    evidence.ownerDate.reset();
    evidence.lockDate = now;
    EXPECT_EQ(evidence.lastSign(), now - 10min);
    EXPECT_TRUE(isTaken(evidence));
}

TEST(LeaseEvidence, WithoutARecordItIsTheLockFoldersDate)
{
    const LeaseEvidence evidence{std::nullopt, std::nullopt, now - 1s};
    EXPECT_EQ(evidence.lastSign(), now - 1s);
}

TEST(LeaseEvidence, WithoutAnySignTheLockIsAbandoned)
{
    EXPECT_EQ(LeaseEvidence().lastSign(), distantPast);
    EXPECT_TRUE(isTaken(LeaseEvidence()));
}

TEST(LeaseEvidence, ATornRecordThatIsOlderThanTwoSecondsIsAbandoned)
{
    EXPECT_FALSE(isTaken({std::nullopt, now - 2s, now - 1h}));
    EXPECT_TRUE(isTaken({std::nullopt, now - 2s - 1ms, now}));
}

TEST(LeaseEvidence, SilenceOf300SecondsIsBorneAndNoMore)
{
    for (const pid_t process : {::getpid(), gone()}) {
        EXPECT_FALSE(isTaken(heldBy({.process = process, .age = 299s})));
        EXPECT_FALSE(isTaken(heldBy({.process = process, .age = 300s})));
        EXPECT_TRUE(isTaken(heldBy({.process = process, .age = 300s + 1ms})));
        EXPECT_TRUE(isTaken(heldBy({.process = process, .age = 301s})));
    }
}

TEST(LeaseEvidence, ALivingButSilentProcessOfThisMachineIsGivenTheSameTime)
{
    EXPECT_FALSE(isTaken(heldBy({.hostID = ownHostID, .age = 299s})));
    EXPECT_TRUE(isTaken(heldBy({.hostID = ownHostID, .age = 301s})));
}

TEST(LeaseEvidence, ADeadProcessOfThisMachineHoldsNothingHoweverFresh)
{
    EXPECT_TRUE(isTaken(heldBy({.hostID = ownHostID, .process = gone()})));
    EXPECT_TRUE(isTaken(heldBy({.hostID = ownHostID, .process = gone(), .age = -24h})));
    EXPECT_FALSE(isTaken(heldBy({.hostID = ownHostID})));
}

TEST(LeaseEvidence, AProcessThatMayNotBeSignalledIsAlive)
{
    // The first process is root's; as root, be somebody else for a moment.
    const bool isRoot = ::getuid() == 0;
    ASSERT_TRUE(!isRoot || ::setresuid(65534, 65534, 0) == 0);
    const bool isRefused = ::kill(1, 0) == -1 && errno == EPERM;
    const bool isTakenOver = isTaken(heldBy({.hostID = ownHostID, .process = 1}));
    ASSERT_TRUE(!isRoot || ::setresuid(0, 0, 0) == 0);
    EXPECT_TRUE(isRefused);
    EXPECT_FALSE(isTakenOver);
}

TEST(LeaseEvidence, ADeadProcessNumberOfAnotherMachineSaysNothing)
{
    EXPECT_FALSE(isTaken(heldBy({.process = gone()})));
}

TEST(LeaseEvidence, AHostIDDecidesAgainstTheName)
{
    EXPECT_FALSE(isTaken(heldBy({.hostName = QStringLiteral("readingroom"), .process = gone()})));
    EXPECT_TRUE(isTaken(heldBy({.hostID = ownHostID, .hostName = QStringLiteral("Elsewhere"), .process = gone()})));
}

TEST(LeaseEvidence, AMachineWithoutAHostIDIsNoOthers)
{
    EXPECT_FALSE(isTaken(heldBy({.hostID = ownHostID, .process = gone()}), std::nullopt));
}

TEST(LeaseEvidence, ARecordWithoutAHostIDIsRecognisedByItsName)
{
    for (const char *name : {"Corins-Shelf.local", "CORINS-SHELF", "corin's shelf", "Reading Room"}) {
        const QString hostName = QString::fromUtf8(name);
        EXPECT_TRUE(isTaken(heldBy({.hostID = {}, .hostName = hostName, .process = gone()}))) << name;
        EXPECT_FALSE(isTaken(heldBy({.hostID = {}, .hostName = hostName}))) << name;
    }
    for (const char *name : {"Corins-Shelf-2", "shelf", "", "---", "Corins-Shelf.local.example"}) {
        const QString hostName = QString::fromUtf8(name);
        EXPECT_FALSE(isTaken(heldBy({.hostID = {}, .hostName = hostName, .process = gone()}))) << name;
    }
}

TEST(LeaseEvidence, ASignFromTheFutureIsNoSilence)
{
    EXPECT_FALSE(isTaken(heldBy({.age = -365 * 24h})));
    EXPECT_FALSE(isTaken({std::nullopt, std::nullopt, now + 365 * 24h}));
}

TEST(LeaseEvidence, ItIsGatheredFromTheRecordAndTheTwoDates)
{
    QTemporaryDir folder;
    const QString path = folder.filePath(QStringLiteral("Owner.json"));
    EXPECT_EQ(LeaseEvidence::gather(folder.path(), path).owner, std::nullopt);
    EXPECT_EQ(LeaseEvidence::gather(folder.path(), path).ownerDate, std::nullopt);

    const QuireLibraryLeaseOwner owner = *heldBy({}).owner;
    QFile file(path);
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    file.write(owner.encoded());
    file.close();
    const auto date = [](const QString &dated, time_t seconds, long nanoseconds) {
        const timespec times[2] = {{.tv_sec = 0, .tv_nsec = UTIME_OMIT}, {seconds, nanoseconds}};
        ASSERT_EQ(::utimensat(AT_FDCWD, QFile::encodeName(dated).constData(), times, 0), 0);
    };
    date(path, 1'700'000'000, 250'999'999);
    date(folder.path(), -1'000'000'000, 0);

    const LeaseEvidence evidence = LeaseEvidence::gather(folder.path(), path);
    EXPECT_EQ(evidence.owner, owner);
    EXPECT_EQ(evidence.ownerDate, Instant(1'700'000'000'250ms));
    EXPECT_EQ(evidence.lockDate, Instant(-1'000'000'000s));

    const LeaseEvidence nothing
        = LeaseEvidence::gather(folder.filePath(QStringLiteral("x")), folder.filePath(QStringLiteral("x/y")));
    EXPECT_FALSE(nothing.owner || nothing.ownerDate || nothing.lockDate);
}

} // namespace quire
