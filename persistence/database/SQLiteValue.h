// SQLiteValue is what crosses the border to SQLite: one of its five storage
// classes with the payload. SQLite types values and not columns, and the
// library may have been written by anybody, so every read goes through one of
// the conversions below, which are total but for one case (see intValue).
//
// Thread: a plain value.

#pragma once

#include <QByteArray>
#include <QHash>
#include <QList>
#include <QString>

#include <concepts>
#include <optional>
#include <variant>

namespace quire {

class SQLiteValue
{
public:
    // The order is that of SQLite's type codes.
    enum class Case { Integer, Real, Text, Blob, Null };

    SQLiteValue() = default; // null
    template<std::integral Integer>
        requires(!std::same_as<Integer, bool>)
    SQLiteValue(Integer value)
        : m_payload(qint64(value))
    {
    }
    SQLiteValue(double value)
        : m_payload(value)
    {
    }
    SQLiteValue(QString value)
        : m_payload(std::move(value))
    {
    }
    SQLiteValue(QByteArray value)
        : m_payload(std::move(value))
    {
    }
    // Absent binds as null.
    template<typename T>
    SQLiteValue(const std::optional<T> &value)
        : SQLiteValue(value ? SQLiteValue(*value) : SQLiteValue())
    {
    }

    Case kind() const { return Case(m_payload.index()); }
    bool isNull() const { return kind() == Case::Null; }

    // The one conversion to an integer. A real is cut toward zero; one that is
    // not finite or does not fit 64 bits is a programming fault and ends the
    // process. A text counts when it is a whole number in base 10 with an
    // optional sign and nothing else.
    std::optional<qint64> intValue() const;

    // Integers and reals as decimal text; fallback for a blob and null.
    QString string(const QString &fallback) const;
    // As string(), but nothing for a blob, null and a text that comes out empty.
    std::optional<QString> optionalString() const;
    // A number, or a text that spells a finite one; else fallback.
    double doubleValue(double fallback) const;
    std::optional<double> optionalDouble() const;
    // The bytes of a blob that has any.
    std::optional<QByteArray> data() const;

    // Equal when case and payload are.
    bool operator==(const SQLiteValue &) const = default;

private:
    struct Null
    {
        bool operator==(const Null &) const = default;
    };

    std::variant<qint64, double, QString, QByteArray, Null> m_payload = Null{};
};

// One row of a result by column name. Of two columns of one name the later one
// stands. A missing column reads as null does.
class SQLiteRow
{
public:
    void set(const QString &column, const SQLiteValue &value) { m_cells.insert(column, value); }

    bool contains(const QString &column) const { return m_cells.contains(column); }
    qsizetype size() const { return m_cells.size(); }
    // Null for a missing column.
    SQLiteValue value(const QString &column) const { return m_cells.value(column); }

    std::optional<qint64> intValue(const QString &column) const { return value(column).intValue(); }
    QString string(const QString &column, const QString &fallback) const { return value(column).string(fallback); }
    std::optional<QString> optionalString(const QString &column) const { return value(column).optionalString(); }
    double doubleValue(const QString &column, double fallback) const { return value(column).doubleValue(fallback); }
    std::optional<double> optionalDouble(const QString &column) const { return value(column).optionalDouble(); }
    std::optional<QByteArray> data(const QString &column) const { return value(column).data(); }

    bool operator==(const SQLiteRow &) const = default;

private:
    QHash<QString, SQLiteValue> m_cells;
};

} // namespace quire
