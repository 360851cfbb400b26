#include "persistence/Relocation.h"

#include "files/DurableFile.h"
#include "files/FileError.h"
#include "files/FolderPath.h"
#include "persistence/CloudLineage.h"
#include "persistence/database/DatabaseError.h"
#include "persistence/database/DatabaseFiles.h"
#include "persistence/database/SQLiteDatabase.h"
#include "persistence/LibraryOpening.h"
#include "persistence/QuireLibraryLocation.h"
#include "reliability/QuireFailureInjector.h"
#include "reliability/QuireLibraryLease.h"

#include <QDir>
#include <QFileInfo>
#include <QUuid>

namespace quire::Relocation {

namespace {

DatabaseError invalidLocation(const QString &text)
{
    return DatabaseError(DatabaseError::Kind::InvalidLibraryLocation, text);
}

// The copy in the new folder, which goes away again unless it is kept: left
// behind by a failure, it would be adopted at the next attempt, when the library
// has moved on.
class Copy
{
public:
    explicit Copy(QString path)
        : m_path(std::move(path))
    {
    }
    ~Copy()
    {
        if (!m_kept) {
            DatabaseFiles::remove(m_path);
        }
    }
    Copy(const Copy &) = delete;
    Copy &operator=(const Copy &) = delete;

    const QString &path() const { return m_path; }
    void keep() { m_kept = true; }

    void move(const QString &path)
    {
        DurableFile::move(m_path, path);
        m_path = path;
    }

private:
    QString m_path;
    bool m_kept = false;
};

// Copies of moves whose process ended in the middle. Under the lease nobody else
// can be making one here.
void removeLeftCopies(const QString &folder)
{
    const QString ofAnyMove = QStringLiteral("Quire Database Migration *-*-*-*-*.db");
    const QDir directory(folder);
    for (const QString &name : directory.entryList({ofAnyMove}, QDir::Files | QDir::Hidden)) {
        DatabaseFiles::remove(directory.filePath(name));
    }
}

void fillCopy(const Copy &copy, const PresentPlace &present, const QString &folder)
{
    const QString failed = QStringLiteral("The copied Quire database failed its integrity check.");
    if (present.database) {
        present.database->requireInPlace(); // what is copied is what lies at the path
    }
    SQLiteDatabase::backUp(present.databaseURL, copy.path());
    {
        const auto database = LibraryOpening::openPrepared(copy.path(), folder, present.localStateDirectory);
        if (!database->quickCheck()) {
            throw invalidLocation(failed);
        }
    }
    // Closing brings what was written ahead into the file and does not say when
    // it cannot; the rename takes the file alone.
    if (QFileInfo(copy.path() + QStringLiteral("-wal")).size() > 0) {
        throw invalidLocation(failed);
    }
}

std::unique_ptr<SQLiteDatabase> openExisting(const QString &url, const PresentPlace &present, const QString &folder)
{
    auto database = LibraryOpening::openPrepared(url, folder, present.localStateDirectory);
    if (!database->quickCheck()) {
        throw invalidLocation(QStringLiteral("The existing Quire database in that folder failed its integrity check."));
    }
    return database;
}

// Whether the record names `folder` again.
bool takeBack(const QString &recordURL, const QString &folder)
{
    try {
        QuireLibraryLocation::save(folder, recordURL);
        return true;
    } catch (const UnsyncedFileError &) {
        return true;
    } catch (const FileError &) {
        return false;
    }
}

// Records the new folder. Throws FileError, the record naming the old one. A new
// record that is in its place already and cannot be taken back stands, since the
// next start goes by it.
void record(const QString &recordURL, const QString &folder, const PresentPlace &present)
{
    try {
        QuireLibraryLocation::save(folder, recordURL);
    } catch (const UnsyncedFileError &) {
        if (takeBack(recordURL, present.supportDirectory)) {
            throw;
        }
    }
}

} // namespace

std::optional<NewPlace> open(const PresentPlace &present, const QString &requestedFolder, const Clock &clock)
{
    const QString folder = QuireLibraryLocation::standardized(requestedFolder);
    DurableFile::createFolder(folder);
    if (FolderPath::resolvingLinks(present.supportDirectory) == FolderPath::resolvingLinks(folder)) {
        return std::nullopt;
    }
    // With the old one for a moment both: nobody else may enter either folder.
    // A failure below undoes these three in reverse: the file is closed, the
    // copy goes, the lease is released.
    auto lease = std::make_unique<QuireLibraryLease>(folder, clock);
    lease->acquire();
    if (lease->isAcquired()) {
        removeLeftCopies(folder);
    }
    Copy copy(QStringLiteral("%1/Quire Database Migration %2.db")
                  .arg(folder, QUuid::createUuid().toString(QUuid::WithoutBraces).toUpper()));
    std::unique_ptr<SQLiteDatabase> database;

    const QString url = folder + QStringLiteral("/quire.db");
    const bool isCopied = !QFileInfo::exists(url);
    if (isCopied) {
        fillCopy(copy, present, folder);
        QuireFailureInjector::checkpoint(u"relocation-after-copy");
        copy.move(url);
        database = LibraryOpening::openPrepared(url, folder, present.localStateDirectory);
    } else {
        CloudLineage::requireRememberedFile({url, present.cloudLineageStore, present.localStateDirectory, clock.now()});
        database = openExisting(url, present, folder);
    }
    if (present.locationRecordURL) {
        record(*present.locationRecordURL, folder, present);
    }
    copy.keep();
    return NewPlace{folder, isCopied, std::move(lease), std::move(database)};
}

} // namespace quire::Relocation
