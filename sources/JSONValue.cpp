#include "sources/JSONValue.h"

#include "records/JsonInteger.h"

#include <QJsonDocument>

namespace quire {

namespace {

// Of a well-formed document the number of its values, of any other no less than
// the parser meets before it gives up.
bool hasTooManyValues(const QByteArray &document)
{
    qsizetype values = 1;
    bool isInText = false;
    for (qsizetype at = 0; at < document.size(); ++at) {
        const char c = document[at];
        if (c == '"') {
            isInText = !isInText;
        } else if (isInText) {
            at += c == '\\' ? 1 : 0;
        } else if (c == ',' || c == '[' || c == '{') {
            if (++values > JSONValue::maximumValues) {
                return true;
            }
        }
    }
    return false;
}

} // namespace

JSONValue JSONValue::parse(const QByteArray &document)
{
    if (hasTooManyValues(document)) {
        throw JSONDecodingError::tooManyValues();
    }
    QJsonParseError error;
    const QJsonDocument parsed = QJsonDocument::fromJson(document, &error);
    if (error.error != QJsonParseError::NoError) {
        throw JSONDecodingError::syntax(error.error, error.offset);
    }
    return JSONValue(parsed.isArray() ? QJsonValue(parsed.array()) : QJsonValue(parsed.object()));
}

QString JSONValue::text() const
{
    if (!m_value.isString()) {
        throw JSONDecodingError::wrongType(QStringLiteral("a text"));
    }
    return m_value.toString();
}

qint64 JSONValue::integer() const
{
    const auto number = wholeNumber(m_value);
    if (!number) {
        throw JSONDecodingError::wrongType(QStringLiteral("a whole number"));
    }
    return *number;
}

double JSONValue::real() const
{
    if (!m_value.isDouble()) {
        throw JSONDecodingError::wrongType(QStringLiteral("a number"));
    }
    return m_value.toDouble();
}

QJsonObject JSONValue::object() const
{
    if (!m_value.isObject()) {
        throw JSONDecodingError::wrongType(QStringLiteral("an object"));
    }
    return m_value.toObject();
}

QJsonArray JSONValue::array() const
{
    if (!m_value.isArray()) {
        throw JSONDecodingError::wrongType(QStringLiteral("a list"));
    }
    return m_value.toArray();
}

} // namespace quire
