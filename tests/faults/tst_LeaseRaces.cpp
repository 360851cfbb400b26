// Several processes of one machine, and of several, that want one library.

#include "faults/LeaseRival.h"
#include "faults/LockedLibrary.h"
#include "faults/Torture.h"
#include "reliability/QuireHostIdentity.h"
#include "reliability/QuireLibraryLeaseOwner.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <functional>

using namespace quire;
using namespace quire::testing;

namespace {

using Answer = LeaseRival::Answer;

const QString lostLock = QStringLiteral("the owner's lock is not there");

// A finding of the kind that must never be: two that use one library.
bool isShared(const QString &finding)
{
    return finding == lostLock || finding.endsWith(u" owners");
}

// A library's folder, its lock, and those who want it.
class Contest
{
public:
    // machines: of the rivals; a rival more starts for each.
    Contest(Torture &torture, const QStringList &machines, LeaseRival::Manner manner)
        : m_torture(torture)
    {
        for (const QString &machine : machines) {
            manner.machine = machine;
            manner.seed = torture.random()();
            rivals.emplace_back(library.path(), manner);
        }
    }

    // Leaves a lock behind, as somebody who is gone would.
    void abandon()
    {
        QuireLibraryLeaseOwner owner{
            QUuid::createUuid(), m_ended, QStringLiteral("Elsewhere"), QStringLiteral("platform:elsewhere"), Instant()};
        switch (m_torture.below(4)) {
        case 0: // a crash of a process of this machine
            owner.hostID = QuireHostIdentity::make("this machine", {}, std::nullopt).current;
            library.putRecord(owner.encoded(), 0s);
            break;
        case 1: // silence of another machine
            library.putRecord(owner.encoded(), 301s);
            break;
        case 2: // a crash between the lock and its record
            library.putLock(3s);
            break;
        case 3: // a torn record
            library.putRecord(owner.encoded().first(m_torture.below(20)), 3s);
            break;
        }
    }

    // What is wrong with the outcome of a race of `racers`, all of which still
    // hold what they won; empty when nothing is.
    QString judge(const std::vector<LeaseRival> &racers, const std::vector<Answer> &answers) const
    {
        const auto winners = std::ranges::count(answers, Answer::Won);
        if (std::ranges::count(answers, Answer::Failed) > 0) {
            return QStringLiteral("a rival failed");
        }
        if (winners > 1) {
            return QStringLiteral("%1 owners").arg(winners);
        }
        // The only way in which all may go without it.
        if (winners == 0 && std::ranges::count(answers, Answer::None) == 0) {
            return QStringLiteral("no owner");
        }
        for (std::size_t at = 0; at < answers.size(); ++at) {
            if (answers[at] == Answer::Won && library.holder() != racers[at].token()) {
                return lostLock;
            }
        }
        return {};
    }

    // Everybody gives it up; the folder is as before the first.
    QString clear()
    {
        for (LeaseRival &rival : rivals) {
            rival.release();
        }
        bool all = true;
        for (LeaseRival &rival : rivals) {
            all = rival.isReleased() && all;
        }
        const bool isClean = library.clear();
        return !all   ? QStringLiteral("a rival died")
            : isClean ? QString()
                      : QStringLiteral("something was left behind");
    }

    // One race for the lock as it is now.
    QString round()
    {
        const QString finding = judge(rivals, race(rivals));
        const QString remains = clear();
        // Two owners leave what they like.
        return finding.isEmpty() ? remains : finding;
    }

    std::vector<LeaseRival> rivals;

