// The audit trail of the library: for each field of a title, what each source
// last said of it. It is written beside every edit and import and read by no
// rule; who wins is decided on the row alone.
//
// Thread: FieldValues anywhere; ProvenanceWriter on that of its connection.

#pragma once

#include "persistence/database/SQLiteStatement.h"
#include "records/Text.h"
#include "records/Url.h"

#include <QCryptographicHash>
#include <QMap>
#include <QString>

#include <concepts>
#include <optional>

namespace quire {

// What one source said of the fields of one row: text by column name, in
// ascending order of name. Numbers are in their shortest decimal form, URLs as
// their absolute text, a boolean as "1" or "0".
class FieldValues
{
public:
    void set(const QString &field, const QString &value) { m_values.insert(field, value); }
    void set(const QString &field, double value) { set(field, Text::shortestDecimal(value)); }
    void set(const QString &field, qint64 value) { set(field, QString::number(value)); }
    void set(const QString &field, const Url &value) { set(field, value.text()); }
    // Nothing else turns into a boolean on the way.
    void set(const QString &field, std::same_as<bool> auto value)
    {
        set(field, value ? QStringLiteral("1") : QStringLiteral("0"));
    }

    // A source that is silent on a field leaves no trace of it.
    template<typename T>
    void set(const QString &field, const std::optional<T> &value)
    {
        if (value) {
            set(field, *value);
        }
    }

    const QMap<QString, QString> &values() const { return m_values; }

private:
    QMap<QString, QString> m_values;
};

enum class EntityKind { Book, Audiobook };

// Who said it: the reader, or an import.
enum class Source { Quire, Goodreads, Audible };

// Writes the trail of one source, row after row, inside the transaction of the
// change that it tells of. Must not outlive that transaction.
class ProvenanceWriter
{
public:
    // Throws DatabaseError.
    ProvenanceWriter(const SQLiteDatabase &database, EntityKind kind, Source source);

    // entityID: row id of the title; nobody asks whether it exists.
    // applied: whether the values were written into the row. Once raised, the
    // flag stays. Throws DatabaseError.
    void record(qint64 entityID, const FieldValues &fields, bool applied);

private:
    QString hashed(const QString &value);

    SQLiteStatement m_upsert;
    QCryptographicHash m_hash{QCryptographicHash::Sha256};
};

// The same for a single row of the reader's own edits.
void recordEdit(const SQLiteDatabase &database, EntityKind kind, qint64 entityID, const FieldValues &fields);

} // namespace quire
