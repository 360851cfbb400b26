#include "sources/AudibleProduct.h"

#include "sources/JSONValue.h"

namespace quire {

namespace {

AudibleProduct::Contributor contributor(const JSONValue &value)
{
    return {.name = value.optional(u"name", &JSONValue::text)};
}

AudibleProduct::SeriesEntry seriesEntry(const JSONValue &value)
{
    return {
        .title = value.optional(u"title", &JSONValue::text),
        .sequence = value.optional(u"sequence", &JSONValue::text),
    };
}

AudibleProduct product(const JSONValue &value)
{
    return {
        .asin = value.optional(u"asin", &JSONValue::text),
        .title = value.optional(u"title", &JSONValue::text),
        .authors = value.optional(u"authors", JSONValue::listOf(contributor)),
        .narrators = value.optional(u"narrators", JSONValue::listOf(contributor)),
        .series = value.optional(u"series", JSONValue::listOf(seriesEntry)),
        .productImages = value.optional(u"product_images", JSONValue::mapOf(&JSONValue::text)),
        .releaseDate = value.optional(u"release_date", &JSONValue::text),
        .publisherSummary = value.optional(u"publisher_summary", &JSONValue::text),
        .merchandisingSummary = value.optional(u"merchandising_summary", &JSONValue::text),
    };
}

} // namespace

AudibleCatalogResponse AudibleCatalogResponse::parse(const QByteArray &body)
{
    return {.products = JSONValue::parse(body).required(u"products", JSONValue::listOf(product))};
}

} // namespace quire
