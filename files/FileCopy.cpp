#include "files/FileCopy.h"

#include "files/Descriptor.h"
#include "files/FileError.h"

#include <QByteArray>
#include <QFile>

#include <algorithm>
#include <cerrno>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace quire::FileCopy {

namespace {

// In bytes; a request to stop waits for no more than this.
constexpr qint64 pieceSize = 8 << 20;

[[noreturn]] void fail(const QString &source, int code)
{
    throw FileError(QStringLiteral("copy the file"), source, code);
}

bool writeAll(int descriptor, const char *bytes, ssize_t size)
{
    while (size > 0) {
        const ssize_t written = ::write(descriptor, bytes, size_t(size));
        if (written < 0 && errno != EINTR) {
            return false;
        }
        bytes += std::max<ssize_t>(written, 0);
        size -= std::max<ssize_t>(written, 0);
    }
    return true;
}

// The next bytes, at most `wanted`, through this process: how many there were,
// or -1 with errno.
ssize_t copyThroughMemory(int from, int to, qint64 wanted)
{
    QByteArray buffer(std::min<qint64>(wanted, 1 << 20), Qt::Uninitialized);
    const ssize_t count = ::read(from, buffer.data(), size_t(buffer.size()));
    return count < 0 || writeAll(to, buffer.constData(), count) ? count : -1;
}

// The same inside the kernel where that can be done, which moves no byte twice
// and on some disks none at all.
ssize_t copyPiece(int from, int to, qint64 wanted)
{
    const ssize_t count = ::copy_file_range(from, nullptr, to, nullptr, size_t(wanted), 0);
    const bool cannot
        = count < 0 && (errno == EXDEV || errno == EINVAL || errno == ENOSYS || errno == EOPNOTSUPP || errno == EPERM);
    return cannot ? copyThroughMemory(from, to, wanted) : count;
}

} // namespace

bool copy(const QString &source, const QString &path, const std::stop_token &stop)
{
    // Without O_NONBLOCK a pipe in the file's place would be waited for for ever.
    const Descriptor from(::open(QFile::encodeName(source).constData(), O_RDONLY | O_CLOEXEC | O_NONBLOCK | O_NOCTTY));
    struct stat status = {};
    if (from.number() < 0 || ::fstat(from.number(), &status) != 0) {
        fail(source, errno);
    }
    if (!S_ISREG(status.st_mode)) {
        fail(source, S_ISDIR(status.st_mode) ? EISDIR : EINVAL);
    }
    Descriptor to(::open(
        QFile::encodeName(path).constData(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC | O_NOFOLLOW, S_IRUSR | S_IWUSR));
    if (to.number() < 0) {
        fail(source, errno);
    }
    if (status.st_size > 0 && ::fallocate(to.number(), FALLOC_FL_KEEP_SIZE, 0, status.st_size) != 0
        && (errno == ENOSPC || errno == EFBIG || errno == EDQUOT)) {
        fail(source, errno);
    }
    for (qint64 left = status.st_size; left > 0;) {
        if (stop.stop_requested()) {
            return false;
        }
        const ssize_t count = copyPiece(from.number(), to.number(), std::min(left, pieceSize));
        if (count < 0 && errno != EINTR) {
            fail(source, errno);
        }
        if (count == 0) {
            break; // the file has become shorter
        }
        left -= std::max<ssize_t>(count, 0);
    }
    if (to.close() != 0) {
        fail(source, errno);
    }
    return true;
}

} // namespace quire::FileCopy
