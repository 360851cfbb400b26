// Reading the table of audiobooks. Plain functions on an open library.
//
// Thread: the store's executor.

#pragma once

#include "records/Audiobook.h"

#include <QList>

namespace quire {

class CoverCache;
class SQLiteDatabase;

namespace AudiobookRows {

// Every audiobook: by series, those without one first, then by their place in
// it and by title. Throws DatabaseError.
QList<Audiobook> all(SQLiteDatabase &database, CoverCache &covers);

} // namespace AudiobookRows
} // namespace quire
