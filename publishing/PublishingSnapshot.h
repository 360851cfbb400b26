// What is published of a library: one moment of it, as plain values, so that a
// publication that takes a minute tells of the library as it was when the reader
// asked for it.

#pragma once

#include "records/Audiobook.h"
#include "records/Book.h"
#include "records/Instant.h"
#include "records/Statistics.h"

#include <QList>

namespace quire {

struct PublishingSnapshot
{
    GoodreadsStatistics statistics; // of the books that are not hidden
    QList<Book> currentlyReading; // not hidden; the most recent first
    QList<Book> booksRead; // likewise
    QList<Audiobook> ratedAudiobooks; // rated above 0; the most recent first
    Instant generatedAt{};

    bool operator==(const PublishingSnapshot &) const = default;
};

// The snapshot of a library at the moment `now`. statistics: of the books of
// `books` that are not hidden. Titles of one recency keep their order; what is on
// any other shelf, or an audiobook without a rating, is left out.
//
// Thread: pure, any thread.
PublishingSnapshot makePublishingSnapshot(
    const QList<Book> &books, const QList<Audiobook> &audiobooks, GoodreadsStatistics statistics, Instant now);

} // namespace quire
