#include "sources/JSONDecodingError.h"

namespace quire {

JSONDecodingError::JSONDecodingError(Kind kind, QString expected)
    : m_kind(kind)
    , m_expected(std::move(expected))
{
}

JSONDecodingError JSONDecodingError::syntax(QJsonParseError::ParseError code, qsizetype offset)
{
    JSONDecodingError error(Kind::Syntax, {});
    error.m_code = code;
    error.m_offset = offset;
    return error;
}

JSONDecodingError JSONDecodingError::tooManyValues()
{
    return {Kind::TooManyValues, {}};
}

JSONDecodingError JSONDecodingError::wrongType(QString expected)
{
    return {Kind::WrongType, std::move(expected)};
}

JSONDecodingError JSONDecodingError::missingMember()
{
    return {Kind::MissingMember, {}};
}

JSONDecodingError JSONDecodingError::within(const QString &step) const
{
    JSONDecodingError error = *this;
    const bool isJoined = m_path.isEmpty() || m_path.startsWith(u'[');
    error.m_path = isJoined ? step + m_path : step + u'.' + m_path;
    return error;
}

QString JSONDecodingError::description() const
{
    const QString where = m_path.isEmpty() ? QStringLiteral("it") : u'“' + m_path + u'”';
    switch (m_kind) {
    case Kind::Syntax: {
        QJsonParseError error;
        error.error = m_code;
        return QStringLiteral("The data is not readable as JSON: %1 (at byte %2).")
            .arg(error.errorString())
            .arg(m_offset);
    }
    case Kind::TooManyValues:
        return QStringLiteral("The data holds too many values to be read.");
    case Kind::WrongType:
        return QStringLiteral("The data is not in the expected form: %1 is not %2.").arg(where, m_expected);
    case Kind::MissingMember:
        return QStringLiteral("The data is not in the expected form: %1 is missing.").arg(where);
    }
    Q_UNREACHABLE();
}

} // namespace quire
