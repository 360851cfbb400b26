#include "concurrency/SerialExecutor.h"
#include "records/Failure.h"
#include "testing/Await.h"

#include <gtest/gtest.h>

#include <atomic>
#include <vector>

namespace quire {

namespace {

using namespace std::chrono_literals;
using testing::await;

class Unwell final : public Failure
{
public:
    QString description() const override { return QStringLiteral("unwell"); }
};

TEST(SerialExecutor, RunsJobsInTheOrderOfTheirSubmission)
{
    std::vector<int> order; // touched by the executor alone until it is joined
    {
        SerialExecutor executor(QStringLiteral("test"));
        for (int i = 0; i < 1'000; ++i) {
            executor.submit([&order, i] { order.push_back(i); });
        }
    }
    ASSERT_EQ(order.size(), 1'000u);
    EXPECT_TRUE(std::is_sorted(order.begin(), order.end()));
}

TEST(SerialExecutor, NeverRunsTwoJobsAtOnce)
{
    std::atomic<int> inside = 0;
    std::atomic<int> most = 0;
    std::atomic<int> ran = 0;
    SerialExecutor executor(QStringLiteral("test"));
    std::vector<std::thread> submitters;
    submitters.reserve(4);
    for (int t = 0; t < 4; ++t) {
        submitters.emplace_back([&] {
            for (int i = 0; i < 250; ++i) {
                executor.submit([&] {
                    most = std::max(most.load(), ++inside);
                    --inside;
                    ++ran;
                });
            }
        });
    }
    for (std::thread &submitter : submitters) {
        submitter.join();
    }
    await(executor.submit([] {}));
    EXPECT_EQ(ran, 1'000);
    EXPECT_EQ(most, 1);
}

TEST(SerialExecutor, AnswersWithTheValueOfTheJob)
{
    SerialExecutor executor(QStringLiteral("test"));
    EXPECT_EQ(await(executor.submit([] { return QStringLiteral("answer"); })), QStringLiteral("answer"));
    EXPECT_EQ(await(executor.submit([] { return std::optional<int>(); })), std::nullopt);
}

TEST(SerialExecutor, RethrowsWhatTheJobThrewWithItsType)
{
    SerialExecutor executor(QStringLiteral("test"));
    EXPECT_THROW(await(executor.submit([]() -> int { throw Unwell(); })), Unwell);
    EXPECT_THROW(await(executor.submit([] { throw std::out_of_range("far"); })), std::out_of_range);
    EXPECT_THROW(await(executor.submit([] { throw 7; })), int);
    EXPECT_EQ(await(executor.submit([] { return 1; })), 1) << "and goes on with the next";
}

TEST(SerialExecutor, FinishesEveryFutureOnDestruction)
{
    std::vector<QFuture<int>> futures;
    QFuture<int> failing;
    {
        SerialExecutor executor(QStringLiteral("test"));
        executor.submit([] { std::this_thread::sleep_for(20ms); });
        for (int i = 0; i < 100; ++i) {
            futures.push_back(executor.submit([i] { return i; }));
        }
        failing = executor.submit([]() -> int { throw Unwell(); });
    }
    for (int i = 0; i < 100; ++i) {
        ASSERT_TRUE(futures[std::size_t(i)].isFinished());
        EXPECT_FALSE(futures[std::size_t(i)].isCanceled());
        EXPECT_EQ(futures[std::size_t(i)].result(), i);
    }
    ASSERT_TRUE(failing.isFinished());
    EXPECT_THROW(failing.waitForFinished(), Unwell);
}

TEST(SerialExecutor, RunsWhatItsLastJobsSubmitBeforeItEnds)
{
    bool ran = false;
    {
        SerialExecutor executor(QStringLiteral("test"));
        executor.submit([&] {
            std::this_thread::sleep_for(20ms); // until the executor is closing
            executor.submit([&ran] { ran = true; });
        });
    }
    EXPECT_TRUE(ran);
}

TEST(SerialExecutor, WhatAJobCapturedIsGoneWhenItsFutureIsFinished)
{
    SerialExecutor executor(QStringLiteral("test"));
    for (int i = 0; i < 500; ++i) {
        auto token = std::make_shared<int>(i);
        const std::weak_ptr<int> watch = token;
        auto future = executor.submit([token = std::move(token)] { return *token; });
        future.waitForFinished();
        ASSERT_TRUE(watch.expired());
    }
}

TEST(SerialExecutor, TakesJobsThatCannotBeCopied)
{
    SerialExecutor executor(QStringLiteral("test"));
    auto value = std::make_unique<int>(5);
    EXPECT_EQ(await(executor.submit([value = std::move(value)] { return *value; })), 5);
}

TEST(SerialExecutor, KnowsItsOwnThread)
{
    SerialExecutor executor(QStringLiteral("test"));
    EXPECT_FALSE(executor.isCurrentThread());
    EXPECT_TRUE(await(executor.submit([&executor] { return executor.isCurrentThread(); })));
}

} // namespace

} // namespace quire
