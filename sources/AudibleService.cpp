#include "sources/AudibleService.h"

#include "concurrency/Cancelled.h"
#include "concurrency/InBackground.h"
#include "records/Text.h"
#include "sources/AudibleImages.h"
#include "sources/CatalogQuery.h"
#include "sources/HTMLText.h"
#include "sources/NetworkClient.h"
#include "sources/ServiceURL.h"

#include <QCoroFuture>

namespace quire::AudibleService {

namespace {

constexpr qsizetype yearLength = 4;

QUrl searchURL(const QUrl &audibleAPI, const QString &query, int limit)
{
    return ServiceURL::request(audibleAPI, QStringLiteral("/1.0/catalog/products"),
        {{QStringLiteral("keywords"), query}, {QStringLiteral("num_results"), QString::number(limit)},
            {QStringLiteral("products_sort_by"), QStringLiteral("Relevance")},
            {QStringLiteral("response_groups"),
                QStringLiteral("contributors,product_desc,product_attrs,media,series,rating")}});
}

QFuture<QList<AudibleCatalogBook>> read(QByteArray body, const QUrl &audibleWeb)
{
    return inBackground([body = std::move(body), audibleWeb] {
        QList<AudibleCatalogBook> books;
        for (const AudibleProduct &product : AudibleCatalogResponse::parse(body).products) {
            if (auto book = map(product, audibleWeb)) {
                books.append(std::move(*book));
            }
        }
        return books;
    });
}

// The catalogue marks translators inside the name.
bool isTranslator(const QString &name)
{
    return name.contains(QStringLiteral("- translator"), Qt::CaseInsensitive);
}

QStringList names(const std::optional<QList<AudibleProduct::Contributor>> &contributors)
{
    QStringList result;
    for (const auto &contributor : contributors.value_or(QList<AudibleProduct::Contributor>())) {
        if (contributor.name) {
            result.append(*contributor.name);
        }
    }
    return result;
}

std::optional<QString> joined(const QStringList &names)
{
    return names.isEmpty() ? std::nullopt : std::optional(names.join(QStringLiteral(", ")));
}

std::optional<QString> author(const AudibleProduct &product)
{
    QStringList authors = names(product.authors);
    authors.removeIf(isTranslator);
    return joined(authors);
}

std::optional<QString> summary(const AudibleProduct &product)
{
    // An empty one of the publisher's counts.
    const QString html
        = product.publisherSummary ? *product.publisherSummary : product.merchandisingSummary.value_or(QString());
    const QString text = HTMLText::plainText(html);
    return text.isEmpty() ? std::nullopt : std::optional(text);
}

} // namespace

QCoro::Task<QList<AudibleCatalogBook>> search(
    NetworkClient &network, ServiceEndpoints endpoints, QString query, int limit, std::stop_token stop)
{
    const auto question = catalogQuery(query);
    if (!question) {
        co_return QList<AudibleCatalogBook>();
    }
    const auto answer = network.get(searchURL(endpoints.audibleAPI, *question, limit), searchTimeout, stop);
    auto body = co_await answer;
    const auto reading = read(std::move(body), endpoints.audibleWeb);
    const auto books = co_await reading;
    if (stop.stop_requested()) {
        throw Cancelled();
    }
    co_return books;
}

std::optional<AudibleCatalogBook> map(const AudibleProduct &product, const QUrl &audibleWeb)
{
    if (!product.asin || !product.title || product.title->isEmpty()) {
        return std::nullopt;
    }
    AudibleCatalogBook book;
    book.asin = *product.asin;
    book.title = *product.title;
    book.author = author(product);
    book.narrator = joined(names(product.narrators));
    if (product.series && !product.series->isEmpty()) {
        const auto &first = product.series->first();
        book.series = first.title;
        book.bookNumber = first.sequence ? Text::decimalInteger(*first.sequence) : std::nullopt;
    }
    if (product.productImages) {
        book.coverURL = AudibleImages::largest(*product.productImages);
    }
    book.audibleURL = ServiceURL::address(audibleWeb, QStringLiteral("/pd/") + book.asin);
    if (product.releaseDate) {
        book.year = Text::firstCharacters(*product.releaseDate, yearLength);
    }
    book.summary = summary(product);
    return book;
}

} // namespace quire::AudibleService
