// TaskSlot and detach().

#include "concurrency/Cancelled.h"
#include "concurrency/Detach.h"
#include "concurrency/TaskSlot.h"
#include "testing/Await.h"
#include "testing/ManualClock.h"

#include <gtest/gtest.h>

namespace quire {

namespace {

using namespace std::chrono_literals;
using testing::eventually;
using testing::ManualClock;

class Unwell final : public Failure
{
public:
    QString description() const override { return QStringLiteral("unwell"); }
};

// Collects what detached tasks report while it lives.
class Reports
{
public:
    Reports()
    {
        setDetachReporter([this](const QString &description) { m_texts.append(description); });
    }
    ~Reports() { setDetachReporter({}); }
    Reports(const Reports &) = delete;
    Reports &operator=(const Reports &) = delete;

    const QStringList &texts() const { return m_texts; }

private:
    QStringList m_texts;
};

QCoro::Task<> failAfter(ManualClock &clock, std::exception_ptr failure)
{
    co_await clock.sleep(1s, {});
    std::rethrow_exception(failure);
}

QCoro::Task<> failAtOnce()
{
    throw Unwell();
    co_return;
}

QCoro::Task<> sleepThenNote(ManualClock &clock, std::stop_token stop, QStringList &notes, QString note)
{
    try {
        co_await clock.sleep(1s, stop);
    } catch (const Cancelled &) {
        notes.append(note + QStringLiteral(" cancelled"));
        throw;
    }
    notes.append(note + QStringLiteral(" done"));
}

TEST(Detach, ReportsAFailureByItsDescription)
{
    Reports reports;
    ManualClock clock;
    detach(failAfter(clock, std::make_exception_ptr(Unwell())));
    EXPECT_TRUE(reports.texts().isEmpty());
    clock.advance(1s);
    EXPECT_TRUE(eventually([&] { return !reports.texts().isEmpty(); }));
    EXPECT_EQ(reports.texts(), QStringList{QStringLiteral("unwell")});
}

TEST(Detach, ReportsAFailureBeforeTheFirstSuspension)
{
    Reports reports;
    detach(failAtOnce());
    EXPECT_EQ(reports.texts(), QStringList{QStringLiteral("unwell")});
}

TEST(Detach, ReportsForeignExceptionsToo)
{
    Reports reports;
    ManualClock clock;
    detach(failAfter(clock, std::make_exception_ptr(std::runtime_error("foreign"))));
    detach(failAfter(clock, std::make_exception_ptr(7)));
    clock.advance(1s);
    EXPECT_TRUE(eventually([&] { return reports.texts().size() == 2; }));
    EXPECT_EQ(reports.texts(), (QStringList{QStringLiteral("foreign"), QStringLiteral("An unknown failure.")}));
}

TEST(Detach, ACancelledTaskIsNoFailure)
{
    Reports reports;
    ManualClock clock;
    detach(failAfter(clock, std::make_exception_ptr(Cancelled())));
    clock.advance(1s);
    EXPECT_FALSE(eventually([&] { return !reports.texts().isEmpty(); }, 20ms));
}

TEST(TaskSlot, RunsItsTaskToTheEnd)
{
    ManualClock clock;
    QStringList notes;
    TaskSlot slot;
    EXPECT_FALSE(slot.isRunning());
    slot.start([&](std::stop_token stop) { return sleepThenNote(clock, stop, notes, QStringLiteral("a")); });
    EXPECT_TRUE(slot.isRunning());
    clock.advance(1s);
    EXPECT_TRUE(eventually([&] { return !slot.isRunning(); }));
    EXPECT_EQ(notes, QStringList{QStringLiteral("a done")});
}

TEST(TaskSlot, StartingAnotherCancelsTheFormer)
{
    ManualClock clock;
    QStringList notes;
    TaskSlot slot;
    slot.start([&](std::stop_token stop) { return sleepThenNote(clock, stop, notes, QStringLiteral("a")); });
    slot.start([&](std::stop_token stop) { return sleepThenNote(clock, stop, notes, QStringLiteral("b")); });
    EXPECT_TRUE(slot.isRunning());
    EXPECT_TRUE(eventually([&] { return !notes.isEmpty(); }));
    EXPECT_EQ(notes, QStringList{QStringLiteral("a cancelled")});
    EXPECT_TRUE(slot.isRunning()) << "the end of the former is not the end of the latter";
    clock.advance(1s);
    EXPECT_TRUE(eventually([&] { return !slot.isRunning(); }));
    EXPECT_EQ(notes, (QStringList{QStringLiteral("a cancelled"), QStringLiteral("b done")}));
}

TEST(TaskSlot, CancelEmptiesTheSlotAtOnceAndIsHarmlessTwice)
{
    ManualClock clock;
    QStringList notes;
    TaskSlot slot;
    slot.cancel();
    slot.start([&](std::stop_token stop) { return sleepThenNote(clock, stop, notes, QStringLiteral("a")); });
    slot.cancel();
    slot.cancel();
    EXPECT_FALSE(slot.isRunning());
    EXPECT_TRUE(eventually([&] { return !notes.isEmpty(); }));
    EXPECT_EQ(notes, QStringList{QStringLiteral("a cancelled")});
}

TEST(TaskSlot, ItsEndCancelsTheTaskWhoseCapturesOutliveIt)
{
    ManualClock clock;
    QStringList notes;
    const auto name = std::make_shared<QString>(QStringLiteral("captured"));
    {
        TaskSlot slot;
        slot.start([&clock, &notes, name](std::stop_token stop) -> QCoro::Task<> {
            try {
                co_await clock.sleep(1s, stop);
            } catch (const Cancelled &) {
                notes.append(*name);
                throw;
            }
        });
    }
    EXPECT_TRUE(eventually([&] { return !notes.isEmpty(); }));
    EXPECT_EQ(notes, QStringList{QStringLiteral("captured")});
    EXPECT_EQ(name.use_count(), 1) << "and are gone with the task";
}

TEST(TaskSlot, CapturesAreGoneWhenTheTaskHasEnded)
{
    ManualClock clock;
    const auto held = std::make_shared<int>(1);
    TaskSlot slot;
    slot.start([&clock, held](std::stop_token stop) -> QCoro::Task<> { co_await clock.sleep(1s, stop); });
    EXPECT_GT(held.use_count(), 1);
    clock.advance(1s);
    EXPECT_TRUE(eventually([&] { return !slot.isRunning(); }));
    EXPECT_EQ(held.use_count(), 1);
}

TEST(TaskSlot, AFailureEndsTheTaskAndIsReported)
{
    Reports reports;
    TaskSlot slot;
    slot.start([](std::stop_token) { return failAtOnce(); });
    EXPECT_FALSE(slot.isRunning());
    EXPECT_EQ(reports.texts(), QStringList{QStringLiteral("unwell")});
}

TEST(TaskSlot, ATaskMayStartItsSuccessor)
{
    ManualClock clock;
    QStringList notes;
    TaskSlot slot;
    slot.start([&](std::stop_token stop) -> QCoro::Task<> {
        co_await clock.sleep(1s, stop);
        slot.start([&](std::stop_token next) { return sleepThenNote(clock, next, notes, QStringLiteral("b")); });
    });
    clock.advance(1s);
    EXPECT_TRUE(eventually([&] { return clock.requestedSleeps().size() == 2; }));
    EXPECT_TRUE(slot.isRunning());
    clock.advance(1s);
    EXPECT_TRUE(eventually([&] { return !slot.isRunning(); }));
    EXPECT_EQ(notes, QStringList{QStringLiteral("b done")});
}

} // namespace

} // namespace quire
