// Looks for a portrait cover of a work: among the covers of the reader's own
// library, then in Apple Books, then in Open Library. It finds an address and
// downloads nothing.
//
// Thread: the text functions any; the searches live on the interface thread,
// and score and read answers elsewhere.

#pragma once

#include "records/Book.h"
#include "records/Url.h"
#include "sources/ServiceEndpoints.h"

#include <QCoroTask>
#include <QList>
#include <QSet>
#include <QString>

#include <chrono>
#include <optional>
#include <stop_token>

namespace quire {

class NetworkClient;

struct PortraitCover
{
    QString title;
    QString author; // may be empty
    Url url;
    QString source; // "Books library", "Apple Books" or "Open Library"

    bool operator==(const PortraitCover &) const = default;
};

namespace CoverFinder {

inline constexpr std::chrono::seconds requestTimeout{15};

// The best cover of the first place that has one; each place is asked once,
// and only when those before it had none.
// Failures of the three searches: those of NetworkClient::get, and
// JSONDecodingError for an answer that is not what was expected. The first ends
// find(). network outlives the task.
QCoro::Task<std::optional<PortraitCover>> find(NetworkClient &network, ServiceEndpoints endpoints, QString title,
    std::optional<QString> author, QList<Book> library, std::stop_token stop);
QCoro::Task<std::optional<PortraitCover>> searchAppleBooks(NetworkClient &network, ServiceEndpoints endpoints,
    QString title, std::optional<QString> author, std::stop_token stop);
QCoro::Task<std::optional<PortraitCover>> searchOpenLibrary(NetworkClient &network, ServiceEndpoints endpoints,
    QString title, std::optional<QString> author, std::stop_token stop);

// The candidate that is the work beyond doubt, the earlier one of two that
// score the same; nothing when none is.
std::optional<PortraitCover> bestMatch(
    const QString &title, const std::optional<QString> &author, const QList<PortraitCover> &candidates);

// The covers of a library, in its order: of each book that has an address.
QList<PortraitCover> candidatesOf(const QList<Book> &library);

// Letters a to z and digits in lower case, one space between words; notes in
// brackets and words such as "a novel" are gone. Empty for a text wholly in
// another script.
QString normalize(const QString &text);

// The words of the normalised text that tell one author from another.
QSet<QString> tokens(const QString &text);

// The normalised main title: what stands before the first colon.
QString baseTitle(const QString &text);

// 130 for the same title, 110 for the same main title, 85 when one is the
// other's main title and further words, else 0.
int titleScore(const QString &a, const QString &b);

} // namespace CoverFinder

} // namespace quire
