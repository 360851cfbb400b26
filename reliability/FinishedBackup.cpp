#include "reliability/FinishedBackup.h"

#include "files/FileDigest.h"
#include "persistence/database/SQLiteDatabase.h"
#include "records/Failure.h"
#include "reliability/BackupContents.h"
#include "reliability/BackupPaths.h"
#include "reliability/QuireBackupManifest.h"

#include <QFileInfo>

namespace quire::FinishedBackup {

namespace {

// SQLite would take them for a part of the database.
bool hasSideFiles(const QString &backup)
{
    return QFileInfo::exists(backup + QStringLiteral("-wal")) || QFileInfo::exists(backup + QStringLiteral("-journal"));
}

// Of a file that is, byte for byte, the one that the manifest was written for;
// what is left in doubt is the manifest.
bool says(const QuireBackupManifest &manifest, const SQLiteDatabase &database)
{
    const BackupContents::Counts counts{manifest.bookCount, manifest.audiobookCount};
    const BackupContents::Identity identity{manifest.libraryUUID, manifest.generation};
    return BackupContents::schemaVersion(database) == manifest.schemaVersion
        && BackupContents::identity(database) == identity && BackupContents::counts(database) == counts;
}

} // namespace

Condition condition(const QString &backup)
{
    if (QFileInfo::exists(BackupPaths::marker(backup))) {
        return Condition::Unfinished;
    }
    const auto manifest = QuireBackupManifest::read(BackupPaths::manifest(backup));
    if (!manifest) {
        return Condition::WithoutManifest;
    }
    try {
        const bool isWhole = QFileInfo(backup).isFile() && !hasSideFiles(backup)
            && FileDigest::sha256(backup) == manifest->databaseSHA256;
        return isWhole && says(*manifest, SQLiteDatabase(backup, true)) ? Condition::Good : Condition::Damaged;
    } catch (const Failure &) {
        return Condition::Damaged;
    }
}

} // namespace quire::FinishedBackup
