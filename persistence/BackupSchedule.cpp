#include "persistence/BackupSchedule.h"

#include "files/FolderListing.h"
#include "reliability/BackupPaths.h"

#include <QFileInfo>

#include <algorithm>

namespace quire::BackupSchedule {

namespace {

constexpr qint64 shortest = 1; // days
constexpr qint64 longest = 365;
constexpr qint64 minutesPerDay = 1440;

bool isBackup(const FolderEntry &entry)
{
    const QString name = QString::fromLocal8Bit(entry.path.filename().c_str());
    return !entry.isFolder && name.startsWith(BackupPaths::namePrefix)
        && entry.path.extension() == BackupPaths::nameSuffix.toUtf8().constData();
}

} // namespace

std::chrono::days interval(std::optional<qint64> days, std::optional<qint64> minutes)
{
    const qint64 wanted = days ? *days : minutes.value_or(0) / minutesPerDay;
    return std::chrono::days(std::clamp(wanted, shortest, longest));
}

bool isDue(Instant lastBackup, Instant now, std::chrono::days interval)
{
    return now - lastBackup >= interval;
}

std::optional<Instant> latestBackupDate(const QString &folder)
{
    if (!QFileInfo::exists(folder)) {
        return std::nullopt;
    }
    std::optional<Instant> latest;
    for (const FolderEntry &entry : FolderListing::of(folder)) {
        if (entry.modified && isBackup(entry)) {
            latest = std::max(latest, std::optional(entry.modified->instant()));
        }
    }
    return latest;
}

} // namespace quire::BackupSchedule
