#pragma once

#include "records/OptionalHash.h"
#include "records/Url.h"

#include <QString>

#include <optional>

namespace quire {

// One title as the Audible application's own database has it, before it is
// merged into the library.
struct AudibleLibraryItem
{
    QString asin;
    QString title;
    std::optional<QString> author;
    std::optional<QString> narrator;
    std::optional<QString> series;
    std::optional<qint64> bookNumber;
    std::optional<Url> coverURL;
    std::optional<Url> audibleURL;
    std::optional<QString> summary;
    std::optional<qint64> runtimeMinutes;
    std::optional<QString> releaseDate;
    std::optional<QString> purchaseDate;
    std::optional<double> averageRating;
    std::optional<double> performanceRating;
    std::optional<double> storyRating;
    std::optional<qint64> reviewCount;
    double listeningProgress = 0; // percent, 0 to 100
    bool isStarted = false;
    bool isFinished = false;
    bool ownedIndefinitely = false;

    bool operator==(const AudibleLibraryItem &) const = default;
};

inline size_t qHash(const AudibleLibraryItem &item, size_t seed = 0)
{
    return qHashMulti(seed, item.asin, item.title, hashed(item.author), hashed(item.narrator), hashed(item.series),
        hashed(item.bookNumber), hashed(item.coverURL), hashed(item.audibleURL), hashed(item.summary),
        hashed(item.runtimeMinutes), hashed(item.releaseDate), hashed(item.purchaseDate), hashed(item.averageRating),
        hashed(item.performanceRating), hashed(item.storyRating), hashed(item.reviewCount), item.listeningProgress,
        item.isStarted, item.isFinished, item.ownedIndefinitely);
}

// What one merge of such items did.
struct AudibleSyncResult
{
    qint64 count = 0; // items handed in
    qint64 added = 0; // rows
    qint64 refreshed = 0; // rows

    bool operator==(const AudibleSyncResult &) const = default;
};

} // namespace quire
