// Reading the tags of books. Plain functions on an open library.
//
// Thread: the store's executor.

#pragma once

#include "records/TagCount.h"

#include <QHash>
#include <QList>
#include <QStringList>

namespace quire {

class SQLiteDatabase;

namespace TagRows {

// The tags of each book by its row id, in the order of the tags; those of an
// unreadable id under 0. Throws DatabaseError.
QHash<qint64, QStringList> byBook(const SQLiteDatabase &database);

// Every tag with its number of books, the most used first, then by tag.
// Throws DatabaseError.
QList<TagCount> counts(const SQLiteDatabase &database);

} // namespace TagRows
} // namespace quire
