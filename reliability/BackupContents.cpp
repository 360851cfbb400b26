#include "reliability/BackupContents.h"

#include "persistence/database/SQLiteDatabase.h"

namespace quire::BackupContents {

namespace {

std::optional<qint64> integer(const SQLiteDatabase &database, const char *sql)
{
    const auto value = database.scalar(sql);
    return value ? value->intValue() : std::nullopt;
}

} // namespace

Counts counts(const SQLiteDatabase &database)
{
    return {integer(database, "SELECT COUNT(*) FROM goodreads_books"),
        integer(database, "SELECT COUNT(*) FROM audible_books")};
}

std::optional<qint64> schemaVersion(const SQLiteDatabase &database)
{
    return integer(database, "PRAGMA user_version");
}

std::optional<Identity> identity(const SQLiteDatabase &database)
{
    const auto rows = database.query("SELECT library_uuid, generation FROM library_metadata WHERE singleton = 1");
    if (rows.isEmpty()) {
        return std::nullopt;
    }
    const SQLiteRow &row = rows.first();
    return Identity{
        row.string(QStringLiteral("library_uuid"), {}), row.intValue(QStringLiteral("generation")).value_or(0)};
}

} // namespace quire::BackupContents
