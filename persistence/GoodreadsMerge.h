// The import of a Goodreads feed: adds what is missing, fills gaps, lets
// shelves advance, and never touches what the reader entered.
//
// Thread: the store's executor.

#pragma once

#include "persistence/Provenance.h"
#include "records/GoodreadsFeedBook.h"

#include <QList>

namespace quire {

class SQLiteDatabase;

namespace GoodreadsMerge {

// Merges a batch that QuireImportValidator let pass, inside a transaction of
// the caller.
// Throws DatabaseError, or QuireReliabilityError when the batch does not arrive
// whole in the staging table; the caller then rolls back.
void upsert(SQLiteDatabase &database, const QList<GoodreadsFeedBook> &batch);

// What the feed says of a book, as its provenance records it. The image URL
// and the date added leave no trace.
FieldValues fieldValues(const GoodreadsFeedBook &book);

} // namespace GoodreadsMerge

} // namespace quire
