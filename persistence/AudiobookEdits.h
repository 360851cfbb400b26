// The reader's own edits of audiobooks. Each writes the row and its provenance, and
// runs inside a transaction of its caller, so that the two are written together.
//
// Thread: the store's executor. Failures: DatabaseError; the caller rolls back.

#pragma once

#include "records/CatalogBooks.h"
#include "records/CoverBytes.h"
#include "records/Instant.h"

#include <QString>

#include <optional>

namespace quire {

class SQLiteDatabase;

namespace AudiobookEdits {

// Touches no date. An id that matches no row changes none and leaves its
// provenance all the same.
void update(SQLiteDatabase &database, qint64 id, double rating, const QString &status, const QString &notes);

// Adds a title of the catalogue, or one typed in by hand when its ASIN is
// empty. A title that is already in the library only has its gaps filled.
// preferredCover: in place of the catalogue's cover.
// now: the date added, and the date finished of a title with the status "read".
// The row's id, new or old.
qint64 add(SQLiteDatabase &database, const AudibleCatalogBook &book, const QString &status,
    const std::optional<Url> &preferredCover, const std::optional<CoverBytes> &artwork, Instant now);

} // namespace AudiobookEdits

} // namespace quire
