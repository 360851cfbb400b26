#include "persistence/ICloudBackupCopy.h"

#include "files/DurableFile.h"
#include "files/FileError.h"
#include "persistence/AppLog.h"
#include "persistence/BackupRotation.h"
#include "records/Failure.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>

#include <filesystem>
#include <system_error>

namespace quire::ICloudBackupCopy {

namespace {

std::filesystem::path native(const QString &path)
{
    return QFile::encodeName(path).toStdString();
}

// Over a file of that name; leaves no part of one.
void copyFile(const QString &from, const QString &to)
{
    std::error_code error;
    std::filesystem::copy_file(native(from), native(to), error);
    if (error) {
        const int code = error.value();
        std::filesystem::remove(native(to), error);
        throw FileError(QStringLiteral("write the file"), to, code);
    }
}

void copy(const QString &backup, const QString &manifest, const QString &folder, qsizetype limit)
{
    DurableFile::createFolder(folder);
    const auto there = [&folder](const QString &path) { return folder + u'/' + QFileInfo(path).fileName(); };

    std::error_code error;
    std::filesystem::remove(native(there(backup)), error);
    if (error) {
        throw FileError(QStringLiteral("remove the file"), there(backup), error.value());
    }
    copyFile(backup, there(backup));
    std::filesystem::remove(native(there(manifest)), error); // what matters shows when it is copied
    copyFile(manifest, there(manifest));
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
