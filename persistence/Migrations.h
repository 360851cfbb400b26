// Bringing a library of any earlier version to the present schema: one step a
// version, each in a transaction of its own and behind a verified copy of the
// file as it was. A committed step is a safe place to rest, so a failure or a
// crash leaves the library at the version before.
//
// Thread: the store's executor.

#pragma once

#include <QString>

namespace quire {

class SQLiteDatabase;

namespace Migrations {

inline constexpr int currentVersion = 2;

// Throws DatabaseError Open, with nothing in the file changed, when a newer
// program wrote it. A file whose version cannot be read passes: whatever is done
// with it next tells better what is wrong.
void refuseNewerSchema(SQLiteDatabase &database);

// Runs the steps that are missing; at the current version, nothing.
// localStateDirectory: absolute; takes the recovery copies, which stay there
// until the reader removes them. Throws DatabaseError or FileError, the library
// at the last committed version; a step that was begun is told to the log.
void migrate(SQLiteDatabase &database, const QString &localStateDirectory);

} // namespace Migrations
} // namespace quire
