#pragma once

#include "records/Url.h"

#include <QString>

#include <optional>

namespace quire {

// What the add-book screen hands to the store.
struct ManualBookDraft
{
    QString title;
    QString author;
    std::optional<QString> isbn;
    QString shelf; // a word as that of Book::shelf
    double userRating = 0;
    std::optional<qint64> numberOfPages;
    std::optional<QString> summary;
    std::optional<qint64> publishedYear;
    QString notes;
    std::optional<QString> sourceID; // the catalogue's work id, "openlibrary:…"
    std::optional<Url> sourceCoverURL;
};

} // namespace quire
