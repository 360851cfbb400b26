// Reading the table of books. Plain functions on an open library.
//
// Thread: the store's executor.

#pragma once

#include "records/Book.h"

#include <QList>

namespace quire {

class CoverCache;
class SQLiteDatabase;

namespace BookRows {

// Every book, hidden ones too: by shelf in the reader's order, the latest first
// within one, undated last; each with its tags in their order.
// Throws DatabaseError.
QList<Book> all(SQLiteDatabase &database, CoverCache &covers);

} // namespace BookRows
} // namespace quire
