#include "fuzz/Targets.h"

#include "persistence/AudiobookIndex.h"
#include "persistence/NormalizedText.h"
#include "records/DateParser.h"
#include "records/Text.h"
#include "sources/AudibleLibraryRow.h"
#include "sources/AudibleService.h"
#include "sources/BookCatalogService.h"
#include "sources/GoodreadsXMLParser.h"
#include "sources/HTMLText.h"
#include "sources/JSONDecodingError.h"

#include <QList>
#include <QSet>
#include <QStringList>
#include <QUrl>

#include <algorithm>
#include <array>
#include <chrono>
#include <cstring>

namespace quire::fuzz {

namespace {

void require(bool holds, const char *what)
{
    if (!holds) {
        qFatal("%s", what);
    }
}

QUrl service()
{
    return QUrl(QStringLiteral("https://service.example"));
}

// A value as a line spells it: its first letter tells the type of the rest.
SQLiteValue valueOf(const QByteArray &line)
{
    const QByteArray rest = line.mid(1);
    switch (line.isEmpty() ? ' ' : line.front()) {
    case 'i':
        return rest.toLongLong();
    case 'r': {
        double real = 0;
        std::memcpy(&real, rest.constData(), std::min(sizeof real, size_t(rest.size())));
        return real;
    }
    case 'b':
        return rest;
    case 't':
        return QString::fromUtf8(rest);
    default:
        return {};
    }
}

struct Title
{
    QString asin;
    QString title;
    std::optional<QString> author;
};

// "asin|title|author"; without the last, nobody wrote it.
Title titleOf(const QByteArray &line)
{
    const QStringList parts = QString::fromUtf8(line).split(u'|');
    return {parts.value(0), parts.value(1), parts.size() > 2 ? std::optional(parts[2]) : std::nullopt};
}

QSet<QString> wordsOf(const std::optional<QString> &author)
{
    const QStringList words = normalizedText(author.value_or(QString())).split(u' ', Qt::SkipEmptyParts);
    return {words.begin(), words.end()};
}

bool matchesByTitle(const Title &row, const Title &item)
{
    if (normalizedText(row.title) != normalizedText(item.title)) {
        return false;
    }
    const auto ofRow = wordsOf(row.author);
    const auto ofItem = wordsOf(item.author);
    return ofRow.isEmpty() || ofItem.isEmpty() || ofRow.intersects(ofItem);
}

// The rule as it is told: through the rows one by one.
std::optional<qint64> firstMatch(const QList<Title> &rows, const Title &item)
{
    const auto position = [&rows](auto matches) -> std::optional<qint64> {
        const auto found = std::find_if(rows.begin(), rows.end(), matches);
        return found == rows.end() ? std::nullopt : std::optional<qint64>(found - rows.begin());
    };
    const auto byAsin = position([&item](const Title &row) { return row.asin == item.asin; });
    return byAsin ? byAsin : position([&item](const Title &row) { return matchesByTitle(row, item); });
}

} // namespace

void feed(const QByteArray &bytes)
{
    GoodreadsXMLParser parser(QStringLiteral("read"), service());
    parser.parse(bytes);
    for (const GoodreadsFeedBook &book : parser.books()) {
        require(!book.goodreadsID.isEmpty(), "a book without an id"); // one without a title is the import's to refuse
    }
}

void audibleCatalogue(const QByteArray &bytes)
{
    try {
        for (const AudibleProduct &product : AudibleCatalogResponse::parse(bytes).products) {
            const auto book = AudibleService::map(product, service());
            require(!book || !book->title.isEmpty(), "a result without a title");
        }
    } catch (const JSONDecodingError &error) {
        require(!error.description().isEmpty(), "a failure without words");
    }
}

void bookCatalogue(const QByteArray &bytes)
{
    try {
        QSet<QString> works;
        for (const BookCatalogBook &book : BookCatalogService::parse(bytes, service())) {
            require(!book.title.isEmpty() && !book.workID.isEmpty(), "a book without a title or a work");
            require(!works.contains(book.workID), "a work twice");
            works.insert(book.workID);
        }
    } catch (const JSONDecodingError &error) {
        require(!error.description().isEmpty(), "a failure without words");
    }
}

void htmlText(const QByteArray &bytes)
{
    constexpr qsizetype limit = 500;
    constexpr qsizetype longest = limit + 3; // with its three full stops
    const QString plain = HTMLText::plainText(QString::fromUtf8(bytes));
    require(plain == plain.trimmed(), "blanks at an end");
    require(!plain.contains(u'\r') && !plain.contains(QStringLiteral("\n\n\n")), "lines that were not shortened");
    const QString cut = HTMLText::plainText(QString::fromUtf8(bytes), limit);
    require(Text::characterCount(cut) <= longest, "a text beyond its limit");
}

void date(const QByteArray &bytes)
{
    // A zone may take a date of the first or the last year out of the calendar.
    constexpr Instant earliest = std::chrono::sys_days(std::chrono::year(1) / 1 / 2);
    constexpr Instant latest = std::chrono::sys_days(std::chrono::year(9999) / 12 / 31);
    const auto instant = DateParser::date(QString::fromUtf8(bytes));
    if (instant && *instant > earliest && *instant < latest) {
        require(DateParser::date(DateParser::iso8601(*instant)).has_value(), "a date that cannot be read back");
    }
}

void audibleRow(const QByteArray &bytes)
{
    constexpr std::array columns{"asin", "title", "authors", "narrators", "relationships", "productImages",
        "publisherSummary", "runtimeLength", "releaseDate", "rating", "purchaseDate", "percentComplete", "isStarted",
        "isFinished", "ownedIndefinitely"};
    const QByteArrayList lines = bytes.split('\n');
    SQLiteRow row;
    for (std::size_t at = 0; at < columns.size(); ++at) {
        row.set(QString::fromLatin1(columns[at]), valueOf(lines.value(qsizetype(at))));
    }
    const auto item = AudibleLibraryRow::map(row, service());
    require(!item || (!item->asin.isEmpty() && !item->title.isEmpty()), "an item without an ASIN or a title");
    require(!item || (item->listeningProgress >= 0 && item->listeningProgress <= 100), "a progress that is none");
}

void merge(const QByteArray &bytes)
{
    QList<Title> rows;
    AudiobookIndex index;
    for (const QByteArray &line : bytes.split('\n').first(std::min<qsizetype>(bytes.count('\n') + 1, 50))) {
        const Title title = titleOf(line);
        AudibleLibraryItem item;
        item.asin = title.asin;
        item.title = title.title;
        item.author = title.author;
        require(index.find(item) == firstMatch(rows, title), "another row than the first that matches");
        index.add(rows.size(), title.asin, title.title, title.author);
        rows.append(title);
    }
}

} // namespace quire::fuzz
