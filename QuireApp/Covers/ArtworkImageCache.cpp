#include "QuireApp/Covers/ArtworkImageCache.h"

#include "images/CoverDecoder.h"

#include <QThread>

namespace quire {

ArtworkImageCache &ArtworkImageCache::shared()
{
    static ArtworkImageCache cache;
    return cache;
}

QImage ArtworkImageCache::decode(const CoverBytes &data, const QString &key)
{
    if (const auto known = find(key)) {
        return *known;
    }
    QImage picture = CoverDecoder::thumbnail(data.bytes());
    insert(key, picture);
    const std::lock_guard lock(m_mutex);
    ++m_decodeCount;
    return picture;
}

std::optional<QImage> ArtworkImageCache::find(const QString &key)
{
    const std::lock_guard lock(m_mutex);
    const auto found = m_byKey.find(key);
    if (found == m_byKey.end()) {
        return std::nullopt;
    }
    m_entries.splice(m_entries.begin(), m_entries, found->second);
    return found->second->picture;
}

void ArtworkImageCache::insert(const QString &key, const QImage &picture)
{
    const std::lock_guard lock(m_mutex);
    if (const auto found = m_byKey.find(key); found != m_byKey.end()) {
        m_totalCost -= found->second->cost;
        m_entries.erase(found->second);
        m_byKey.erase(found);
    }
    const qsizetype cost = picture.bytesPerLine() * picture.height();
    m_entries.push_front({key, picture, cost});
    m_byKey.emplace(key, m_entries.begin());
    m_totalCost += cost;
    evict();
}

void ArtworkImageCache::evict()
{
    while (qsizetype(m_entries.size()) > countLimit || m_totalCost > costLimit) {
        const Entry &last = m_entries.back();
        m_totalCost -= last.cost;
        m_byKey.erase(last.key);
        m_entries.pop_back();
    }
}

void ArtworkImageCache::prewarm(const QList<ArtworkCacheEntry> &entries, std::stop_token stop)
{
    for (const ArtworkCacheEntry &entry : entries) {
        if (stop.stop_requested()) {
            return;
        }
        decode(entry.data, entry.key);
        QThread::yieldCurrentThread();
    }
}

qsizetype ArtworkImageCache::count() const
{
    const std::lock_guard lock(m_mutex);
    return qsizetype(m_entries.size());
}

qsizetype ArtworkImageCache::totalCost() const
{
    const std::lock_guard lock(m_mutex);
    return m_totalCost;
}

qsizetype ArtworkImageCache::decodeCount() const
{
    const std::lock_guard lock(m_mutex);
    return m_decodeCount;
}

} // namespace quire
