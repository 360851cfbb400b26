#include "persistence/ICloudBackupCopy.h"

#include "files/DurableFile.h"
#include "persistence/AppLog.h"
#include "persistence/BackupRotation.h"
#include "records/Failure.h"

#include <QDir>
#include <QFileInfo>

namespace quire::ICloudBackupCopy {

namespace {

void copy(const QString &backup, const QString &manifest, const QString &folder, qsizetype limit)
{
    DurableFile::createFolder(folder);
    for (const QString &file : {backup, manifest}) {
        DurableFile::copy(file, folder + u'/' + QFileInfo(file).fileName());
    }
    BackupRotation::rotate(folder, limit);
}

} // namespace

void copyIfAvailable(const QString &backup, const QString &manifest, qsizetype limit)
{
    const QString drive = QDir::homePath() + QStringLiteral("/Library/Mobile Documents/com~apple~CloudDocs/Apps");
    if (!QFileInfo::exists(drive)) {
        return;
    }
    try {
        copy(backup, manifest, drive + QStringLiteral("/Quire/Database Backups"), limit);
    } catch (const Failure &failure) {
        AppLog::write(QStringLiteral("Could not copy a database backup to iCloud: ") + failure.description());
    }
}

} // namespace quire::ICloudBackupCopy
