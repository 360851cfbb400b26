// A second copy of each backup in the cloud drive of the reader's desktop, where
// there is one.
//
// Thread: the store's executor; blocks on the disk.

#pragma once

#include <QString>

namespace quire::ICloudBackupCopy {

// Copies the backup and its manifest into "Quire/Database Backups" of the drive,
// in the place of files of their names, and rotates that folder as well. Does nothing where there is no drive; a
// failure goes to the log, since the backup itself has succeeded.
// backup, manifest: absolute paths. limit: at least 1.
void copyIfAvailable(const QString &backup, const QString &manifest, qsizetype limit);

} // namespace quire::ICloudBackupCopy
