#include "sources/GoodreadsService.h"

#include "concurrency/Cancelled.h"
#include "concurrency/Clock.h"
#include "concurrency/InBackground.h"
#include "persistence/LibraryStore.h"
#include "records/DateParser.h"
#include "records/Text.h"
#include "sources/GoodreadsXMLParser.h"
#include "sources/NetworkClient.h"
#include "sources/Redaction.h"
#include "sources/ServiceURL.h"

#include <QCoroFuture>
#include <QHash>

#include <array>

namespace quire::GoodreadsService {

namespace {

struct FeedRequest
{
    QStringView shelf;
    int perPage;
    bool isOneShelf; // false for the request for all of them
};

constexpr std::array<FeedRequest, 5> requests{{
    {u"#ALL#", 200, false},
    {u"currently-reading", 100, true},
    {u"read", 200, true},
    {u"to-read", 100, true},
    {u"did-not-finish", 100, true},
}};

struct Feed
{
    QList<GoodreadsFeedBook> books;
    bool isValid = false;
};

// The books of all requests, each id once, as the last request that carried it
// tells it.
class DistinctBooks
{
public:
    void put(QList<GoodreadsFeedBook> books)
    {
        for (GoodreadsFeedBook &book : books) {
            const auto known = m_places.constFind(book.goodreadsID);
            if (known != m_places.cend()) {
                m_books[*known] = std::move(book);
            } else {
                m_places.insert(book.goodreadsID, m_books.size());
                m_books.append(std::move(book));
            }
        }
    }

    const QList<GoodreadsFeedBook> &all() const { return m_books; }

private:
    QList<GoodreadsFeedBook> m_books;
    QHash<QString, qsizetype> m_places;
};

QUrl feedURL(const QUrl &goodreads, const QString &userID, const QString &key, const FeedRequest &request)
{
    return ServiceURL::request(goodreads, QStringLiteral("/review/list_rss/") + userID,
        {{QStringLiteral("key"), key}, {QStringLiteral("shelf"), request.shelf.toString()},
            {QStringLiteral("per_page"), QString::number(request.perPage)}});
}

// A feed may be 64 MiB long, too much for the interface thread.
QFuture<Feed> parse(QByteArray document, const FeedRequest &request, const QUrl &website, std::stop_token stop)
{
    const auto fallbackShelf = request.isOneShelf ? std::optional(request.shelf.toString()) : std::nullopt;
    return inBackground([document = std::move(document), fallbackShelf, website, stop]() mutable {
        GoodreadsXMLParser parser(fallbackShelf, website);
        parser.parse(std::move(document), stop);
        return Feed{parser.books(), parser.isValidFeed()};
    });
}

void throwIfStopped(const std::stop_token &stop)
{
    if (stop.stop_requested()) {
        throw Cancelled();
    }
}

QCoro::Task<Feed> fetch(NetworkClient &network, FeedRequest request, QUrl url, QUrl website, std::stop_token stop)
{
    const auto answer = network.get(std::move(url), requestTimeout, stop);
    auto document = co_await answer;
    const auto parsing = parse(std::move(document), request, website, stop);
    const auto feed = co_await parsing;
    throwIfStopped(stop);
    co_return feed;
}

GoodreadsSyncResult verdict(qint64 count, int shelvesThatAnswered, QStringList warnings)
{
    GoodreadsSyncResult result{.count = count, .succeeded = count > 0 || shelvesThatAnswered > 0, .warnings = warnings};
    if (!result.succeeded) {
        result.message = warnings.isEmpty() ? QStringLiteral("Goodreads sync failed.") : warnings.first();
    }
    return result;
}

} // namespace

QCoro::Task<GoodreadsSyncResult> synchronize(
    LibraryStore &store, NetworkClient &network, ServiceEndpoints endpoints, const Clock &clock, std::stop_token stop)
{
    const auto readingSettings = store.settings();
    const auto settings = co_await readingSettings;
    throwIfStopped(stop);
    const QString userID = Text::trimmed(settings.value(QStringLiteral("goodreadsUserId")));
    const QString key = Text::trimmed(settings.value(QStringLiteral("goodreadsRssKey")));
    if (userID.isEmpty() || key.isEmpty()) {
        co_return GoodreadsSyncResult{
            .message = QStringLiteral("Goodreads User ID and RSS key are not configured."), .warnings = {}};
    }

    // What an import may spoil can be had back from before it.
    const auto backingUp = store.backUpDatabaseIfDue();
    co_await backingUp;
    throwIfStopped(stop);

    DistinctBooks books;
    QStringList warnings;
    int shelvesThatAnswered = 0;
    for (const FeedRequest &request : requests) {
        const QString label = request.isOneShelf ? request.shelf.toString() : QStringLiteral("All shelves");
        try {
            const QUrl url = feedURL(endpoints.goodreads, userID, key, request);
            const auto fetching = fetch(network, request, url, endpoints.goodreads, stop);
            const auto feed = co_await fetching;
            if (feed.isValid) {
                shelvesThatAnswered += request.isOneShelf ? 1 : 0;
                books.put(feed.books);
            } else if (request.isOneShelf) {
                warnings.append(label + QStringLiteral(": feed body was not RSS"));
            }
        } catch (const Cancelled &) {
            throw;
        } catch (const Failure &failure) {
            // The server's own words, which may repeat the address it was asked for.
            warnings.append(label + QStringLiteral(": ") + Redaction::without(failure.description(), key));
        }
    }

    const auto merging = store.upsertGoodreadsBooks(books.all());
    co_await merging;
    const auto noting = store.setSetting(QStringLiteral("goodreadsLastSync"), DateParser::iso8601(clock.now()));
    co_await noting;
    co_return verdict(books.all().size(), shelvesThatAnswered, warnings);
}

} // namespace quire::GoodreadsService
