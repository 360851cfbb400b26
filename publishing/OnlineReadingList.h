// The reading list as a page of a site of its own at Netlify, made by Quire at the
// first publication. A deploy that is accepted is not yet a page that is seen: a
// publication has succeeded when the page was downloaded and is the one sent.
//
// In the folder "deploy" of the support directory lie ".site-id", which names the
// site and so is what keeps it the only one of this installation, and
// "index.html", the page sent last.

#pragma once

#include "records/Url.h"

#include <QByteArray>
#include <QCoroTask>
#include <QUrl>

#include <chrono>
#include <stop_token>

namespace quire {

class Clock;
class LibraryStore;
class NetworkClient;

namespace OnlineReadingList {

// A deploy is asked for its state so often, with so much time between.
inline constexpr int mostPolls = 12;
inline constexpr std::chrono::milliseconds pollInterval{1500};

// Publishes `html` and tells where. netlify: the service's scheme and authority.
//
// Thread: the interface thread; files and digests are worked on elsewhere. store,
// network and clock outlive the task.
// Failures: ServiceError, TransportError and FileError; those of the store;
// Cancelled once `stop` is requested.
QCoro::Task<Url> publishOnline(
    QByteArray html, LibraryStore &store, NetworkClient &network, QUrl netlify, Clock &clock, std::stop_token stop);

} // namespace OnlineReadingList

} // namespace quire
