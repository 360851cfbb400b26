#include "publishing/PublishingService.h"

#include "concurrency/Clock.h"
#include "concurrency/InBackground.h"
#include "files/FolderPath.h"
#include "persistence/LibraryStore.h"
#include "publishing/LocalReadingList.h"
#include "publishing/OnlineReadingList.h"
#include "publishing/ReadingListRenderer.h"
#include "records/DateParser.h"
#include "records/Failure.h"

#include <QCoroFuture>

namespace quire::PublishingService {

namespace {

// In UTF-8.
struct Documents
{
    QByteArray markdown;
    QByteArray html;
};

QFuture<Documents> render(PublishingSnapshot snapshot)
{
    return inBackground([snapshot = std::move(snapshot)] {
        const QLocale locale = ReadingListRenderer::presentLocale();
        return Documents{ReadingListRenderer::markdown(snapshot, locale).toUtf8(),
            ReadingListRenderer::html(snapshot, locale).toUtf8()};
    });
}

QFuture<QString> writeLocally(const QString &folder, const QByteArray &markdown)
{
    return inBackground([folder, markdown] { return LocalReadingList::write(folder, markdown); });
}

// Each half tells what it did in the result that it is given.
QCoro::Task<PublishResult> publishLocally(
    PublishResult result, QByteArray markdown, LibraryStore &store, const Clock &clock)
{
    try {
        const auto readingSettings = store.settings();
        const auto settings = co_await readingSettings;
        const QString folder = FolderPath::normalizedPublishPath(settings.value(QStringLiteral("localPublishPath")));
        if (folder.isEmpty()) {
            co_return result;
        }
        const auto writing = writeLocally(folder, markdown);
        const auto path = co_await writing;
        result.localSucceeded = true;
        result.localPath = Url::parse(QString::fromLatin1(QUrl::fromLocalFile(path).toEncoded()));
        const auto noting = store.setSetting(QStringLiteral("localLastPublish"), DateParser::iso8601(clock.now()));
        co_await noting;
    } catch (const std::exception &error) {
        result.errors.append(QStringLiteral("Local: ") + describe(error));
    }
    co_return result;
}

QCoro::Task<PublishResult> publishOnline(PublishResult result, QByteArray html, LibraryStore &store,
    NetworkClient &network, QUrl netlify, Clock &clock, std::stop_token stop)
{
    try {
        const auto publishing
            = OnlineReadingList::publishOnline(std::move(html), store, network, std::move(netlify), clock, stop);
        result.siteURL = co_await publishing;
        result.onlineSucceeded = true;
        const auto noting = store.setSetting(QStringLiteral("onlineLastPublish"), DateParser::iso8601(clock.now()));
        co_await noting;
    } catch (const std::exception &error) {
        result.errors.append(QStringLiteral("Online: ") + describe(error));
    }
    co_return result;
}

QCoro::Task<> noteRun(LibraryStore &store, const Clock &clock)
{
    try {
        const auto noting = store.setSetting(QStringLiteral("publishLastRun"), DateParser::iso8601(clock.now()));
        co_await noting;
    } catch (const Failure &) {
        // What was published stands, and what failed has been told.
    }
}

} // namespace

QCoro::Task<PublishResult> publish(PublishingSnapshot snapshot, LibraryStore &store, NetworkClient &network,
    ServiceEndpoints endpoints, Clock &clock, std::stop_token stop)
{
    const auto rendering = render(std::move(snapshot));
    const auto documents = co_await rendering;
    const auto publishingLocally = publishLocally(PublishResult(), documents.markdown, store, clock);
    const auto afterLocal = co_await publishingLocally;
    const auto publishingOnline
        = publishOnline(afterLocal, documents.html, store, network, endpoints.netlify, clock, stop);
    const auto result = co_await publishingOnline;
    const auto notingRun = noteRun(store, clock);
    co_await notingRun;
    co_return result;
}

} // namespace quire::PublishingService
