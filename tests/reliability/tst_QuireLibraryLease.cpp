#include "reliability/QuireLibraryLease.h"

#include "files/FileError.h"
#include "persistence/database/DatabaseError.h"
#include "reliability/LeaseGuard.h"
#include "reliability/LeaseTest.h"
#include "testing/Await.h"
#include "testing/ThrownFailure.h"
#include "testing/UnprivilegedUser.h"

#include <QDir>
#include <QElapsedTimer>
#include <QFile>
#include <QThread>

#include <csignal>
#include <thread>

#include <sys/resource.h>
#include <unistd.h>

using namespace quire;
using namespace quire::testing;

namespace {

using QuireLibraryLeaseTest = LeaseTest;

} // namespace

TEST_F(QuireLibraryLeaseTest, MakingOneTouchesNothing)
{
    const auto made = lease();
    EXPECT_FALSE(made.isAcquired());
    EXPECT_TRUE(QDir(folder.path()).isEmpty());
}

TEST_F(QuireLibraryLeaseTest, AcquiringMakesTheLockWithItsRecordAndAllParents)
{
    auto held = lease();
    held.acquire();
    EXPECT_TRUE(held.isAcquired());
    EXPECT_EQ(activity(), QStringList(QStringLiteral("Quire Library.lock")));
    EXPECT_EQ(QDir(lock).entryList(QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot),
        QStringList(QStringLiteral("Owner.json")));

    const auto owner = stored();
    ASSERT_TRUE(owner);
    EXPECT_EQ(owner, held.owner());
    EXPECT_FALSE(owner->token.isNull());
    EXPECT_EQ(owner->processID, ::getpid());
    EXPECT_EQ(owner->hostName, QStringLiteral("Shelf.local"));
    EXPECT_EQ(owner->hostID, host.current);
    EXPECT_EQ(owner->createdAt, clock.now());
}

TEST_F(QuireLibraryLeaseTest, EachHasATokenOfItsOwn)
{
    EXPECT_NE(lease().owner().token, lease().owner().token);
}

TEST_F(QuireLibraryLeaseTest, ReleasingLeavesNothing)
{
    auto held = lease();
    held.acquire();
    held.release();
    EXPECT_FALSE(held.isAcquired());
    EXPECT_TRUE(activity().isEmpty());
}

TEST_F(QuireLibraryLeaseTest, ItIsReleasedWhenDestroyed)
{
    {
        auto held = lease();
        held.acquire();
        EXPECT_FALSE(activity().isEmpty());
    }
    EXPECT_TRUE(activity().isEmpty());
}

TEST_F(QuireLibraryLeaseTest, AReleasedOneCanBeTakenAgain)
{
    auto held = lease();
    held.acquire();
    held.release();
    held.acquire();
    EXPECT_TRUE(held.isAcquired());
    EXPECT_EQ(stored(), held.owner());
}

TEST_F(QuireLibraryLeaseTest, ASecondReleaseDoesNothing)
{
    auto first = lease();
    first.acquire();
    first.release();
    auto second = lease();
    second.acquire();
    first.release();
    EXPECT_EQ(stored(), second.owner());
}

TEST_F(QuireLibraryLeaseTest, ReleasingWhatWasNeverTakenTouchesNoOnesLock)
{
    putLock(rival(), 0s);
    auto idle = lease();
    idle.release();
    EXPECT_TRUE(stored());
}

TEST_F(QuireLibraryLeaseTest, TheWholeAttemptIs51RoundsWith50Pauses)
{
    putLock(rival(), 0s);
    QuireLibraryLease waiting(library, clock, host);
    QElapsedTimer timer;
    timer.start();
    EXPECT_THROW(waiting.acquire(), DatabaseError);
    EXPECT_GE(timer.elapsed(), 100);

    // Not one more: with a pause so long, a 51st would be seen.
    QuireLibraryLease hasty(library, clock, host, {.rounds = 1, .pause = 1h});
    EXPECT_THROW(hasty.acquire(), DatabaseError);
}

TEST_F(QuireLibraryLeaseTest, AFolderOfLocksThatCannotBeMadeIsAFailure)
{
    ASSERT_TRUE(QDir().mkpath(library));
    putFile(locks, "a file");
    auto refused = lease();
    const auto failure = thrownBy<FileError>([&] { refused.acquire(); });
    ASSERT_TRUE(failure);
    EXPECT_EQ(failure->path(), locks);
    EXPECT_FALSE(refused.isAcquired());
}

TEST_F(QuireLibraryLeaseTest, AFileInTheLibrarysPlaceIsAFailure)
{
    const QString file = folder.filePath(QStringLiteral("file"));
    putFile(file, "a file");
    QuireLibraryLease refused(file, clock, host);
    EXPECT_THROW(refused.acquire(), FileError);
}

TEST_F(QuireLibraryLeaseTest, WhereNoLockCanBeMadeItReturnsWithoutTheLease)
{
    ASSERT_TRUE(QDir().mkpath(locks));
    setMode(locks, 0555);
    {
        const UnprivilegedUser user(folder.path());
        auto without = lease();
        EXPECT_NO_THROW(without.acquire());
        EXPECT_FALSE(without.isAcquired());
    }
    setMode(locks, 0755);
    EXPECT_TRUE(activity().isEmpty());
}

