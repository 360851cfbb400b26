#include "sources/TransportFailures.h"

#include "reliability/TransportError.h"
#include "sources/ServiceError.h"

#include <QNetworkReply>

namespace quire {

namespace {

// The network layer reports a status of 400 and more as an error too; those are
// whole answers. Its other errors can strike after a status was received, and it
// reports a body that it cannot unpack by one of the same.
bool isVerdictOnStatus(QNetworkReply::NetworkError error, int status)
{
    if (status < 400) {
        return false;
    }
    switch (error) {
    case QNetworkReply::ProxyAuthenticationRequiredError: // 407
    case QNetworkReply::ContentAccessDenied:
    case QNetworkReply::ContentOperationNotPermittedError:
    case QNetworkReply::ContentNotFoundError:
    case QNetworkReply::AuthenticationRequiredError:
    case QNetworkReply::ContentConflictError:
    case QNetworkReply::ContentGoneError:
    case QNetworkReply::UnknownContentError:
    case QNetworkReply::ProtocolInvalidOperationError: // 400 and 418
    case QNetworkReply::InternalServerError:
    case QNetworkReply::OperationNotImplementedError:
    case QNetworkReply::ServiceUnavailableError:
    case QNetworkReply::UnknownServerError:
        return true;
    default:
        return false;
    }
}

TransportError::Kind kindOf(QNetworkReply::NetworkError error)
{
    using Kind = TransportError::Kind;
    switch (error) {
    case QNetworkReply::TimeoutError:
    case QNetworkReply::ProxyTimeoutError:
        return Kind::TimedOut;
    case QNetworkReply::HostNotFoundError: // a failed look-up too: the two are not told apart
    case QNetworkReply::ProxyNotFoundError:
        return Kind::CannotFindHost;
    case QNetworkReply::ConnectionRefusedError:
    case QNetworkReply::ProxyConnectionRefusedError:
        return Kind::CannotConnectToHost;
    case QNetworkReply::RemoteHostClosedError:
    case QNetworkReply::ProxyConnectionClosedError:
        return Kind::NetworkConnectionLost;
    case QNetworkReply::TemporaryNetworkFailureError:
    case QNetworkReply::NetworkSessionFailedError:
    case QNetworkReply::UnknownNetworkError: // "network unreachable" arrives as this
        return Kind::NotConnectedToInternet;
    case QNetworkReply::BackgroundRequestNotAllowedError:
        return Kind::ResourceUnavailable;
    default:
        return Kind::Other;
    }
}

} // namespace

std::exception_ptr transportFailure(const QNetworkReply &reply)
{
    const QNetworkReply::NetworkError error = reply.error();
    const QVariant status = reply.attribute(QNetworkRequest::HttpStatusCodeAttribute);
    if (status.isValid() && (error == QNetworkReply::NoError || isVerdictOnStatus(error, status.toInt()))) {
        return nullptr;
    }
    if (error == QNetworkReply::NoError || error == QNetworkReply::ProtocolFailure
        || error == QNetworkReply::UnknownContentError) {
        return std::make_exception_ptr(ServiceError::invalidResponse());
    }
    return std::make_exception_ptr(TransportError(kindOf(error), error, reply.errorString()));
}

} // namespace quire
