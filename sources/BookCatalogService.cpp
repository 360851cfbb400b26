#include "sources/BookCatalogService.h"

#include "concurrency/Cancelled.h"
#include "concurrency/InBackground.h"
#include "records/Text.h"
#include "sources/CatalogQuery.h"
#include "sources/JSONValue.h"
#include "sources/NetworkClient.h"
#include "sources/ServiceURL.h"

#include <QCoroFuture>
#include <QSet>

#include <array>

namespace quire::BookCatalogService {

namespace {

// The lengths of an ISBN, the one to choose first.
constexpr std::array<qsizetype, 2> isbnLengths{13, 10};

struct Item
{
    std::optional<QString> key;
    std::optional<QString> title;
    std::optional<QStringList> authorNames;
    std::optional<qint64> coverID;
    std::optional<QStringList> isbn;
    std::optional<qint64> firstPublishYear;
    std::optional<qint64> numberOfPagesMedian;
};

Item item(const JSONValue &value)
{
    return {
        .key = value.optional(u"key", &JSONValue::text),
        .title = value.optional(u"title", &JSONValue::text),
        .authorNames = value.optional(u"author_name", JSONValue::listOf(&JSONValue::text)),
        .coverID = value.optional(u"cover_i", &JSONValue::integer),
        .isbn = value.optional(u"isbn", JSONValue::listOf(&JSONValue::text)),
        .firstPublishYear = value.optional(u"first_publish_year", &JSONValue::integer),
        .numberOfPagesMedian = value.optional(u"number_of_pages_median", &JSONValue::integer),
    };
}

QUrl searchURL(const QUrl &openLibrary, const QString &query, int limit)
{
    return ServiceURL::request(openLibrary, QStringLiteral("/search.json"),
        {{QStringLiteral("q"), query},
            {QStringLiteral("fields"),
                QStringLiteral("key,title,author_name,cover_i,isbn,first_publish_year,number_of_pages_median")},
            {QStringLiteral("limit"), QString::number(limit)}});
}

// The last part of a key such as "/works/OL1W".
QString workID(const QString &key)
{
    const QString path = Text::trimmed(key).remove(QStringLiteral("/works/"));
    QStringView id = path;
    while (id.startsWith(u'/')) {
        id = id.sliced(1);
    }
    while (id.endsWith(u'/')) {
        id.chop(1);
    }
    return id.toString();
}

std::optional<QString> preferredISBN(const QStringList &entries)
{
    if (entries.isEmpty()) {
        return std::nullopt;
    }
    for (const qsizetype length : isbnLengths) {
        for (const QString &entry : entries) {
            if (Text::characterCount(entry) == length) {
                return entry;
            }
        }
    }
    return entries.first();
}

std::optional<BookCatalogBook> makeBook(const Item &item, const QUrl &openLibraryCovers)
{
    BookCatalogBook book;
    book.workID = workID(item.key.value_or(QString()));
    book.title = Text::trimmed(item.title.value_or(QString()));
    if (book.workID.isEmpty() || book.title.isEmpty()) {
        return std::nullopt;
    }
    book.author = item.authorNames.value_or(QStringList()).join(QStringLiteral(", "));
    book.isbn = preferredISBN(item.isbn.value_or(QStringList()));
    book.numberOfPages = item.numberOfPagesMedian;
    book.publishedYear = item.firstPublishYear;
    if (item.coverID) {
        book.coverURL
            = ServiceURL::address(openLibraryCovers, QStringLiteral("/b/id/%1-L.jpg?default=false").arg(*item.coverID));
    }
    return book;
}

} // namespace

QCoro::Task<QList<BookCatalogBook>> search(
    NetworkClient &network, ServiceEndpoints endpoints, QString query, int limit, std::stop_token stop)
{
    const auto question = catalogQuery(query);
    if (!question) {
        co_return QList<BookCatalogBook>();
    }
    const auto answer = network.get(searchURL(endpoints.openLibrary, *question, limit), searchTimeout, stop);
    const auto body = co_await answer;
    const auto reading = inBackground([body, covers = endpoints.openLibraryCovers] { return parse(body, covers); });
    const auto books = co_await reading;
    if (stop.stop_requested()) {
        throw Cancelled();
    }
    co_return books;
}

QList<BookCatalogBook> parse(const QByteArray &body, const QUrl &openLibraryCovers)
{
    QList<BookCatalogBook> books;
    QSet<QString> works;
    for (const Item &entry : JSONValue::parse(body).required(u"docs", JSONValue::listOf(item))) {
        auto book = makeBook(entry, openLibraryCovers);
        if (book && !works.contains(book->workID)) {
            works.insert(book->workID);
            books.append(std::move(*book));
        }
    }
    return books;
}

} // namespace quire::BookCatalogService
