#include "reliability/UnfinishedBackup.h"

#include "reliability/BackupPaths.h"

#include <cerrno>
#include <string>

#include <unistd.h>

namespace quire::UnfinishedBackup {

namespace {

bool isGone(const std::string &path)
{
    return ::unlink(path.c_str()) == 0 || errno == ENOENT;
}

} // namespace

void discard(const std::filesystem::path &backup)
{
    const bool isBackupGone = isGone(backup.native());
    for (const std::string &suffix : {std::string("-journal"), std::string("-wal"), std::string("-shm"),
             BackupPaths::manifestSuffix.toString().toStdString()}) {
        ::unlink((backup.native() + suffix).c_str());
    }
    // The marker goes last, and stays with a backup that stays: it tells the next
    // start to clean up, and everybody that this backup is not to be trusted.
    if (isBackupGone) {
        ::unlink((backup.native() + BackupPaths::markerSuffix.toString().toStdString()).c_str());
    }
}

} // namespace quire::UnfinishedBackup
