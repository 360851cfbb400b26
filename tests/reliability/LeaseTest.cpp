#include "reliability/LeaseTest.h"

#include "persistence/database/DatabaseError.h"
#include "testing/ChildProcess.h"
#include "testing/ThrownFailure.h"

#include <QDir>
#include <QFile>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace quire::testing {

QuireLibraryLeaseOwner LeaseTest::rival() const
{
    return {QUuid::createUuid(), ::getpid(), QStringLiteral("Other-Shelf.local"), QStringLiteral("platform:other"),
        clock.now() - 1h};
}

void LeaseTest::putLock(const QuireLibraryLeaseOwner &owner, Instant::duration age) const
{
    ASSERT_TRUE(QDir().mkpath(lock));
    putFile(ownerPath, owner.encoded());
    setAge(ownerPath, age);
}

void LeaseTest::putOwnerlessLock(Instant::duration age) const
{
    ASSERT_TRUE(QDir().mkpath(lock));
    setAge(lock, age);
}

void LeaseTest::setAge(const QString &path, Instant::duration age) const
{
    const auto date = (clock.now() - age).time_since_epoch();
    const auto seconds = std::chrono::floor<std::chrono::seconds>(date);
    const timespec times[2] = {{.tv_sec = 0, .tv_nsec = UTIME_OMIT},
        {.tv_sec = seconds.count(), .tv_nsec = std::chrono::nanoseconds(date - seconds).count()}};
    ASSERT_EQ(::utimensat(AT_FDCWD, QFile::encodeName(path).constData(), times, AT_SYMLINK_NOFOLLOW), 0);
}

void LeaseTest::expectTaken(QuireLibraryLease lease) const
{
    lease.acquire();
    EXPECT_TRUE(lease.isAcquired());
    EXPECT_EQ(stored(), lease.owner());
    EXPECT_EQ(activity(), QStringList(QStringLiteral("Quire Library.lock")));
}

void LeaseTest::expectBusy(QuireLibraryLease lease) const
{
    const QStringList before = activity();
    const auto failure = thrownBy<DatabaseError>([&] { lease.acquire(); });
    ASSERT_TRUE(failure);
    EXPECT_EQ(failure->kind(), DatabaseError::Kind::LibraryBusy);
    EXPECT_FALSE(lease.isAcquired());
    EXPECT_EQ(activity(), before);
}

QStringList LeaseTest::activity() const
{
    return namesIn(locks);
}

void setMode(const QString &path, mode_t mode)
{
    ASSERT_EQ(::chmod(QFile::encodeName(path).constData(), mode), 0);
}

pid_t endedProcess()
{
    ChildProcess child(QStringLiteral("/bin/true"), {});
    EXPECT_TRUE(child.waitUntilEnded());
    return child.processID();
}

QString busyText(const QString &detail)
{
    return QStringLiteral("This Quire library is already in use.") + detail
        + QStringLiteral(
            " Close Quire on the other Mac, allow the cloud service to finish syncing, and then open Quire again.");
}

} // namespace quire::testing
