// What the network layer's failures mean to Quire.

#pragma once

#include <exception>

class QNetworkReply;

namespace quire {

// The failure that kept a finished `reply` from being a whole HTTP answer, as
// a TransportError or a ServiceError; null when it is one, whatever its status.
std::exception_ptr transportFailure(const QNetworkReply &reply);

} // namespace quire
