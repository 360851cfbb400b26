// Which locks of others are taken away, and what becomes of the former holder.

#include "persistence/database/DatabaseError.h"
#include "reliability/LeaseGuard.h"
#include "reliability/LeaseTest.h"
#include "testing/ThrownFailure.h"
#include "testing/UnprivilegedUser.h"

#include <QDir>
#include <QFile>

using namespace quire;
using namespace quire::testing;

namespace {

using LeaseTakeover = LeaseTest;

} // namespace

TEST_F(LeaseTakeover, AFreshLockOfAnotherMachineIsBusyAndNamed)
{
    QuireLibraryLeaseOwner other = rival();
    other.hostName = QStringLiteral("Corin's 100%1 \"书房\"");
    putLock(other, 10s);
    auto waiting = lease();
    const auto failure = thrownBy<DatabaseError>([&] { waiting.acquire(); });
    EXPECT_EQ(failure,
        DatabaseError(DatabaseError::Kind::LibraryBusy,
            busyText(QStringLiteral(" It is currently open on Corin's 100%1 \"书房\"."))));
    EXPECT_FALSE(waiting.isAcquired());
    EXPECT_EQ(stored(), other);
}

TEST_F(LeaseTakeover, ABusyLockWithoutARecordNamesNobody)
{
    putOwnerlessLock(1s);
    auto waiting = lease();
    const auto failure = thrownBy<DatabaseError>([&] { waiting.acquire(); });
    EXPECT_EQ(failure, DatabaseError(DatabaseError::Kind::LibraryBusy, busyText()));
}

TEST_F(LeaseTakeover, ASecondOneOfThisProcessIsBusy)
{
    auto held = lease();
    held.acquire();
    expectBusy(lease());
    EXPECT_EQ(stored(), held.owner());
}

TEST_F(LeaseTakeover, ALivingProcessOfThisMachineIsBusy)
{
    QuireLibraryLeaseOwner other = rival();
    other.hostID = host.current;
    putLock(other, 10s);
    expectBusy(lease());
}

// A network drive that goes away and comes back.
TEST_F(LeaseTakeover, AnOwnLockThatCouldNotBeGivenUpIsTakenBackAtOnce)
{
    const QString away = folder.filePath(QStringLiteral("away"));
    {
        auto held = lease();
        held.acquire();
        ASSERT_TRUE(QDir().rename(library, away));
    }
    ASSERT_TRUE(QDir().rename(away, library));
    ASSERT_TRUE(stored().has_value());
    expectTaken(lease());
}

TEST_F(LeaseTakeover, ADeadProcessOfThisMachineIsTakenOverAtOnce)
{
    QuireLibraryLeaseOwner other = rival();
    other.hostID = host.current;
    other.processID = endedProcess();
    putLock(other, 0s);
    expectTaken(lease(2));
}

TEST_F(LeaseTakeover, ADeadProcessOfAnOlderBuildIsRecognisedByItsHostName)
{
    QuireLibraryLeaseOwner other = rival();
    other.hostID.reset();
    other.hostName = QStringLiteral("S-h.e l_f.LOCAL");
    putLock(other, 0s);
    expectBusy(lease());

    other.processID = endedProcess();
    putLock(other, 0s);
    expectTaken(lease(2));
}

TEST_F(LeaseTakeover, ADeadProcessNumberOfAnotherMachineIsBusy)
{
    QuireLibraryLeaseOwner other = rival();
    other.processID = endedProcess();
    putLock(other, 10s);
    expectBusy(lease());

    other.hostID.reset();
    putLock(other, 10s);
    expectBusy(lease());
}

TEST_F(LeaseTakeover, ALockWithoutARecordIsTakenAwayAfterTwoSeconds)
{
    putOwnerlessLock(2s);
    expectBusy(lease());
    putOwnerlessLock(2s + 1ms);
    expectTaken(lease(2));
}

TEST_F(LeaseTakeover, ATornRecordIsTakenAwayAfterTwoSeconds)
{
    ASSERT_TRUE(QDir().mkpath(lock));
    putFile(ownerPath, rival().encoded().chopped(1));
    setAge(ownerPath, 2s);
    expectBusy(lease());
    setAge(ownerPath, 2s + 1ms);
    expectTaken(lease(2));
}

TEST_F(LeaseTakeover, SilenceOf299SecondsIsBorneAnd301AreNot)
{
    putLock(rival(), 299s);
    expectBusy(lease());
    putLock(rival(), 300s);
    expectBusy(lease());
    putLock(rival(), 301s);
    expectTaken(lease(2));
}

