// Looks for a better, portrait cover of every audiobook, at the reader's
// command.
//
// Thread: the interface thread; scoring, decoding and the store's work happen
// elsewhere. store and network outlive the task.

#pragma once

#include "sources/ServiceEndpoints.h"

#include <QCoroTask>

#include <stop_token>

namespace quire {

class LibraryStore;
class NetworkClient;

struct CoverRefreshResult
{
    qint64 total = 0; // audiobooks
    qint64 refreshed = 0; // those that got a new cover
    qint64 retained = 0; // the rest

    bool operator==(const CoverRefreshResult &) const = default;
};

namespace AudibleService {

// Lets the library make its safety backup if one is due, then goes through the
// audiobooks one at a time. One for which no cover is found, or whose cover
// does not come, keeps what it has.
// Failures: those of the store, and Cancelled once `stop` is requested.
QCoro::Task<CoverRefreshResult> refreshCovers(
    LibraryStore &store, NetworkClient &network, ServiceEndpoints endpoints, std::stop_token stop);

} // namespace AudibleService

} // namespace quire