TEST_F(QuireLibraryLeaseTest, ARecordThatCannotBeWrittenLeavesNoLock)
{
    std::signal(SIGXFSZ, SIG_IGN);
    rlimit former = {};
    ASSERT_EQ(::getrlimit(RLIMIT_FSIZE, &former), 0);
    auto without = lease();
    {
        const rlimit none = {.rlim_cur = 0, .rlim_max = former.rlim_max};
        ASSERT_EQ(::setrlimit(RLIMIT_FSIZE, &none), 0);
        without.acquire();
        ::setrlimit(RLIMIT_FSIZE, &former);
    }
    EXPECT_FALSE(without.isAcquired());
    EXPECT_TRUE(activity().isEmpty());
    without.acquire();
    EXPECT_TRUE(without.isAcquired());
}

TEST_F(QuireLibraryLeaseTest, AnOwnLockWhoseRecordIsUnreadableIsReleased)
{
    for (const QByteArray &content : {QByteArray("torn"), QByteArray()}) {
        auto held = lease();
        held.acquire();
        putFile(ownerPath, content);
        held.release();
        EXPECT_TRUE(activity().isEmpty());
    }
    auto held = lease();
    held.acquire();
    QFile::remove(ownerPath);
    held.release();
    EXPECT_TRUE(activity().isEmpty());
}

TEST_F(QuireLibraryLeaseTest, ReleasingWithTheWholeFolderGoneFailsSilently)
{
    auto held = lease();
    held.acquire();
    ASSERT_TRUE(QDir(library).removeRecursively());
    held.release();
    EXPECT_FALSE(held.isAcquired());
    EXPECT_FALSE(QFile::exists(library));
}

TEST_F(QuireLibraryLeaseTest, TheGuardIsNotHeldWhileTheLibraryIsInUse)
{
    auto held = lease();
    held.acquire();
    LeaseGuard guard(library);
    EXPECT_TRUE(guard.try_lock());
}

TEST_F(QuireLibraryLeaseTest, AReleaseWaitsForAnotherProcessThatDecides)
{
    auto held = lease();
    held.acquire();
    LeaseGuard guard(library);
    ASSERT_TRUE(guard.try_lock());
    std::jthread releasing([&held] { held.release(); });
    QThread::msleep(20);
    EXPECT_EQ(stored(), held.owner());
    guard.unlock();
    releasing.join();
    EXPECT_TRUE(activity().isEmpty());
}

TEST_F(QuireLibraryLeaseTest, AGuardThatIsNeverLetGoOfDoesNotHoldUpARelease)
{
    QuireLibraryLease held(library, clock, host, {.guard = 10ms});
    held.acquire();
    LeaseGuard guard(library);
    ASSERT_TRUE(guard.try_lock());
    held.release();
    EXPECT_TRUE(activity().isEmpty());
}

TEST_F(QuireLibraryLeaseTest, AHeldOneIsKeptFresh)
{
    QuireLibraryLease held(library, clock, host, {.heartbeat = 1ms});
    held.acquire();
    for (int beat = 0; beat < 3; ++beat) {
        clock.advance(30s);
        EXPECT_TRUE(eventually([&] { return heartbeat() == clock.now(); }));
    }
    expectBusy(lease());
    held.release();
    EXPECT_TRUE(activity().isEmpty());
}

TEST_F(QuireLibraryLeaseTest, AReleasedOneBeatsNoMore)
{
    QuireLibraryLease held(library, clock, host, {.heartbeat = 1ms});
    held.acquire();
    ASSERT_TRUE(eventually([&] { return heartbeat() == clock.now(); }));
    held.release();

    putLock(held.owner(), 1h); // were it still beating, it would take this for its own
    QThread::msleep(50);
    EXPECT_EQ(heartbeat(), clock.now() - 1h);
}

TEST_F(QuireLibraryLeaseTest, OneThatWasNotTakenDoesNotBeat)
{
    putLock(rival(), 0s);
    QuireLibraryLease refused(library, clock, host, {.rounds = 1, .heartbeat = 1ms});
    EXPECT_THROW(refused.acquire(), DatabaseError);
    putLock(refused.owner(), 1h);
    QThread::msleep(50);
    EXPECT_EQ(heartbeat(), clock.now() - 1h);
}

TEST_F(QuireLibraryLeaseTest, TheFirstBeatComesAnIntervalAfterTheTaking)
{
    QuireLibraryLease held(library, clock, host, {.heartbeat = 1h});
    held.acquire();
    setAge(ownerPath, 1h);
    QThread::msleep(50);
    EXPECT_EQ(heartbeat(), clock.now() - 1h);
}

TEST_F(QuireLibraryLeaseTest, TheProductBeatsEvery30Seconds)
{
    EXPECT_EQ(QuireLibraryLease::Timing().heartbeat, 30s);
    EXPECT_EQ(QuireLibraryLease::Timing().rounds, 51);
    EXPECT_EQ(QuireLibraryLease::Timing().pause, 2ms);
    EXPECT_EQ(QuireLibraryLease::Timing().guard, 2s);
}
