// The n-th call to the disk fails, once and from then on, for every n, in every
// deed of the store: the library is as it was before the deed or as it is after
// it, never between; the failure is one of ours; and the store works on.

#include "faults/Deeds.h"
#include "faults/FaultyDisk.h"
#include "faults/PowerCut.h"
#include "faults/Torture.h"
#include "persistence/BookEdits.h"
#include "persistence/database/SQLiteDatabase.h"
#include "records/Failure.h"

#include <gmock/gmock.h>

#include <algorithm>

using namespace quire;
using namespace quire::testing;

namespace {

using Lasting = FaultyDisk::Lasting;
using Stroke = FaultyDisk::Stroke;

// A deed on the way to whose end the library rests at these contents.
struct Road
{
    std::vector<LibraryContent> rests; // first: before; last: after

    const LibraryContent &before() const { return rests.front(); }
    const LibraryContent &after() const { return rests.back(); }
};

// Does the deed undisturbed. A library that is being opened also rests at each
// schema version in between: what a crash right after one of its commits shows.
Road roadOf(const Deed &deed, FaultBench &bench)
{
    FaultyDisk &disk = FaultyDisk::instance();
    bench.reset(deed.start);
    Road road{{bench.content()}};
    if (deed.kind == Deed::Kind::Edit) {
        bench.open();
        deed.run(bench.store());
        bench.close();
        road.rests.push_back(bench.content());
        return road;
    }
    disk.beginRecord();
    deed.run(bench.store());
    bench.close();
    const PowerCut record(disk.takeRecord());
    for (int moment = 0; moment <= record.moments(); ++moment) {
        bench.reset(record.afterCrash(moment));
        if (auto content = bench.content();
            std::find(road.rests.begin(), road.rests.end(), content) == road.rests.end()) {
            road.rests.push_back(std::move(content));
        }
    }
    return road;
}

// A secret may be in its file before the deed is done: two files cannot change
// at once. Never the other way round, which could lose it.
bool isRest(const LibraryContent &content, const Road &road)
{
    return std::any_of(road.rests.begin(), road.rests.end(), [&](const LibraryContent &rest) {
        LibraryContent withSecret = rest;
        withSecret.secrets = road.after().secrets;
        return content == rest || content == withSecret;
    });
}

class Sweep
{
public:
    Sweep(const Deed &deed, FaultBench &bench)
        : m_deed(deed)
        , m_bench(bench)
        , m_road(roadOf(deed, bench))
    {
    }

    // Strikes call 1, 2, 3 and so on, or every `stride`th after the `first`, until
    // the deed passes untouched.
    void run(Lasting lasting, Stroke stroke, int first = 1, int stride = 1)
    {
        for (int nth = first; strike(nth, lasting, stroke); nth += stride) {
            ++m_rounds;
        }
    }

    int rounds() const { return m_rounds; }
    const QStringList &findings() const { return m_findings; }

private:
    // False when the deed passed before its n-th call.
    bool strike(int nth, Lasting lasting, Stroke stroke)
    {
        FaultyDisk &disk = FaultyDisk::instance();
        m_bench.reset(m_deed.start);
        if (m_deed.kind == Deed::Kind::Edit) {
            m_bench.open();
        }
        disk.strike(nth, lasting, stroke);
        const bool done = isDone();
        disk.relent();
        m_where = QStringLiteral("%1, %2, call %3 (%4) failing %5: ")
                      .arg(QLatin1String(m_deed.name), QLatin1String(nameOf(m_bench.place())), QString::number(nth),
                          disk.struckCall(),
                          lasting == Lasting::Once ? QStringLiteral("once") : QStringLiteral("from then on"));
        const bool struck = disk.hasStruck();
        look(done);
        for (const QString &finding : m_bench.findingsOfFurtherWork()) {
            find(finding);
        }
        return struck;
    }

    // Whether the store says that the deed is done.
    bool isDone()
    {
        try {
            m_deed.run(m_bench.store());
            return true;
        } catch (const Failure &) {
            return false;
        } catch (const std::exception &other) {
            find(QStringLiteral("a failure without a type: ") + QString::fromUtf8(other.what()));
            return false;
        }
    }

    void look(bool done)
    {
        try {
            const LibraryContent content = m_bench.content();
            if (done && content != m_road.after()) {
                find(QStringLiteral("told to be done, but ") + content.difference(m_road.after()));
            } else if (!isRest(content, m_road)) {
                find(QStringLiteral("between: ") + content.difference(m_road.before()));
            }
        } catch (const Failure &failure) {
            find(QStringLiteral("unreadable afterwards: ") + failure.description());
        }
    }

    void find(const QString &finding) { m_findings.append(m_where + finding); }

    const Deed &m_deed;
    FaultBench &m_bench;
    Road m_road;
    QString m_where;
    int m_rounds = 0;
    QStringList m_findings;
};

// every: of so many calls one is struck; which, the seed tells.
void sweepEverything(Place place, Lasting lasting, Stroke stroke, int every = 1)
{
    const int stride = Torture::stride(every);
    Torture torture("R03", "the n-th call to the disk fails");
    FaultBench bench(place);
    for (const Deed &deed : allDeeds(place)) {
        Sweep sweep(deed, bench);
        sweep.run(lasting, stroke, 1 + torture.below(stride), stride);
        EXPECT_GT(sweep.rounds(), 0) << deed.name;
        torture.addRounds(sweep.rounds());
        torture.addFindings(sweep.findings());
    }
}

} // namespace

TEST(NthFault, OneFailureInTheDefaultFolderLeavesBeforeOrAfter)
{
    sweepEverything(Place::DefaultFolder, Lasting::Once, Stroke::Fail);
}

TEST(NthFault, OneFailureInAChosenFolderLeavesBeforeOrAfter)
{
    sweepEverything(Place::ChosenFolder, Lasting::Once, Stroke::Fail);
}

TEST(NthFault, ADeadDiskUnderTheDefaultFolderLeavesBeforeOrAfter)
{
    sweepEverything(Place::DefaultFolder, Lasting::FromThenOn, Stroke::Fail);
}

TEST(NthFault, ADeadDiskUnderAChosenFolderLeavesBeforeOrAfter)
{
    sweepEverything(Place::ChosenFolder, Lasting::FromThenOn, Stroke::Fail);
}

TEST(NthFault, AFullDiskUnderTheDefaultFolderLeavesBeforeOrAfter)
{
    sweepEverything(Place::DefaultFolder, Lasting::FromThenOn, Stroke::FailAsFull, 4);
}

TEST(NthFault, AFullDiskUnderAChosenFolderLeavesBeforeOrAfter)
{
    sweepEverything(Place::ChosenFolder, Lasting::FromThenOn, Stroke::FailAsFull, 2);
}

// The control: the same edit without its transaction stops in the middle.
TEST(NthFault, AnEditWithoutATransactionIsCaught)
{
    FaultBench bench(Place::ChosenFolder);
    const Deed broken{
        "edit without a transaction", Deed::Kind::Edit, filledLibrary(Place::ChosenFolder), [&bench](LibraryStore &) {
            SQLiteDatabase database(bench.folder() + QStringLiteral("/quire.db"));
            BookEdits::update(database, 2, 3.5, QStringLiteral("read"), QStringLiteral("A new note"));
        }};
    Sweep sweep(broken, bench);
    sweep.run(Lasting::FromThenOn, Stroke::Fail);
    EXPECT_THAT(sweep.findings(),
        ::testing::Contains(::testing::Truly([](const QString &finding) { return finding.contains(u"between"); })));
}
