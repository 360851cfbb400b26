#include "updates/UpdateDownload.h"

#include "concurrency/Cancelled.h"
#include "reliability/TransportError.h"
#include "sources/ServiceError.h"
#include "sources/SystemProxy.h"
#include "sources/TransportFailures.h"
#include "updates/QuireUpdateCheckError.h"

#include <utility>

namespace quire {

namespace {

constexpr int maximumRedirects = 20;

QNetworkRequest requestFor(const QUrl &address)
{
    QNetworkRequest request(address);
    request.setAttribute(QNetworkRequest::CacheLoadControlAttribute, QNetworkRequest::AlwaysNetwork);
    request.setAttribute(QNetworkRequest::CookieLoadControlAttribute, QNetworkRequest::Manual);
    request.setAttribute(QNetworkRequest::CookieSaveControlAttribute, QNetworkRequest::Manual);
    request.setAttribute(QNetworkRequest::AuthenticationReuseAttribute, QNetworkRequest::Manual);
    // Followed to http and https alone, and never from https to http.
    request.setAttribute(QNetworkRequest::RedirectPolicyAttribute, QNetworkRequest::NoLessSafeRedirectPolicy);
    request.setMaximumRedirectsAllowed(maximumRedirects);
    request.setDecompressedSafetyCheckThreshold(-1); // the limit counts decompressed bytes
    return request;
}

bool isSuccess(int status)
{
    return status >= 200 && status <= 299;
}

} // namespace

UpdateDownload::UpdateDownload(const QUrl &address)
{
    m_promise.start();
    m_session.setProxyFactory(new SystemProxy); // the session takes it
    m_reply = m_session.get(requestFor(address));
    m_reply->setReadBufferSize(maximumBytes);
    connect(m_reply, &QNetworkReply::readyRead, this, &UpdateDownload::read);
    connect(m_reply, &QNetworkReply::finished, this, &UpdateDownload::end);
}

UpdateDownload::~UpdateDownload()
{
    fail(std::make_exception_ptr(Cancelled()));
}

void UpdateDownload::expire()
{
    fail(std::make_exception_ptr(
        TransportError(TransportError::Kind::TimedOut, 0, QStringLiteral("The request timed out."))));
}

void UpdateDownload::cancelLater()
{
    QMetaObject::invokeMethod(
        this, [this] { fail(std::make_exception_ptr(Cancelled())); }, Qt::QueuedConnection);
}

void UpdateDownload::read()
{
    for (;;) {
        const QByteArray step = m_reply->read(maximumBytes + 1 - m_body.size());
        if (step.isEmpty()) {
            return;
        }
        m_body += step;
        if (m_body.size() > maximumBytes) {
            fail(std::make_exception_ptr(QuireUpdateCheckError::invalidResponse()));
            return;
        }
    }
}

void UpdateDownload::end()
{
    read();
    if (m_ended) {
        return;
    }
    try {
        if (const auto failure = transportFailure(*m_reply)) {
            std::rethrow_exception(failure);
        }
    } catch (const ServiceError &) { // no HTTP
        fail(std::make_exception_ptr(QuireUpdateCheckError::unavailable()));
        return;
    } catch (...) {
        fail(std::current_exception());
        return;
    }
    if (isSuccess(m_reply->attribute(QNetworkRequest::HttpStatusCodeAttribute).toInt())) {
        succeed();
    } else {
        fail(std::make_exception_ptr(QuireUpdateCheckError::unavailable()));
    }
}

void UpdateDownload::succeed()
{
    m_ended = true;
    dropReply();
    m_promise.addResult(std::move(m_body));
    m_promise.finish();
}

void UpdateDownload::fail(std::exception_ptr failure)
{
    if (m_ended) {
        return;
    }
    m_ended = true;
    dropReply();
    m_promise.setException(failure);
    m_promise.finish();
}

// Later, because this may be called from inside one of the reply's signals.
void UpdateDownload::dropReply()
{
    QNetworkReply *const reply = std::exchange(m_reply, nullptr);
    reply->disconnect(this);
    reply->abort();
    reply->deleteLater();
}

} // namespace quire
