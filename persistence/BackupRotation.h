// Keeping a folder of backups from growing without end.
//
// Thread: the store's executor; blocks on the disk.

#pragma once

#include <QString>

namespace quire::BackupRotation {

// Keeps the `limit` newest database files in `folder` by the date of their
// content and deletes the others, newest first, each with its manifest. Every
// file that ends in ".db" takes part, whoever put it there and whatever its
// name, in any case of the letters; folders never do. Of files of one date those
// with the later name count as newer, as names of backups begin with their time.
// folder: absolute. limit: at least 1. Throws FileError when the folder cannot
// be listed, and at the first file that cannot be deleted: those behind it stay.
void rotate(const QString &folder, qsizetype limit);

} // namespace quire::BackupRotation
