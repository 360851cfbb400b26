// From the elements of one feed item to a book.
//
// Thread: pure functions, any thread.

#pragma once

#include "records/GoodreadsFeedBook.h"

#include <QString>
#include <QStringView>
#include <QUrl>

#include <array>
#include <optional>

namespace quire {

// The elements of an item that a book is made of; all others are ignored.
enum class GoodreadsElement {
    BookID,
    Title,
    LargeImageURL,
    ImageURL,
    Description,
    ISBN,
    Shelves,
    Author,
    Rating,
    AverageRating,
    Pages,
    Published,
    ReadAt,
    DateAdded,
};

inline constexpr std::size_t goodreadsElementCount = 14;

// The trimmed text of each element, empty for one that is missing.
using GoodreadsItem = std::array<QString, goodreadsElementCount>;

// The element of that name, with its namespace prefix if it has one.
std::optional<GoodreadsElement> goodreadsElement(QStringView name);

// The book of an item, or nothing when it has no id. fallbackShelf: for an item
// that names none of the known shelves; without one, "read". website: scheme
// and authority of the book's page.
std::optional<GoodreadsFeedBook> makeBook(
    const GoodreadsItem &item, const std::optional<QString> &fallbackShelf, const QUrl &website);

// `title` without a note like " (The Expanse, #1)" at its end. A parenthesis
// without a number sign and digits stays.
QString replacingSeriesSuffix(const QString &title);

} // namespace quire
