// The cover bytes that the store has handed out, by row, so that a title keeps
// the same shared value from one reload to the next and no cover is read twice.
//
// What makes that sound: only the store changes covers through its own
// connection, and whoever writes one calls forget(); a change through any other
// connection is told by SQLite's data_version and drops everything.
//
// Thread: the store's executor.

#pragma once

#include "records/CoverBytes.h"
#include "records/Enumerations.h"

#include <QHash>

#include <optional>

namespace quire {

class SQLiteDatabase;

class CoverCache
{
public:
    // Drops everything when another connection has changed the file since the
    // last call. Call inside the read transaction whose covers are looked up.
    // Throws DatabaseError.
    void follow(const SQLiteDatabase &database);

    // The cover kept for a row, nothing when there is none of that size.
    // size: in bytes, as the row tells it now.
    std::optional<CoverBytes> find(ArtworkKind kind, qint64 id, qint64 size) const;

    void keep(ArtworkKind kind, qint64 id, const CoverBytes &cover);

    // After every write to the cover of a row, whatever becomes of the write.
    void forget(ArtworkKind kind, qint64 id);

    void clear();

private:
    QHash<qint64, CoverBytes> &covers(ArtworkKind kind);

    QHash<qint64, CoverBytes> m_books;
    QHash<qint64, CoverBytes> m_audiobooks;
    std::optional<qint64> m_dataVersion;
};

} // namespace quire
