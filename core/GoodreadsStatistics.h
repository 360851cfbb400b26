#pragma once

#include "core/ReadingHistory.h"
#include "records/Statistics.h"

namespace quire {

// The figures of the reader's books, of all years and of this one. Means are not
// rounded. The author read most often is the one that sorts first among several;
// a sum of pages stays at the largest number there is when it would exceed it.
//
// Thread: pure, any thread.
GoodreadsStatistics makeGoodreadsStatistics(const ReadingHistory &history);

// The same of a history made for it: all books of the library, hidden ones
// counting nowhere, and the present moment.
GoodreadsStatistics makeGoodreadsStatistics(const QList<Book> &books, Instant now);

} // namespace quire
