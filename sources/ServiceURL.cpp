#include "sources/ServiceURL.h"

#include "sources/ServiceError.h"

namespace quire::ServiceURL {

QUrl request(const QUrl &endpoint, const QString &path, const QueryItems &items)
{
    const auto escaped = [](const QString &text) { return QString::fromLatin1(QUrl::toPercentEncoding(text)); };
    QString query;
    for (const auto &[name, value] : items) {
        query += (query.isEmpty() ? QString() : QStringLiteral("&")) + escaped(name) + u'=' + escaped(value);
    }
    QUrl url = endpoint;
    url.setPath(path, QUrl::DecodedMode);
    url.setQuery(query, QUrl::StrictMode);
    if (endpoint.isEmpty() || !url.isValid()) {
        throw ServiceError::invalidURL();
    }
    return url;
}

std::optional<Url> address(const QUrl &endpoint, const QString &path)
{
    return Url::parse(endpoint.toString(QUrl::RemovePath) + path);
}

} // namespace quire::ServiceURL
