// The single road to HTTP for all services but the update check. It keeps what
// the network layer does not: only http and https are spoken, also after a
// redirect; a request ends at its time-out in all, not only when the line is
// idle; a body stops at a cap; a body that was cut short is a failure. Nothing
// is kept between requests: no cookies, no cache, no credentials, no retries.
//
// Thread: lives on the interface thread and needs its event loop. Destroying
// it ends the requests under way as cancelled.
//
// Failures of every operation: Cancelled, as soon as `stop` is requested;
// ServiceError invalidURL for an address, or a redirect's target, that is not
// http or https; ServiceError invalidResponse for an answer that is not HTTP;
// TransportError for what never became a whole answer.

#pragma once

#include <QByteArray>
#include <QCoroTask>
#include <QList>
#include <QUrl>

#include <chrono>
#include <memory>
#include <stop_token>
#include <utility>
#include <vector>

class QNetworkAccessManager;

namespace quire {

class HttpExchange;

using HttpHeaders = QList<std::pair<QByteArray, QByteArray>>;

struct NetworkRequest
{
    QByteArray method = QByteArrayLiteral("GET");
    QUrl url;
    HttpHeaders headers;
    QByteArray body;
};

struct NetworkResponse
{
    int status = 0;
    HttpHeaders headers;
    QByteArray body;
    QUrl url; // where the answer came from, after redirects

    // The value of the header of that name, whatever its letter case; empty
    // when the answer has none.
    QByteArray header(const QByteArray &name) const;
};

class NetworkClient
{
public:
    static constexpr qint64 defaultBodyCap = 64LL * 1024 * 1024;

    NetworkClient();
    ~NetworkClient();

    NetworkClient(const NetworkClient &) = delete;
    NetworkClient &operator=(const NetworkClient &) = delete;

    // Performs `request` and follows redirects. The status is the caller's to
    // judge. timeout: for everything together, redirects and body included.
    // bodyCap: the longest body accepted, in bytes after decompression; one
    // byte more is a TransportError BodyTooLong.
    QCoro::Task<NetworkResponse> data(NetworkRequest request, std::chrono::milliseconds timeout, std::stop_token stop,
        qint64 bodyCap = defaultBodyCap);

    // The body of a plain GET. A status outside 200 to 299 is a ServiceError
    // http with the body as text, empty when that is not UTF-8.
    QCoro::Task<QByteArray> get(
        QUrl url, std::chrono::milliseconds timeout, std::stop_token stop, qint64 bodyCap = defaultBodyCap);

private:
    std::shared_ptr<HttpExchange> begin(NetworkRequest request, std::chrono::milliseconds timeout, qint64 bodyCap);

    std::unique_ptr<QNetworkAccessManager> m_manager;
    std::vector<std::weak_ptr<HttpExchange>> m_underWay;
};

} // namespace quire
