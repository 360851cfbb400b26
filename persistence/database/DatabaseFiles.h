// A database as files: the file itself, and those that SQLite keeps beside it
// while it writes.
//
// Thread: any.

#pragma once

#include <QString>

namespace quire::DatabaseFiles {

// Removes the database at `path`, which nobody has open, with its side files.
// For what is unfinished or failed its check: what cannot be removed stays.
void remove(const QString &path);

} // namespace quire::DatabaseFiles
