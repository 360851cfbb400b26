#include "core/QuireLaunchCache.h"

#include "core/LaunchCacheCoding.h"
#include "files/Descriptor.h"
#include "files/DurableFile.h"
#include "files/SmallFile.h"
#include "records/RecordCoding.h"

#include <QFile>

#include <new>

#include <fcntl.h>
#include <sys/stat.h>

namespace quire {

namespace {

const QString appearanceName = QStringLiteral("Launch Appearance.plist");
const QString libraryName = QStringLiteral("Launch Library.plist");

// Some hundred bytes, read while the reader waits for the window.
constexpr qint64 maximumAppearanceBytes = 16 * 1024;

template<typename Record>
qint64 coverBytes(const QList<Record> &records)
{
    qint64 bytes = 0;
    for (const Record &record : records) {
        bytes += record.coverData ? record.coverData->size() : 0;
    }
    return bytes;
}

// Opening a pipe that nobody writes to would otherwise wait for ever.
constexpr int readingFlags = O_RDONLY | O_CLOEXEC | O_NONBLOCK;

bool isReadable(int descriptor)
{
    struct stat status = {};
    return ::fstat(descriptor, &status) == 0 && S_ISREG(status.st_mode)
        && status.st_size <= QuireLaunchCache::maximumLibraryBytes;
}

} // namespace

QuireLaunchCache::QuireLaunchCache(QString directory)
    : m_directory(std::move(directory))
{
}

void QuireLaunchCache::save(
    const QuireLaunchPreferences &preferences, const std::optional<QuireLibrarySnapshot> &library) const
{
    DurableFile::createFolder(m_directory);
    DurableFile::write(file(appearanceName), LaunchCacheCoding::encode(preferences));
    if (!library) {
        return;
    }
    if (coverBytes(library->books) + coverBytes(library->audiobooks) > maximumLibraryBytes) {
        QFile::remove(file(libraryName)); // of a time when it was smaller
        throw LibraryTooLargeError();
    }
    DurableFile::writeStreamed(
        file(libraryName), [&library](QIODevice &device) { LaunchCacheCoding::write(device, *library); });
}

std::optional<QuireLaunchPreferences> QuireLaunchCache::preferences() const
{
    const auto bytes = SmallFile::read(file(appearanceName), maximumAppearanceBytes);
    if (!bytes) {
        return std::nullopt;
    }
    try {
        return LaunchCacheCoding::decodePreferences(*bytes);
    } catch (const RecordCodingError &) {
        return std::nullopt;
    }
}

std::optional<QuireLibrarySnapshot> QuireLaunchCache::library(const QString &databasePath, std::stop_token stop) const
{
    const Descriptor descriptor(::open(QFile::encodeName(file(libraryName)).constData(), readingFlags));
    QFile device;
    if (descriptor.number() < 0 || !isReadable(descriptor.number())
        || !device.open(descriptor.number(), QIODevice::ReadOnly)) {
        return std::nullopt;
    }
    try {
        return LaunchCacheCoding::read(device, databasePath, stop);
    } catch (const RecordCodingError &) {
        return std::nullopt;
    } catch (const std::bad_alloc &) {
        return std::nullopt; // the library itself may need less
    }
}

QString QuireLaunchCache::file(const QString &name) const
{
    return m_directory + u'/' + name;
}

} // namespace quire
