#include "persistence/Backups.h"

#include "concurrency/Clock.h"
#include "files/DurableFile.h"
#include "files/FolderPath.h"
#include "persistence/BackupFailure.h"
#include "persistence/BackupRotation.h"
#include "persistence/BackupSchedule.h"
#include "persistence/BackupVerification.h"
#include "persistence/database/DatabaseError.h"
#include "persistence/database/SQLiteDatabase.h"
#include "persistence/database/Transaction.h"
#include "persistence/ICloudBackupCopy.h"
#include "persistence/LiveLibrary.h"
#include "records/DateParser.h"
#include "records/Text.h"
#include "reliability/BackupPaths.h"
#include "reliability/QuireBackupManifest.h"
#include "reliability/QuireFailureInjector.h"
#include "reliability/UnfinishedBackup.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>

#include <algorithm>

namespace quire::Backups {

namespace {

constexpr qint64 usualLimit = 20;
constexpr qint64 leastLimit = 1;
constexpr qint64 highestLimit = 200;

const QString lastBackupAtKey = QStringLiteral("lastBackupAt");

QString configuredFolder(const LiveLibrary &library)
{
    const auto path = Text::nonEmptyValue(library.setting(QStringLiteral("backupPath")));
    return path ? QDir::cleanPath(FolderPath::expandingTilde(*path))
                : library.folder + QStringLiteral("/Database Backups");
}

qsizetype limit(const LiveLibrary &library)
{
    const auto wanted = library.integerSetting(QStringLiteral("maximumBackupFiles"));
    return qsizetype(std::clamp(wanted.value_or(usualLimit), leastLimit, highestLimit));
}

bool isTaken(const QString &backup)
{
    const auto exists = [](const QString &path) { return QFileInfo::exists(path) || QFileInfo(path).isSymLink(); };
    return exists(backup) || exists(BackupPaths::manifest(backup)) || exists(BackupPaths::marker(backup));
}

// Named for the moment. A good backup of the very same millisecond must not be
// written over, so the next free one is taken.
QString freePath(const QString &folder, Instant moment)
{
    for (;; moment += Instant::duration(1)) {
        QString path = folder + u'/' + BackupPaths::name(moment);
        if (!isTaken(path)) {
            return path;
        }
    }
}

void copyAndVerify(const LiveLibrary &library, const QString &backup)
{
    try {
        DurableFile::write(BackupPaths::marker(backup), {});
        SQLiteDatabase::backUp(library.database.url(), backup);
        QuireFailureInjector::checkpoint(u"backup-after-copy");
        const auto manifest = BackupVerification::verify(backup, library);
        // Together, so that the library never calls a backup good that is removed below.
        asBackupFailure([&] {
            inTransaction(library.database, [&] {
                BackupVerification::record(backup, manifest, library);
                DurableFile::remove(BackupPaths::marker(backup));
            });
        });
    } catch (...) {
        UnfinishedBackup::discard(QFile::encodeName(backup).toStdString());
        throw;
    }
}

} // namespace

QString backUp(const LiveLibrary &library, const std::optional<QString> &folder)
{
    const QString target = folder ? QDir::cleanPath(*folder) : configuredFolder(library);
    if (!target.startsWith(u'/')) {
        throw DatabaseError(
            DatabaseError::Kind::Backup, QStringLiteral("The configured backup folder is not an absolute path."));
    }
    DurableFile::createFolder(target);
    QString backup = freePath(target, library.clock.now());
    copyAndVerify(library, backup);

    const qsizetype most = limit(library);
    BackupRotation::rotate(target, most);
    ICloudBackupCopy::copyIfAvailable(backup, BackupPaths::manifest(backup), most);
    library.setSetting(lastBackupAtKey, DateParser::iso8601(library.clock.now()));
    return backup;
}

std::optional<QString> backUpIfDue(const LiveLibrary &library)
{
    const auto interval = BackupSchedule::interval(library.integerSetting(QStringLiteral("backupIntervalDays")),
        library.integerSetting(QStringLiteral("backupIntervalMinutes")));
    const auto noted = DateParser::date(library.setting(lastBackupAtKey));
    const auto last = noted ? noted : BackupSchedule::latestBackupDate(configuredFolder(library));
    if (!last || BackupSchedule::isDue(*last, library.clock.now(), interval)) {
        return backUp(library, std::nullopt);
    }
    if (!noted) {
        library.setSetting(lastBackupAtKey, DateParser::iso8601(*last));
    }
    return std::nullopt;
}

} // namespace quire::Backups
