// The import of the Audible application's library: adds what is missing, fills
// gaps, lets a status advance, and never touches what the reader entered. A
// title of the library is matched by ASIN, else by title and author.
//
// Thread: the store's executor.

#pragma once

#include "persistence/Provenance.h"
#include "records/AudibleLibraryItem.h"
#include "records/Instant.h"

#include <QList>

namespace quire {

class SQLiteDatabase;

namespace AudibleMerge {

// Merges a batch that QuireImportValidator let pass, inside a transaction of
// the caller.
// now: the date added of a new title that has no purchase date.
// Throws DatabaseError, or QuireReliabilityError when the batch does not arrive
// whole in the staging table; the caller then rolls back.
AudibleSyncResult merge(SQLiteDatabase &database, const QList<AudibleLibraryItem> &batch, Instant now);

// What Audible says of a title, as its provenance records it.
FieldValues fieldValues(const AudibleLibraryItem &item);

} // namespace AudibleMerge

} // namespace quire
