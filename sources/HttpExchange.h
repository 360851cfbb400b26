// One request of a NetworkClient on its way, redirects included, with its
// deadline and its cap. The promise is finished exactly once, by whatever comes
// first: the answer, a failure, the deadline or a cancellation.
//
// Thread: the interface thread; cancelLater() from any.

#pragma once

#include "reliability/TransportError.h"
#include "sources/NetworkClient.h"

#include <QFuture>
#include <QNetworkReply>
#include <QObject>
#include <QPromise>
#include <QTimer>

#include <exception>

namespace quire {

class HttpExchange final : public QObject
{
    Q_OBJECT

public:
    // manager: outlives the exchange, or at least every call but the destructor's.
    HttpExchange(
        QNetworkAccessManager &manager, NetworkRequest request, std::chrono::milliseconds timeout, qint64 bodyCap);
    ~HttpExchange() override;

    void start();

    // Ends the exchange as Cancelled, unless it has ended.
    void cancel();
    void cancelLater();

    QFuture<NetworkResponse> response() const { return m_promise.future(); }

private:
    void send();
    void readHead();
    void readBody();
    void endOfReply();
    void follow(const QUrl &target, int status);

    void succeed();
    void fail(std::exception_ptr failure);
    void fail(TransportError::Kind kind, const QString &text);
    void dropReply();

    QNetworkAccessManager &m_manager;
    NetworkRequest m_request;
    const std::chrono::milliseconds m_timeout;
    const qint64 m_bodyCap;

    QPromise<NetworkResponse> m_promise;
    QTimer m_deadline;
    QNetworkReply *m_reply = nullptr; // owned, see dropReply()
    QByteArray m_body;
    int m_redirects = 0;
    bool m_ended = false;
};

} // namespace quire
