// When the next backup is due.
//
// Thread: any; latestBackupDate() blocks on the disk.

#pragma once

#include "records/Instant.h"

#include <QString>

#include <chrono>
#include <optional>

namespace quire::BackupSchedule {

// From 1 to 365 days. days, minutes: the settings of these names, nothing when
// they are no whole numbers; an interval in minutes is what an older version
// stored, and counts by its whole days.
std::chrono::days interval(std::optional<qint64> days, std::optional<qint64> minutes);

// A backup as old as the interval is due, one from the future is not.
bool isDue(Instant lastBackup, Instant now, std::chrono::days interval);

// When the newest backup in `folder` was written; only what is named as a backup
// counts. Nothing when there is none or no such folder. Throws FileError when
// the folder cannot be listed.
std::optional<Instant> latestBackupDate(const QString &folder);

} // namespace quire::BackupSchedule
