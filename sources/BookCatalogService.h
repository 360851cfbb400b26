// Finds books in the search of Open Library. It needs no account and touches no
// library.

#pragma once

#include "records/CatalogBooks.h"
#include "sources/ServiceEndpoints.h"

#include <QByteArray>
#include <QCoroTask>
#include <QList>
#include <QString>

#include <chrono>
#include <stop_token>

namespace quire {

class NetworkClient;

namespace BookCatalogService {

inline constexpr std::chrono::seconds searchTimeout{20};

// The books that match `query`, in the catalogue's order, each work once. limit:
// how many at most, at least 1. A query of fewer than two characters finds
// nothing and asks nobody.
//
// Thread: the interface thread; the answer is read elsewhere. network outlives
// the task.
// Failures: those of NetworkClient, JSONDecodingError, and Cancelled once `stop`
// is requested.
QCoro::Task<QList<BookCatalogBook>> search(
    NetworkClient &network, ServiceEndpoints endpoints, QString query, int limit, std::stop_token stop);

// The books that the answer `body` tells of. Of several items of one work the
// first counts; one without a work or a title is left out. openLibraryCovers:
// where the covers are. Pure, any thread. Throws JSONDecodingError.
QList<BookCatalogBook> parse(const QByteArray &body, const QUrl &openLibraryCovers);

} // namespace BookCatalogService

} // namespace quire
