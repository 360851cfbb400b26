#include "persistence/TagRows.h"

#include "persistence/database/SQLiteStatement.h"

namespace quire::TagRows {

QHash<qint64, QStringList> byBook(const SQLiteDatabase &database)
{
    QHash<qint64, QStringList> tags;
    SQLiteStatement row(database, "SELECT book_id, tag FROM book_tags ORDER BY tag");
    QString lastTag;
    while (row.step()) {
        tags[row.intValue(0).value_or(0)].append(row.repeatingString(1, {}, lastTag));
    }
    return tags;
}

QList<TagCount> counts(const SQLiteDatabase &database)
{
    QList<TagCount> counts;
    SQLiteStatement row(database, R"sql(
        SELECT tag, COUNT(*) AS count
          FROM book_tags
         GROUP BY tag
         ORDER BY count DESC, tag
    )sql");
    while (row.step()) {
        counts.append({.tag = row.string(0, {}), .count = row.intValue(1).value_or(0)});
    }
    return counts;
}

} // namespace quire::TagRows
