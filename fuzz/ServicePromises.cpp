#include "fuzz/BrokenPromise.h"
#include "fuzz/Promises.h"

#include "records/DateParser.h"
#include "records/Text.h"
#include "sources/GoodreadsXMLParser.h"
#include "sources/JSONDecodingError.h"
#include "updates/QuireUpdateCheckError.h"
#include "updates/QuireUpdateManifest.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QSet>

#include <algorithm>
#include <chrono>

namespace quire::fuzz::promises {

namespace {

// "host:port" of an address as it is written.
QString writtenHost(const QString &address)
{
    const QString afterScheme = address.section(QStringLiteral("://"), 1);
    const auto end = std::find_if(afterScheme.begin(), afterScheme.end(),
        [](QChar c) { return c == u'/' || c == u'?' || c == u'#' || c == u'\\'; });
    return afterScheme.first(end - afterScheme.begin()).section(u'@', -1);
}

bool isDottedNumber(const QString &version)
{
    const QStringList numbers = version.split(u'.');
    return numbers.size() >= 2 && numbers.size() <= 4
        && std::all_of(numbers.begin(), numbers.end(), [](const QString &number) {
               return !number.isEmpty()
                   && std::all_of(number.begin(), number.end(), [](QChar c) { return c.isDigit(); });
           });
}

} // namespace

QUrl service()
{
    return QUrl(QStringLiteral("https://service.example"));
}

void feed(const QByteArray &bytes, const ReadFeed &read)
{
    const auto books = read(bytes);
    require(books.size() <= GoodreadsXMLParser::maximumBooks, "more books than any reader has");
    for (const GoodreadsFeedBook &book : books) {
        require(!book.goodreadsID.isEmpty(), "a book without an id"); // one without a title is the import's to refuse
    }
}

void audibleCatalogue(const QByteArray &bytes, const ReadAudibleCatalogue &read)
{
    try {
        for (const AudibleCatalogBook &book : read(bytes)) {
            require(!book.title.isEmpty(), "a result without a title"); // an ASIN may be empty, but not absent
        }
    } catch (const JSONDecodingError &error) {
        require(!error.description().isEmpty(), "a failure without words");
    }
}

void bookCatalogue(const QByteArray &bytes, const ReadBookCatalogue &read)
{
    try {
        QSet<QString> works;
        for (const BookCatalogBook &book : read(bytes)) {
            require(!book.title.isEmpty() && !book.workID.isEmpty(), "a book without a title or a work");
            require(!works.contains(book.workID), "a work twice");
            works.insert(book.workID);
        }
    } catch (const JSONDecodingError &error) {
        require(!error.description().isEmpty(), "a failure without words");
    }
}

void htmlText(const QByteArray &bytes, const ReadHtml &read)
{
    constexpr qsizetype limit = 500;
    constexpr qsizetype longest = limit + 3; // with its three full stops
    const QString plain = read(QString::fromUtf8(bytes), std::nullopt);
    require(plain == plain.trimmed(), "blanks at an end");
    require(!plain.contains(u'\r') && !plain.contains(QStringLiteral("\n\n\n")), "lines that were not shortened");
    const QString cut = read(QString::fromUtf8(bytes), limit);
    require(Text::characterCount(cut) <= longest, "a text beyond its limit");
}

void date(const QByteArray &bytes, const ReadDate &read)
{
    // A zone may take a date of the first or the last year out of the calendar.
    constexpr Instant earliest = std::chrono::sys_days(std::chrono::year(1) / 1 / 2);
    constexpr Instant latest = std::chrono::sys_days(std::chrono::year(9999) / 12 / 31);
    const auto instant = read(QString::fromUtf8(bytes));
    if (instant && *instant > earliest && *instant < latest) {
        require(read(DateParser::iso8601(*instant)) == instant, "a date that is another when it is read back");
    }
}

void netlifyAnswer(const QByteArray &bytes, const NetlifyReader &reader)
{
    const QJsonObject object = QJsonDocument::fromJson(bytes).object();
    for (const QStringView name : {u"id", u"state", u"message", u"custom_domain", u"ssl_url", u"url"}) {
        const QJsonValue member = object.value(name);
        const auto text = reader.text(bytes, name);
        require(!text || (member.isString() && *text == member.toString()), "a text that the answer does not hold");
        require(text || !member.isString(), "a text that was lost");
    }
    const QJsonArray required = object.value(u"required").toArray();
    const QStringList texts = reader.texts(bytes, u"required");
    require(texts.isEmpty() || texts.size() == required.size(), "a list with entries left out");
    for (qsizetype at = 0; at < texts.size(); ++at) {
        require(required.at(at).isString() && required.at(at).toString() == texts[at], "an entry that is no text");
    }
    if (const auto address = reader.siteURL(bytes)) {
        require(Url::parse(address->text()).has_value(), "an address that is none");
    }
}

void updateManifest(const QByteArray &bytes, const ReadManifest &read)
{
    try {
        const QuireUpdateManifest manifest = read(bytes);
        const QString page = manifest.downloadPage.text();
        const QString host = writtenHost(page);
        require(page.startsWith(QStringLiteral("https://")), "a page that is not encrypted");
        require(host == service().host() || host.startsWith(service().host() + u':'), "a page of another host");
        require(manifest.downloadPage.toQUrl().path().startsWith(QStringLiteral("/quire")), "a page of others");
        require(manifest.build >= 1 && isDottedNumber(manifest.version), "a version that is none");
        require(QuireUpdateManifest::decode(manifest.encode()) == manifest, "a manifest that cannot be read back");
    } catch (const JSONDecodingError &error) {
        require(!error.description().isEmpty(), "a failure without words");
    } catch (const QuireUpdateCheckError &error) {
        require(!error.description().isEmpty(), "a failure without words");
    }
}

} // namespace quire::fuzz::promises
