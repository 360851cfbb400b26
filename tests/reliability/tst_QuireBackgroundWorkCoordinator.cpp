#include "reliability/QuireBackgroundWorkCoordinator.h"

#include "testing/Await.h"

#include <gtest/gtest.h>

#include <algorithm>

namespace quire {

namespace {

using testing::await;
using Job = QuireBackgroundJob;
using Priority = QuireJobPriority;

// Ids in a given order, one for each request that has to wait.
std::function<QUuid()> idsInOrder(QStringList ids)
{
    return [ids = std::move(ids)]() mutable { return QUuid::fromString(ids.takeFirst()); };
}

const QString lowId = QStringLiteral("{1fffffff-0000-4000-8000-000000000000}");
const QString middleId = QStringLiteral("{9fffffff-0000-4000-8000-000000000000}");
const QString highId = QStringLiteral("{a0000000-0000-4000-8000-000000000000}");

TEST(QuireBackgroundJob, HasItsWordsInTheirOrder)
{
    QStringList words;
    for (const Job job : allBackgroundJobs) {
        words.append(rawValue(job));
    }
    EXPECT_EQ(words,
        (QStringList{QStringLiteral("goodreadsSync"), QStringLiteral("audibleSync"), QStringLiteral("publishing"),
            QStringLiteral("backup"), QStringLiteral("artwork"), QStringLiteral("maintenance")}));
    EXPECT_EQ(int(Priority::Automatic), 0);
    EXPECT_EQ(int(Priority::Manual), 1);
}

class QuireBackgroundWorkCoordinatorTest : public ::testing::Test
{
protected:
    QFuture<bool> acquire(Job job, Priority priority = Priority::Automatic)
    {
        return m_coordinator->acquire(job, priority);
    }
    void finish(Job job) { await(m_coordinator->finish(job)); }

    // Everything asked so far has been looked at once this returns.
    void settle() { finish(Job::Maintenance); }

    bool waits(const QFuture<bool> &request)
    {
        settle();
        return !request.isFinished();
    }

    void useIds(const QStringList &ids)
    {
        m_coordinator = std::make_unique<QuireBackgroundWorkCoordinator>(idsInOrder(ids));
    }

