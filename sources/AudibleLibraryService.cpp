#include "sources/AudibleLibraryService.h"

#include "concurrency/Cancelled.h"
#include "concurrency/Clock.h"
#include "concurrency/InBackground.h"
#include "persistence/LibraryStore.h"
#include "records/DateParser.h"
#include "sources/AudibleLibraryLocation.h"
#include "sources/AudibleLibraryReader.h"
#include "sources/AudibleLibrarySnapshot.h"
#include "sources/ServiceError.h"

#include <QCoroFuture>
#include <QUrl>

namespace quire::AudibleLibraryService {

namespace {

void throwIfStopped(const std::stop_token &stop)
{
    if (stop.stop_requested()) {
        throw Cancelled();
    }
}

// Every title there is, through a copy that is gone when this returns.
QFuture<QList<AudibleLibraryItem>> readLibrary(
    const std::optional<QString> &configuredLibraryPath, const QUrl &audibleWeb, const std::stop_token &stop)
{
    return inBackground([=] {
        const auto access = AudibleLibraryLocation::resolvedAccessURL(configuredLibraryPath);
        if (!access) {
            throw ServiceError::message(
                QStringLiteral("Install Audible from the Mac App Store, open it, and sign in before syncing."));
        }
        const auto database = AudibleLibraryLocation::libraryDatabase(*access);
        if (!database) {
            throw ServiceError::message(
                QStringLiteral("The selected Audible folder does not contain the local library database."));
        }
        const AudibleLibrarySnapshot snapshot(*database, stop);
        return AudibleLibraryReader::read(snapshot.database(), audibleWeb, stop);
    });
}

} // namespace

AudibleAppAvailability availability(const std::optional<QString> &configuredLibraryPath)
{
    const auto access = AudibleLibraryLocation::resolvedAccessURL(configuredLibraryPath);
    if (!access) {
        return {};
    }
    AudibleAppAvailability found;
    found.state = AudibleAppAvailability::State::Installed;
    if (const auto database = AudibleLibraryLocation::libraryDatabase(*access)) {
        found.libraryURL = Url::parse(QUrl::fromLocalFile(*database).toString(QUrl::FullyEncoded));
    }
    return found;
}

QCoro::Task<AudibleSyncResult> synchronize(
    LibraryStore &store, ServiceEndpoints endpoints, const Clock &clock, std::stop_token stop)
{
    const auto readingSettings = store.settings();
    const auto settings = co_await readingSettings;
    throwIfStopped(stop);
    const auto path = settings.constFind(QStringLiteral("audibleLibraryPath"));
    const auto configured = path == settings.cend() ? std::nullopt : std::optional(*path);
    const auto reading = readLibrary(configured, endpoints.audibleWeb, stop);
    const auto items = co_await reading;
    throwIfStopped(stop);

    // What an import may spoil can be had back from before it.
    const auto backingUp = store.backUpDatabaseIfDue();
    co_await backingUp;
    throwIfStopped(stop);

    const auto merging = store.mergeAudibleLibraryItems(items);
    const auto result = co_await merging;
    const auto noting = store.setSetting(QStringLiteral("audibleLastSync"), DateParser::iso8601(clock.now()));
    co_await noting;
    co_return result;
}

} // namespace quire::AudibleLibraryService
