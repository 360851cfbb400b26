#include "persistence/StaleFiles.h"

#include "files/FolderListing.h"
#include "persistence/database/SQLiteDatabase.h"
#include "records/Text.h"
#include "reliability/BackupPaths.h"
#include "reliability/UnfinishedBackup.h"

#include <QFile>
#include <QFileInfo>
#include <QMap>

#include <filesystem>

namespace quire::StaleFiles {

namespace {

void removeIfPossible(const std::filesystem::path &path)
{
    std::error_code ignored;
    std::filesystem::remove(path, ignored);
}

// Entries that are not hidden, by their name. A folder that does not exist has
// none.
std::vector<FolderEntry> visibleEntries(const QString &folder)
{
    if (!QFileInfo(folder).isDir()) {
        return {};
    }
    std::vector<FolderEntry> entries = FolderListing::of(folder);
    std::erase_if(entries, [](const FolderEntry &entry) { return entry.path.filename().native().starts_with('.'); });
    return entries;
}

void cleanPublishingFolder(const QString &folder)
{
    for (const FolderEntry &entry : visibleEntries(folder)) {
        if (entry.path.extension() == ".tmp"
            && entry.path.filename().native().find(".quire.md.") != std::string::npos) {
            removeIfPossible(entry.path);
        }
    }
}

void cleanBackupFolder(const QString &folder)
{
    for (const FolderEntry &entry : visibleEntries(folder)) {
        if (entry.path.extension() != BackupPaths::markerSuffix.toUtf8().constData()) {
            continue;
        }
        std::filesystem::path backup = entry.path;
        backup.replace_extension();
        UnfinishedBackup::discard(backup);
    }
}

} // namespace

void cleanStaleTemporaryFiles(const SQLiteDatabase &database, const QString &supportDirectory)
{
    QMap<QString, QString> settings;
    for (const SQLiteRow &row :
        database.query("SELECT key, value FROM settings WHERE key IN ('localPublishPath', 'backupPath')")) {
        settings.insert(row.string(QStringLiteral("key"), {}), row.string(QStringLiteral("value"), {}));
    }
    cleanPublishingFolder(supportDirectory + QStringLiteral("/deploy"));
    if (const QString folder = settings.value(QStringLiteral("localPublishPath")); !Text::trimmed(folder).isEmpty()) {
        cleanPublishingFolder(folder);
    }
    const QString backups = settings.value(QStringLiteral("backupPath"));
    cleanBackupFolder(
        Text::trimmed(backups).isEmpty() ? supportDirectory + QStringLiteral("/Database Backups") : backups);
}

} // namespace quire::StaleFiles
