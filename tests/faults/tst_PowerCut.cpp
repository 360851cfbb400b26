// The power fails at any moment: what the disk then holds is a whole library in
// a state that it passed through, and in a chosen folder, where every commit is
// synced, one that has everything that was told to be done.

#include "faults/Deeds.h"
#include "faults/FaultyDisk.h"
#include "faults/PowerCut.h"
#include "faults/Torture.h"
#include "persistence/database/SQLiteDatabase.h"
#include "persistence/database/Transaction.h"
#include "persistence/SettingsRows.h"
#include "records/Failure.h"

#include <gmock/gmock.h>

using namespace quire;
using namespace quire::testing;

namespace {

// What a record may be cut to: the contents between its marks, in order.
struct Sitting
{
    PowerCut record;
    std::vector<LibraryContent> states; // [0]: as it began; [k]: with mark k told
};

// Does `count` steps of the store, from step `first` on, and looks at the library
// after each. `opens` says whether to begin with a closed library.
Sitting sit(FaultBench &bench, const FolderImage &start, int first, int count, bool ignoringSyncs = false)
{
    FaultyDisk &disk = FaultyDisk::instance();
    bench.reset(start);
    disk.ignoreSyncs(ignoringSyncs);
    disk.beginRecord();
    std::vector<LibraryContent> states{bench.content()};
    bench.open();
    for (int step = 1; step <= count; ++step) {
        doStep(bench.store(), first + step);
        disk.mark(step);
        states.push_back(bench.content());
    }
    bench.close();
    return {PowerCut(disk.takeRecord()), std::move(states)};
}

class Judge
{
public:
    // keepsAcknowledged: what was told to be done survives.
    Judge(const Sitting &sitting, bool keepsAcknowledged)
        : m_sitting(sitting)
        , m_keepsAcknowledged(keepsAcknowledged)
    {
    }

    // What is wrong with an image of that moment; empty when nothing is.
    QString verdict(FaultBench &bench, const FolderImage &image, int moment) const
    {
        bench.reset(image);
        try {
            bench.open(true);
            bench.close();
            return judge(bench.content(), moment);
        } catch (const Failure &failure) {
            return QStringLiteral("does not open: ") + failure.description();
        }
    }

private:
    QString judge(LibraryContent content, int moment) const
    {
        // What the recovery itself writes is not part of the sitting.
        content.rows.remove(QStringLiteral("background_job_history"));
        const auto told = std::size_t(m_sitting.record.markAt(moment));
        const std::size_t oldest = m_keepsAcknowledged ? told : 0;
        const std::size_t newest = std::min(told + 1, m_sitting.states.size() - 1);
        for (std::size_t i = oldest; i <= newest; ++i) {
            if (isSame(content, m_sitting.states[i])) {
                return {};
            }
        }
        for (std::size_t i = 0; i < oldest; ++i) {
            if (isSame(content, m_sitting.states[i])) {
                return QStringLiteral("lost: step %1 was told to be done, and the library is at %2").arg(told).arg(i);
            }
        }
        return QStringLiteral("torn: after step %1, %2").arg(told).arg(content.difference(m_sitting.states[told]));
    }

    static bool isSame(const LibraryContent &a, LibraryContent b)
    {
        b.rows.remove(QStringLiteral("background_job_history"));
        b.rows.remove(QStringLiteral("sqlite_sequence"));
        LibraryContent left = a;
        left.rows.remove(QStringLiteral("sqlite_sequence"));
        return left == b;
    }

