#include "persistence/CoverReader.h"

#include "persistence/CoverCache.h"
#include "persistence/database/SQLiteDatabase.h"

namespace quire {

CoverReader::CoverReader(const SQLiteDatabase &database, CoverCache &cache, ArtworkKind kind)
    : m_cache(cache)
    , m_kind(kind)
    , m_select(database,
          kind == ArtworkKind::Book ? "SELECT cover_data FROM goodreads_books WHERE id = ?"
                                    : "SELECT cover_data FROM audible_books WHERE id = ?")
{
}

std::optional<CoverBytes> CoverReader::cover(qint64 id, qint64 size)
{
    if (size <= 0) {
        return std::nullopt;
    }
    if (auto kept = m_cache.find(m_kind, id, size)) {
        return kept;
    }
    const SQLiteStatement::Rewind rewind(m_select);
    m_select.bind(1, id);
    if (!m_select.step()) {
        return std::nullopt;
    }
    auto bytes = m_select.value(0).data();
    if (!bytes) {
        return std::nullopt;
    }
    const CoverBytes cover(std::move(*bytes));
    m_cache.keep(m_kind, id, cover);
    return cover;
}

} // namespace quire
