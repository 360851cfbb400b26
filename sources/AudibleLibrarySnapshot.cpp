#include "sources/AudibleLibrarySnapshot.h"

#include "concurrency/Cancelled.h"
#include "files/FileCopy.h"
#include "files/FileError.h"
#include "records/UUIDText.h"
#include "sources/ServiceError.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>

#include <cerrno>

#include <sys/stat.h>

namespace quire {

namespace {

void copy(const QString &source, const QString &path, const std::stop_token &stop)
{
    try {
        if (!FileCopy::copy(source, path, stop)) {
            throw Cancelled();
        }
    } catch (const FileError &error) {
        throw ServiceError::message(
            QStringLiteral("Quire could not create a read-only snapshot of Audible’s library: ") + error.description());
    }
}

// What QDir::tempPath() is for one that exists; it knows no other.
QString temporaryDirectory()
{
    const QString given = QFile::decodeName(qgetenv("TMPDIR"));
    return given.startsWith(u'/') ? QDir::cleanPath(given) : QStringLiteral("/tmp");
}

} // namespace

AudibleLibrarySnapshot::Folder::Folder()
    : m_path(temporaryDirectory() + QStringLiteral("/Quire-Audible-") + UUIDText::fresh())
{
    QDir().mkpath(temporaryDirectory());
    if (::mkdir(QFile::encodeName(m_path).constData(), S_IRWXU) != 0) {
        throw FileError(QStringLiteral("create the folder"), m_path, errno);
    }
}

AudibleLibrarySnapshot::Folder::~Folder()
{
    QDir(m_path).removeRecursively(); // what cannot be removed stays
}

AudibleLibrarySnapshot::AudibleLibrarySnapshot(const QString &database, const std::stop_token &stop)
    : m_database(m_folder.path() + u'/' + QFileInfo(database).fileName())
{
    const QString logSuffix = QStringLiteral("-wal");
    copy(database, m_database, stop);
    if (QFileInfo::exists(database + logSuffix)) {
        copy(database + logSuffix, m_database + logSuffix, stop);
    }
}

} // namespace quire
