// How a library is opened: the steps that turn a path into a connection that
// the store may use. Plain functions; a failure leaves no connection behind.
//
// Thread: the store's executor.

#pragma once

#include <QString>

#include <memory>

namespace quire {

class QuireCredentialStore;
class SQLiteDatabase;

namespace LibraryOpening {

// The library at `url`, in `folder`, at the present schema and in the journal
// mode of its place: write-ahead in the default folder, a single file anywhere
// else, where a sync service could tear side files from it.
// localStateDirectory: takes the copies that migrations make.
// Throws DatabaseError or FileError.
std::unique_ptr<SQLiteDatabase> openPrepared(
    const QString &url, const QString &folder, const QString &localStateDirectory);

// Moves secrets that an earlier version kept in the settings table to the
// credential file. Throws DatabaseError or FileError, every row still there.
void migrateCredentials(SQLiteDatabase &database, const QuireCredentialStore &credentials);

// After a session that did not end: checks the whole file and gives the jobs
// that were under way an ending. Throws DatabaseError.
void recoverFromCrash(SQLiteDatabase &database);

} // namespace LibraryOpening
} // namespace quire
