// Puts the reading list in its two places: the Markdown in a folder that the
// reader chose, the page on a site at Netlify. Each can fail while the other
// succeeds.

#pragma once

#include "publishing/PublishingSnapshot.h"
#include "records/PublishResult.h"
#include "sources/ServiceEndpoints.h"

#include <QCoroTask>

#include <stop_token>

namespace quire {

class Clock;
class LibraryStore;
class NetworkClient;

namespace PublishingService {

// Renders `snapshot`, writes the file where the settings name a folder for it,
// then publishes the page; notes in the settings when each was done last, and when
// this ran. Never fails: a failure of either half is a line of the result's
// errors, behind "Local: " or "Online: ". Without a folder there is no local half
// and no error.
//
// Thread: the interface thread; rendering, files and digests are worked on
// elsewhere. store, network and clock outlive the task.
// stop: ends the online half, as a line of the errors too.
QCoro::Task<PublishResult> publish(PublishingSnapshot snapshot, LibraryStore &store, NetworkClient &network,
    ServiceEndpoints endpoints, Clock &clock, std::stop_token stop);

} // namespace PublishingService

} // namespace quire
