// The system refuses: a full disk, a file that may not grow, too many open files,
// a folder without rights. Whatever the store is doing, the library is as before
// or as after, the failure is one of ours, and all goes on once there is room.

#include "faults/DeedTrial.h"
#include "faults/Torture.h"
#include "persistence/AppLog.h"
#include "testing/Await.h"
#include "testing/UnprivilegedUser.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QThread>

#include <gmock/gmock.h>

#include <csignal>
#include <memory>

#include <sched.h>
#include <sys/mount.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <sys/statfs.h>

using namespace quire;
using namespace quire::testing;

namespace {

// A limit of this process, lowered for the length of a scope.
class LoweredLimit
{
public:
    LoweredLimit(__rlimit_resource resource, rlim_t limit)
        : m_resource(resource)
    {
        ::getrlimit(m_resource, &m_former);
        rlimit lowered = m_former;
        lowered.rlim_cur = std::min(limit, m_former.rlim_max);
        ::setrlimit(m_resource, &lowered);
    }
    ~LoweredLimit() { ::setrlimit(m_resource, &m_former); }

    LoweredLimit(const LoweredLimit &) = delete;
    LoweredLimit &operator=(const LoweredLimit &) = delete;

private:
    __rlimit_resource m_resource;
    rlimit m_former{};
};

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

// A file system of its own in the bench's folder, whose size can be set.
class SmallDisk
{
public:
    // False where this process may not mount anything.
    bool mount(const QString &folder)
    {
        m_folder = QFile::encodeName(folder);
        const int flags = CLONE_NEWNS | (::geteuid() == 0 ? 0 : CLONE_NEWUSER);
        return ::unshare(flags) == 0 && ::mount(nullptr, "/", nullptr, MS_REC | MS_PRIVATE, nullptr) == 0
            && ::mount("quire", m_folder.constData(), "tmpfs", 0, "size=64m") == 0;
    }
    ~SmallDisk() { ::umount2(m_folder.constData(), MNT_DETACH); }

    // So many pages more than it holds now.
    void leave(int pages) const
    {
        struct statfs status
        {
        };
        ::statfs(m_folder.constData(), &status);
        resize((status.f_blocks - status.f_bfree + fsblkcnt_t(pages)) * fsblkcnt_t(status.f_bsize));
    }
    void leaveEnough() const { resize(64 << 20); }

private:
    void resize(fsblkcnt_t bytes) const
    {
        const QByteArray options = "size=" + QByteArray::number(qulonglong(bytes));
        if (::mount(nullptr, m_folder.constData(), nullptr, MS_REMOUNT, options.constData()) != 0) {
            throw std::runtime_error("cannot resize the small disk");
        }
    }

    QByteArray m_folder;
};

std::shared_ptr<void> onEnd(std::function<void()> end)
{
    return {nullptr, [end = std::move(end)](void *) { end(); }};
}

void fillTheDisk(Place place)
{
    FaultBench bench(place);
    SmallDisk disk;
    if (!disk.mount(bench.folder())) {
        GTEST_SKIP() << "this system lets no test mount a disk of its own";
    }
    hinderEveryDeed(bench, "the disk is full", 120, Torture::stride(3), [&](int pages) {
        disk.leave(pages);
        return onEnd([&disk] { disk.leaveEnough(); });
    });
}

void limitFileSizes(Place place)
{
    std::signal(SIGXFSZ, SIG_IGN); // as the program does, a write then simply fails
    FaultBench bench(place);
    hinderEveryDeed(bench, "no file may grow", 60, Torture::stride(2),
        [](int pages) { return std::make_shared<LoweredLimit>(RLIMIT_FSIZE, rlim_t(pages) * 4'096); });
}

void limitOpenFiles(Place place)
{
    FaultBench bench(place);
    hinderEveryDeed(bench, "too many files are open", 24, 1, [](int more) {
        const auto open = QDir(QStringLiteral("/proc/self/fd")).entryList(QDir::AllEntries | QDir::System).size();
        return std::make_shared<LoweredLimit>(RLIMIT_NOFILE, rlim_t(open - 3 + more)); // less ".", ".." and the listing
    });
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

} // namespace

TEST(Hindrances, AFullDiskUnderTheDefaultFolderLeavesBeforeOrAfter)
{
    fillTheDisk(Place::DefaultFolder);
}

TEST(Hindrances, AFullDiskUnderAChosenFolderLeavesBeforeOrAfter)
{
    fillTheDisk(Place::ChosenFolder);
}

TEST(Hindrances, AFileThatMayNotGrowInTheDefaultFolderLeavesBeforeOrAfter)
{
    limitFileSizes(Place::DefaultFolder);
}

TEST(Hindrances, AFileThatMayNotGrowInAChosenFolderLeavesBeforeOrAfter)
{
    limitFileSizes(Place::ChosenFolder);
}

TEST(Hindrances, TooManyOpenFilesInTheDefaultFolderLeaveBeforeOrAfter)
{
    limitOpenFiles(Place::DefaultFolder);
}

TEST(Hindrances, TooManyOpenFilesInAChosenFolderLeaveBeforeOrAfter)
{
    limitOpenFiles(Place::ChosenFolder);
}

TEST(Hindrances, AFolderThatMayOnlyBeReadLeavesBeforeOrAfter)
{
    takeRights(Place::ChosenFolder, 0555);
}

TEST(Hindrances, ADefaultFolderThatMayOnlyBeReadLeavesBeforeOrAfter)
{
    takeRights(Place::DefaultFolder, 0555);
}

// A line that finds no room is lost; the next that does is not.
TEST(Hindrances, TheLogGoesOnAfterAFullDisk)
{
    std::signal(SIGXFSZ, SIG_IGN);
    const QTemporaryDir folder;
    const QString log = folder.filePath(QStringLiteral("quire.log"));
    qputenv("QUIRE_LOG_PATH", QFile::encodeName(log));
    {
        const LoweredLimit none(RLIMIT_FSIZE, 0);
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
