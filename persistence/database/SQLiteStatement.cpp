#include "persistence/database/SQLiteStatement.h"

#include "persistence/database/DatabaseError.h"
#include "persistence/database/SQLiteDatabase.h"

#include <sqlite3.h>

#include <cstring>
#include <limits>

namespace quire {

namespace {

bool isSame(sqlite3_stmt *a, sqlite3_stmt *b, int column)
{
    const int type = sqlite3_column_type(a, column);
    if (type != sqlite3_column_type(b, column)) {
        return false;
    }
    switch (type) {
    case SQLITE_INTEGER:
        return sqlite3_column_int64(a, column) == sqlite3_column_int64(b, column);
    case SQLITE_FLOAT: // never a NaN, which SQLite stores as null
        return sqlite3_column_double(a, column) == sqlite3_column_double(b, column);
    case SQLITE_NULL:
        return true;
    default:
        break;
    }
    // The bytes before their number: it is that of what was asked for last.
    const auto *bytesOfA = static_cast<const char *>(sqlite3_column_blob(a, column));
    const auto *bytesOfB = static_cast<const char *>(sqlite3_column_blob(b, column));
    const int count = sqlite3_column_bytes(a, column);
    return count == sqlite3_column_bytes(b, column)
        && (count == 0 || std::memcmp(bytesOfA, bytesOfB, std::size_t(count)) == 0);
}

// Of a value that holds text; null when there is no memory for it.
QUtf8StringView utf8Text(sqlite3_value *cell)
{
    // The pointer first: asking for it may convert the text, and with it the size.
    const unsigned char *utf8 = sqlite3_value_text(cell);
    return {reinterpret_cast<const char *>(utf8), utf8 ? sqlite3_value_bytes(cell) : 0};
}

std::optional<QString> text(sqlite3_value *cell)
{
    const QUtf8StringView utf8 = utf8Text(cell);
    return utf8.isNull() ? std::nullopt : std::optional(utf8.toString());
}

} // namespace

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
        requireBound(sqlite3_bind_int64(statement, parameter, value.intValue().value_or(0)));
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

SQLiteValue SQLiteStatement::value(int column) const
{
    sqlite3_stmt *const statement = m_handle.get();
    switch (sqlite3_column_type(statement, column)) {
    case SQLITE_INTEGER:
        return SQLiteValue(qint64(sqlite3_column_int64(statement, column)));
    case SQLITE_FLOAT:
        return SQLiteValue(sqlite3_column_double(statement, column));
    case SQLITE_TEXT:
        return SQLiteValue(text(sqlite3_column_value(statement, column)));
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
// sqlite3_column_value() enters SQLite's mutex once a value and not once a
// question; its result may be looked at since one thread uses the connection.

std::optional<qint64> SQLiteStatement::intValue(int column) const
{
    sqlite3_value *const cell = sqlite3_column_value(m_handle.get(), column);
    switch (sqlite3_value_type(cell)) {
    case SQLITE_INTEGER:
        return sqlite3_value_int64(cell);
    case SQLITE_NULL:
        return std::nullopt;
    default:
        return value(column).intValue();
    }
}

QString SQLiteStatement::string(int column, const QString &fallback) const
{
    sqlite3_value *const cell = sqlite3_column_value(m_handle.get(), column);
    switch (sqlite3_value_type(cell)) {
    case SQLITE_TEXT:
        return text(cell).value_or(fallback);
    case SQLITE_NULL:
        return fallback;
    default:
        return value(column).string(fallback);
    }
}

std::optional<QString> SQLiteStatement::optionalString(int column) const
{
    std::optional<QString> text(string(column, {}));
    if (text->isEmpty()) {
        text.reset();
    }
    return text;
}

QString SQLiteStatement::repeatingString(int column, const QString &fallback, QString &last) const
{
    sqlite3_value *const cell = sqlite3_column_value(m_handle.get(), column);
    if (sqlite3_value_type(cell) != SQLITE_TEXT || !QAnyStringView::equal(utf8Text(cell), last)) {
        last = string(column, fallback);
    }
    return last;
}

double SQLiteStatement::doubleValue(int column, double fallback) const
{
    return optionalDouble(column).value_or(fallback);
}

std::optional<double> SQLiteStatement::optionalDouble(int column) const
{
    sqlite3_value *const cell = sqlite3_column_value(m_handle.get(), column);
    switch (sqlite3_value_type(cell)) {
    case SQLITE_FLOAT:
        return sqlite3_value_double(cell);
    case SQLITE_NULL:
        return std::nullopt;
    default:
        return value(column).optionalDouble();
    }
}

bool SQLiteStatement::hasSameRow(const SQLiteStatement &other) const
{
    if (columnCount() != other.columnCount()) {
        return false;
    }
    for (int column = 0; column < columnCount(); ++column) {
        if (!isSame(m_handle.get(), other.m_handle.get(), column)) {
            return false;
        }
    }
    return true;
}

} // namespace quire
