// What a crash leaves behind in the folders that Quire publishes to and backs up
// to. Under the lease nobody else writes there for this library, so that
// whatever is unfinished is left over, however young it is.
//
// Thread: the store's executor.

#pragma once

#include <QString>

namespace quire {

class SQLiteDatabase;

namespace StaleFiles {

// Removes half-written reading lists from "deploy" in supportDirectory and from
// the reader's own folder for them, and backups without an end from the backup
// folder, each with its manifest and its marker. What cannot be removed stays.
// Throws FileError when a folder that exists cannot be listed, DatabaseError when
// the settings cannot be read.
void cleanStaleTemporaryFiles(const SQLiteDatabase &database, const QString &supportDirectory);

} // namespace StaleFiles
} // namespace quire