    std::unique_ptr<QuireBackgroundWorkCoordinator> m_coordinator = std::make_unique<QuireBackgroundWorkCoordinator>();
};

TEST_F(QuireBackgroundWorkCoordinatorTest, AnEmptySlotIsTakenAtOnce)
{
    EXPECT_TRUE(await(acquire(Job::GoodreadsSync)));
}

TEST_F(QuireBackgroundWorkCoordinatorTest, TheRunningKindIsTurnedAwayAndAnotherWaits)
{
    EXPECT_TRUE(await(acquire(Job::GoodreadsSync)));
    EXPECT_FALSE(await(acquire(Job::GoodreadsSync, Priority::Manual)));
    const auto audible = acquire(Job::AudibleSync);
    EXPECT_TRUE(waits(audible));
    finish(Job::GoodreadsSync);
    EXPECT_TRUE(await(audible));
}

TEST_F(QuireBackgroundWorkCoordinatorTest, AWaitingKindIsTurnedAwayAndKeepsItsFirstPriority)
{
    useIds({lowId, highId});
    EXPECT_TRUE(await(acquire(Job::GoodreadsSync)));
    const auto backup = acquire(Job::Backup, Priority::Automatic);
    EXPECT_FALSE(await(acquire(Job::Backup, Priority::Manual)));
    const auto publishing = acquire(Job::Publishing, Priority::Manual);
    EXPECT_TRUE(waits(publishing));
    finish(Job::GoodreadsSync);
    EXPECT_TRUE(await(publishing)) << "the later manual request did not raise the automatic one";
    EXPECT_TRUE(waits(backup));
}

TEST_F(QuireBackgroundWorkCoordinatorTest, ManualGoesBeforeAutomaticWhateverTheOrderOfArrival)
{
    for (const bool manualFirst : {false, true}) {
        // the ids alone would say the contrary
        useIds(manualFirst ? QStringList{highId, lowId} : QStringList{lowId, highId});
        EXPECT_TRUE(await(acquire(Job::GoodreadsSync)));
        QFuture<bool> backup;
        QFuture<bool> publishing;
        if (manualFirst) {
            publishing = acquire(Job::Publishing, Priority::Manual);
            backup = acquire(Job::Backup);
        } else {
            backup = acquire(Job::Backup);
            publishing = acquire(Job::Publishing, Priority::Manual);
        }
        finish(Job::GoodreadsSync);
        EXPECT_TRUE(await(publishing));
        EXPECT_TRUE(waits(backup));
        finish(Job::Publishing);
        EXPECT_TRUE(await(backup));
    }
}

TEST_F(QuireBackgroundWorkCoordinatorTest, RequestsOfOnePriorityGoInTheOrderOfTheirIds)
{
    useIds({highId, lowId, middleId});
    EXPECT_TRUE(await(acquire(Job::GoodreadsSync)));
    const auto high = acquire(Job::Backup);
    const auto low = acquire(Job::Artwork);
    const auto middle = acquire(Job::Publishing);
    finish(Job::GoodreadsSync);
    EXPECT_TRUE(await(low));
    EXPECT_TRUE(waits(middle));
    finish(Job::Artwork);
    EXPECT_TRUE(await(middle));
    EXPECT_TRUE(waits(high));
    finish(Job::Publishing);
    EXPECT_TRUE(await(high));
}

TEST_F(QuireBackgroundWorkCoordinatorTest, FinishingAKindThatIsNotActiveChangesNothing)
{
    finish(Job::Backup); // of an empty slot
    EXPECT_TRUE(await(acquire(Job::GoodreadsSync)));
    const auto backup = acquire(Job::Backup);
    finish(Job::Backup); // of one that waits
    finish(Job::Artwork);
    EXPECT_TRUE(waits(backup));
    EXPECT_FALSE(await(acquire(Job::GoodreadsSync))) << "still running";
    finish(Job::GoodreadsSync);
    EXPECT_TRUE(await(backup));
}

TEST_F(QuireBackgroundWorkCoordinatorTest, TheSlotPassesOnAndIsNeverEmptyWhileJobsWait)
{
    EXPECT_TRUE(await(acquire(Job::GoodreadsSync)));
    const auto backup = acquire(Job::Backup);
    finish(Job::GoodreadsSync);
    const auto again = acquire(Job::GoodreadsSync, Priority::Manual);
    EXPECT_TRUE(await(backup));
    EXPECT_TRUE(waits(again)) << "a manual request does not find the slot empty in between";
    finish(Job::Backup);
    EXPECT_TRUE(await(again));
}

TEST_F(QuireBackgroundWorkCoordinatorTest, ItsEndAnswersEveryRequest)
{
    EXPECT_TRUE(await(acquire(Job::GoodreadsSync)));
    const auto backup = acquire(Job::Backup);
    const auto artwork = acquire(Job::Artwork);
    m_coordinator.reset();
    ASSERT_TRUE(backup.isFinished());
    ASSERT_TRUE(artwork.isFinished());
    EXPECT_FALSE(backup.result());
    EXPECT_FALSE(artwork.result());
}

TEST(QuireBackgroundWorkCoordinatorThreads, OnlyOneHolderAtATimeWithRequestsFromManyThreads)
{
    QuireBackgroundWorkCoordinator coordinator;
    std::atomic<int> holders = 0;
    std::atomic<int> most = 0;
    std::atomic<int> runs = 0;
    std::vector<std::thread> threads;
    threads.reserve(allBackgroundJobs.size());
    for (const Job job : allBackgroundJobs) {
        threads.emplace_back([&, job] {
            for (int i = 0; i < 100; ++i) {
                auto request = coordinator.acquire(job, i % 2 == 0 ? Priority::Automatic : Priority::Manual);
                request.waitForFinished();
                if (request.result()) {
                    most = std::max(most.load(), ++holders);
                    ++runs;
                    --holders;
                    coordinator.finish(job).waitForFinished();
                }
            }
        });
    }
    for (std::thread &thread : threads) {
        thread.join();
    }
    EXPECT_EQ(most, 1);
    EXPECT_EQ(runs, 600) << "each thread asks for a kind of its own, so none is turned away";
}

} // namespace

} // namespace quire
