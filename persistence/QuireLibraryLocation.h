// Where the library lies: the reader's choice of folder, remembered in a small
// record outside the library, so that it can be found before it is open. The
// record stays on this machine, in the default folder.
//
// Thread: any; blocks on the disk.

#pragma once

#include <QString>

#include <optional>

namespace quire::QuireLibraryLocation {

// Absolute path of the record in the default folder.
QString recordURL();

// The folder that the record at `recordURL` names, absolute; nothing when there
// is no record or it names no absolute folder.
std::optional<QString> recordedDirectory(const QString &recordURL);

// The folder to use: the recorded one, whether or not it exists; the default
// folder when there is no record or it names no absolute folder. Never fails,
// and never changes the record.
QString configuredDirectory();

// Records `folder`, an absolute path, in the record at `recordURL`, whose own
// folder is created. Throws DatabaseError InvalidLibraryLocation or FileError.
void save(const QString &folder, const QString &recordURL);

// `folder` without dots, doubled and trailing slashes. Throws DatabaseError
// InvalidLibraryLocation unless it is absolute.
QString standardized(const QString &folder);

} // namespace quire::QuireLibraryLocation
