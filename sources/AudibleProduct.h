// One product as the Audible catalogue describes it, with the parts of its
// answer that Quire looks at. Every member may be absent.

#pragma once

#include <QByteArray>
#include <QList>
#include <QMap>
#include <QString>

#include <optional>

namespace quire {

struct AudibleProduct
{
    struct Contributor
    {
        std::optional<QString> name;
    };

    struct SeriesEntry
    {
        std::optional<QString> title;
        std::optional<QString> sequence; // a number for most, but also "1.5" or "2-3"
    };

    std::optional<QString> asin;
    std::optional<QString> title;
    std::optional<QList<Contributor>> authors;
    std::optional<QList<Contributor>> narrators;
    std::optional<QList<SeriesEntry>> series;
    std::optional<QMap<QString, QString>> productImages; // URLs by pixel size in decimal
    std::optional<QString> releaseDate;
    std::optional<QString> publisherSummary; // HTML, as is the next
    std::optional<QString> merchandisingSummary;
};

struct AudibleCatalogResponse
{
    QList<AudibleProduct> products;

    // The answer `body` to a catalogue search. Throws JSONDecodingError.
    static AudibleCatalogResponse parse(const QByteArray &body);
};

} // namespace quire
