// Publishing: the reading list at the reader's command and on its timer.

#include "concurrency/Cancelled.h"
#include "core/AppModelAssign.h"
#include "core/GoodreadsStatistics.h"
#include "core/LibraryIndex.h"
#include "core/ToastTimes.h"
#include "persistence/AppLog.h"
#include "persistence/LibraryStore.h"
#include "publishing/PublishingService.h"
#include "records/Failure.h"
#include "sources/ServiceError.h"

#include <QPointer>

namespace quire {

namespace {

constexpr qint64 shortestInterval = 1; // minutes
constexpr qint64 longestInterval = 100LL * 365 * 24 * 60; // what a clock can sleep

// The store is held by the work itself, which may outlive the model. What
// reached neither place is a failure, so that it is tried again.
QCoro::Task<PublishResult> published(
    std::shared_ptr<LibraryStore> store, AppModelDependencies world, PublishingSnapshot snapshot, std::stop_token stop)
{
    const auto publishing = PublishingService::publish(
        std::move(snapshot), *store, world.network, world.endpoints, world.clock, std::move(stop));
    const auto result = co_await publishing;
    if (!result.localSucceeded && !result.onlineSucceeded) {
        const QString errors = result.errors.join(u'\n');
        throw ServiceError::message(
            errors.trimmed().isEmpty() ? QStringLiteral("Publishing did not complete.") : errors);
    }
    co_return result;
}

// What tells of a list that reached its places; nothing when it reached none.
std::optional<QString> success(const PublishResult &result)
{
    if (result.localSucceeded) {
        return result.onlineSucceeded ? QStringLiteral("Updated the local Quire file and reading website")
                                      : QStringLiteral("Updated the local Quire file");
    }
    return result.onlineSucceeded ? std::optional(QStringLiteral("Updated the reading website")) : std::nullopt;
}

} // namespace

PublishingSnapshot AppModel::publishingSnapshot(Instant now) const
{
    return makePublishingSnapshot(
        m_books, m_audiobooks, makeGoodreadsStatistics(ReadingHistory(m_books, *m_bookIndex, now)), now);
}

QCoro::Task<> AppModel::publishReadingList(bool automatic)
{
    const QPointer self(this);
    beginWork(SidebarOperation::LibraryUpdate, QStringLiteral("Updating reading lists…"));
    std::optional<QString> failure;
    try {
        // As the library is now, whatever becomes of it while this waits its turn.
        std::function<QCoro::Task<PublishResult>()> work
            = [store = m_store, world = m_dependencies, stop = m_ending.get_token(),
                  snapshot = publishingSnapshot(m_dependencies.clock.now())] {
                  return published(store, world, snapshot, stop);
              };
        const auto running = coordinated<PublishResult>(QuireBackgroundJob::Publishing, automatic, std::move(work));
        const auto result = co_await running;
        if (!self) {
            co_return;
        }
        if (result) {
            const auto loading = reload(); // the settings tell when it was
            co_await loading;
            if (!self) {
                co_return;
            }
            reportPublishing(*result, automatic);
        }
    } catch (const std::exception &error) {
        failure = describe(error);
    }
    if (!self) {
        co_return;
    }
    if (failure) {
        reportPublishingFailure(*failure, automatic);
    }
    endWork();
}

void AppModel::reportPublishing(const PublishResult &result, bool automatic)
{
    const auto done = success(result);
    if (!done) {
        reportPublishingFailure(result.errors.join(u'\n'), automatic);
        return;
    }
    if (result.errors.isEmpty()) {
        if (!automatic) {
            showToast(*done, ToastTimes::success);
        }
        return;
    }
    const QString reached = result.localSucceeded ? QStringLiteral("The local file was updated.")
                                                  : QStringLiteral("The online site was updated.");
    const QString message = (QStringList(reached) + result.errors).join(u'\n');
    if (automatic) {
        AppLog::write(QStringLiteral("Automatic publishing partially succeeded: ") + message);
    } else {
        setNotice(AppNotice::information(QStringLiteral("Reading List Partially Updated"), message));
    }
}

// Nobody asked for an automatic one, so that nobody is told.
void AppModel::reportPublishingFailure(const QString &message, bool automatic)
{
    if (m_isShuttingDown) {
        return; // a program that is ending gives no reason
    }
    if (automatic) {
        AppLog::write(QStringLiteral("Automatic publishing failed: ") + message);
    } else {
        setNotice(AppNotice::error(QStringLiteral("Reading List Update Failed"), message));
    }
}

void AppModel::scheduleAutomaticPublishing()
{
    m_automaticPublishingTask.cancel();
    if (!m_settings.automaticPublishing) {
        return;
    }
    const auto interval
        = std::chrono::minutes(std::clamp(m_settings.publishIntervalMinutes, shortestInterval, longestInterval));
    m_automaticPublishingTask.start(
        [this, interval](std::stop_token stop) { return publishOnSchedule(interval, std::move(stop)); });
}

// The interval runs from the end of one publication to the start of the next.
QCoro::Task<> AppModel::publishOnSchedule(std::chrono::minutes interval, std::stop_token stop)
{
    const QPointer self(this);
    for (;;) {
        const auto waiting = m_dependencies.clock.sleep(interval, stop);
        co_await waiting; // a stop ends it here
        if (!self) {
            co_return;
        }
        const auto publishing = publishReadingList(true);
        co_await publishing;
        if (!self || stop.stop_requested()) {
            co_return;
        }
    }
}

} // namespace quire
