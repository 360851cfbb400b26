// The reader's own edits of books. Each writes the row and its provenance, and
// runs inside a transaction of its caller, so that the two are written together.
//
// Thread: the store's executor. Failures: DatabaseError; the caller rolls back.

#pragma once

#include "records/CoverBytes.h"
#include "records/Instant.h"
#include "records/ManualBookDraft.h"

#include <QString>

#include <optional>

namespace quire {

class SQLiteDatabase;

namespace BookEdits {

// An id that matches no row changes none and leaves its provenance all the same.
void update(SQLiteDatabase &database, qint64 id, double rating, const QString &shelf, const QString &notes);
void setHidden(SQLiteDatabase &database, qint64 id, bool hidden);

// now: the date added, and the date read of a book on the shelf "read".
// The new row's id.
qint64 addManual(
    SQLiteDatabase &database, const ManualBookDraft &draft, const std::optional<CoverBytes> &artwork, Instant now);

} // namespace BookEdits

} // namespace quire
