// One audiobook of the library. Date fields hold the text they arrived in, as
// those of Book.

#pragma once

#include "records/CoverBytes.h"
#include "records/Instant.h"
#include "records/Url.h"

#include <QString>

#include <optional>

namespace quire {

struct Audiobook
{
    qint64 id = 0; // database row
    QString asin; // the title's id at Audible
    QString title;
    std::optional<QString> author;
    std::optional<QString> narrator;
    std::optional<QString> series;
    std::optional<qint64> bookNumber; // place in the series
    std::optional<Url> coverURL;
    std::optional<CoverBytes> coverData;
    std::optional<Url> audibleURL;
    std::optional<QString> dateAdded;
    std::optional<QString> dateSynced;
    QString notes;
    std::optional<double> userRating; // absent: not rated, unlike that of Book
    std::optional<QString> finishedAt;
    std::optional<QString> summary;
    QString status; // "read", "reading", "to-read", "did-not-finish"
    std::optional<qint64> runtimeMinutes;
    std::optional<QString> releaseDate;
    std::optional<QString> purchaseDate;
    std::optional<double> averageRating;
    std::optional<double> performanceRating;
    std::optional<double> storyRating;
    std::optional<qint64> reviewCount;
    std::optional<double> listeningProgress; // percent, 0 to 100
    bool audibleOwned = false; // in the reader's Audible account
    std::optional<QString> lastAudibleSync;

    bool operator==(const Audiobook &) const = default;
};

size_t qHash(const Audiobook &audiobook, size_t seed = 0);

// finishedAt, else dateAdded, else the distant past. Parses text: not for
// comparators.
Instant recencyDate(const Audiobook &audiobook);

} // namespace quire
