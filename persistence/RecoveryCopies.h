// Copies of library files that Quire will not write to, kept on this machine for
// whoever has to find out what happened. They stay until the reader removes
// them.
//
// Thread: the store's executor.

#pragma once

#include "records/Instant.h"

#include <QString>

namespace quire::RecoveryCopies {

// Copies the library file at `url`, of whatever state, to "Recovery" in
// localStateDirectory: through SQLite, and byte for byte with its side files
// where SQLite cannot or would leave a trace beside it. reason: names the copy, as "Cloud Rollback". now: the
// date in its name. Returns the absolute path of the copy.
// To be called without a connection to the file.
// Throws FileError when no copy could be made; `url` is as it was.
QString preserveDatabaseForRecovery(
    const QString &url, const QString &reason, const QString &localStateDirectory, Instant now);

} // namespace quire::RecoveryCopies
