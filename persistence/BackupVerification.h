// What makes a copy of the library a backup: it is opened again, checked to the
// last page, compared with the library it was made of, made one self-sufficient
// file, and described in a manifest with its fingerprint.
//
// Thread: the store's executor, in the same operation as the copy: no write of
// the library may fall between the two.

#pragma once

#include <QString>

namespace quire {

struct LiveLibrary;
struct QuireBackupManifest;

namespace BackupVerification {

// Checks the copy at `backup` and writes its manifest beside it, which is also
// returned. The copy is closed again in every case.
// Throws DatabaseError Backup, whatever the cause.
QuireBackupManifest verify(const QString &backup, const LiveLibrary &library);

// Notes in the library that `backup` was verified, and that it is the one to
// trust; in the caller's transaction. Throws DatabaseError.
void record(const QString &backup, const QuireBackupManifest &manifest, const LiveLibrary &library);

} // namespace BackupVerification
} // namespace quire
