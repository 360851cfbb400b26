#include "sources/CoverCandidates.h"

#include "sources/JSONValue.h"
#include "sources/ServiceURL.h"

#include <QRegularExpression>

namespace quire::CoverCandidates {

namespace {

Url url(const JSONValue &value)
{
    auto parsed = Url::parse(value.text());
    if (!parsed) {
        throw JSONDecodingError::wrongType(QStringLiteral("a URL"));
    }
    return *parsed;
}

// The address of the same picture at 600 by 900, where it names a size.
Url largePortrait(const Url &address)
{
    static const QRegularExpression size(QStringLiteral("/\\d+x\\d+bb\\.(jpg|png)$"));
    QString text = address.text();
    text.replace(size, QStringLiteral("/600x900bb.\\1"));
    return Url::parse(text).value_or(address);
}

std::optional<PortraitCover> appleBook(const JSONValue &item)
{
    const auto title = item.optional(u"trackName", &JSONValue::text);
    const auto author = item.optional(u"artistName", &JSONValue::text);
    const auto picture = item.optional(u"artworkUrl100", url);
    if (!title || !picture) {
        return std::nullopt;
    }
    return PortraitCover{.title = *title,
        .author = author.value_or(QString()),
        .url = largePortrait(*picture),
        .source = QStringLiteral("Apple Books")};
}

struct Document
{
    QString title;
    QStringList authors;
    std::optional<qint64> coverNumber;
};

Document document(const JSONValue &item)
{
    return {.title = item.required(u"title", &JSONValue::text),
        .authors = item.optional(u"author_name", JSONValue::listOf(&JSONValue::text)).value_or(QStringList()),
        .coverNumber = item.optional(u"cover_i", &JSONValue::integer)};
}

} // namespace

QList<PortraitCover> ofAppleBooks(const QByteArray &answer)
{
    QList<PortraitCover> candidates;
    for (const auto &book : JSONValue::parse(answer).required(u"results", JSONValue::listOf(appleBook))) {
        if (book) {
            candidates.append(*book);
        }
    }
    return candidates;
}

QList<PortraitCover> ofOpenLibrary(const QByteArray &answer, const QUrl &covers)
{
    QList<PortraitCover> candidates;
    for (const Document &found : JSONValue::parse(answer).required(u"docs", JSONValue::listOf(document))) {
        if (!found.coverNumber) {
            continue;
        }
        const auto address = ServiceURL::address(covers, QStringLiteral("/b/id/%1-L.jpg").arg(*found.coverNumber));
        if (address) {
            candidates.append({.title = found.title,
                .author = found.authors.join(QStringLiteral(", ")),
                .url = *address,
                .source = QStringLiteral("Open Library")});
        }
    }
    return candidates;
}

} // namespace quire::CoverCandidates
