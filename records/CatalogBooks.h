// Results of the catalogue searches.

#pragma once

#include "records/OptionalHash.h"
#include "records/Url.h"

#include <QString>

#include <optional>

namespace quire {

// One result of the book catalogue.
struct BookCatalogBook
{
    QString workID; // identity
    QString title;
    QString author;
    std::optional<QString> isbn;
    std::optional<qint64> numberOfPages;
    std::optional<qint64> publishedYear;
    std::optional<Url> coverURL;

    bool operator==(const BookCatalogBook &) const = default;
};

inline size_t qHash(const BookCatalogBook &book, size_t seed = 0)
{
    return qHashMulti(seed, book.workID, book.title, book.author, hashed(book.isbn), hashed(book.numberOfPages),
        hashed(book.publishedYear), hashed(book.coverURL));
}

// One result of the audiobook catalogue.
struct AudibleCatalogBook
{
    QString asin; // identity; empty for a title typed in by hand
    QString title;
    std::optional<QString> author;
    std::optional<QString> narrator;
    std::optional<QString> series;
    std::optional<qint64> bookNumber;
    std::optional<Url> coverURL;
    std::optional<Url> audibleURL;
    std::optional<QString> year; // kept as text
    std::optional<QString> summary;

    bool operator==(const AudibleCatalogBook &) const = default;
};

inline size_t qHash(const AudibleCatalogBook &book, size_t seed = 0)
{
    return qHashMulti(seed, book.asin, book.title, hashed(book.author), hashed(book.narrator), hashed(book.series),
        hashed(book.bookNumber), hashed(book.coverURL), hashed(book.audibleURL), hashed(book.year),
        hashed(book.summary));
}

} // namespace quire
