#include "fuzz/BrokenPromise.h"
#include "fuzz/Promises.h"
#include "fuzz/ScratchFolder.h"

#include "core/LaunchCacheCoding.h"
#include "core/QuireLaunchCache.h"

#include <QBuffer>
#include <QCborMap>
#include <QCborValue>
#include <QDir>

#include <algorithm>

#include <sys/stat.h>

namespace quire::fuzz::promises {

namespace {

const QString databasePath = QStringLiteral("/library/quire.db");

QByteArray written(const QuireLibrarySnapshot &snapshot)
{
    QByteArray bytes;
    QBuffer device(&bytes);
    device.open(QIODevice::WriteOnly);
    LaunchCacheCoding::write(device, snapshot);
    return bytes;
}

mode_t modeOf(const QString &path)
{
    struct stat status = {};
    ::stat(QFile::encodeName(path).constData(), &status);
    return status.st_mode & 07777;
}

} // namespace

// What is read is compared as it is written, since a number may be none.
void launchCache(const QByteArray &bytes, const LaunchCacheReader &reader)
{
    if (const auto look = reader.look(bytes)) {
        const QByteArray again = LaunchCacheCoding::encode(*look);
        const auto read = reader.look(again);
        require(read && LaunchCacheCoding::encode(*read) == again, "a look that is another when it is read back");
        require(!reader.look(bytes.chopped(1)), "a look without its end");
        require(!reader.look(bytes + '\0'), "a look with something after it");
    }
    if (const auto snapshot = reader.library(bytes, databasePath)) {
        require(snapshot->databasePath == databasePath, "another library");
        require(snapshot->schemaVersion == QuireLibrarySnapshot::currentVersion, "another version");
        const QByteArray again = written(*snapshot);
        const auto read = reader.library(again, databasePath);
        require(read && written(*read) == again, "a library that is another when it is read back");
        require(!reader.library(bytes.chopped(1), databasePath), "a library without its end");
        require(!reader.library(bytes + '\0', databasePath), "a library with something after it");
    }
}

void credentials(const QByteArray &bytes, const CredentialFile &file)
{
    static const ScratchFolder folder;
    const QString path = folder.filePath(QStringLiteral("Credentials.plist"));
    const QString token = QStringLiteral("netlifyToken");
    folder.put(path, bytes);

    const auto before = file.load(path);
    const QCborMap map = QCborValue::fromCbor(bytes).toMap();
    for (auto secret = before.begin(); secret != before.end(); ++secret) {
        require(!secret.value().isEmpty(), "a secret that is empty");
        require(map.contains(secret.key()), "a secret from nowhere");
    }
    require(bytesOf(path) == bytes, "a file that reading has changed");

    auto expected = before;
    expected.insert(token, QStringLiteral("a token"));
    file.set(path, QStringLiteral(" a token\n"), token);
    require(file.load(path) == expected, "other secrets than were there and were entered");
    require(modeOf(path) == 0600, "a file that others may read");

    expected.remove(token);
    file.set(path, QStringLiteral(" "), token);
    require(file.load(path) == expected, "a secret that was taken back, or another with it");
}

void locationRecord(const QByteArray &bytes, const ReadLocation &read)
{
    static const ScratchFolder folder;
    const QString path = folder.filePath(QStringLiteral("Library Location.json"));
    folder.put(path, bytes);
    const auto place = read(path);
    require(!place || place->startsWith(u'/'), "a folder that is not absolute");
    require(!place || QDir::cleanPath(*place) == *place, "a folder with dots or doubled slashes");
    require(!place || (!place->contains(QChar::Null) && place->isValidUtf16()), "a folder that the system cuts short");
    require(bytesOf(path) == bytes, "a record that reading has changed");
}

} // namespace quire::fuzz::promises
