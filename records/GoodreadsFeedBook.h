#pragma once

#include "records/Url.h"

#include <QString>

#include <optional>

namespace quire {

// One item of a Goodreads feed. The two dates are exactly the feed's text.
struct GoodreadsFeedBook
{
    QString goodreadsID;
    QString title;
    QString author;
    std::optional<QString> isbn;
    QString shelf;
    double userRating = 0;
    std::optional<double> averageRating;
    std::optional<qint64> numberOfPages;
    std::optional<QString> summary;
    std::optional<Url> goodreadsURL; // always present on a parsed item
    std::optional<qint64> publishedYear;
    std::optional<Url> coverURL;
    std::optional<Url> goodreadsImageURL;
    std::optional<QString> readAt;
    std::optional<QString> dateAdded;

    bool operator==(const GoodreadsFeedBook &) const = default;
};

} // namespace quire

// A list of many thousands grows in place.
Q_DECLARE_TYPEINFO(quire::GoodreadsFeedBook, Q_RELOCATABLE_TYPE);
