// Results of the catalogue searches.

#pragma once

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

} // namespace quire
