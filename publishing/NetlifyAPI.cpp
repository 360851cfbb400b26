#include "publishing/NetlifyAPI.h"

#include "sources/NetworkClient.h"
#include "sources/Redaction.h"
#include "sources/ServiceError.h"
#include "sources/ServiceURL.h"

#include <QJsonDocument>

namespace quire {

namespace {

// Sites and deploys are described in a few kilobytes.
constexpr qint64 answerCap = 1024 * 1024;

bool isSuccess(int status)
{
    return status >= 200 && status <= 299;
}

} // namespace

NetlifyAPI::NetlifyAPI(NetworkClient &network, QUrl endpoint, QString token, std::stop_token stop)
    : m_network(network)
    , m_endpoint(std::move(endpoint))
    , m_token(std::move(token))
    , m_stop(std::move(stop))
{
}

NetworkRequest NetlifyAPI::request(const QByteArray &method, const QString &path, const QByteArray &contentType) const
{
    const auto url = ServiceURL::address(m_endpoint, path);
    if (!url) {
        throw ServiceError::invalidURL();
    }
    NetworkRequest request{.method = method, .url = url->toQUrl()};
    request.headers.append({"Authorization", "Bearer " + m_token.toUtf8()});
    if (!contentType.isEmpty()) {
        request.headers.append({"Content-Type", contentType});
    }
    return request;
}

QCoro::Task<NetlifyAnswer> NetlifyAPI::netlifyJSON(QByteArray method, QString path, QJsonObject json)
{
    const bool hasBody = method != "GET";
    NetworkRequest call = request(method, path, hasBody ? QByteArrayLiteral("application/json") : QByteArray());
    if (hasBody) {
        call.body = QJsonDocument(json).toJson(QJsonDocument::Compact);
    }
    const auto answering = m_network.data(std::move(call), requestTimeout, m_stop, answerCap);
    const auto response = co_await answering;
    const NetlifyAnswer answer = NetlifyAnswer::parse(response.body);
    if (!isSuccess(response.status)) {
        const QString words
            = answer.text(u"message").value_or(QStringLiteral("Netlify returned HTTP %1.").arg(response.status));
        throw ServiceError::http(response.status, Redaction::without(words, m_token));
    }
    co_return answer;
}

QCoro::Task<> NetlifyAPI::uploadPage(QString deployID, QByteArray html)
{
    NetworkRequest call = request(QByteArrayLiteral("PUT"),
        QStringLiteral("/api/v1/deploys/") + deployID + QStringLiteral("/files/index.html"),
        QByteArrayLiteral("application/octet-stream"));
    call.body = std::move(html);
    const auto answering = m_network.data(std::move(call), requestTimeout, m_stop, answerCap);
    const auto response = co_await answering;
    if (!isSuccess(response.status)) {
        const QString words
            = response.body.isValidUtf8() ? QString::fromUtf8(response.body) : QStringLiteral("Netlify upload failed.");
        throw ServiceError::http(response.status, Redaction::without(words, m_token));
    }
}

} // namespace quire
