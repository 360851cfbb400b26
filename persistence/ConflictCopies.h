// What a sync service leaves beside a library that two machines wrote: a second
// database file with the conflict in its name. Quire does not choose between
// them.
//
// Thread: the store's executor.

#pragma once

#include "records/Instant.h"

#include <QString>

namespace quire::ConflictCopies {

// Looks for conflict copies of the library at databaseURL in its folder, which
// need not exist. Where there is one, copies it and the library to "Recovery" in
// localStateDirectory as far as that is possible, and throws
// QuireReliabilityError CloudConflictCopy, until the reader has put it away.
// Writes nothing to the library's folder. Throws FileError when the folder cannot
// be listed.
void rejectCloudConflictCopies(const QString &databaseURL, const QString &localStateDirectory, Instant now);

} // namespace quire::ConflictCopies
