#include "persistence/database/SQLiteValue.h"

#include "records/Text.h"

#include <charconv>
#include <cmath>

namespace quire {

namespace {

qint64 truncated(double value)
{
    // 2^63 is a double, the largest qint64 is not: hence the open upper end.
    constexpr double limit = 9223372036854775808.0;
    if (!std::isfinite(value) || value < -limit || value >= limit) {
        qFatal("A real of %g has no integer value.", value);
    }
    return qint64(value);
}

std::optional<double> parsed(const QString &text)
{
    const QByteArray latin = text.toLatin1();
    const char *begin = latin.constData();
    const char *const end = begin + latin.size();
    if (begin != end && *begin == '+' && begin + 1 != end && begin[1] != '-') {
        ++begin; // from_chars knows the minus sign only
    }
    double value = 0;
    const auto [stop, error] = std::from_chars(begin, end, value);
    // "nan" and "inf" are spelled numbers to from_chars, but no comparison
    // above this layer could order them.
    if (error != std::errc() || stop != end || !std::isfinite(value)) {
        return std::nullopt;
    }
    return value;
}

} // namespace

std::optional<qint64> SQLiteValue::intValue() const
{
    switch (kind()) {
    case Case::Integer:
        return std::get<qint64>(m_payload);
    case Case::Real:
        return truncated(std::get<double>(m_payload));
    case Case::Text:
        return Text::decimalInteger(std::get<QString>(m_payload));
    case Case::Blob:
    case Case::Null:
        return std::nullopt;
    }
    Q_UNREACHABLE();
}

QString SQLiteValue::string(const QString &fallback) const
{
    switch (kind()) {
    case Case::Integer:
        return QString::number(std::get<qint64>(m_payload));
    case Case::Real:
        return Text::shortestDecimal(std::get<double>(m_payload));
    case Case::Text:
        return std::get<QString>(m_payload);
    case Case::Blob:
    case Case::Null:
        return fallback;
    }
    Q_UNREACHABLE();
}

std::optional<QString> SQLiteValue::optionalString() const
{
    QString text = string({});
    if (text.isEmpty()) {
        return std::nullopt;
    }
    return text;
}

double SQLiteValue::doubleValue(double fallback) const
{
    return optionalDouble().value_or(fallback);
}

std::optional<double> SQLiteValue::optionalDouble() const
{
    switch (kind()) {
    case Case::Integer:
        return double(std::get<qint64>(m_payload));
    case Case::Real:
        return std::get<double>(m_payload);
    case Case::Text:
        return parsed(std::get<QString>(m_payload));
    case Case::Blob:
    case Case::Null:
        return std::nullopt;
    }
    Q_UNREACHABLE();
}

std::optional<QByteArray> SQLiteValue::data() const
{
    const auto *bytes = std::get_if<QByteArray>(&m_payload);
    if (!bytes || bytes->isEmpty()) {
        return std::nullopt;
    }
    return *bytes;
}

} // namespace quire
