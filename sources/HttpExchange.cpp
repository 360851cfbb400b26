#include "sources/HttpExchange.h"

#include "concurrency/Cancelled.h"
#include "sources/ServiceError.h"
#include "sources/TransportFailures.h"

#include <QNetworkAccessManager>

namespace quire {

namespace {

constexpr int maximumRedirects = 20;

// Bytes that may wait in the network layer before the sender is held up.
constexpr qint64 readAhead = 1024 * 1024;

bool isSpoken(const QUrl &url)
{
    return url.isValid() && !url.host().isEmpty()
        && (url.scheme() == QStringLiteral("https") || url.scheme() == QStringLiteral("http"));
}

bool isRedirect(int status)
{
    return status == 301 || status == 302 || status == 303 || status == 307 || status == 308;
}

bool isSameOrigin(const QUrl &a, const QUrl &b)
{
    const auto port = [](const QUrl &url) { return url.port(url.scheme() == QStringLiteral("https") ? 443 : 80); };
    return a.scheme() == b.scheme() && a.host() == b.host() && port(a) == port(b);
}

int statusOf(const QNetworkReply &reply)
{
    return reply.attribute(QNetworkRequest::HttpStatusCodeAttribute).toInt();
}

QNetworkRequest networkLayerRequest(const NetworkRequest &request)
{
    QNetworkRequest made(request.url);
    for (const auto &[name, value] : request.headers) {
        made.setRawHeader(name, value);
    }
    made.setRawHeader("User-Agent", "Quire/0.3 (macOS; native build)");
    // Redirects are followed here, since the network layer would open any scheme.
    made.setAttribute(QNetworkRequest::RedirectPolicyAttribute, QNetworkRequest::ManualRedirectPolicy);
    made.setAttribute(QNetworkRequest::CookieLoadControlAttribute, QNetworkRequest::Manual);
    made.setAttribute(QNetworkRequest::CookieSaveControlAttribute, QNetworkRequest::Manual);
    made.setAttribute(QNetworkRequest::AuthenticationReuseAttribute, QNetworkRequest::Manual);
    made.setDecompressedSafetyCheckThreshold(-1); // the cap counts decompressed bytes
    return made;
}

} // namespace

HttpExchange::HttpExchange(
    QNetworkAccessManager &manager, NetworkRequest request, std::chrono::milliseconds timeout, qint64 bodyCap)
    : m_manager(manager)
    , m_request(std::move(request))
    , m_timeout(timeout)
    , m_bodyCap(bodyCap)
{
    m_promise.start();
    m_deadline.setSingleShot(true);
    m_deadline.setTimerType(Qt::PreciseTimer);
    connect(&m_deadline, &QTimer::timeout, this,
        [this] { fail(TransportError::Kind::TimedOut, QStringLiteral("The request timed out.")); });
}

HttpExchange::~HttpExchange()
{
    cancel();
}

void HttpExchange::start()
{
    m_deadline.start(m_timeout);
    send();
}

void HttpExchange::cancel()
{
    fail(std::make_exception_ptr(Cancelled()));
}

void HttpExchange::cancelLater()
{
    QMetaObject::invokeMethod(this, &HttpExchange::cancel, Qt::QueuedConnection);
}

void HttpExchange::send()
{
    if (!isSpoken(m_request.url)) {
        fail(std::make_exception_ptr(ServiceError::invalidURL()));
        return;
    }
    const QNetworkRequest request = networkLayerRequest(m_request);
    if (m_request.method == "GET") {
        m_reply = m_manager.get(request);
    } else {
        m_reply = m_manager.sendCustomRequest(request, m_request.method, m_request.body);
    }
    m_reply->setReadBufferSize(readAhead);
    connect(m_reply, &QNetworkReply::metaDataChanged, this, &HttpExchange::readHead);
    connect(m_reply, &QNetworkReply::readyRead, this, &HttpExchange::readBody);
    connect(m_reply, &QNetworkReply::finished, this, &HttpExchange::endOfReply);
}

void HttpExchange::readHead()
{
    const qint64 announced = m_reply->header(QNetworkRequest::ContentLengthHeader).toLongLong();
    if (announced > m_bodyCap) {
        fail(TransportError::Kind::BodyTooLong, QStringLiteral("The service's answer is too long."));
    }
}

void HttpExchange::readBody()
{
    // In steps, since a packed body unfolds as it is read: all that is there at
    // once may be a thousand times what came over the line.
    for (;;) {
        const QByteArray step = m_reply->read(readAhead);
        if (step.isEmpty()) {
            return;
        }
        m_body += step;
        if (m_body.size() > m_bodyCap) {
            fail(TransportError::Kind::BodyTooLong, QStringLiteral("The service's answer is too long."));
            return;
        }
    }
}

void HttpExchange::endOfReply()
{
    readBody();
    if (m_ended) {
        return;
    }
    if (const auto failure = transportFailure(*m_reply)) {
        fail(failure);
        return;
    }
    const int status = statusOf(*m_reply);
    const QByteArray location = m_reply->rawHeader("Location");
    if (isRedirect(status) && !location.isEmpty()) {
        follow(m_request.url.resolved(QUrl::fromEncoded(location)), status);
    } else {
        succeed();
    }
}

// As browsers do: "see other" and, by custom, the two older answers to a POST
// turn into a plain GET; credentials do not go to another origin.
void HttpExchange::follow(const QUrl &target, int status)
{
    if (++m_redirects > maximumRedirects) {
        fail(TransportError::Kind::TooManyRedirects, QStringLiteral("Too many redirects."));
        return;
    }
    dropReply();
    m_body.clear();
    const bool turnsIntoGet = (status == 303 && m_request.method != "HEAD")
        || ((status == 301 || status == 302) && m_request.method == "POST");
    if (turnsIntoGet) {
        m_request.method = QByteArrayLiteral("GET");
        m_request.body.clear();
        m_request.headers.removeIf([](const auto &header) { return header.first.toLower().startsWith("content-"); });
    }
    if (!isSameOrigin(m_request.url, target)) {
        m_request.headers.removeIf([](const auto &header) {
            const QByteArray name = header.first.toLower();
            return name == "authorization" || name == "cookie";
        });
    }
    m_request.url = target;
    send();
}

void HttpExchange::succeed()
{
    m_ended = true;
    m_deadline.stop();
    m_promise.addResult(NetworkResponse{
        .status = statusOf(*m_reply),
        .headers = m_reply->rawHeaderPairs(),
        .body = std::move(m_body),
        .url = m_request.url,
    });
    dropReply();
    m_promise.finish();
}

void HttpExchange::fail(std::exception_ptr failure)
{
    if (m_ended) {
        return;
    }
    m_ended = true;
    m_deadline.stop();
    dropReply();
    m_promise.setException(failure);
    m_promise.finish();
}

void HttpExchange::fail(TransportError::Kind kind, const QString &text)
{
    fail(std::make_exception_ptr(TransportError(kind, 0, text)));
}

// Later, because this may be called from inside one of the reply's signals.
void HttpExchange::dropReply()
{
    if (m_reply) {
        m_reply->disconnect(this);
        m_reply->abort();
        m_reply->deleteLater();
        m_reply = nullptr;
    }
}

} // namespace quire