TEST_F(LeaseTakeover, ALockFromTheFutureIsNotAbandoned)
{
    putLock(rival(), -365 * 24h);
    expectBusy(lease());
    ASSERT_TRUE(QFile::remove(ownerPath));
    putOwnerlessLock(-1h);
    expectBusy(lease());
}

TEST_F(LeaseTakeover, ALinkInTheLocksPlaceIsRemovedAndNotFollowed)
{
    const QString elsewhere = folder.filePath(QStringLiteral("elsewhere"));
    ASSERT_TRUE(QDir().mkpath(elsewhere));
    putFile(elsewhere + QStringLiteral("/kept"), "kept");
    setAge(elsewhere, 1h);
    ASSERT_TRUE(QDir().mkpath(locks));
    ASSERT_TRUE(QFile::link(elsewhere, lock));
    expectTaken(lease(2));
    EXPECT_TRUE(QFile::exists(elsewhere + QStringLiteral("/kept")));
}

TEST_F(LeaseTakeover, ALinkToNowhereIsRemoved)
{
    ASSERT_TRUE(QDir().mkpath(locks));
    ASSERT_TRUE(QFile::link(folder.filePath(QStringLiteral("nowhere")), lock));
    expectTaken(lease(2));
    EXPECT_FALSE(QFile::exists(folder.filePath(QStringLiteral("nowhere"))));
}

TEST_F(LeaseTakeover, AnOldFileInTheLocksPlaceIsRemoved)
{
    ASSERT_TRUE(QDir().mkpath(locks));
    putFile(lock, "not a folder");
    setAge(lock, 1s);
    expectBusy(lease());
    setAge(lock, 3s);
    expectTaken(lease(2));
}

TEST_F(LeaseTakeover, WhatLiesInAnAbandonedLockGoesWithIt)
{
    putLock(rival(), 301s);
    ASSERT_TRUE(QDir(lock).mkpath(QStringLiteral("Owner.json (conflict)/deep")));
    putFile(lock + QStringLiteral("/Owner.json (conflict)/deep/file"), "x");
    setAge(ownerPath, 301s);
    expectTaken(lease(2));
}

TEST_F(LeaseTakeover, AnAbandonedLockThatCannotBeRemovedIsStillOutOfTheWay)
{
    putLock(rival(), 301s);
    const QString stuck = lock + QStringLiteral("/stuck");
    ASSERT_TRUE(QDir().mkpath(stuck));
    putFile(stuck + QStringLiteral("/file"), "x");
    setAge(ownerPath, 301s);
    setMode(locks, 0777);
    setMode(lock, 0777);
    setMode(stuck, 0555);
    {
        const UnprivilegedUser user(folder.path());
        auto held = lease(2);
        held.acquire();
        EXPECT_TRUE(held.isAcquired());
        EXPECT_EQ(activity().size(), 2);
        EXPECT_TRUE(activity().first().startsWith(QStringLiteral("Abandoned ")));
    }
    for (const QString &left : activity()) { // for whoever clears the folder away
        setMode(locks + u'/' + left + QStringLiteral("/stuck"), 0755);
    }
}

TEST_F(LeaseTakeover, AnAbandonedLockThatCannotBeMovedIsBusy)
{
    putLock(rival(), 301s);
    setMode(locks, 0555);
    {
        const UnprivilegedUser user(folder.path());
        expectBusy(lease());
    }
    setMode(locks, 0755);
}

TEST_F(LeaseTakeover, ARecoveryInTheVeryLastRoundReturnsWithoutTheLease)
{
    putLock(rival(), 301s);
    auto without = lease(1);
    EXPECT_NO_THROW(without.acquire());
    EXPECT_FALSE(without.isAcquired());
    EXPECT_TRUE(activity().isEmpty());
}

TEST_F(LeaseTakeover, ATakenOverOneLeavesTheSuccessorsLockAlone)
{
    auto first = lease();
    first.acquire();
    setAge(ownerPath, 301s);
    auto second = lease();
    second.acquire();
    EXPECT_TRUE(second.isAcquired());

    first.release();
    EXPECT_FALSE(first.isAcquired());
    EXPECT_EQ(stored(), second.owner());
    EXPECT_EQ(activity(), QStringList(QStringLiteral("Quire Library.lock")));
    second.release();
    EXPECT_TRUE(activity().isEmpty());
}

TEST_F(LeaseTakeover, WhileAnotherProcessDecidesItIsBusyAndDoesNotWait)
{
    ASSERT_TRUE(QDir().mkpath(locks));
    LeaseGuard guard(library);
    ASSERT_TRUE(guard.try_lock());
    expectBusy(lease());
    putLock(rival(), 301s);
    expectBusy(lease());
    guard.unlock();
    expectTaken(lease(2));
}
