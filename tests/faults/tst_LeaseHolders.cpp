// What becomes of a lease whose holder beats, is silent, stands still or is
// dead, under clocks that are a minute to a year off.

#include "faults/LeaseRival.h"
#include "faults/LockedLibrary.h"
#include "faults/Torture.h"

#include <gtest/gtest.h>

#include <thread>

using namespace quire;
using namespace quire::testing;

namespace {

using Answer = LeaseRival::Answer;
using Seconds = std::chrono::seconds;

enum class Holder { Beating, Silent, Stopped, Dead };

struct Situation
{
    Holder holder = Holder::Beating;
    bool isSameMachine = true;
    Seconds silence = 0s; // since its last sign; a beating one gives its own
    Seconds holderClock = 0s; // what its clock is ahead
    Seconds rivalClock = 0s;

    // How old its last sign is by the rival's clock.
    Seconds age() const { return rivalClock + (holder == Holder::Beating ? -holderClock : silence); }

    // Whether the rival may take the lease over.
    bool isAbandoned() const { return (holder == Holder::Dead && isSameMachine) || age() > 300s; }

    // These tests have no hold on how much time passes, so that they leave a
    // minute out; what happens there is proved with a clock that stands still.
    bool isTooClose() const { return age() > 240s && age() <= 300s; }

    QString description() const
    {
        return QStringLiteral("holder %1 of %2 machine, silent for %3 s, clocks %4 s and %5 s ahead")
            .arg(int(holder))
            .arg(isSameMachine ? u"this" : u"another")
            .arg(silence.count())
            .arg(holderClock.count())
            .arg(rivalClock.count());
    }
};

// What of the product is broken, for the controls.
struct Flaws
{
    QString holder;
    QString rival;
    std::chrono::milliseconds rivalPatience = 300s;
    std::chrono::milliseconds beatLimit = 60s; // how long to wait for a beat
};

// Waits until the holder's heartbeat has set its date; false when it never does.
bool awaitBeat(const LockedLibrary &library, Seconds holderClock, std::chrono::milliseconds limit)
{
    const auto end = std::chrono::steady_clock::now() + limit;
    while (std::chrono::steady_clock::now() < end) {
        const auto age = library.recordAge();
        if (age && std::chrono::abs(*age + holderClock) < 60s) {
            return true;
        }
        std::this_thread::sleep_for(1ms);
    }
    return false;
}

// What was not as the rules say; empty when all was.
QString play(const Situation &situation, const Flaws &flaws = {})
{
    const LockedLibrary library;
    const bool isBeating = situation.holder == Holder::Beating;
    LeaseRival holder(library.path(),
        {.machine = situation.isSameMachine ? QStringLiteral("this machine") : QStringLiteral("another"),
            .clockError = situation.holderClock,
            .heartbeat = isBeating ? 2ms : 1h,
            .flaw = flaws.holder});
    if (holder.acquire() != Answer::Won) {
        return QStringLiteral("the free lease was not to be had");
    }
    if (situation.holder == Holder::Stopped) {
        holder.process().stop();
    } else if (situation.holder == Holder::Dead) {
        holder.process().kill();
        holder.process().waitUntilEnded();
    }
    if (!isBeating) {
        library.dateRecord(situation.silence);
    } else if (!awaitBeat(library, situation.holderClock, flaws.beatLimit)) {
        return QStringLiteral("no heartbeat");
    }

    LeaseRival rival(library.path(),
        {.clockError = situation.rivalClock, .rounds = 4, .silent = flaws.rivalPatience, .flaw = flaws.rival});
    const Answer answer = rival.acquire();
    const bool isTaken = answer == Answer::Won;
    if (isTaken != situation.isAbandoned() || (!isTaken && answer != Answer::Busy)) {
        return isTaken ? QStringLiteral("taken from its holder") : QStringLiteral("not taken over");
    }
    if (library.holder() != (isTaken ? rival.token() : holder.token())) {
        return QStringLiteral("the owner's lock is not there");
    }
    if (situation.holder == Holder::Dead) {
        return {};
    }

    // The former holder wakes up, beats, and gives up what it believes to have.
    if (isTaken) {
        library.dateRecord(100s);
    }
    holder.process().resume();
    holder.release();
    if (!holder.isReleased()) {
        return QStringLiteral("the holder died");
    }
    if (library.holder() != (isTaken ? std::optional(rival.token()) : std::nullopt)) {
        return isTaken ? QStringLiteral("the successor's lock is gone") : QStringLiteral("not released");
    }
    if (isTaken && library.recordAge() < 50s) {
        return QStringLiteral("the successor's record was kept fresh by another");
    }
    return {};
}

Seconds oneOf(Torture &torture, std::initializer_list<Seconds> choice)
{
    return *(choice.begin() + torture.below(int(choice.size())));
}

Seconds someClock(Torture &torture)
{
    constexpr Seconds year = 365 * 24h;
    return oneOf(torture, {0s, 60s, -60s, 600s, -600s, 24h, -24h, year, -year});
}

Situation draw(Torture &torture)
{
    Situation situation;
    do {
        situation = {.holder = Holder(torture.below(4)),
            .isSameMachine = torture.below(4) > 0,
            .silence = oneOf(torture, {0s, 60s, 200s, 310s, 1h, 24h, -1h}),
            .holderClock = torture.below(2) == 0 ? 0s : someClock(torture),
            .rivalClock = torture.below(2) == 0 ? 0s : someClock(torture)};
    } while (situation.isTooClose());
    return situation;
}

} // namespace

