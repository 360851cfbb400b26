#include "updates/QuireUpdateManifest.h"

#include "sources/JSONValue.h"
#include "updates/QuireUpdateCheckError.h"

#include <QJsonDocument>
#include <QJsonObject>
#include <QRegularExpression>

namespace quire {

namespace {

Url addressOf(const JSONValue &value)
{
    const auto address = Url::parse(value.text());
    if (!address) {
        throw JSONDecodingError::wrongType(QStringLiteral("an address"));
    }
    return *address;
}

// "host:port" of `address` as it is written, with its letter case.
QStringView writtenAuthority(QStringView address)
{
    const QStringView afterSlashes = address.sliced(address.indexOf(u"//") + 2);
    qsizetype end = 0;
    while (end < afterSlashes.size() && !QStringView(u"/?#").contains(afterSlashes[end])) {
        ++end;
    }
    const QStringView authority = afterSlashes.first(end);
    return authority.sliced(authority.lastIndexOf(u'@') + 1);
}

bool isDownloadPage(const Url &page, const QUrl &endpoint)
{
    const QString &text = page.text();
    const auto hasScheme = [&text](const QString &scheme) { return text.startsWith(scheme + QStringLiteral("://")); };
    if (!hasScheme(QStringLiteral("https")) && !hasScheme(endpoint.scheme())) {
        return false;
    }
    // Taken apart, an address loses the case of its letters.
    const QStringView authority = writtenAuthority(text);
    const QUrl url = page.toQUrl();
    return authority.compare(authority.toString().toLower()) == 0 && url.host() == endpoint.host()
        && url.path(QUrl::FullyDecoded).startsWith(QStringLiteral("/quire"));
}

bool isVersion(const QString &text)
{
    static const QRegularExpression pattern(
        QRegularExpression::anchoredPattern(QStringLiteral("\\d+(?:\\.\\d+){1,3}"))); // no newline at its end either
    return pattern.match(text).hasMatch();
}

} // namespace

QuireUpdateManifest QuireUpdateManifest::decode(const QByteArray &json)
{
    const JSONValue value = JSONValue::parse(json);
    return {
        .version = value.required(u"version", &JSONValue::text),
        .build = value.required(u"build", &JSONValue::integer),
        .downloadPage = value.required(u"downloadPage", addressOf),
    };
}

QByteArray QuireUpdateManifest::encode() const
{
    const QJsonObject object{
        {QStringLiteral("version"), version},
        {QStringLiteral("build"), build},
        {QStringLiteral("downloadPage"), downloadPage.text()},
    };
    return QJsonDocument(object).toJson(QJsonDocument::Compact);
}

void QuireUpdateManifest::validate(const QUrl &endpoint) const
{
    if (!isDownloadPage(downloadPage, endpoint) || build < 1 || !isVersion(version)) {
        throw QuireUpdateCheckError::invalidDownloadAddress(); // one message, whichever it was
    }
}

} // namespace quire
