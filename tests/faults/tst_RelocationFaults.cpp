// A library on its way to another folder: at whichever moment the process ends or
// the power fails, a whole library is there, the record names it, and it holds
// what was told to be done.

#include "faults/FaultyDisk.h"
#include "faults/PowerCut.h"
#include "faults/RelocationDeeds.h"
#include "faults/Torture.h"
#include "persistence/AppDirectories.h"
#include "records/Failure.h"

#include <gmock/gmock.h>

using namespace quire;
using namespace quire::testing;

namespace {

// What was told by when.
constexpr int edited = 1;
constexpr int moved = 2;
constexpr int editedAgain = 3;

// A sitting with a move in its middle.
struct Journey
{
    PowerCut record;
    std::vector<LibraryContent> states; // [0]: as it began; [k]: with mark k told
    bool endsInChosenFolder = false;
};

Journey travel(FaultBench &bench, const Deed &move)
{
    FaultyDisk &disk = FaultyDisk::instance();
    bench.reset(move.start);
    disk.beginRecord();
    std::vector<LibraryContent> states{bench.content()};
    bench.open();
    const auto tell = [&](int mark) {
        disk.mark(mark);
        states.push_back(bench.content());
    };
    done(bench.store().updateBook(3, 2, QStringLiteral("read"), QStringLiteral("Noted before")));
    tell(edited);
    move.run(bench.store());
    tell(moved);
    done(bench.store().updateBook(2, 5, QStringLiteral("read"), QStringLiteral("Noted after")));
    tell(editedAgain);
    const bool isDefault = done(bench.store().databaseURL()) == bench.folder() + QStringLiteral("/quire.db");
    bench.close();
    return {PowerCut(disk.takeRecord()), std::move(states), !isDefault};
}

// The folder as another process finds it: what the lease of this one left in it
// is nobody's any more.
void put(FaultBench &bench, FolderImage image)
{
    image.removeIf([](const auto &file) { return file.key().contains(u".Quire Locks/"); });
    bench.reset({});
    writeFolder(bench.folder(), image);
    bench.restart();
}

LibraryContent withoutTracesOfOpening(LibraryContent content)
{
    content.rows.remove(QStringLiteral("background_job_history"));
    content.rows.remove(QStringLiteral("sqlite_sequence"));
    return content;
}

// What is wrong with an image of that moment; empty when nothing is. oldest: the
// mark whose state must have been reached.
QString verdict(FaultBench &bench, const Journey &journey, const FolderImage &image, int moment, int oldest)
{
    put(bench, image);
    try {
        bench.open(true);
        bench.close();
    } catch (const Failure &failure) {
        return QStringLiteral("does not open: ") + failure.description();
    }
    const LibraryContent content = withoutTracesOfOpening(bench.content());
    const int newest = std::min(int(journey.record.markAt(moment)) + 1, editedAgain);
    for (int mark = 0; mark <= newest; ++mark) {
        if (content == withoutTracesOfOpening(journey.states[std::size_t(mark)])) {
            const bool isOlder
                = mark < oldest && journey.states[std::size_t(mark)] != journey.states[std::size_t(oldest)];
            return isOlder ? QStringLiteral("lost: is at %1, and %2 was told").arg(mark).arg(oldest) : QString();
        }
    }
    return QStringLiteral("none of its states: ") + content.difference(journey.states[std::size_t(newest)]);
}

QString at(const Deed &move, const Journey &journey, int moment)
{
    return QStringLiteral("%1, moment %2 of %3: ")
        .arg(QLatin1String(move.name), QString::number(moment), QString::number(journey.record.moments()));
}

// The process ends at one of `every` moments.
QStringList findingsOfEnds(FaultBench &bench, const Deed &move, int every, Torture &torture)
{
    const Journey journey = travel(bench, move);
    QStringList findings;
    for (int moment = torture.below(every); moment <= journey.record.moments(); moment += every) {
        const QString found
            = verdict(bench, journey, journey.record.afterCrash(moment), moment, int(journey.record.markAt(moment)));
        if (!found.isEmpty()) {
            findings.append(at(move, journey, moment) + found);
        }
        torture.addRounds();
    }
    return findings;
}

// The power fails at `images` moments. A library that writes ahead may lose its
// last edits to that, but never to the move.
QStringList findingsOfCuts(FaultBench &bench, const Deed &move, int images, Torture &torture)
{
    const Journey journey = travel(bench, move);
    QStringList findings;
    for (int i = 0; i < images; ++i) {
        const int moment = torture.below(journey.record.moments() + 1);
        const int told = int(journey.record.markAt(moment));
        const int oldest = told < moved ? 0 : journey.endsInChosenFolder ? told : moved;
        const FolderImage image = journey.record.afterPowerCut(moment, torture.random());
        if (const QString found = verdict(bench, journey, image, moment, oldest); !found.isEmpty()) {
            findings.append(at(move, journey, moment) + found);
        }
        torture.addRounds();
    }
    return findings;
}

std::vector<Deed> moves()
{
    std::vector<Deed> deeds;
    addMoves(deeds, Place::DefaultFolder, filledLibrary(Place::DefaultFolder));
    return deeds;
}

} // namespace

TEST(RelocationFaults, WhereverTheProcessEndsTheRecordNamesAWholeLibrary)
{
    Torture torture("R15", "the process ends during a move");
    const std::vector<Deed> deeds = moves();
    FaultBench bench(Place::DefaultFolder);
    for (const Deed &move : deeds) {
        torture.addFindings(findingsOfEnds(bench, move, Torture::stride(3), torture));
    }
}

TEST(RelocationFaults, WheneverThePowerFailsTheRecordNamesAWholeLibrary)
{
    Torture torture("R15", "the power fails during a move");
    const std::vector<Deed> deeds = moves();
    FaultBench bench(Place::DefaultFolder);
    for (const Deed &move : deeds) {
        torture.addFindings(findingsOfCuts(bench, move, Torture::scaled(120), torture));
    }
}

// The control: one who records the new folder before the library is there.
TEST(RelocationFaults, AMoveThatIsRecordedTooEarlyIsCaught)
{
    Torture torture("R15-control", "a move that is recorded too early");
    const Deed careless = carelessMove(filledLibrary(Place::DefaultFolder));
    FaultBench bench(Place::DefaultFolder);
    EXPECT_FALSE(findingsOfEnds(bench, careless, 1, torture).isEmpty());
    EXPECT_FALSE(findingsOfCuts(bench, careless, 100, torture).isEmpty());
}
