// CoverReader gives the covers of one table's rows during one reload: from the
// cache, and from the file only what the cache does not hold.
//
// Thread: the store's executor, inside one read transaction.

#pragma once

#include "persistence/database/SQLiteStatement.h"
#include "records/CoverBytes.h"
#include "records/Enumerations.h"

#include <optional>

namespace quire {

class CoverCache;
class SQLiteDatabase;

class CoverReader
{
public:
    CoverReader(const SQLiteDatabase &database, CoverCache &cache, ArtworkKind kind);

    // size: the bytes of the row's cover_data when that is a blob, else 0.
    // Throws DatabaseError.
    std::optional<CoverBytes> cover(qint64 id, qint64 size);

private:
    CoverCache &m_cache;
    ArtworkKind m_kind;
    SQLiteStatement m_select;
};

} // namespace quire
