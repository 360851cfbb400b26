#include "files/SmallFile.h"

#include "files/Descriptor.h"

#include <QFile>

#include <fcntl.h>
#include <sys/stat.h>

namespace quire::SmallFile {

std::optional<QByteArray> read(const QString &path)
{
    // Opening a pipe that nobody writes to would otherwise wait for ever.
    const Descriptor descriptor(::open(QFile::encodeName(path).constData(), O_RDONLY | O_CLOEXEC | O_NONBLOCK));
    struct stat status = {};
    QFile file;
    if (descriptor.number() < 0 || ::fstat(descriptor.number(), &status) != 0 || !S_ISREG(status.st_mode)
        || !file.open(descriptor.number(), QIODevice::ReadOnly)) {
        return std::nullopt;
    }
    QByteArray bytes = file.read(maximumBytes + 1);
    if (file.error() != QFileDevice::NoError || bytes.size() > maximumBytes) {
        return std::nullopt;
    }
    return bytes;
}

} // namespace quire::SmallFile
