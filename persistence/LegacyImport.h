// Taking over the library of the program that Quire follows, when Quire starts
// for the first time. Only read from: both programs go on with a file of their
// own.
//
// Thread: the store's executor, with the lease on the new library held.

#pragma once

#include "records/Instant.h"

#include <QString>

namespace quire::LegacyImport {

// Copies the older program's library from legacyFolder, if there is one, to
// databaseURL, where no file is yet, and its published site and a note on the
// import to supportDirectory, which exists. Absolute paths; now: told in the note.
// Throws DatabaseError or FileError; a library that did not pass its check is
// not left at databaseURL, so that the next start tries again.
void runIfAvailable(
    const QString &legacyFolder, const QString &supportDirectory, const QString &databaseURL, Instant now);

} // namespace quire::LegacyImport
