#include "sources/CoverFinder.h"

#include "concurrency/InBackground.h"
#include "sources/CoverCandidates.h"
#include "sources/NetworkClient.h"
#include "sources/ServiceURL.h"

#include <QCoroFuture>

namespace quire::CoverFinder {

namespace {

// The title and the author in one, without spaces at the ends.
QString searchTerm(const QString &title, const QString &author)
{
    const QString term = title + u' ' + author;
    qsizetype from = 0;
    qsizetype to = term.size();
    while (from < to && term.at(from) == u' ') {
        ++from;
    }
    while (to > from && term.at(to - 1) == u' ') {
        --to;
    }
    return term.mid(from, to - from);
}

QFuture<std::optional<PortraitCover>> bestOfLibrary(
    const QString &title, const std::optional<QString> &author, const QList<Book> &library)
{
    return inBackground([=] { return bestMatch(title, author, candidatesOf(library)); });
}

QFuture<std::optional<PortraitCover>> bestOfAppleBooks(
    const QString &title, const std::optional<QString> &author, const QByteArray &answer)
{
    return inBackground([=] { return bestMatch(title, author, CoverCandidates::ofAppleBooks(answer)); });
}

QFuture<std::optional<PortraitCover>> bestOfOpenLibrary(
    const QString &title, const std::optional<QString> &author, const QByteArray &answer, const QUrl &covers)
{
    return inBackground([=] { return bestMatch(title, author, CoverCandidates::ofOpenLibrary(answer, covers)); });
}

} // namespace

QCoro::Task<std::optional<PortraitCover>> find(NetworkClient &network, ServiceEndpoints endpoints, QString title,
    std::optional<QString> author, QList<Book> library, std::stop_token stop)
{
    const auto scoring = bestOfLibrary(title, author, library);
    auto found = co_await scoring;
    if (found) {
        co_return found;
    }
    const auto apple = searchAppleBooks(network, endpoints, title, author, stop);
    found = co_await apple;
    if (found) {
        co_return found;
    }
    const auto openLibrary = searchOpenLibrary(network, endpoints, title, author, stop);
    co_return co_await openLibrary;
}

QCoro::Task<std::optional<PortraitCover>> searchAppleBooks(NetworkClient &network, ServiceEndpoints endpoints,
    QString title, std::optional<QString> author, std::stop_token stop)
{
    const ServiceURL::QueryItems query{
        {QStringLiteral("term"), searchTerm(title, author.value_or(QString()))},
        {QStringLiteral("country"), QStringLiteral("US")},
        {QStringLiteral("media"), QStringLiteral("ebook")},
        {QStringLiteral("entity"), QStringLiteral("ebook")},
        {QStringLiteral("limit"), QStringLiteral("15")},
    };
    const QUrl url = ServiceURL::request(endpoints.appleBooks, QStringLiteral("/search"), query);
    const auto asking = network.get(url, requestTimeout, stop);
    const auto answer = co_await asking;
    const auto scoring = bestOfAppleBooks(title, author, answer);
    co_return co_await scoring;
}

QCoro::Task<std::optional<PortraitCover>> searchOpenLibrary(NetworkClient &network, ServiceEndpoints endpoints,
    QString title, std::optional<QString> author, std::stop_token stop)
{
    const ServiceURL::QueryItems query{
        {QStringLiteral("title"), title},
        {QStringLiteral("author"), author.value_or(QString())},
        {QStringLiteral("fields"), QStringLiteral("title,author_name,cover_i")},
        {QStringLiteral("limit"), QStringLiteral("15")},
    };
    const QUrl url = ServiceURL::request(endpoints.openLibrary, QStringLiteral("/search.json"), query);
    const auto asking = network.get(url, requestTimeout, stop);
    const auto answer = co_await asking;
    const auto scoring = bestOfOpenLibrary(title, author, answer, endpoints.openLibraryCovers);
    co_return co_await scoring;
}

} // namespace quire::CoverFinder
