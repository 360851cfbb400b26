// A library on its way to, or away from, a disk with little room: the move fails
// with a typed failure and leaves nothing behind, or it is made; the library goes
// on where the record says.

#include "faults/Torture.h"
#include "persistence/AppDirectories.h"
#include "persistence/LibraryStore.h"
#include "persistence/QuireLibraryLocation.h"
#include "records/Failure.h"
#include "testing/Await.h"
#include "testing/ManualClock.h"
#include "testing/OwnDataDirectory.h"
#include "testing/SmallDisk.h"

#include <gtest/gtest.h>

#include <QDir>

using namespace quire;
using namespace quire::testing;

namespace {

QString inFolder(const QString &folder, const QString &name)
{
    return QStringLiteral("%1/%2").arg(folder, name);
}

// Where a library of some 500 KB is, and where it is to go.
class RelocationDisks : public ::testing::Test
{
protected:
    void SetUp() override
    {
        if (!SmallDisk::isAvailable()) {
            GTEST_SKIP() << "this system lets no test mount a disk of its own";
        }
        QDir().mkpath(defaultFolder);
        QDir().mkpath(mountPoint);
    }

    void TearDown() override { store.reset(); }

    void open()
    {
        store = std::make_unique<LibraryStore>(clock);
        await(store->prepare(false));
        ManualBookDraft draft;
        draft.title = QStringLiteral("One");
        await(store->addManualBook(draft, CoverBytes(QByteArray(500'000, 'c'))));
    }

    // Moves with ever more room, by `step`, until it is made. `leave` gives that
    // much.
    void moveWithMoreAndMore(Torture &torture, const QString &target, int step, const std::function<void(int)> &leave,
        const std::function<void()> &leaveEverything)
    {
        const QString start = await(store->databaseURL());
        bool isMoved = false;
        for (int room = 0; !isMoved; room += step) {
            ASSERT_LT(room, 2'000) << "it never fits";
            leave(room);
            try {
                isMoved = await(store->relocateDatabase(target));
            } catch (const Failure &) {
                ++refused;
            }
            leaveEverything();
            torture.addRounds();
            if (!isMoved) {
                torture.addFindings(findingsOfRefusal(start, target, room));
            }
        }
        EXPECT_GT(refused, 0) << "nothing was full";
        EXPECT_TRUE(QFile::exists(inFolder(target, QStringLiteral("quire.db"))));
        torture.addFindings(findingsOfWork(target, 0));
    }

    QStringList findingsOfRefusal(const QString &start, const QString &target, int room)
    {
        QStringList findings;
        const auto find = [&](const QString &finding) {
            findings.append(QStringLiteral("with room for %1: %2").arg(QString::number(room), finding));
        };
        if (await(store->databaseURL()) != start) {
            find(QStringLiteral("refused, and the library is elsewhere"));
        }
        const QStringList left = QDir(target).entryList(QDir::Files | QDir::Hidden);
        if (!left.isEmpty()) {
            find(QStringLiteral("left behind: ") + left.join(QStringLiteral(", ")));
        }
        return findings + findingsOfWork(QFileInfo(start).path(), room);
    }

    // An edit is there after another start, which goes by the record.
    QStringList findingsOfWork(const QString &whereItIs, int room)
    {
        const QString word = QStringLiteral("after %1").arg(room);
        await(store->updateBook(1, 3, QStringLiteral("read"), word));
        await(store->shutdown());
        store = std::make_unique<LibraryStore>(clock);
        await(store->prepare(false));
        if (await(store->databaseURL()) != inFolder(whereItIs, QStringLiteral("quire.db"))
            || await(store->books()).value(0).notes != word) {
            return {QStringLiteral("what was edited after %1 is not there after another start").arg(room)};
        }
        return {};
    }

    const OwnDataDirectory data;
    const ManualClock clock;
    const QTemporaryDir place; // for libraries elsewhere
    const QString defaultFolder = AppDirectories::supportDirectory();
    const QString mountPoint = place.filePath(QStringLiteral("disk"));
    const QString folder = place.filePath(QStringLiteral("Reading"));
    int refused = 0;
    std::unique_ptr<LibraryStore> store;
};

} // namespace

TEST_F(RelocationDisks, ALibraryMovesToAnotherDiskOnceThereIsRoomForIt)
{
    Torture torture("R15", "the disk to move to is full");
    SmallDisk disk(mountPoint);
    open();
    moveWithMoreAndMore(
        torture, inFolder(mountPoint, QStringLiteral("Reading")), Torture::stride(7),
        [&](int room) { disk.leaveBlocks(room + 1); }, [&] { disk.leaveEverything(); });
    store.reset();
}

TEST_F(RelocationDisks, ALibraryMovesToADiskOnceItTakesFiles)
{
    Torture torture("R15", "the disk to move to takes no more files");
    SmallDisk disk(mountPoint);
    open();
    moveWithMoreAndMore(
        torture, inFolder(mountPoint, QStringLiteral("Reading")), 1, [&](int room) { disk.leaveFiles(room); },
        [&] { disk.leaveEverything(); });
    store.reset();
}

TEST_F(RelocationDisks, ALibraryMovesAwayFromAFullDiskOnceTheRecordFits)
{
    Torture torture("R15", "the disk with the record is full");
    SmallDisk disk(defaultFolder);
    open();
    moveWithMoreAndMore(
        torture, folder, 1, [&](int room) { disk.leaveFiles(room); }, [&] { disk.leaveEverything(); });
    store.reset();
}
