#include "reliability/QuireRetryPolicy.h"

#include "concurrency/Cancelled.h"
#include "reliability/HttpFailure.h"
#include "reliability/TransportError.h"

namespace quire::QuireRetryPolicy {

namespace {

bool passes(TransportError::Kind kind)
{
    switch (kind) {
    case TransportError::Kind::TimedOut:
    case TransportError::Kind::CannotFindHost:
    case TransportError::Kind::CannotConnectToHost:
    case TransportError::Kind::NetworkConnectionLost:
    case TransportError::Kind::DnsLookupFailed:
    case TransportError::Kind::NotConnectedToInternet:
    case TransportError::Kind::ResourceUnavailable:
        return true;
    case TransportError::Kind::BodyTooLong:
    case TransportError::Kind::TooManyRedirects:
    case TransportError::Kind::Other:
        return false;
    }
    Q_UNREACHABLE();
}

bool passes(int httpStatus)
{
    return httpStatus == 408 || httpStatus == 429 || (httpStatus >= 500 && httpStatus <= 599);
}

} // namespace

bool isTransient(const std::exception &error)
{
    if (dynamic_cast<const Cancelled *>(&error)) {
        return false;
    }
    if (const auto *transport = dynamic_cast<const TransportError *>(&error)) {
        return passes(transport->kind());
    }
    if (const auto *service = dynamic_cast<const HttpFailure *>(&error)) {
        const auto status = service->httpStatus();
        return status && passes(*status);
    }
    return false;
}

} // namespace quire::QuireRetryPolicy
