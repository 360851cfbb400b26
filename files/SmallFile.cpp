#include "files/SmallFile.h"

#include "files/Descriptor.h"
#include "files/FileError.h"

#include <QFile>

#include <cerrno>

#include <fcntl.h>
#include <sys/stat.h>

namespace quire::SmallFile {

namespace {

// Opening a pipe that nobody writes to would otherwise wait for ever.
constexpr int flags = O_RDONLY | O_CLOEXEC | O_NONBLOCK;

// That nothing is there to be read, now or later.
bool tellsOfAbsence(int code)
{
    return code == ENOENT || code == ENOTDIR || code == ELOOP || code == ENAMETOOLONG || code == ENXIO
        || code == EACCES;
}

} // namespace

std::optional<QByteArray> read(const QString &path, qint64 maximum)
{
    const Descriptor file(::open(QFile::encodeName(path).constData(), flags));
    return file.number() < 0 ? std::nullopt : read(file.number(), maximum);
}

std::optional<QByteArray> readIfThere(const QString &path)
{
    const Descriptor file(::open(QFile::encodeName(path).constData(), flags));
    if (file.number() >= 0) {
        return read(file.number());
    }
    if (!tellsOfAbsence(errno)) {
        throw FileError(QStringLiteral("read the file"), path, errno);
    }
    return std::nullopt;
}

std::optional<QByteArray> read(int descriptor, qint64 maximum)
{
    struct stat status = {};
    QFile file;
    if (::fstat(descriptor, &status) != 0 || !S_ISREG(status.st_mode) || !file.open(descriptor, QIODevice::ReadOnly)) {
        return std::nullopt;
    }
    QByteArray bytes = file.read(maximum + 1);
    if (file.error() != QFileDevice::NoError || bytes.size() > maximum) {
        return std::nullopt;
    }
    return bytes;
}

} // namespace quire::SmallFile
