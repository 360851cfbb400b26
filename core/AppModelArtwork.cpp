// Covers: the pass over the titles that have none, and looking for better ones.

#include "concurrency/Cancelled.h"
#include "core/AppModelAssign.h"
#include "persistence/AppLog.h"
#include "persistence/LibraryStore.h"
#include "records/Failure.h"
#include "sources/ArtworkService.h"
#include "sources/CoverRefreshing.h"

#include <QCoroFuture>

#include <QPointer>

namespace quire {

namespace {

// The store is held by the work itself, which may outlive the model.
QCoro::Task<ArtworkCacheResult> cached(
    std::shared_ptr<LibraryStore> store, AppModelDependencies world, std::stop_token stop)
{
    const auto running = ArtworkService::cacheMissingArtwork(*store, world.network, world.clock, stop);
    co_return co_await running;
}

QCoro::Task<CoverRefreshResult> refreshed(
    std::shared_ptr<LibraryStore> store, AppModelDependencies world, std::stop_token stop)
{
    const auto running = AudibleService::refreshCovers(*store, world.network, world.endpoints, stop);
    co_return co_await running;
}

} // namespace

void AppModel::scheduleArtworkCaching()
{
    if (m_isShuttingDown) {
        return; // the last of a sync that the end has overtaken
    }
    m_artworkTask.cancel();
    assign(m_artworkStatus, QStringLiteral("Checking locally stored artwork…"), &AppModel::artworkStatusChanged);
    m_artworkTask.start([this](std::stop_token stop) { return cacheArtwork(std::move(stop)); });
}

QCoro::Task<> AppModel::cacheArtwork(std::stop_token stop)
{
    const QPointer self(this);
    std::optional<QString> failure;
    try {
        std::function<QCoro::Task<ArtworkCacheResult>()> work
            = [store = m_store, world = m_dependencies, stop] { return cached(store, world, stop); };
        const auto running = coordinated<ArtworkCacheResult>(QuireBackgroundJob::Artwork, true, std::move(work), stop);
        const auto result = co_await running;
        if (!self || stop.stop_requested() || !result) {
            co_return;
        }
        if (result->total > 0) {
            const auto loading = reload();
            co_await loading;
            if (!self || stop.stop_requested()) {
                co_return;
            }
        }
        const auto counting = m_store->artworkCoverage();
        const auto coverage = co_await counting;
        if (!self || stop.stop_requested()) {
            co_return;
        }
        assign(m_artworkStatus,
            QStringLiteral("%1 book covers and %2 audio covers stored locally.")
                .arg(coverage.books)
                .arg(coverage.audiobooks),
            &AppModel::artworkStatusChanged);
        if (result->placeholders > 0) {
            AppLog::write(QStringLiteral("Stored %1 downloaded covers and %2 offline placeholders.")
                              .arg(result->downloaded)
                              .arg(result->placeholders));
        }
    } catch (const std::exception &error) {
        failure = describe(error);
    }
    if (failure && self && !stop.stop_requested()) {
        assign(
            m_artworkStatus, QStringLiteral("Local artwork check could not finish."), &AppModel::artworkStatusChanged);
        AppLog::write(QStringLiteral("Artwork caching failed: ") + *failure);
    }
}

QCoro::Task<> AppModel::refreshAudiobookCovers()
{
    if (m_isWorking) {
        co_return;
    }
    const QPointer self(this);
    assign(m_isWorking, true, &AppModel::isWorkingChanged);
    assign(m_activityLabel, QStringLiteral("Refreshing audio covers…"), &AppModel::activityLabelChanged);
    std::optional<AppNotice> outcome;
    try {
        std::function<QCoro::Task<CoverRefreshResult>()> work
            = [store = m_store, world = m_dependencies, stop = m_ending.get_token()] {
                  return refreshed(store, world, stop);
              };
        const auto running = coordinated<CoverRefreshResult>(QuireBackgroundJob::Artwork, false, std::move(work));
        const auto result = co_await running;
        if (!self || !result) {
            co_return; // turned away: the next job clears what is shown
        }
        const auto loading = reload();
        co_await loading;
        if (!self) {
            co_return;
        }
        scheduleArtworkCaching();
        outcome = AppNotice::information(QStringLiteral("Audio Covers Refreshed"),
            QStringLiteral("Updated %1 of %2 covers. %3 retained their existing artwork.")
                .arg(result->refreshed)
                .arg(result->total)
                .arg(result->retained));
    } catch (const std::exception &error) {
        outcome = AppNotice::error(QStringLiteral("Covers Could Not Be Refreshed"), describe(error));
    }
    if (!self || m_isShuttingDown) { // a program that is ending tells nothing
        co_return;
    }
    setNotice(outcome);
    assign(m_isWorking, false, &AppModel::isWorkingChanged);
    assign(m_activityLabel, QString(), &AppModel::activityLabelChanged);
}

} // namespace quire
