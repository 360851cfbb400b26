#include "sources/ServiceError.h"

namespace quire {

ServiceError::ServiceError(Kind kind, int status, QString text)
    : m_kind(kind)
    , m_status(status)
    , m_text(std::move(text))
{
}

ServiceError ServiceError::http(int status, QString body)
{
    return {Kind::Http, status, std::move(body)};
}

ServiceError ServiceError::message(QString text)
{
    return {Kind::Message, 0, std::move(text)};
}

ServiceError ServiceError::invalidURL()
{
    return {Kind::InvalidURL, 0, {}};
}

ServiceError ServiceError::invalidResponse()
{
    return {Kind::InvalidResponse, 0, {}};
}

std::optional<int> ServiceError::httpStatus() const
{
    return m_kind == Kind::Http ? std::optional(m_status) : std::nullopt;
}

QString ServiceError::description() const
{
    switch (m_kind) {
    case Kind::Http:
        return m_text.isEmpty() ? QStringLiteral("The service returned HTTP %1.").arg(m_status) : m_text;
    case Kind::Message:
        return m_text;
    case Kind::InvalidURL:
        return QStringLiteral("The service URL could not be created.");
    case Kind::InvalidResponse:
        return QStringLiteral("The service returned an unreadable response.");
    }
    Q_UNREACHABLE();
}

} // namespace quire
