#include "testing/SmallDisk.h"

#include <QFile>

#include <algorithm>
#include <cerrno>
#include <system_error>

#include <fcntl.h>
#include <sched.h>
#include <sys/mount.h>
#include <sys/statvfs.h>
#include <unistd.h>

namespace quire::testing {

namespace {

constexpr int blockBytes = 4'096;

void put(const char *path, const QByteArray &text)
{
    const int file = ::open(path, O_WRONLY | O_CLOEXEC);
    if (file >= 0) {
        [[maybe_unused]] const ssize_t written = ::write(file, text.constData(), std::size_t(text.size()));
        ::close(file);
    }
}

// Within it, an ordinary user may mount; he stays who he is.
bool enterUserNamespace()
{
    const QByteArray user = QByteArray::number(::geteuid());
    const QByteArray group = QByteArray::number(::getegid());
    if (::unshare(CLONE_NEWUSER | CLONE_NEWNS) != 0) {
        return false;
    }
    put("/proc/self/setgroups", "deny");
    put("/proc/self/uid_map", user + ' ' + user + " 1");
    put("/proc/self/gid_map", group + ' ' + group + " 1");
    return true;
}

bool enterNamespace()
{
    const bool entered = (::geteuid() == 0 && ::unshare(CLONE_NEWNS) == 0) || enterUserNamespace();
    // Or what is mounted here would show outside.
    return entered && ::mount(nullptr, "/", nullptr, MS_REC | MS_PRIVATE, nullptr) == 0;
}

void check(int result, const char *what)
{
    if (result != 0) {
        throw std::system_error(errno, std::generic_category(), what);
    }
}

} // namespace

bool SmallDisk::isAvailable()
{
    static const bool available = enterNamespace();
    return available;
}

SmallDisk::SmallDisk(const QString &folder)
    : m_folder(QFile::encodeName(folder))
{
    check(::mount("tmpfs", m_folder.constData(), "tmpfs", 0, "mode=0777"), "mount");
}

SmallDisk::~SmallDisk()
{
    ::umount2(m_folder.constData(), MNT_DETACH);
}

void SmallDisk::remount(const QByteArray &options)
{
    check(::mount("tmpfs", m_folder.constData(), "tmpfs", MS_REMOUNT, options.constData()), "remount");
}

void SmallDisk::leaveEverything()
{
    remount("size=1g,nr_inodes=100000");
}

void SmallDisk::leaveBlocks(int blocks)
{
    leaveEverything();
    struct statvfs status
    {
    };
    check(::statvfs(m_folder.constData(), &status), "statvfs");
    const qulonglong used = (status.f_blocks - status.f_bfree) * status.f_frsize;
    // A size of 0 would be none at all, and could not be taken back.
    const qulonglong size = std::max<qulonglong>(used + qulonglong(blocks) * blockBytes, blockBytes);
    remount("nr_inodes=100000,size=" + QByteArray::number(size));
}

void SmallDisk::leaveFiles(int files)
{
    leaveEverything();
    struct statvfs status
    {
    };
    check(::statvfs(m_folder.constData(), &status), "statvfs");
    remount("size=1g,nr_inodes=" + QByteArray::number(qulonglong(status.f_files - status.f_ffree) + qulonglong(files)));
}

} // namespace quire::testing
