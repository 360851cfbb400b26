#include "files/SmallFile.h"

#include "files/Descriptor.h"

#include <QFile>

#include <fcntl.h>
#include <sys/stat.h>

namespace quire::SmallFile {

std::optional<QByteArray> read(const QString &path, qint64 maximum)
{
    // Opening a pipe that nobody writes to would otherwise wait for ever.
    const Descriptor file(::open(QFile::encodeName(path).constData(), O_RDONLY | O_CLOEXEC | O_NONBLOCK));
    return file.number() < 0 ? std::nullopt : read(file.number(), maximum);
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
