// Reads the reader's Goodreads feed and hands its books to the library. The
// feed needs no login, only the reader's numeric id and the feed's key.

#pragma once

#include "sources/ServiceEndpoints.h"

#include <QCoroTask>
#include <QString>
#include <QStringList>

#include <chrono>
#include <optional>
#include <stop_token>

namespace quire {

class Clock;
class LibraryStore;
class NetworkClient;

struct GoodreadsSyncResult
{
    qint64 count = 0; // distinct books handed to the store
    bool succeeded = false;
    std::optional<QString> message; // why not, when it did not succeed
    QStringList warnings; // one for each request that brought nothing, in their order

    bool operator==(const GoodreadsSyncResult &) const = default;
};

namespace GoodreadsService {

// For each of the five requests, in all.
inline constexpr std::chrono::seconds requestTimeout{20};

// Lets the library make its safety backup if one is due, asks for all shelves
// and then for each of the four that Quire knows, one
// after the other, and merges what was found into the library. A request that
// fails costs its shelf only and becomes a warning.
//
// Thread: the interface thread; parsing and the store's work happen elsewhere.
// store, network and clock outlive the task.
// Failures: those of the store, and Cancelled once `stop` is requested.
QCoro::Task<GoodreadsSyncResult> synchronize(
    LibraryStore &store, NetworkClient &network, ServiceEndpoints endpoints, const Clock &clock, std::stop_token stop);

} // namespace GoodreadsService

} // namespace quire
