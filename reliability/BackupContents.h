// What a library file says of itself: the few facts by which a backup is
// compared with the library it was made of, and later with its manifest.
//
// Thread: that of the connection. Throws DatabaseError where SQLite does.

#pragma once

#include <QString>

#include <optional>

namespace quire {

class SQLiteDatabase;

namespace BackupContents {

// Rows of each kind of title; nothing when the count is no number.
struct Counts
{
    std::optional<qint64> books;
    std::optional<qint64> audiobooks;

    bool operator==(const Counts &) const = default;
};
Counts counts(const SQLiteDatabase &database);

// Nothing when the file tells none.
std::optional<qint64> schemaVersion(const SQLiteDatabase &database);

struct Identity
{
    QString libraryUUID;
    qint64 generation = 0; // 0 when unreadable

    bool operator==(const Identity &) const = default;
};
// Nothing when the library has no identity.
std::optional<Identity> identity(const SQLiteDatabase &database);

// Whether both files hold the same tables with the same rows, to the last byte.
// Takes about as long as reading both, and little memory.
bool areSame(SQLiteDatabase &a, SQLiteDatabase &b);

} // namespace BackupContents
} // namespace quire
