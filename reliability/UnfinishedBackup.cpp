#include "reliability/UnfinishedBackup.h"

#include "reliability/BackupPaths.h"

#include <string>

#include <unistd.h>

namespace quire::UnfinishedBackup {

void discard(const std::filesystem::path &backup)
{
    // The marker goes last: should the process end in between, it still tells the
    // next start to clean up.
    for (const std::string &suffix :
        {std::string(), std::string("-journal"), std::string("-wal"), std::string("-shm"),
            BackupPaths::manifestSuffix.toString().toStdString(), BackupPaths::markerSuffix.toString().toStdString()}) {
        ::unlink((backup.native() + suffix).c_str());
    }
}

} // namespace quire::UnfinishedBackup
