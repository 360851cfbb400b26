// The system refuses: a full disk, a file that may not grow, too many open files,
// a folder without rights. Whatever the store is doing, the library is as before
// or as after, the failure is one of ours, and all goes on once there is room.

#include "faults/DeedTrial.h"
#include "faults/Torture.h"
#include "persistence/AppLog.h"
#include "testing/Await.h"
#include "testing/ResourceLimit.h"
#include "testing/ResourceUse.h"
#include "testing/SmallDisk.h"
#include "testing/UnprivilegedUser.h"

#include <QFile>
#include <QFileInfo>
#include <QThread>

#include <gmock/gmock.h>

#include <memory>

#include <sys/stat.h>

using namespace quire;
using namespace quire::testing;

namespace {

// A hindrance of some strength, from 0 (the strongest) on; gone when destroyed.
using Hindrance = std::function<std::shared_ptr<void>(int strength)>;

// Each deed under the hindrance, weaker from trial to trial, until it is done or
// `weakest` is reached.
void hinderEveryDeed(FaultBench &bench, const char *what, int weakest, int step, const Hindrance &hindrance)
{
    Torture torture("R05", what);
    int refused = 0;
    for (const Deed &deed : allDeeds(bench.place())) {
        DeedTrial trial(deed, bench);
        bool isDone = false;
        for (int strength = torture.below(step); strength <= weakest && !isDone; strength += step) {
            std::shared_ptr<void> hinders;
            isDone = trial.run([&] { hinders = hindrance(strength); }, [&] { hinders.reset(); },
                [&] { return QStringLiteral("%1, strength %2").arg(QLatin1String(what), QString::number(strength)); });
            torture.addRounds();
            refused += !isDone;
        }
        torture.addFindings(trial.findings());
    }
    EXPECT_GT(refused, 2) << what; // else nothing was hindered
}

std::shared_ptr<void> onEnd(std::function<void()> end)
{
    return {nullptr, [end = std::move(end)](void *) { end(); }};
}

void fillTheDisk(Place place)
{
    if (!SmallDisk::isAvailable()) {
        GTEST_SKIP() << "this system lets no test mount a disk of its own";
    }
    FaultBench bench(place);
    SmallDisk disk(bench.folder());
    hinderEveryDeed(bench, "the disk is full", 120, Torture::stride(3), [&](int blocks) {
        disk.leaveBlocks(blocks);
        return onEnd([&disk] { disk.leaveEverything(); });
    });
}

void limitFileSizes(Place place)
{
    FaultBench bench(place);
    hinderEveryDeed(bench, "no file may grow", 60, Torture::stride(2),
        [](int pages) { return std::make_shared<ShortFiles>(rlim_t(pages) * 4'096); });
}

void limitOpenFiles(Place place)
{
    if constexpr (isInstrumented) {
        GTEST_SKIP() << "the sanitizers open files themselves to look at memory, and take a refusal for a fault";
    }
    FaultBench bench(place);
    hinderEveryDeed(bench, "too many files are open", 24, 1,
        [](int more) { return std::make_shared<FewFiles>(std::size_t(more)); });
}

void takeRights(Place place, mode_t rights)
{
    FaultBench bench(place);
    const QByteArray folder = QFile::encodeName(bench.folder());
    hinderEveryDeed(bench, "the folder gives no rights", 0, 1, [&](int) {
        ::chmod(QFile::encodeName(QFileInfo(bench.folder()).path()).constData(), 0755);
        auto user = std::make_shared<UnprivilegedUser>(bench.outside({}));
        if (::geteuid() == 0 || ::chmod(folder.constData(), rights) == 0) {
            return onEnd([user, folder]() mutable {
                user.reset();
                ::chmod(folder.constData(), 0755);
            });
        }
        // The folder is another's, whose rights alone matter.
        return onEnd([user]() mutable { user.reset(); });
    });
}

class Hindrances : public ::testing::Test
{
protected:
    static void SetUpTestSuite() { SmallDisk::isAvailable(); } // while there is one thread
};

} // namespace

TEST_F(Hindrances, AFullDiskUnderTheDefaultFolderLeavesBeforeOrAfter)
{
    fillTheDisk(Place::DefaultFolder);
}

TEST_F(Hindrances, AFullDiskUnderAChosenFolderLeavesBeforeOrAfter)
{
    fillTheDisk(Place::ChosenFolder);
}

TEST_F(Hindrances, AFileThatMayNotGrowInTheDefaultFolderLeavesBeforeOrAfter)
{
    limitFileSizes(Place::DefaultFolder);
}

TEST_F(Hindrances, AFileThatMayNotGrowInAChosenFolderLeavesBeforeOrAfter)
{
    limitFileSizes(Place::ChosenFolder);
}

TEST_F(Hindrances, TooManyOpenFilesInTheDefaultFolderLeaveBeforeOrAfter)
{
    limitOpenFiles(Place::DefaultFolder);
}

TEST_F(Hindrances, TooManyOpenFilesInAChosenFolderLeaveBeforeOrAfter)
{
    limitOpenFiles(Place::ChosenFolder);
}

TEST_F(Hindrances, AFolderThatMayOnlyBeReadLeavesBeforeOrAfter)
{
    takeRights(Place::ChosenFolder, 0555);
}

TEST_F(Hindrances, ADefaultFolderThatMayOnlyBeReadLeavesBeforeOrAfter)
{
    takeRights(Place::DefaultFolder, 0555);
}

// A line that finds no room is lost; the next that does is not.
TEST_F(Hindrances, TheLogGoesOnAfterAFullDisk)
{
    const QTemporaryDir folder;
    const QString log = folder.filePath(QStringLiteral("quire.log"));
    qputenv("QUIRE_LOG_PATH", QFile::encodeName(log));
    {
        const ShortFiles none(0);
        AppLog::write(QStringLiteral("a line that finds no room"));
        EXPECT_TRUE(eventually([&] { return QFileInfo::exists(folder.path()); }));
        QThread::msleep(50);
    }
    AppLog::write(QStringLiteral("a line that finds room"));
    EXPECT_TRUE(eventually([&] {
        QFile file(log);
        return file.open(QIODevice::ReadOnly) && file.readAll().contains("a line that finds room");
    }));
}
