// Where the Audible application keeps its library: a database in a folder of its
// own, whose name is different for every account.
//
// Thread: any; looks at the disk and changes nothing.

#pragma once

#include "files/FolderListing.h"

#include <QString>

#include <optional>
#include <vector>

namespace quire::AudibleLibraryLocation {

// The application's folder in the reader's home, existing or not.
QString containerFolder();

// Whether a file at `path` would be a library, going by its name.
bool isLibraryDatabase(const QString &path);

// What Quire may read from: the configured path if it exists, a database or a
// folder with one; else the database that the container folder holds. Nothing
// when there is neither. configuredLibraryPath: absolute.
std::optional<QString> resolvedAccessURL(const std::optional<QString> &configuredLibraryPath);

// The database that `accessURL` is or, as a folder, holds; nothing when it holds
// none or cannot be listed.
std::optional<QString> libraryDatabase(const QString &accessURL);

// Of the libraries among `entries` the one written last; of several the largest,
// and of these the first. An entry without a date is older than any with one.
std::optional<QString> bestLibraryDatabase(const std::vector<FolderEntry> &entries);

} // namespace quire::AudibleLibraryLocation
