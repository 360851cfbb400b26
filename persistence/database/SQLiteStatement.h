// SQLiteStatement is one compiled statement, for the paths where rows are many:
// prepared once, bound and run again and again, columns read by index without a
// map in between. Everything else goes through SQLiteDatabase.
//
// Thread: that of its connection. Must not outlive an operation: a statement
// that is still there when the connection closes keeps the file open.

#pragma once

#include "persistence/database/SQLiteValue.h"

#include <QList>
#include <QString>

#include <memory>
#include <optional>

struct sqlite3_stmt;

namespace quire {

class SQLiteDatabase;

class SQLiteStatement
{
public:
    // sql: exactly one statement. Throws DatabaseError Prepare.
    SQLiteStatement(const SQLiteDatabase &database, const char *sql);

    // Rewinds on scope exit, so that a lookup left in the middle holds no lock.
    class Rewind
    {
    public:
        explicit Rewind(SQLiteStatement &statement)
            : m_statement(statement)
        {
        }
        ~Rewind() { m_statement.reset(); }
        Rewind(const Rewind &) = delete;
        Rewind &operator=(const Rewind &) = delete;

    private:
        SQLiteStatement &m_statement;
    };

    // Binds one parameter, from 1. Throws DatabaseError Step.
    void bind(int parameter, const SQLiteValue &value);
    // Binds parameters 1, 2, 3 and so on in order.
    void bind(const QList<SQLiteValue> &values);

    // To the next row; false at the end. Throws DatabaseError Step.
    bool step();

    // Binds, runs a statement that yields no rows, and rewinds, also when it
    // fails. The number of rows changed. Throws DatabaseError Step.
    int run(const QList<SQLiteValue> &values = {});

    // Binds, gives the first row's first column as an integer, and rewinds.
    // Nothing without a row or an integer. Throws DatabaseError Step.
    std::optional<qint64> firstInteger(const QList<SQLiteValue> &values = {});

    void reset();

    // Columns of the current row, by index from 0 -------------------------

    int columnCount() const;
    QString columnName(int column) const;

    // The conversions of SQLiteValue, without the value in between.
    SQLiteValue value(int column) const;
    std::optional<qint64> intValue(int column) const;
    QString string(int column, const QString &fallback) const;
    std::optional<QString> optionalString(int column) const;
    // As string(), for a column whose rows repeat themselves: shares `last`, the
    // text of the row before, when this one's is the same, and replaces it.
    QString repeatingString(int column, const QString &fallback, QString &last) const;
    double doubleValue(int column, double fallback) const;
    std::optional<double> optionalDouble(int column) const;

    // Whether the current row is that of `other`, to the type of each value and to
    // its last byte, text that is no valid UTF-8 included.
    bool hasSameRow(const SQLiteStatement &other) const;

private:
    struct Finalize
    {
        void operator()(sqlite3_stmt *handle) const;
    };

    void requireBound(int code);
    QString message() const;

    std::unique_ptr<sqlite3_stmt, Finalize> m_handle;
};

} // namespace quire