TEST(LeaseHolders, EachIsTreatedAsTheRulesSay)
{
    Torture torture("R10", "owner beating, silent, stopped, dead; clocks off");
    for (int round = 0; round < Torture::scaled(100); ++round) {
        const Situation situation = draw(torture);
        torture.addRounds();
        if (const QString finding = play(situation); !finding.isEmpty()) {
            torture.addFinding(QStringLiteral("%1: %2").arg(situation.description(), finding));
        }
    }
}

TEST(LeaseHolders, AStoppedOneIsBusyUntilItsSilenceIsTooLong)
{
    EXPECT_EQ(play({.holder = Holder::Stopped, .silence = 200s}), QString());
    EXPECT_EQ(play({.holder = Holder::Stopped, .silence = 310s}), QString());
}

TEST(LeaseHolders, ADeadOneOfThisMachineIsTakenOverAtOnceUnderAnyClock)
{
    for (const Seconds clock : {Seconds(0s), Seconds(60s), Seconds(-60s), Seconds(365 * 24h), Seconds(-365 * 24h)}) {
        EXPECT_EQ(play({.holder = Holder::Dead, .rivalClock = clock}), QString()) << clock.count();
    }
}

TEST(LeaseHolders, AClockAYearAheadTakesALivingLeaseAndOneAYearBehindDoesNot)
{
    EXPECT_EQ(play({.rivalClock = 365 * 24h}), QString());
    EXPECT_EQ(play({.rivalClock = -365 * 24h}), QString());
    EXPECT_EQ(play({.holderClock = 365 * 24h}), QString());
    EXPECT_EQ(play({.holderClock = -365 * 24h}), QString());
}

// The controls: each flaw is seen by the play that is about it.

TEST(LeaseHolders, ARivalThatIsTooHastyIsSeen)
{
    EXPECT_EQ(play({.holder = Holder::Silent, .silence = 200s}, {.rivalPatience = 30s}),
        QStringLiteral("taken from its holder"));
}

TEST(LeaseHolders, ARivalThatTakesTheDeadForLivingIsSeen)
{
    EXPECT_EQ(play({.holder = Holder::Dead}, {.rival = QStringLiteral("liveness")}), QStringLiteral("not taken over"));
}

TEST(LeaseHolders, AHolderThatTakesEveryLockForItsOwnIsSeen)
{
    for (const Holder holder : {Holder::Silent, Holder::Stopped}) {
        EXPECT_EQ(play({.holder = holder, .silence = 310s}, {.holder = QStringLiteral("token")}),
            QStringLiteral("the successor's lock is gone"));
    }
}

TEST(LeaseHolders, AHolderWithoutAHeartbeatIsSeen)
{
    EXPECT_EQ(play({.holderClock = 24h}, {.holder = QStringLiteral("token"), .beatLimit = 500ms}),
        QStringLiteral("no heartbeat"));
}
