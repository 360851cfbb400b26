#include "sources/NetworkClient.h"

#include "sources/HttpExchange.h"
#include "sources/ServiceError.h"
#include "sources/SystemProxy.h"

#include <QNetworkAccessManager>

#include <QCoroFuture>

namespace quire {

QByteArray NetworkResponse::header(const QByteArray &name) const
{
    for (const auto &[key, value] : headers) {
        if (key.compare(name, Qt::CaseInsensitive) == 0) {
            return value;
        }
    }
    return {};
}

NetworkClient::NetworkClient()
    : m_manager(std::make_unique<QNetworkAccessManager>())
{
    m_manager->setProxyFactory(new SystemProxy); // the manager takes it
}

NetworkClient::~NetworkClient()
{
    for (const auto &underWay : m_underWay) {
        if (const auto exchange = underWay.lock()) {
            exchange->cancel();
        }
    }
}

std::shared_ptr<HttpExchange> NetworkClient::begin(
    NetworkRequest request, std::chrono::milliseconds timeout, qint64 bodyCap)
{
    auto exchange = std::make_shared<HttpExchange>(*m_manager, std::move(request), timeout, bodyCap);
    std::erase_if(m_underWay, [](const auto &other) { return other.expired(); });
    m_underWay.push_back(exchange);
    exchange->start();
    return exchange;
}

QCoro::Task<NetworkResponse> NetworkClient::data(
    NetworkRequest request, std::chrono::milliseconds timeout, std::stop_token stop, qint64 bodyCap)
{
    // The frame owns the exchange: nothing of this client is touched below the
    // await, so it may be gone by then.
    const auto exchange = begin(std::move(request), timeout, bodyCap);
    const auto cancelExchange = [&exchange] { exchange->cancelLater(); };
    const std::stop_callback onStop(stop, cancelExchange);
    const auto response = exchange->response();
    co_return co_await response;
}

QCoro::Task<QByteArray> NetworkClient::get(
    QUrl url, std::chrono::milliseconds timeout, std::stop_token stop, qint64 bodyCap)
{
    NetworkRequest request{.url = std::move(url)};
    const auto answer = data(std::move(request), timeout, stop, bodyCap);
    const auto response = co_await answer;
    if (response.status < 200 || response.status > 299) {
        const QString text = response.body.isValidUtf8() ? QString::fromUtf8(response.body) : QString();
        throw ServiceError::http(response.status, text);
    }
    co_return response.body;
}

} // namespace quire
