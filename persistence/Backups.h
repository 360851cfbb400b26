// Verified backups of the open library. A copy counts only when it has been
// opened again, checked against the library and described in a manifest; one
// that falls short of that is removed, and the last good one stays.
//
// Thread: the store's executor. Reads and writes the whole library once.

#pragma once

#include <QString>

#include <optional>

namespace quire {

struct LiveLibrary;

namespace Backups {

// Makes a backup, lets the folder's oldest ones go, and notes the time. The
// absolute path of the backup. folder: where to, absolute; absent for the
// configured folder. Throws DatabaseError Backup when there is no backup now,
// FileError when the folder cannot be made; also FileError when the backup stands
// but an old one could not be removed, and no time is noted then.
QString backUp(const LiveLibrary &library, const std::optional<QString> &folder);

// The same into the configured folder when the last backup is as old as the
// configured interval or unknown; otherwise nothing. Throws as backUp().
std::optional<QString> backUpIfDue(const LiveLibrary &library);

} // namespace Backups
} // namespace quire