    const Sitting &m_sitting;
    bool m_keepsAcknowledged;
};

// An opening that was cut off is an opening of the same library once more.
QStringList cutOpening(FaultBench &bench, const Deed &deed, int images, std::mt19937 &random)
{
    FaultyDisk &disk = FaultyDisk::instance();
    bench.reset(deed.start);
    disk.beginRecord();
    deed.run(bench.store());
    bench.close();
    Sitting sitting{PowerCut(disk.takeRecord()), {bench.content()}};
    const Judge judge(sitting, true);
    QStringList findings;
    for (int i = 0; i < images; ++i) {
        const int moment = std::uniform_int_distribution<int>(0, sitting.record.moments())(random);
        const QString verdict = judge.verdict(bench, sitting.record.afterPowerCut(moment, random), moment);
        if (!verdict.isEmpty()) {
            findings.append(QStringLiteral("%1, %2, moment %3 of %4: %5")
                                .arg(QLatin1String(deed.name), QLatin1String(nameOf(bench.place())),
                                    QString::number(moment), QString::number(sitting.record.moments()), verdict));
        }
    }
    return findings;
}

void cutOpenings(Place place)
{
    Torture torture("R02", "the power fails during an opening");
    FaultBench bench(place);
    const int images = Torture::scaled(80);
    for (const Deed &deed : allDeeds(place)) {
        if (deed.kind == Deed::Kind::Opening) {
            torture.addFindings(cutOpening(bench, deed, images, torture.random()));
            torture.addRounds(images);
        }
    }
}

// The same edits on a connection whose journal is in memory.
Sitting sitWithoutJournal(FaultBench &bench, const FolderImage &start)
{
    FaultyDisk &disk = FaultyDisk::instance();
    bench.reset(start);
    disk.beginRecord();
    std::vector<LibraryContent> states{bench.content()};
    {
        SQLiteDatabase database(bench.folder() + QStringLiteral("/quire.db"));
        database.executeScript("PRAGMA journal_mode = MEMORY");
        for (int step = 1; step <= 4; ++step) {
            const QByteArray sql = "UPDATE goodreads_books SET notes = 'step " + QByteArray::number(step)
                + "', description = hex(zeroblob(3000))";
            inTransaction(database, [&] { database.execute(sql.constData()); });
            disk.mark(step);
            states.push_back(bench.content());
        }
    }
    return {PowerCut(disk.takeRecord()), std::move(states)};
}

auto contains(const char *word)
{
    return ::testing::Contains(
        ::testing::Truly([word](const QString &finding) { return finding.contains(QLatin1String(word)); }));
}

// Cuts one sitting at `images` moments.
QStringList cut(FaultBench &bench, const Sitting &sitting, bool keepsAcknowledged, int images, std::mt19937 &random)
{
    const Judge judge(sitting, keepsAcknowledged);
    QStringList findings;
    for (int i = 0; i < images; ++i) {
        const int moment = std::uniform_int_distribution<int>(0, sitting.record.moments())(random);
        const FolderImage image = sitting.record.afterPowerCut(moment, random);
        if (const QString verdict = judge.verdict(bench, image, moment); !verdict.isEmpty()) {
            findings.append(QStringLiteral("%1, moment %2 of %3: %4")
                                .arg(QLatin1String(nameOf(bench.place())), QString::number(moment),
                                    QString::number(sitting.record.moments()), verdict));
        }
    }
    return findings;
}

void cutSittings(Place place, bool keepsAcknowledged)
{
    constexpr int imagesPerSitting = 100;
    constexpr int stepsPerSitting = 8;
    Torture torture("R02", "the power fails");
    FaultBench bench(place);
    const FolderImage start = filledLibrary(place);
    const int images = Torture::scaled(2'500);
    for (int done = 0; done < images; done += imagesPerSitting) {
        const Sitting sitting = sit(bench, start, torture.below(1'000), stepsPerSitting);
        const int now = std::min(imagesPerSitting, images - done);
        torture.addFindings(cut(bench, sitting, keepsAcknowledged, now, torture.random()));
        torture.addRounds(now);
    }
}

} // namespace

TEST(PowerCut, LeavesAWholeLibraryInTheDefaultFolder)
{
    cutSittings(Place::DefaultFolder, false);
}

TEST(PowerCut, LosesNothingThatWasToldToBeDoneInAChosenFolder)
{
    cutSittings(Place::ChosenFolder, true);
}

TEST(PowerCut, DuringAnOpeningOfTheDefaultFolderLeavesWhatOpensToTheSameLibrary)
{
    cutOpenings(Place::DefaultFolder);
}

TEST(PowerCut, DuringAnOpeningOfAChosenFolderLeavesWhatOpensToTheSameLibrary)
{
    cutOpenings(Place::ChosenFolder);
}

// The controls: a disk that only says that it synced, and a journal that
// is not on it.

TEST(PowerCut, ADiskThatDoesNotSyncIsCaught)
{
    std::mt19937 random(1);
    FaultBench bench(Place::ChosenFolder);
    const Sitting sitting = sit(bench, filledLibrary(Place::ChosenFolder), 0, 8, true);
    EXPECT_THAT(cut(bench, sitting, true, 200, random), contains("lost"));
}

TEST(PowerCut, AJournalThatIsNotOnTheDiskIsCaught)
{
    std::mt19937 random(1);
    FaultBench bench(Place::ChosenFolder);
    const Sitting sitting = sitWithoutJournal(bench, filledLibrary(Place::ChosenFolder));
    const QStringList findings = cut(bench, sitting, true, 200, random);
    EXPECT_THAT(findings, ::testing::AnyOf(contains("torn"), contains("does not open")))
        << findings.join(QLatin1Char('\n')).toStdString();
}
