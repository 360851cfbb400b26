// Whether the library at a path is the one that this machine saw there last, and
// no older: told from the identity and the generation inside the file, and from
// this machine's memory of them outside it. Where they disagree the file is
// copied for recovery and not opened; Quire never merges and never overwrites.
//
// Thread: the store's executor.

#pragma once

#include "records/Instant.h"
#include "reliability/QuireCloudLineage.h"

#include <QString>

namespace quire {

class SQLiteDatabase;

// What the checks have in common.
struct LineageSurroundings
{
    QString databaseURL; // absolute
    const QuireCloudLineageStore &memory; // outlives this
    QString localStateDirectory; // takes the copies
    Instant now;
};

namespace CloudLineage {

// The lineage in the file. now: its date. Throws DatabaseError Open when the
// library has no identity.
QuireCloudLineage currentLineage(const SQLiteDatabase &database, Instant now);

// Before the file is opened, which would make a new library of it: where one is
// remembered, throws QuireReliabilityError CloudLibraryRolledBack for a file of no
// bytes or one that is no database, with a copy made, and CloudLibraryDiverged for
// no file at all. Throws DatabaseError Open when what is there cannot be read, and
// FileError when the copy could not be made.
void requireRememberedFile(const LineageSurroundings &surroundings);

// Once it is open: throws QuireReliabilityError CloudLibraryRolledBack or
// CloudLibraryDiverged, with a copy made. The connection is closed by then, for the
// file may not be read beside it. Throws DatabaseError or FileError when
// the lineage could not be read or the copy not made.
void validateCloudLineage(SQLiteDatabase &database, const LineageSurroundings &surroundings);

// Saves the lineage in the file as what this machine saw last, once a power cut
// cannot take the file back behind it. Throws DatabaseError or FileError, the
// memory as it was.
void remember(SQLiteDatabase &database, const LineageSurroundings &surroundings);

} // namespace CloudLineage
} // namespace quire
