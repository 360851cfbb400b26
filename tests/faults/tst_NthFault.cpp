// The n-th call to the disk fails, once and from then on, for every n, in every
// deed of the store: the library is as it was before the deed or as it is after
// it, never between; the failure is one of ours; and the store works on.

#include "faults/DeedTrial.h"
#include "faults/FaultyDisk.h"
#include "faults/Torture.h"
#include "persistence/BookEdits.h"
#include "persistence/database/SQLiteDatabase.h"

#include <gmock/gmock.h>

#include <map>
#include <memory>
#include <string>

using namespace quire;
using namespace quire::testing;

namespace {

using Lasting = FaultyDisk::Lasting;
using Stroke = FaultyDisk::Stroke;

// Strikes call `first`, and every `stride`th after it, until the deed passes
// untouched. How many were struck.
int sweep(DeedTrial &trial, Lasting lasting, Stroke stroke, int first = 1, int stride = 1)
{
    FaultyDisk &disk = FaultyDisk::instance();
    for (int nth = first, struck = 0;; nth += stride, ++struck) {
        bool hasStruck = false;
        QString call;
        trial.run([&] { disk.strike(nth, lasting, stroke); },
            [&] {
                hasStruck = disk.hasStruck();
                call = disk.struckCall();
                disk.relent();
            },
            [&] {
                return QStringLiteral("call %1 (%2) failing %3")
                    .arg(QString::number(nth), call,
                        lasting == Lasting::Once ? QStringLiteral("once") : QStringLiteral("from then on"));
            });
        if (!hasStruck) {
            return struck;
        }
    }
}

// One line of the scoreboard for each row that a deed belongs to.
class Scoreboard
{
public:
    Torture &of(const Deed &deed)
    {
        std::unique_ptr<Torture> &torture = m_rows[deed.row];
        if (!torture) {
            torture = std::make_unique<Torture>(deed.row, "the n-th call to the disk fails");
        }
        return *torture;
    }

private:
    std::map<std::string, std::unique_ptr<Torture>> m_rows;
};

// every: of so many calls one is struck in an ordinary run; which, the seed tells.
void sweepEverything(Place place, Lasting lasting, Stroke stroke, int every)
{
    const int stride = Torture::stride(every);
    Scoreboard scoreboard;
    FaultBench bench(place);
    for (const Deed &deed : allDeeds(place)) {
        Torture &torture = scoreboard.of(deed);
        DeedTrial trial(deed, bench);
        int struck = sweep(trial, lasting, stroke, 1 + torture.below(stride), stride);
        if (struck == 0) { // it makes fewer calls than a stride
            struck = sweep(trial, lasting, stroke, 1, stride);
        }
        EXPECT_GT(struck, 0) << deed.name;
        torture.addRounds(struck);
        torture.addFindings(trial.findings());
    }
}

// A migration goes from one version to the next, and rests nowhere on its way.
QStringList restsOnTheWay(const DeedTrial &trial)
{
    QStringList findings;
    const auto &rests = trial.rests();
    for (std::size_t i = 1; i < rests.size(); ++i) {
        if (rests[i].version <= rests[i - 1].version) {
            findings.append(QStringLiteral("%1 rests within version %2: %3")
                                .arg(QLatin1String(trial.deed().name), QString::number(rests[i].version),
                                    rests[i].difference(rests[i - 1])));
        }
    }
    return findings;
}

} // namespace

TEST(NthFault, OneFailureInTheDefaultFolderLeavesBeforeOrAfter)
{
    sweepEverything(Place::DefaultFolder, Lasting::Once, Stroke::Fail, 3);
}

TEST(NthFault, OneFailureInAChosenFolderLeavesBeforeOrAfter)
{
    sweepEverything(Place::ChosenFolder, Lasting::Once, Stroke::Fail, 3);
}

TEST(NthFault, ADeadDiskUnderTheDefaultFolderLeavesBeforeOrAfter)
{
    sweepEverything(Place::DefaultFolder, Lasting::FromThenOn, Stroke::Fail, 3);
}

TEST(NthFault, ADeadDiskUnderAChosenFolderLeavesBeforeOrAfter)
{
    sweepEverything(Place::ChosenFolder, Lasting::FromThenOn, Stroke::Fail, 3);
}

TEST(NthFault, AFullDiskUnderTheDefaultFolderLeavesBeforeOrAfter)
{
    sweepEverything(Place::DefaultFolder, Lasting::FromThenOn, Stroke::FailAsFull, 8);
}

TEST(NthFault, AFullDiskUnderAChosenFolderLeavesBeforeOrAfter)
{
    sweepEverything(Place::ChosenFolder, Lasting::FromThenOn, Stroke::FailAsFull, 6);
}

TEST(NthFault, AMigrationRestsAtVersionsAlone)
{
    for (const Place place : {Place::DefaultFolder, Place::ChosenFolder}) {
        Torture torture("R14", "where a migration rests");
        FaultBench bench(place);
        for (const Deed &deed : allDeeds(place)) {
            if (deed.kind == Deed::Kind::Opening && qstrcmp(deed.row, "R14") == 0) {
                const DeedTrial trial(deed, bench);
                torture.addRounds(int(trial.rests().size()));
                torture.addFindings(restsOnTheWay(trial));
            }
        }
    }
}

// The controls: a migration, and an edit, without its transaction.

TEST(NthFault, AMigrationWithoutATransactionIsCaught)
{
    FaultBench bench(Place::ChosenFolder);
    const Deed broken{"migration without a transaction", Deed::Kind::Opening, filledLibrary(Place::ChosenFolder),
        [&](LibraryStore &) {
            SQLiteDatabase(bench.folder() + QStringLiteral("/quire.db")).executeScript(R"sql(
                UPDATE goodreads_books SET shelf = 'migrated';
                PRAGMA user_version = 3;
            )sql");
        }};
    EXPECT_FALSE(restsOnTheWay(DeedTrial(broken, bench)).isEmpty());
}

// The same edit without its transaction stops in the middle.
TEST(NthFault, AnEditWithoutATransactionIsCaught)
{
    FaultBench bench(Place::ChosenFolder);
    const Deed broken{
        "edit without a transaction", Deed::Kind::Edit, filledLibrary(Place::ChosenFolder), [&bench](LibraryStore &) {
            SQLiteDatabase database(bench.folder() + QStringLiteral("/quire.db"));
            BookEdits::update(database, 2, 3.5, QStringLiteral("read"), QStringLiteral("A new note"));
        }};
    DeedTrial trial(broken, bench);
    sweep(trial, Lasting::FromThenOn, Stroke::Fail);
    EXPECT_THAT(trial.findings(),
        ::testing::Contains(::testing::Truly([](const QString &finding) { return finding.contains(u"between"); })));
}
