// One book of the library with its tags.
//
// Date fields hold the text they arrived in; DateParser reads them when they
// are used, so that a form it does not know survives unharmed.

#pragma once

#include "records/CoverBytes.h"
#include "records/Instant.h"
#include "records/Url.h"

#include <QString>
#include <QStringList>

#include <optional>

namespace quire {

struct Book
{
    qint64 id = 0; // database row
    QString goodreadsID; // the book's id at its source
    QString title;
    QString author; // may be empty
    std::optional<QString> isbn;
    QString shelf; // "read", "currently-reading", "to-read", "did-not-finish"
    double userRating = 0; // 0: not rated; halves allowed
    std::optional<double> averageRating;
    std::optional<qint64> numberOfPages;
    std::optional<QString> summary;
    std::optional<Url> goodreadsURL;
    std::optional<qint64> publishedYear;
    std::optional<Url> coverURL; // preferred source of the cover
    std::optional<Url> goodreadsImageURL; // the image that the feed named
    std::optional<CoverBytes> coverData;
    std::optional<QString> readAt;
    std::optional<QString> dateAdded;
    std::optional<QString> dateSynced;
    std::optional<QString> dateModified;
    QString notes;
    QStringList tags; // in the stored order
    bool isHidden = false; // from the library, the statistics and the insights

    bool operator==(const Book &) const = default;
};

size_t qHash(const Book &book, size_t seed = 0);

// The instant by which a book counts as recent: readAt, else dateAdded, else
// the distant past. Parses text: not for comparators.
Instant recencyDate(const Book &book);

} // namespace quire
