// Titles as a library holds them, with a little of everything.

#pragma once

#include "publishing/PublishingSnapshot.h"

namespace quire::testing {

// "A Title" by "An Author" on the shelf "read", rated 4.5, with nothing optional.
inline Book plainBook(const QString &title = QStringLiteral("A Title"))
{
    Book book;
    book.title = title;
    book.author = QStringLiteral("An Author");
    book.shelf = QStringLiteral("read");
    book.userRating = 4.5;
    return book;
}

inline Audiobook plainAudiobook(const QString &title = QStringLiteral("A Title"))
{
    Audiobook audiobook;
    audiobook.title = title;
    audiobook.status = QStringLiteral("read");
    audiobook.userRating = 3;
    return audiobook;
}

} // namespace quire::testing
