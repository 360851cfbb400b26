#include "persistence/database/SQLiteStatement.h"

#include "persistence/database/DatabaseError.h"
#include "persistence/database/SQLiteDatabase.h"

#include <sqlite3.h>

#include <limits>

namespace quire {

void SQLiteStatement::Finalize::operator()(sqlite3_stmt *handle) const
{
    sqlite3_finalize(handle);
}

SQLiteStatement::SQLiteStatement(const SQLiteDatabase &database, const char *sql)
{
    sqlite3_stmt *statement = nullptr;
    const int code
        = database.handle() ? sqlite3_prepare_v2(database.handle(), sql, -1, &statement, nullptr) : SQLITE_MISUSE;
    m_handle.reset(statement);
    if (code != SQLITE_OK || !statement) {
        throw DatabaseError(DatabaseError::Kind::Prepare, database.message());
    }
}

QString SQLiteStatement::message() const
{
    return QString::fromUtf8(sqlite3_errmsg(sqlite3_db_handle(m_handle.get())));
}

void SQLiteStatement::requireBound(int code)
{
    if (code != SQLITE_OK) {
        throw DatabaseError(DatabaseError::Kind::Step, message());
    }
}

void SQLiteStatement::bind(int parameter, const SQLiteValue &value)
{
    sqlite3_stmt *const statement = m_handle.get();
    switch (value.kind()) {
    case SQLiteValue::Case::Integer:
        requireBound(sqlite3_bind_int64(statement, parameter, *value.intValue()));
        return;
    case SQLiteValue::Case::Real:
        requireBound(sqlite3_bind_double(statement, parameter, value.doubleValue(0)));
        return;
    case SQLiteValue::Case::Text:
        requireBound(
            sqlite3_bind_text(statement, parameter, value.string({}).toUtf8().constData(), -1, SQLITE_TRANSIENT));
        return;
    case SQLiteValue::Case::Blob: {
        const QByteArray bytes = value.data().value_or(QByteArray());
        if (bytes.size() > std::numeric_limits<int>::max()) {
            throw DatabaseError(DatabaseError::Kind::Step, QString::fromUtf8(sqlite3_errstr(SQLITE_TOOBIG)));
        }
        // constData() of no bytes is still a pointer: a null one would bind NULL.
        requireBound(sqlite3_bind_blob(statement, parameter, bytes.constData(), int(bytes.size()), SQLITE_TRANSIENT));
        return;
    }
    case SQLiteValue::Case::Null:
        requireBound(sqlite3_bind_null(statement, parameter));
        return;
    }
}

void SQLiteStatement::bind(const QList<SQLiteValue> &values)
{
    for (qsizetype i = 0; i < values.size(); ++i) {
        bind(int(i) + 1, values[i]);
    }
}

bool SQLiteStatement::step()
{
    const int code = sqlite3_step(m_handle.get());
    if (code != SQLITE_ROW && code != SQLITE_DONE) {
        throw DatabaseError(DatabaseError::Kind::Step, message());
    }
    return code == SQLITE_ROW;
}

int SQLiteStatement::run(const QList<SQLiteValue> &values)
{
    const Rewind rewind(*this);
    bind(values);
    if (step()) {
        throw DatabaseError(DatabaseError::Kind::Step, message());
    }
    return sqlite3_changes(sqlite3_db_handle(m_handle.get()));
}

std::optional<qint64> SQLiteStatement::firstInteger(const QList<SQLiteValue> &values)
{
    const Rewind rewind(*this);
    bind(values);
    return step() ? intValue(0) : std::nullopt;
}

void SQLiteStatement::reset()
{
    sqlite3_reset(m_handle.get()); // repeats the failure of the last step, which was reported
}

int SQLiteStatement::columnCount() const
{
    return sqlite3_column_count(m_handle.get());
}

QString SQLiteStatement::columnName(int column) const
{
    return QString::fromUtf8(sqlite3_column_name(m_handle.get(), column));
}

std::optional<QString> SQLiteStatement::text(int column) const
{
    // The pointer first: asking for it may convert the value, and with it the size.
    const unsigned char *utf8 = sqlite3_column_text(m_handle.get(), column);
    if (!utf8) {
        return std::nullopt; // no memory for it
    }
    return QString::fromUtf8(reinterpret_cast<const char *>(utf8), sqlite3_column_bytes(m_handle.get(), column));
}

SQLiteValue SQLiteStatement::value(int column) const
{
    sqlite3_stmt *const statement = m_handle.get();
    switch (sqlite3_column_type(statement, column)) {
    case SQLITE_INTEGER:
        return SQLiteValue(qint64(sqlite3_column_int64(statement, column)));
    case SQLITE_FLOAT:
        return SQLiteValue(sqlite3_column_double(statement, column));
    case SQLITE_TEXT:
        return SQLiteValue(text(column));
    case SQLITE_BLOB: {
        const void *bytes = sqlite3_column_blob(statement, column);
        const int size = sqlite3_column_bytes(statement, column);
        return bytes && size > 0 ? SQLiteValue(QByteArray(static_cast<const char *>(bytes), size))
                                 : SQLiteValue(QByteArray());
    }
    default:
        return SQLiteValue();
    }
}

// Below, what a well-kept library holds goes straight from SQLite into the
// record; everything else takes the way through SQLiteValue, where the rules are.

std::optional<qint64> SQLiteStatement::intValue(int column) const
{
    switch (sqlite3_column_type(m_handle.get(), column)) {
    case SQLITE_INTEGER:
        return sqlite3_column_int64(m_handle.get(), column);
    case SQLITE_NULL:
        return std::nullopt;
    default:
        return value(column).intValue();
    }
}

QString SQLiteStatement::string(int column, const QString &fallback) const
{
    switch (sqlite3_column_type(m_handle.get(), column)) {
    case SQLITE_TEXT:
        return text(column).value_or(fallback);
    case SQLITE_NULL:
        return fallback;
    default:
        return value(column).string(fallback);
    }
}

std::optional<QString> SQLiteStatement::optionalString(int column) const
{
    QString text = string(column, {});
    if (text.isEmpty()) {
        return std::nullopt;
    }
    return text;
}

double SQLiteStatement::doubleValue(int column, double fallback) const
{
    return optionalDouble(column).value_or(fallback);
}

std::optional<double> SQLiteStatement::optionalDouble(int column) const
{
    switch (sqlite3_column_type(m_handle.get(), column)) {
    case SQLITE_FLOAT:
        return sqlite3_column_double(m_handle.get(), column);
    case SQLITE_NULL:
        return std::nullopt;
    default:
        return value(column).optionalDouble();
    }
}

} // namespace quire
