// JSONValue reads JSON that somebody else wrote as the records that are expected
// of it, strictly: a value of another type fails whatever it is part of, so that
// what a wrong type spoils is decided by where its failure is caught. A record
// is a function from a JSONValue, and composes:
//
//     Author author(const JSONValue &value)
//     {
//         return {.name = value.optional(u"name", &JSONValue::text)};
//     }
//     ... JSONValue::parse(body).required(u"authors", JSONValue::listOf(author)) ...
//
// The document is untrusted. Qt's parser ends at a nesting of 1024; the number of
// values is capped here, since each takes far more memory than its text does.
//
// Thread: a plain value, any thread. A long document takes its time: parse it
// off the interface thread.
//
// Failures of every operation: JSONDecodingError.

#pragma once

#include "sources/JSONDecodingError.h"

#include <QJsonArray>
#include <QJsonObject>
#include <QJsonValue>
#include <QList>
#include <QMap>
#include <QString>
#include <QStringView>

#include <functional>
#include <optional>
#include <type_traits>

namespace quire {

class JSONValue
{
public:
    // Of one document, entries of lists and members of objects together; about
    // 100 MB once they are read.
    static constexpr qsizetype maximumValues = 1'000'000;

    // document: UTF-8, an object or a list at its root. Of two members of one
    // name the later one stands.
    static JSONValue parse(const QByteArray &document);

    // The value itself. ------------------------------------------------------------

    QString text() const;
    // A number without a fraction, however it is written, that fits 64 bits.
    qint64 integer() const;
    double real() const;

    // Of what it holds; `decode` makes a record of each. -----------------------------

    template<typename Decode>
    using Decoded = std::decay_t<std::invoke_result_t<const Decode &, const JSONValue &>>;

    // A member of an object that must be there.
    template<typename Decode>
    Decoded<Decode> required(QStringView name, const Decode &decode) const
    {
        const QJsonValue member = object().value(name);
        if (member.isUndefined()) {
            throw JSONDecodingError::missingMember().within(name.toString());
        }
        return decodedAt(member, decode, [name] { return name.toString(); });
    }

    // A member that may be absent or null.
    template<typename Decode>
    std::optional<Decoded<Decode>> optional(QStringView name, const Decode &decode) const
    {
        const QJsonValue member = object().value(name);
        if (member.isUndefined() || member.isNull()) {
            return std::nullopt;
        }
        return decodedAt(member, decode, [name] { return name.toString(); });
    }

    // Every entry of a list, in order.
    template<typename Decode>
    QList<Decoded<Decode>> list(const Decode &decode) const
    {
        const QJsonArray entries = array();
        QList<Decoded<Decode>> records;
        records.reserve(entries.size());
        for (qsizetype at = 0; at < entries.size(); ++at) {
            records.append(decodedAt(entries.at(at), decode, [at] { return QStringLiteral("[%1]").arg(at); }));
        }
        return records;
    }

    // Every member of an object, whatever their names, in the order of these.
    template<typename Decode>
    QMap<QString, Decoded<Decode>> map(const Decode &decode) const
    {
        const QJsonObject members = object();
        QMap<QString, Decoded<Decode>> records;
        for (auto at = members.begin(); at != members.end(); ++at) {
            records.insert(at.key(), decodedAt(at.value(), decode, [&at] { return at.key(); }));
        }
        return records;
    }

    // list() and map() as a `decode` for another.
    template<typename Decode>
    static auto listOf(Decode decode)
    {
        return [decode](const JSONValue &value) { return value.list(decode); };
    }
    template<typename Decode>
    static auto mapOf(Decode decode)
    {
        return [decode](const JSONValue &value) { return value.map(decode); };
    }

private:
    explicit JSONValue(QJsonValue value)
        : m_value(std::move(value))
    {
    }

    // The failure alone pays for the text of where it happened.
    template<typename Decode, typename Step>
    static Decoded<Decode> decodedAt(const QJsonValue &value, const Decode &decode, const Step &step)
    {
        try {
            return std::invoke(decode, JSONValue(value));
        } catch (const JSONDecodingError &error) {
            throw error.within(step());
        }
    }

    QJsonObject object() const;
    QJsonArray array() const;

    QJsonValue m_value;
};

} // namespace quire
