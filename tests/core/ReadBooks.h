// Books as tests of the statistics make them.

#pragma once

#include "records/Book.h"
#include "records/DateParser.h"

#include <QList>

namespace quire::testing {

inline Book readBook(const QString &readAt = {})
{
    static qint64 lastID = 0;
    Book book;
    book.id = ++lastID;
    book.shelf = QStringLiteral("read");
    if (!readAt.isEmpty()) {
        book.readAt = readAt;
    }
    return book;
}

inline Book rated(double rating)
{
    Book book = readBook();
    book.userRating = rating;
    return book;
}

inline Book longBook(std::optional<qint64> pages, const QString &readAt = {})
{
    Book book = readBook(readAt);
    book.numberOfPages = pages;
    return book;
}

inline Book hidden(Book book)
{
    book.isHidden = true;
    return book;
}

// text: in one of the forms of a date.
inline Instant at(const QString &text)
{
    return DateParser::date(text).value();
}

} // namespace quire::testing
