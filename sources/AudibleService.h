// Asks the public Audible catalogue for titles. It needs no account and touches
// no library.

#pragma once

#include "records/CatalogBooks.h"
#include "sources/AudibleProduct.h"
#include "sources/ServiceEndpoints.h"

#include <QCoroTask>
#include <QList>
#include <QString>

#include <chrono>
#include <optional>
#include <stop_token>

namespace quire {

class NetworkClient;

namespace AudibleService {

inline constexpr std::chrono::seconds searchTimeout{20};

// The titles that match `query`, in the catalogue's order. limit: how many at
// most, at least 1. A query of fewer than two characters finds nothing and asks
// nobody.
//
// Thread: the interface thread; the answer is read elsewhere. network outlives
// the task.
// Failures: those of NetworkClient, JSONDecodingError, and Cancelled once `stop`
// is requested.
QCoro::Task<QList<AudibleCatalogBook>> search(
    NetworkClient &network, ServiceEndpoints endpoints, QString query, int limit, std::stop_token stop);

// Nothing for a product without an ASIN or a title. audibleWeb: where its page
// is. Pure, any thread.
std::optional<AudibleCatalogBook> map(const AudibleProduct &product, const QUrl &audibleWeb);

} // namespace AudibleService

} // namespace quire
