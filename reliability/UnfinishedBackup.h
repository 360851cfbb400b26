// What is left of a backup that was not finished: by a failure, or by a crash
// whose marker tells the next start of it.
//
// Thread: any; blocks on the disk.

#pragma once

#include <filesystem>

namespace quire::UnfinishedBackup {

// Removes the backup file, what SQLite kept beside it, its manifest and its
// marker, as far as they are there and can be removed; the marker stays with a
// backup that cannot be removed. backup: absolute path of the backup file, which
// nobody has open.
void discard(const std::filesystem::path &backup);

} // namespace quire::UnfinishedBackup
