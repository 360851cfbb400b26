#include "reliability/BackupContents.h"

#include "persistence/database/SQLiteDatabase.h"
#include "persistence/database/SQLiteStatement.h"
#include "persistence/database/Transaction.h"

#include <QStringList>

#include <algorithm>

namespace quire::BackupContents {

namespace {

std::optional<qint64> integer(const SQLiteDatabase &database, const char *sql)
{
    const auto value = database.scalar(sql);
    return value ? value->intValue() : std::nullopt;
}

bool giveSameRows(const SQLiteDatabase &a, const SQLiteDatabase &b, const QByteArray &sql)
{
    SQLiteStatement inA(a, sql.constData());
    SQLiteStatement inB(b, sql.constData());
    for (;;) {
        const bool isRowInA = inA.step();
        if (isRowInA != inB.step()) {
            return false;
        }
        if (!isRowInA) {
            return true;
        }
        if (!inA.hasSameRow(inB)) {
            return false;
        }
    }
}

// Those of SQLite itself as well, such as the one that numbers rows.
QStringList tables(const SQLiteDatabase &database)
{
    QStringList names;
    for (const SQLiteRow &row : database.query("SELECT name FROM sqlite_master WHERE type = 'table'")) {
        names.append(row.string(QStringLiteral("name"), {}));
    }
    return names;
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

bool areSame(SQLiteDatabase &a, SQLiteDatabase &b)
{
    const ReadSnapshot snapshotOfA(a);
    const ReadSnapshot snapshotOfB(b);
    if (!giveSameRows(a, b, "SELECT type, name, tbl_name, sql FROM sqlite_master")) {
        return false;
    }
    const QStringList names = tables(a);
    return std::all_of(names.begin(), names.end(), [&](QString name) {
        name.replace(u'"', QStringLiteral("\"\""));
        return giveSameRows(a, b, "SELECT * FROM \"" + name.toUtf8() + '"');
    });
}

} // namespace quire::BackupContents
