#include "persistence/CoverCache.h"

#include "persistence/database/SQLiteDatabase.h"

namespace quire {

void CoverCache::follow(const SQLiteDatabase &database)
{
    const auto version = database.scalar("PRAGMA data_version").value_or(SQLiteValue()).intValue();
    if (version != m_dataVersion) {
        clear();
        m_dataVersion = version;
    }
}

std::optional<CoverBytes> CoverCache::find(ArtworkKind kind, qint64 id, qint64 size) const
{
    const auto &covers = kind == ArtworkKind::Book ? m_books : m_audiobooks;
    const auto found = covers.constFind(id);
    if (found == covers.constEnd() || found->size() != size) {
        return std::nullopt;
    }
    return *found;
}

void CoverCache::keep(ArtworkKind kind, qint64 id, const CoverBytes &cover)
{
    covers(kind).insert(id, cover);
}

void CoverCache::forget(ArtworkKind kind, qint64 id)
{
    covers(kind).remove(id);
}

void CoverCache::clear()
{
    m_books.clear();
    m_audiobooks.clear();
    m_dataVersion.reset();
}

QHash<qint64, CoverBytes> &CoverCache::covers(ArtworkKind kind)
{
    return kind == ArtworkKind::Book ? m_books : m_audiobooks;
}

} // namespace quire
