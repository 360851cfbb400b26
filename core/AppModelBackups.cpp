// Backups: at the reader's command and by themselves.

#include "concurrency/Cancelled.h"
#include "core/AppModel.h"
#include "files/FolderPath.h"
#include "persistence/AppLog.h"
#include "persistence/database/DatabaseError.h"
#include "persistence/LibraryStore.h"
#include "records/Failure.h"
#include "records/Text.h"

#include <QCoroFuture>

#include <QPointer>

#include <algorithm>

namespace quire {

namespace {

constexpr qint64 shortestInterval = 1; // days
constexpr qint64 longestInterval = 365;

QString absoluteFolder(const QString &typed)
{
    QString folder = Text::trimmed(FolderPath::expandingTilde(typed));
    if (!folder.startsWith(u'/')) {
        throw DatabaseError(
            DatabaseError::Kind::Backup, QStringLiteral("Choose an absolute folder for the Quire backup."));
    }
    return folder;
}

// The store is held by the work itself, which may outlive the model.
QCoro::Task<QString> backedUp(std::shared_ptr<LibraryStore> store, std::optional<QString> folder)
{
    const auto answer = store->backUpDatabase(folder);
    co_return co_await answer;
}

QCoro::Task<std::optional<QString>> backedUpIfDue(std::shared_ptr<LibraryStore> store)
{
    const auto answer = store->backUpDatabaseIfDue();
    co_return co_await answer;
}

} // namespace

QCoro::Task<> AppModel::backUpDatabase(std::optional<QString> path)
{
    const QPointer self(this);
    try {
        const auto folder = path ? std::optional(absoluteFolder(*path)) : std::nullopt;
        std::function<QCoro::Task<QString>()> work = [store = m_store, folder] { return backedUp(store, folder); };
        const auto running = coordinated<QString>(QuireBackgroundJob::Backup, false, std::move(work));
        const auto backup = co_await running;
        if (self && backup) {
            setNotice(AppNotice::information(QStringLiteral("Quire Database Backed Up"),
                QStringLiteral("The verified backup was saved to %1.").arg(*backup)));
        }
    } catch (const std::exception &error) {
        if (self) {
            setNotice(AppNotice::error(QStringLiteral("Backup Failed"), describe(error)));
        }
    }
}

void AppModel::scheduleAutomaticBackups()
{
    const auto interval
        = std::chrono::days(std::clamp(m_settings.backupIntervalDays, shortestInterval, longestInterval));
    m_automaticBackupTask.start(
        [this, interval](std::stop_token stop) { return backUpOnSchedule(interval, std::move(stop)); });
}

QCoro::Task<> AppModel::backUpOnSchedule(std::chrono::days interval, std::stop_token stop)
{
    const QPointer self(this);
    // The first test comes at once, but after what the caller still begins: the
    // syncs of a start ask for the slot before it.
    std::chrono::nanoseconds pause{0};
    for (;;) {
        const auto waiting = m_dependencies.clock.sleep(pause, stop);
        co_await waiting; // a stop ends it here
        if (!self) {
            co_return;
        }
        const auto backingUp = performScheduledBackupIfDue(stop);
        co_await backingUp;
        if (!self || stop.stop_requested()) {
            co_return;
        }
        pause = interval;
    }
}

QCoro::Task<> AppModel::performScheduledBackupIfDue(std::stop_token stop)
{
    try {
        std::function<QCoro::Task<std::optional<QString>>()> work = [store = m_store] { return backedUpIfDue(store); };
        const auto running
            = coordinated<std::optional<QString>>(QuireBackgroundJob::Backup, true, std::move(work), stop);
        const auto result = co_await running;
        if (const auto backup = result.value_or(std::nullopt)) {
            AppLog::write(QStringLiteral("Created scheduled database backup at %1.").arg(*backup));
        }
    } catch (const Cancelled &) {
        // Nobody waits for it any more.
    } catch (const std::exception &error) {
        if (!stop.stop_requested()) {
            AppLog::write(QStringLiteral("Scheduled database backup failed: ") + describe(error));
        }
    }
}

} // namespace quire
