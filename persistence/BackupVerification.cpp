#include "persistence/BackupVerification.h"

#include "concurrency/Clock.h"
#include "files/FileDigest.h"
#include "persistence/BackupFailure.h"
#include "persistence/database/SQLiteDatabase.h"
#include "persistence/LiveLibrary.h"
#include "persistence/Migrations.h"
#include "records/DateParser.h"
#include "reliability/BackupContents.h"
#include "reliability/BackupPaths.h"
#include "reliability/QuireBackupManifest.h"

#include <QFile>
#include <QFileInfo>
#include <QSet>

#include <filesystem>
#include <system_error>

namespace quire::BackupVerification {

namespace {

const QString notOneFile = QStringLiteral("The backup could not be made one file.");

DatabaseError failure(const QString &text)
{
    return DatabaseError(DatabaseError::Kind::Backup, text);
}

void requireTables(const SQLiteDatabase &copy)
{
    QSet<QString> missing{QStringLiteral("goodreads_books"), QStringLiteral("audible_books"),
        QStringLiteral("settings"), QStringLiteral("library_metadata"), QStringLiteral("field_provenance"),
        QStringLiteral("background_job_history")};
    for (const SQLiteRow &row : copy.query("SELECT name FROM sqlite_master WHERE type = 'table'")) {
        missing.remove(row.string(QStringLiteral("name"), {}));
    }
    if (!missing.isEmpty()) {
        throw failure(QStringLiteral("The backup is missing one or more required tables."));
    }
}

// The manifest as far as the open copy tells it.
QuireBackupManifest examine(SQLiteDatabase &copy, SQLiteDatabase &library)
{
    if (!copy.integrityCheck()) {
        throw failure(QStringLiteral("The backup failed its complete integrity check."));
    }
    requireTables(copy);
    const auto counts = BackupContents::counts(copy);
    if (!counts.books || !counts.audiobooks || counts != BackupContents::counts(library)) {
        throw failure(QStringLiteral("The reopened backup record counts do not match the live library."));
    }
    const auto version = BackupContents::schemaVersion(copy);
    if (version != Migrations::currentVersion) {
        throw failure(QStringLiteral("The backup schema version is unexpected."));
    }
    const auto identity = BackupContents::identity(copy);
    if (!identity) {
        throw failure(QStringLiteral("The backup has no library identity."));
    }
    // The check above finds a torn tree, not a changed letter in a row.
    if (!BackupContents::areSame(copy, library)) {
        throw failure(QStringLiteral("The reopened backup does not hold what the live library holds."));
    }
    // One file from here on, also where the library keeps a write-ahead log. A
    // disk that fails here is told by the answer alone.
    const auto mode = copy.scalar("PRAGMA journal_mode = DELETE");
    if (!mode || mode->string({}) != u"delete") {
        throw failure(notOneFile);
    }

    QuireBackupManifest manifest;
    manifest.schemaVersion = *version;
    manifest.libraryUUID = identity->libraryUUID;
    manifest.generation = identity->generation;
    manifest.bookCount = *counts.books;
    manifest.audiobookCount = *counts.audiobooks;
    return manifest;
}

void removeSideFile(const QString &path)
{
    std::error_code error;
    std::filesystem::remove(QFile::encodeName(path).toStdString(), error);
    if (error) {
        throw FileError(QStringLiteral("remove the file"), path, error.value());
    }
}

} // namespace

QuireBackupManifest verify(const QString &backup, const LiveLibrary &library)
{
    return asBackupFailure([&] {
        QuireBackupManifest manifest = [&] {
            SQLiteDatabase copy(backup); // closed before it is read by other means, and before a failure is told
            // Nobody else has it open; and a folder on a network drive may know no
            // memory shared between those who have, which a write-ahead log asks for.
            copy.executeScript("PRAGMA locking_mode = EXCLUSIVE;");
            return examine(copy, library.database);
        }();
        // One that stayed would be rolled back into the backup by whoever opens it.
        if (QFileInfo::exists(backup + QStringLiteral("-journal"))) {
            throw failure(notOneFile);
        }
        removeSideFile(backup + QStringLiteral("-wal"));
        removeSideFile(backup + QStringLiteral("-shm"));
        manifest.databaseSHA256 = FileDigest::sha256(backup);
        manifest.createdAt = DateParser::iso8601(library.clock.now());
        manifest.write(BackupPaths::manifest(backup));
        return manifest;
    });
}

void record(const QString &backup, const QuireBackupManifest &manifest, const LiveLibrary &library)
{
    library.database.execute(R"sql(
        INSERT OR REPLACE INTO backup_verifications (
          backup_path, manifest_path, database_sha256, verified_at,
          schema_version, book_count, audiobook_count
        ) VALUES (?, ?, ?, datetime('now'), ?, ?, ?)
    )sql",
        {backup, BackupPaths::manifest(backup), manifest.databaseSHA256, manifest.schemaVersion, manifest.bookCount,
            manifest.audiobookCount});
    library.setSetting(QStringLiteral("lastKnownGoodBackup"), backup);
}

} // namespace quire::BackupVerification
