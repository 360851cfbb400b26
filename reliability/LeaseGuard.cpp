#include "reliability/LeaseGuard.h"

#include <QFile>

#include <cerrno>

#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>

namespace quire {

namespace {

// Creates the folder if need be; true when nobody but this user can put a file
// into it.
bool isPrivateFolder(const QByteArray &path)
{
    ::mkdir(path.constData(), 0700);
    struct stat status = {};
    return ::lstat(path.constData(), &status) == 0 && S_ISDIR(status.st_mode) && status.st_uid == ::geteuid()
        && (status.st_mode & (S_IWGRP | S_IWOTH)) == 0;
}

// Where the user's processes of this login meet; empty when there is no place.
QByteArray guardFolder()
{
    const QByteArray user = QByteArray::number(::geteuid());
    const QByteArray runtime = qgetenv("XDG_RUNTIME_DIR");
    QList<QByteArray> places;
    if (runtime.startsWith('/')) {
        places.append(runtime + "/quire");
    }
    places.append("/run/user/" + user + "/quire");
    places.append("/tmp/quire-" + user);
    for (const QByteArray &place : places) {
        if (isPrivateFolder(place)) {
            return place;
        }
    }
    return {};
}

int openGuard(const QString &libraryFolder)
{
    struct stat status = {};
    if (::stat(QFile::encodeName(libraryFolder).constData(), &status) != 0) {
        return -1;
    }
    const QByteArray folder = guardFolder();
    if (folder.isEmpty()) {
        return -1;
    }
    // The file stays: were it removed, the next two could hold one guard each.
    const QByteArray path
        = folder + "/library-" + QByteArray::number(status.st_dev, 16) + '-' + QByteArray::number(status.st_ino, 16);
    return ::open(path.constData(), O_RDWR | O_CREAT | O_CLOEXEC | O_NOFOLLOW, 0600);
}

} // namespace

LeaseGuard::LeaseGuard(const QString &libraryFolder)
    : m_file(openGuard(libraryFolder))
{
}

bool LeaseGuard::try_lock()
{
    return m_file.number() < 0 || ::flock(m_file.number(), LOCK_EX | LOCK_NB) == 0 || errno != EWOULDBLOCK;
}

void LeaseGuard::unlock()
{
    if (m_file.number() >= 0) {
        ::flock(m_file.number(), LOCK_UN);
    }
}

} // namespace quire