    LockedLibrary library;

private:
    Torture &m_torture;
    pid_t m_ended = endedProcess();
};

QStringList oneMachine(int processes)
{
    return QStringList(processes, QStringLiteral("this machine"));
}

// `rounds` races, scaled; every finding is one of the test's.
void expectNoFinding(Torture &torture, int rounds, const std::function<QString()> &round)
{
    for (int at = 0; at < Torture::scaled(rounds); ++at) {
        torture.addRounds();
        if (const QString finding = round(); !finding.isEmpty()) {
            torture.addFinding(QStringLiteral("round %1: %2").arg(at).arg(finding));
        }
    }
}

// The control: the same races among rivals with a flaw are seen to go wrong.
void expectFinding(const std::function<QString()> &round)
{
    constexpr int patience = 1'000; // rounds; a few are enough
    int rounds = 0;
    QString finding;
    while (!isShared(finding) && rounds < patience) {
        finding = round();
        ++rounds;
    }
    EXPECT_TRUE(isShared(finding)) << "the flaw was not seen in " << rounds << " rounds";
    ::testing::Test::RecordProperty("control_rounds", rounds);
    ::testing::Test::RecordProperty("control_finding", finding.toStdString());
    std::printf("control: \"%s\" in round %d\n", qUtf8Printable(finding), rounds);
}

void raceForAFreeLease(int processes)
{
    Torture torture("R08", processes == 2 ? "free lease, 2 processes" : "free lease, 4 processes");
    Contest contest(torture, oneMachine(processes), {});
    expectNoFinding(torture, 100, [&] { return contest.round(); });
    Contest slow(torture, oneMachine(processes), {.delay = 8ms});
    expectNoFinding(torture, 50, [&] { return slow.round(); });
    Contest broken(torture, oneMachine(processes), {.flaw = QStringLiteral("creation")});
    expectFinding([&] { return broken.round(); });
}

void raceForAnAbandonedLease(int processes)
{
    Torture torture("R09", processes == 2 ? "abandoned lease, 2 processes" : "abandoned lease, 4 processes");
    const LeaseRival::Manner manner{.delay = 8ms};
    const auto roundOf = [](Contest &contest) {
        contest.abandon();
        return contest.round();
    };
    Contest contest(torture, oneMachine(processes), manner);
    expectNoFinding(torture, 100, [&] { return roundOf(contest); });
    LeaseRival::Manner unguarded = manner;
    unguarded.flaw = QStringLiteral("guard");
    Contest broken(torture, oneMachine(processes), unguarded);
    expectFinding([&] { return roundOf(broken); });
}

} // namespace

TEST(LeaseRaces, OneOfTwoProcessesGetsAFreeLease)
{
    raceForAFreeLease(2);
}

TEST(LeaseRaces, OneOfFourProcessesGetsAFreeLease)
{
    raceForAFreeLease(4);
}

// On a shared disk there is no guard between them; the lock folder stands alone.
TEST(LeaseRaces, OneOfFourMachinesGetsAFreeLease)
{
    Torture torture("R08", "free lease, 4 machines");
    const QStringList machines{
        QStringLiteral("a"), QStringLiteral("b"), QStringLiteral("c"), QStringLiteral("this machine")};
    Contest contest(torture, machines, {.delay = 8ms, .flaw = QStringLiteral("guard")});
    expectNoFinding(torture, 100, [&] { return contest.round(); });
}

TEST(LeaseRaces, OneOfTwoProcessesTakesOverAnAbandonedLease)
{
    raceForAnAbandonedLease(2);
}

TEST(LeaseRaces, OneOfFourProcessesTakesOverAnAbandonedLease)
{
    raceForAnAbandonedLease(4);
}

// Slower between the lock and its record than others are patient: by its looks
// the lock is abandoned while its maker is about to finish it.
TEST(LeaseRaces, ATakerThatDawdlesBeforeItsRecordSharesTheLeaseWithNobody)
{
    Torture torture("R09", "slow between lock and record");
    LeaseRival::Manner manner{.ownerless = 1ms, .delay = 12ms};
    Contest contest(torture, oneMachine(3), manner);
    expectNoFinding(torture, 50, [&] { return contest.round(); });
    manner.flaw = QStringLiteral("guard");
    Contest broken(torture, oneMachine(3), manner);
    expectFinding([&] { return broken.round(); });
}

// One that was silent for too long gives the lease up while others take it over.
TEST(LeaseRaces, AReleaseInTheMiddleOfATakeoverLeavesTheSuccessorsLockAlone)
{
    Torture torture("R09", "release against takeover");
    const auto roundOf = [](Contest &contest) -> QString {
        LeaseRival &former = contest.rivals.front();
        if (former.acquire() != Answer::Won) {
            return QStringLiteral("the free lease was not to be had");
        }
        contest.library.dateRecord(301s);
        const auto start = std::chrono::steady_clock::now() + 300us;
        former.release();
        for (LeaseRival &rival : contest.rivals) {
            if (&rival != &former) {
                rival.go(start);
            }
        }
        const bool released = former.isReleased();
        std::vector<Answer> answers{Answer::Busy};
        for (LeaseRival &rival : contest.rivals) {
            if (&rival != &former) {
                answers.push_back(rival.answer());
            }
        }
        // On a busy machine the former may still have the guard when the patience
        // of all the others ends; then the lease is free, and the next to come has it.
        if (std::ranges::count(answers, Answer::Won) == 0) {
            answers.back() = contest.rivals.back().acquire();
        }
        const QString finding = released ? contest.judge(contest.rivals, answers) : QStringLiteral("a rival died");
        const QString remains = contest.clear();
        return finding.isEmpty() ? remains : finding;
    };
    LeaseRival::Manner manner{.delay = 8ms};
    Contest contest(torture, oneMachine(3), manner);
    expectNoFinding(torture, 100, [&] { return roundOf(contest); });
    manner.flaw = QStringLiteral("guard");
    Contest broken(torture, oneMachine(3), manner);
    expectFinding([&] { return roundOf(broken); });
}
