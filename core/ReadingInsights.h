#pragma once

#include "core/ReadingHistory.h"
#include "records/Statistics.h"

#include <QLocale>
#include <QStringList>

namespace quire {

// What the reader's books tell: twelve months of this year, five stars, and the
// favourites of all years. In January, before the first book of the year, the
// length of a book is that of all years.
//
// Thread: pure, any thread.
ReadingInsightsSnapshot makeReadingInsights(const ReadingHistory &history);

// The same of a history made for it: all books of the library, hidden ones
// counting nowhere, and the present moment.
ReadingInsightsSnapshot makeReadingInsights(const QList<Book> &books, Instant now);

// Twelve short month names, January first; the number of the month where the
// language has no name.
QStringList monthLabels(const QLocale &locale);

} // namespace quire
