// Fetches covers, and draws one for a title that has none.
//
// Thread: the interface thread; pictures are decoded and drawn elsewhere.
// network and clock outlive the tasks, and so does the store.

#pragma once

#include "records/CoverBytes.h"

#include <QCoroTask>
#include <QFuture>
#include <QString>
#include <QUrl>

#include <chrono>
#include <optional>
#include <stop_token>

namespace quire {

class Clock;
class LibraryStore;
class NetworkClient;

// What a pass over the titles without a cover did. The last two add up to the
// first.
struct ArtworkCacheResult
{
    qint64 total = 0; // titles that had none
    qint64 downloaded = 0; // stored from a source
    qint64 placeholders = 0; // stored as drawn

    bool operator==(const ArtworkCacheResult &) const = default;
};

namespace ArtworkService {

inline constexpr std::chrono::seconds downloadTimeout{20};
inline constexpr qint64 longestDownload = 20'000'000; // bytes, that many included

// The picture at `url`, exactly as it was sent.
// Failures: those of NetworkClient::data; ServiceError http for a status
// outside 200 to 299, without the server's own words; ServiceError message for
// what is empty, too long or no picture.
QCoro::Task<CoverBytes> artworkData(NetworkClient &network, QUrl url, std::stop_token stop);

// Gives every title without a cover one: the picture at its address, else a
// drawn one. Two are fetched at a time, each in up to three attempts.
// Failures: those of the store, which end the pass; Cancelled as soon as `stop`
// is requested. What was stored before stays stored.
QCoro::Task<ArtworkCacheResult> cacheMissingArtwork(
    LibraryStore &store, NetworkClient &network, Clock &clock, std::stop_token stop);

// A drawn cover with the title on it, as PNG. Nothing when it cannot be
// encoded; never fails.
QFuture<std::optional<CoverBytes>> generatedPlaceholder(const QString &title);

} // namespace ArtworkService

} // namespace quire
