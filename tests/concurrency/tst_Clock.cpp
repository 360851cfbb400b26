// The clock of the program, and the one that tests move by hand.

#include "concurrency/Cancelled.h"
#include "concurrency/SystemClock.h"
#include "testing/Await.h"
#include "testing/ManualClock.h"

#include <QThread>

#include <gtest/gtest.h>

#include <thread>

namespace quire {

namespace {

using namespace std::chrono_literals;
using testing::await;
using testing::eventually;
using testing::ManualClock;

TEST(SystemClock, NowIsTheWallClock)
{
    const auto before = std::chrono::system_clock::now() - 1ms;
    const Instant now = SystemClock().now();
    EXPECT_GE(now, before);
    EXPECT_LE(now, std::chrono::system_clock::now());
}

TEST(SystemClock, SleepsAtLeastAsLongAsAsked)
{
    SystemClock clock;
    for (const auto duration : {1ns, 999'999ns, 1'500'000ns, 30'000'000ns}) {
        const auto start = std::chrono::steady_clock::now();
        await(clock.sleep(duration, {}));
        EXPECT_GE(std::chrono::steady_clock::now() - start, duration);
    }
}

TEST(SystemClock, NoTimeAtAllYieldsOnceToTheEventLoop)
{
    SystemClock clock;
    for (const auto duration : {0ns, -5ns}) {
        bool turn = false;
        QMetaObject::invokeMethod(
            qApp, [&turn] { turn = true; }, Qt::QueuedConnection);
        await(clock.sleep(duration, {}));
        EXPECT_TRUE(turn);
    }
}

TEST(SystemClock, AStopBeforeTheSleepCancelsIt)
{
    SystemClock clock;
    std::stop_source source;
    source.request_stop();
    EXPECT_THROW(await(clock.sleep(1h, source.get_token())), Cancelled);
}

TEST(SystemClock, AStopDuringTheSleepEndsItAtOnceOnTheSleepersThread)
{
    SystemClock clock;
    std::stop_source source;
    const QThread *const thread = QThread::currentThread();
    const QThread *resumedOn = nullptr;
    const auto sleeper = [](SystemClock &c, std::stop_token stop, const QThread *&resumed) -> QCoro::Task<> {
        try {
            co_await c.sleep(1h, stop);
        } catch (const Cancelled &) {
            resumed = QThread::currentThread();
            throw;
        }
    };
    auto task = sleeper(clock, source.get_token(), resumedOn);
    std::thread other([&source] {
        std::this_thread::sleep_for(20ms);
        source.request_stop();
    });
    EXPECT_THROW(await(std::move(task), 10s), Cancelled);
    other.join();
    EXPECT_EQ(resumedOn, thread);
}

TEST(SystemClock, ASleepOfManyDaysDoesNotEndEarly)
{
    SystemClock clock;
    std::stop_source source;
    auto task = clock.sleep(24h * 365 * 100, source.get_token());
    EXPECT_FALSE(eventually([&task] { return task.isReady(); }, 50ms));
    source.request_stop();
    EXPECT_THROW(await(std::move(task)), Cancelled);
}

TEST(SystemClock, StopsRacingWithTheEndOfTheSleepDoNoHarm)
{
    SystemClock clock;
    for (int i = 0; i < 200; ++i) {
        std::stop_source source;
        auto task = clock.sleep(1ms, source.get_token());
        std::thread other([&source] {
            std::this_thread::sleep_for(1ms);
            source.request_stop();
        });
        try {
            await(std::move(task));
        } catch (const Cancelled &) {
            // either may win
        }
        other.join();
    }
}

TEST(ManualClock, StandsStillUntilItIsMoved)
{
    ManualClock clock;
    const Instant start = clock.now();
    EXPECT_EQ(clock.now(), start);
    clock.advance(1500ms);
    EXPECT_EQ(clock.now(), start + 1500ms);
    clock.setNow(start - 24h);
    EXPECT_EQ(clock.now(), start - 24h);
}

TEST(ManualClock, ASleepEndsWhenItsMomentComesAndNotBefore)
{
    ManualClock clock;
    auto task = clock.sleep(10s, {});
    EXPECT_EQ(clock.sleepers(), 1u);
    clock.advance(10s - 1ns);
    EXPECT_FALSE(eventually([&task] { return task.isReady(); }, 20ms));
    clock.advance(1ns);
    await(std::move(task));
    EXPECT_EQ(clock.sleepers(), 0u);
}

TEST(ManualClock, SettingTheWallClockWakesNobody)
{
    ManualClock clock;
    const auto task = clock.sleep(10s, {});
    clock.setNow(clock.now() + 24h);
    EXPECT_EQ(clock.sleepers(), 1u);
}

TEST(ManualClock, SleepsEndInTheOrderOfTheirMoments)
{
    ManualClock clock;
    std::vector<int> order;
    const auto sleeper = [](ManualClock &c, std::chrono::seconds s, std::vector<int> &woken) -> QCoro::Task<> {
        co_await c.sleep(s, {});
        woken.push_back(int(s.count()));
    };
    const auto third = sleeper(clock, 3s, order);
    const auto first = sleeper(clock, 1s, order);
    const auto second = sleeper(clock, 2s, order);
    clock.advance(5s);
    EXPECT_TRUE(eventually([&order] { return order.size() == 3; }));
    EXPECT_EQ(order, (std::vector<int>{1, 2, 3}));
}

TEST(ManualClock, AStopEndsTheSleepAsCancelledFromAnyThread)
{
    ManualClock clock;
    std::stop_source source;
    auto task = clock.sleep(10s, source.get_token());
    std::thread([&source] { source.request_stop(); }).join();
    EXPECT_THROW(await(std::move(task)), Cancelled);
    EXPECT_EQ(clock.sleepers(), 0u);
    EXPECT_THROW(await(clock.sleep(10s, source.get_token())), Cancelled) << "and before it begins";
}

TEST(ManualClock, NoTimeAtAllYieldsOnceWithoutBeingMoved)
{
    ManualClock clock;
    await(clock.sleep(0ns, {}));
    EXPECT_EQ(clock.sleepers(), 0u);
}

TEST(ManualClock, RemembersWhatWasAskedOfIt)
{
    ManualClock clock;
    const auto first = clock.sleep(2s, {});
    const auto second = clock.sleep(1s, {});
    EXPECT_EQ(clock.requestedSleeps(), (std::vector<std::chrono::nanoseconds>{2s, 1s}));
}

TEST(ManualClock, SleepsUnderWayAtItsEndAreCancelledAndMayStillBeStopped)
{
    std::stop_source source;
    auto clock = std::make_unique<ManualClock>();
    auto task = clock->sleep(10s, source.get_token());
    clock.reset();
    source.request_stop();
    EXPECT_THROW(await(std::move(task)), Cancelled);
}

} // namespace

} // namespace quire
