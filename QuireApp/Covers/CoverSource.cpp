#include "QuireApp/Covers/CoverSource.h"

namespace quire {

CoverSource::CoverSource(QString cacheKey, std::optional<CoverBytes> data)
    : m_cacheKey(std::move(cacheKey))
    , m_data(std::move(data))
{
}

CoverSource CoverSource::ofBook(qint64 id, const std::optional<CoverBytes> &data)
{
    return {QStringLiteral("book-%1").arg(id), data};
}

CoverSource CoverSource::ofAudiobook(qint64 id, const std::optional<CoverBytes> &data)
{
    return {QStringLiteral("audio-%1").arg(id), data};
}

QString CoverSource::resolvedCacheKey() const
{
    return QStringLiteral("%1-%2").arg(m_cacheKey).arg(m_data ? m_data->size() : 0);
}

} // namespace quire
