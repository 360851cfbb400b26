#include "faults/LibraryContent.h"

#include "persistence/database/DatabaseError.h"
#include "persistence/database/SQLiteDatabase.h"
#include "persistence/QuireCredentialStore.h"

#include <QFile>
#include <QSet>

namespace quire::testing {

namespace {

bool isVolatile(const QString &column)
{
    static const QSet<QString> columns{QStringLiteral("lineage_token"), QStringLiteral("parent_token"),
        QStringLiteral("library_uuid"), QStringLiteral("updated_at"), QStringLiteral("date_synced"),
        QStringLiteral("date_modified"), QStringLiteral("first_seen_at"), QStringLiteral("last_seen_at"),
        QStringLiteral("applied_at"), QStringLiteral("recorded_at"), QStringLiteral("created_at"),
        QStringLiteral("verified_at"), QStringLiteral("last_audible_sync"), QStringLiteral("database_sha256")};
    return columns.contains(column);
}

QString shown(const SQLiteValue &value)
{
    switch (value.kind()) {
    case SQLiteValue::Case::Blob: {
        const QByteArray bytes = value.data().value_or(QByteArray());
        return QStringLiteral("<%1 bytes, %2>").arg(bytes.size()).arg(qHash(bytes, 1));
    }
    case SQLiteValue::Case::Null:
        return QStringLiteral("NULL");
    default: {
        const QString text = value.string({});
        return text.startsWith(u"manual:") ? QStringLiteral("manual:") : text;
    }
    }
}

QStringList rowsOf(const SQLiteDatabase &database, const QString &table)
{
    const QString info = QStringLiteral("PRAGMA table_info(\"%1\")").arg(table);
    QStringList columns;
    for (const SQLiteRow &column : database.query(info.toUtf8().constData())) {
        const QString name = column.string(QStringLiteral("name"), {});
        if (!isVolatile(name)) {
            columns.append(name);
        }
    }
    QStringList rows;
    const QString select = QStringLiteral("SELECT * FROM \"%1\" ORDER BY rowid").arg(table);
    for (const SQLiteRow &row : database.query(select.toUtf8().constData())) {
        QStringList cells;
        for (const QString &column : columns) {
            cells.append(column + QLatin1Char('=') + shown(row.value(column)));
        }
        rows.append(cells.join(QStringLiteral(", ")));
    }
    return rows;
}

} // namespace

LibraryContent LibraryContent::read(const QString &folder, const QString &localStateFolder)
{
    LibraryContent content;
    content.secrets = QuireCredentialStore(localStateFolder + QStringLiteral("/Credentials.plist")).load();
    const QString path = folder + QStringLiteral("/quire.db");
    if (!QFile::exists(path)) {
        return content;
    }
    SQLiteDatabase database(path);
    if (!database.integrityCheck()) {
        throw DatabaseError(DatabaseError::Kind::Open, QStringLiteral("the integrity check found something"));
    }
    content.version = database.scalar("PRAGMA user_version")->intValue().value_or(-1);
    for (const SQLiteRow &table : database.query("SELECT name FROM sqlite_master WHERE type = 'table'")) {
        const QString name = table.string(QStringLiteral("name"), {});
        if (const QStringList rows = rowsOf(database, name); !rows.isEmpty()) {
            content.rows.insert(name, rows);
        }
    }
    return content;
}

QString LibraryContent::difference(const LibraryContent &other) const
{
    if (version != other.version) {
        return QStringLiteral("schema version %1 and not %2").arg(version).arg(other.version);
    }
    if (secrets != other.secrets) {
        return QStringLiteral("other secrets");
    }
    for (const QString &table :
        QSet<QString>(rows.keyBegin(), rows.keyEnd()) + QSet<QString>(other.rows.keyBegin(), other.rows.keyEnd())) {
        const QStringList mine = rows.value(table);
        const QStringList theirs = other.rows.value(table);
        for (qsizetype i = 0; i < std::max(mine.size(), theirs.size()); ++i) {
            if (mine.value(i) != theirs.value(i)) {
                return QStringLiteral("%1, row %2: “%3” and not “%4”")
                    .arg(table, QString::number(i), mine.value(i), theirs.value(i));
            }
        }
    }
    return QStringLiteral("nothing");
}

} // namespace quire::testing
