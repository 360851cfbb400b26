#include "sources/ServiceEndpoints.h"

#include <QSettings>
#include <QStandardPaths>

namespace quire {

namespace {

// The scheme and authority of `text`, or an empty URL when it has none that a
// request could go to.
QUrl endpoint(const QString &text)
{
    const QUrl url = QUrl(text, QUrl::StrictMode).adjusted(QUrl::RemovePath | QUrl::RemoveQuery | QUrl::RemoveFragment);
    const bool usable = url.isValid() && !url.host().isEmpty()
        && (url.scheme() == QStringLiteral("https") || url.scheme() == QStringLiteral("http"));
    return usable ? url : QUrl();
}

} // namespace

ServiceEndpoints ServiceEndpoints::standard()
{
    return {
        .goodreads = QUrl(QStringLiteral("https://www.goodreads.com")),
        .audibleAPI = QUrl(QStringLiteral("https://api.audible.com")),
        .audibleWeb = QUrl(QStringLiteral("https://www.audible.com")),
        .openLibrary = QUrl(QStringLiteral("https://openlibrary.org")),
        .openLibraryCovers = QUrl(QStringLiteral("https://covers.openlibrary.org")),
        .appleBooks = QUrl(QStringLiteral("https://itunes.apple.com")),
        .netlify = QUrl(QStringLiteral("https://api.netlify.com")),
        .update = QUrl(QStringLiteral("https://" QUIRE_UPDATE_HOST)),
        .help = QUrl(QStringLiteral("https://" QUIRE_UPDATE_HOST)),
    };
}

ServiceEndpoints ServiceEndpoints::read(const QString &settingsFile)
{
    ServiceEndpoints endpoints = standard();
    QSettings settings(settingsFile, QSettings::IniFormat);
    settings.beginGroup(QStringLiteral("endpoints"));
    const auto override = [&settings](const QString &key, QUrl &field) {
        if (settings.contains(key)) {
            field = endpoint(settings.value(key).toString());
        }
    };
    override(QStringLiteral("goodreads"), endpoints.goodreads);
    override(QStringLiteral("audibleAPI"), endpoints.audibleAPI);
    override(QStringLiteral("audibleWeb"), endpoints.audibleWeb);
    override(QStringLiteral("openLibrary"), endpoints.openLibrary);
    override(QStringLiteral("openLibraryCovers"), endpoints.openLibraryCovers);
    override(QStringLiteral("appleBooks"), endpoints.appleBooks);
    override(QStringLiteral("netlify"), endpoints.netlify);
    override(QStringLiteral("update"), endpoints.update);
    override(QStringLiteral("help"), endpoints.help);
    return endpoints;
}

QString ServiceEndpoints::userSettingsFile()
{
    return QStandardPaths::writableLocation(QStandardPaths::GenericConfigLocation)
        + QStringLiteral("/Quire/Quire.conf");
}

} // namespace quire
