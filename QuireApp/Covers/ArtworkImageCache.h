// ArtworkImageCache keeps decoded covers, so that a cover is decoded once while
// it is in use and never on the interface thread. It holds at most 500 pictures
// and 180 MiB; the picture that was not asked for the longest goes first.
//
// A cover that does not decode is remembered as such under its key and not
// tried again.
//
// Thread: any, also several at once.

#pragma once

#include "records/CoverBytes.h"

#include <QImage>
#include <QList>
#include <QString>

#include <functional>
#include <list>
#include <mutex>
#include <optional>
#include <stop_token>
#include <unordered_map>

namespace quire {

// One cover to decode ahead of time.
struct ArtworkCacheEntry
{
    QString key;
    CoverBytes data;
};

class ArtworkImageCache
{
public:
    static constexpr qsizetype countLimit = 500;
    static constexpr qsizetype costLimit = 188743680; // bytes, 180 MiB

    // The one instance of the program.
    static ArtworkImageCache &shared();

    ArtworkImageCache() = default;
    ArtworkImageCache(const ArtworkImageCache &) = delete;
    ArtworkImageCache &operator=(const ArtworkImageCache &) = delete;

    // The decoded cover under `key`, decoding it first if need be; null when
    // the bytes are no picture. Slow on a miss.
    QImage decode(const CoverBytes &data, const QString &key);

    // What is kept under `key`: nothing when it was never made, a null picture
    // when it could not be. Quick.
    std::optional<QImage> find(const QString &key);

    // Keeps a picture made from a cover under a key of its own.
    void insert(const QString &key, const QImage &picture);

    // Decodes those that are absent, in order, until `stop` is requested. Slow.
    void prewarm(const QList<ArtworkCacheEntry> &entries, std::stop_token stop);

    qsizetype count() const;
    qsizetype totalCost() const; // bytes
    // How often bytes were handed to the decoder.
    qsizetype decodeCount() const;

private:
    struct Entry
    {
        QString key;
        QImage picture;
        qsizetype cost;
    };

    void evict();

    mutable std::mutex m_mutex;
    std::list<Entry> m_entries; // the one used last is first
    std::unordered_map<QString, std::list<Entry>::iterator> m_byKey;
    qsizetype m_totalCost = 0;
    qsizetype m_decodeCount = 0;
};

} // namespace quire
