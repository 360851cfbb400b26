#include "publishing/OnlineReadingList.h"

#include "concurrency/Clock.h"
#include "concurrency/InBackground.h"
#include "files/DurableFile.h"
#include "files/SmallFile.h"
#include "persistence/AppDirectories.h"
#include "persistence/LibraryStore.h"
#include "publishing/NetlifyAPI.h"
#include "records/DateParser.h"
#include "records/Text.h"
#include "records/UUIDText.h"
#include "sources/NetworkClient.h"
#include "sources/ServiceError.h"

#include <QCoroFuture>
#include <QCryptographicHash>
#include <QUrlQuery>

#include <algorithm>
#include <utility>

namespace quire::OnlineReadingList {

namespace {

// Files and digests, off the interface thread. --------------------------------------

struct DeployFolder
{
    QString path;

    QString siteIDPath() const { return path + QStringLiteral("/.site-id"); }
    QString pagePath() const { return path + QStringLiteral("/index.html"); }
};

// In lower-case hexadecimal.
struct Digests
{
    QString sha1;
    QString sha256;
};

QString digest(const QByteArray &bytes, QCryptographicHash::Algorithm algorithm)
{
    return QString::fromLatin1(QCryptographicHash::hash(bytes, algorithm).toHex());
}

QFuture<Digests> digestsOf(const QByteArray &html)
{
    return inBackground([html] {
        return Digests{digest(html, QCryptographicHash::Sha1), digest(html, QCryptographicHash::Sha256)};
    });
}

QFuture<bool> isPage(const QByteArray &body, const QString &sha256)
{
    return inBackground([body, sha256] { return digest(body, QCryptographicHash::Sha256) == sha256; });
}

QFuture<void> create(const DeployFolder &folder)
{
    return inBackground([folder] { DurableFile::createFolder(folder.path); });
}

QFuture<QString> siteIDIn(const DeployFolder &folder)
{
    return inBackground([folder] {
        const auto bytes = SmallFile::read(folder.siteIDPath());
        return bytes && bytes->isValidUtf8() ? Text::trimmed(QString::fromUtf8(*bytes)) : QString();
    });
}

QFuture<void> write(const QString &path, const QByteArray &bytes)
{
    return inBackground([path, bytes] { DurableFile::write(path, bytes); });
}

// Steps. ------------------------------------------------------------------------------

QString netlifyToken(const SettingsMap &settings)
{
    QString token = Text::trimmed(settings.value(QStringLiteral("netlifyToken")));
    if (token.isEmpty()) {
        throw ServiceError::message(QStringLiteral("Netlify token not found. Add it in Settings."));
    }
    return token;
}

struct Site
{
    QString id;
    NetlifyAnswer description;
};

// The site that is there, or a new one where there was none yet. A site that the
// service no longer knows stays a failure: the reader may have removed it.
QCoro::Task<Site> findOrCreateSite(NetlifyAPI &netlify, DeployFolder folder)
{
    const auto reading = siteIDIn(folder);
    const auto knownID = co_await reading;
    if (!knownID.isEmpty()) {
        const auto asking = netlify.netlifyJSON("GET", QStringLiteral("/api/v1/sites/") + knownID);
        const auto description = co_await asking;
        co_return Site{knownID, description};
    }
    const auto creating = netlify.netlifyJSON("POST", QStringLiteral("/api/v1/sites"));
    const auto description = co_await creating;
    const QString id = description.text(u"id").value_or(QString());
    if (id.isEmpty()) {
        throw ServiceError::message(QStringLiteral("Netlify did not return a site identifier."));
    }
    const auto keeping = write(folder.siteIDPath(), id.toUtf8());
    co_await keeping;
    co_return Site{id, description};
}

// The id of a new deploy of the one page, uploaded if the service does not have
// it yet.
QCoro::Task<QString> deploy(NetlifyAPI &netlify, QString siteID, QByteArray html, QString sha1)
{
    const QJsonObject files{{QStringLiteral("/index.html"), sha1}};
    const QJsonObject order{{QStringLiteral("files"), files}};
    const auto ordering
        = netlify.netlifyJSON("POST", QStringLiteral("/api/v1/sites/") + siteID + QStringLiteral("/deploys"), order);
    const auto answer = co_await ordering;
    const auto id = answer.text(u"id");
    if (!id) {
        throw ServiceError::message(QStringLiteral("Netlify did not return a deploy identifier."));
    }
    if (answer.texts(u"required").contains(sha1)) {
        const auto uploading = netlify.uploadPage(*id, std::move(html));
        co_await uploading;
    }
    co_return *id;
}

QCoro::Task<> waitForDeploy(NetlifyAPI &netlify, QString id, Clock &clock, std::stop_token stop)
{
    for (int poll = 1;; ++poll) {
        const auto asking = netlify.netlifyJSON("GET", QStringLiteral("/api/v1/deploys/") + id);
        const auto answer = co_await asking;
        const QString state = answer.text(u"state").value_or(QString()).toLower();
        if (state == u"ready") {
            co_return;
        }
        if (state == u"error" || state == u"failed" || state == u"canceled" || state == u"cancelled") {
            throw ServiceError::message(QStringLiteral("Netlify reported that the deployment failed."));
        }
        if (poll == mostPolls) {
            throw ServiceError::message(QStringLiteral(
                "Netlify accepted the deployment, but it did not become live before verification timed out. "
                "Quire will retry it."));
        }
        const auto sleeping = clock.sleep(pollInterval, stop);
        co_await sleeping;
    }
}

// An address that no cache on the way has seen.
QUrl verificationURL(const Url &site)
{
    QUrl url = site.toQUrl().adjusted(QUrl::StripTrailingSlash | QUrl::RemoveFragment);
    url.setPath(url.path(QUrl::FullyEncoded) + QStringLiteral("/index.html"), QUrl::TolerantMode);
    QUrlQuery query(url);
    query.removeAllQueryItems(QStringLiteral("quire_verify"));
    query.addQueryItem(QStringLiteral("quire_verify"), UUIDText::fresh());
    url.setQuery(query);
    if (!url.isValid()) {
        throw ServiceError::invalidURL();
    }
    return url;
}

QCoro::Task<> verifyPublishedHTML(NetworkClient &network, Url site, qint64 length, QString sha256, std::stop_token stop)
{
    NetworkRequest request{.url = verificationURL(site)};
    request.headers.append(std::pair(QByteArrayLiteral("Cache-Control"), QByteArrayLiteral("no-cache")));
    // A page is never refused for its length: it may be that of fifty thousand titles.
    const qint64 cap = std::max(NetworkClient::defaultBodyCap, length);
    const auto downloading = network.data(std::move(request), NetlifyAPI::requestTimeout, stop, cap);
    const auto response = co_await downloading;
    if (response.status < 200 || response.status > 299) {
        throw ServiceError::http(
            response.status, QStringLiteral("The published page could not be downloaded for verification."));
    }
    const auto comparing = isPage(response.body, sha256);
    const bool isSame = co_await comparing;
    if (!isSame) {
        throw ServiceError::message(QStringLiteral(
            "Netlify is live, but the published page does not match Quire’s current output. The update remains "
            "queued for retry."));
    }
}

} // namespace

QCoro::Task<Url> publishOnline(
    QByteArray html, LibraryStore &store, NetworkClient &network, QUrl endpoint, Clock &clock, std::stop_token stop)
{
    const DeployFolder folder{AppDirectories::supportDirectory() + QStringLiteral("/deploy")};
    const auto creating = create(folder);
    co_await creating;

    const auto readingSettings = store.settings();
    const auto settings = co_await readingSettings;
    NetlifyAPI netlify(network, endpoint, netlifyToken(settings), stop);

    const auto finding = findOrCreateSite(netlify, folder);
    const auto site = co_await finding;
    const auto address = netlifySiteURL(site.description);
    if (!address) {
        throw ServiceError::message(QStringLiteral("Netlify did not return a published site address."));
    }
    const auto notingAddress = store.setSetting(QStringLiteral("netlifySiteURL"), address->text());
    co_await notingAddress;

    const auto digesting = digestsOf(html);
    const auto digests = co_await digesting;
    const auto deploying = deploy(netlify, site.id, html, digests.sha1);
    const auto deployID = co_await deploying;
    const auto keepingPage = write(folder.pagePath(), html);
    co_await keepingPage;
    const auto waiting = waitForDeploy(netlify, deployID, clock, stop);
    co_await waiting;
    const auto verifying = verifyPublishedHTML(network, *address, html.size(), digests.sha256, stop);
    co_await verifying;

    const SettingsMap record{
        {QStringLiteral("netlifyLastDeployID"), deployID},
        {QStringLiteral("netlifyLastVerifiedAt"), DateParser::iso8601(clock.now())},
        {QStringLiteral("netlifyLastVerifiedHash"), digests.sha256},
    };
    const auto noting = store.setSettings(record);
    co_await noting;
    co_return *address;
}

} // namespace quire::OnlineReadingList
