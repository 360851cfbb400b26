// Long jobs: the road that all of them take, and the syncs.

#include "concurrency/Cancelled.h"
#include "core/AppModelAssign.h"
#include "core/ToastTimes.h"
#include "persistence/AppLog.h"
#include "persistence/LibraryStore.h"
#include "records/Failure.h"
#include "reliability/QuireBackgroundWorkCoordinator.h"
#include "reliability/QuireRetryPolicy.h"
#include "sources/GoodreadsService.h"

#include <QCoroFuture>

#include <QPointer>

namespace quire {

namespace {

using namespace std::chrono_literals;

constexpr qint64 attemptsOf(bool automatic)
{
    return automatic ? 3 : 2; // nobody waits for automatic work
}

constexpr std::chrono::nanoseconds firstPause = 500ms;
constexpr std::chrono::nanoseconds longestJitter = 250ms;

} // namespace

// Gives the coordinator's slot back at the end of its scope, whatever ends it.
// A model that has died has taken the coordinator with it.
class AppModel::HeldSlot
{
public:
    HeldSlot(AppModel *model, QuireBackgroundJob job)
        : m_model(model)
        , m_job(job)
    {
    }

    ~HeldSlot()
    {
        if (m_model) {
            m_model->m_workCoordinator->finish(m_job);
        }
    }

    HeldSlot(const HeldSlot &) = delete;
    HeldSlot &operator=(const HeldSlot &) = delete;

private:
    QPointer<AppModel> m_model;
    QuireBackgroundJob m_job;
};

QCoro::Task<bool> AppModel::runCoordinated(
    QuireBackgroundJob job, bool automatic, std::function<QCoro::Task<>()> operation, std::stop_token stop)
{
    const QPointer self(this);
    const auto request
        = m_workCoordinator->acquire(job, automatic ? QuireJobPriority::Automatic : QuireJobPriority::Manual);
    const bool isMine = co_await request;
    if (!self) {
        throw Cancelled();
    }
    if (!isMine) {
        co_return false;
    }
    const HeldSlot slot(this, job);

    for (qint64 attempt = 1;; ++attempt) {
        const auto beginning = record({job, QStringLiteral("running"), attempt, std::nullopt});
        co_await beginning;
        if (!self) {
            throw Cancelled();
        }

        std::exception_ptr failure;
        QString description;
        bool willRetry = false;
        try {
            const auto running = operation();
            co_await running;
        } catch (const std::exception &error) {
            failure = std::current_exception();
            description = describe(error);
            willRetry = attempt < attemptsOf(automatic) && QuireRetryPolicy::isTransient(error);
        }
        if (!self) {
            throw Cancelled();
        }

        if (!failure) {
            const auto ending = record({job, QStringLiteral("succeeded"), attempt, std::nullopt});
            co_await ending;
            co_return true;
        }
        const auto ending
            = record({job, willRetry ? QStringLiteral("retrying") : QStringLiteral("failed"), attempt, description});
        co_await ending;
        if (!willRetry) {
            std::rethrow_exception(failure);
        }
        if (!self) {
            throw Cancelled();
        }
        const auto pause = firstPause * (1LL << (attempt - 1)) + m_dependencies.jitter(longestJitter);
        const auto waiting = m_dependencies.clock.sleep(pause, stop);
        co_await waiting;
        if (!self) {
            throw Cancelled();
        }
    }
}

QCoro::Task<> AppModel::record(QuireJobEvent event)
{
    try {
        const auto recording = m_store->recordBackgroundJob(event);
        co_await recording;
    } catch (const std::exception &) {
        // History never stops a job.
    }
}

void AppModel::beginWork(SidebarOperation operation, const QString &label)
{
    assign(m_activeSidebarOperation, operation, &AppModel::activeSidebarOperationChanged);
    assign(m_isWorking, true, &AppModel::isWorkingChanged);
    assign(m_activityLabel, label, &AppModel::activityLabelChanged);
}

void AppModel::endWork()
{
    assign(m_activeSidebarOperation, std::nullopt, &AppModel::activeSidebarOperationChanged);
    assign(m_isWorking, false, &AppModel::isWorkingChanged);
    assign(m_activityLabel, QString(), &AppModel::activityLabelChanged);
}

std::function<QCoro::Task<GoodreadsSyncResult>()> AppModel::goodreadsSync() const
{
    return [store = m_store, world = m_dependencies, stop = m_ending.get_token()] {
        return GoodreadsService::synchronize(*store, world.network, world.endpoints, world.clock, stop);
    };
}

QCoro::Task<> AppModel::synchronizeGoodreads(bool automatic)
{
    const QPointer self(this);
    beginWork(SidebarOperation::GoodreadsSync, QStringLiteral("Syncing Goodreads…"));
    const auto running = runSync<GoodreadsSyncResult>(QuireBackgroundJob::GoodreadsSync, automatic, goodreadsSync(),
        [this, automatic](const GoodreadsSyncResult &result) { reportGoodreadsSync(result, automatic); });
    const auto failure = co_await running;
    if (!self) {
        co_return;
    }
    if (failure) {
        reportGoodreadsFailure(*failure, automatic);
    }
    endWork();
}

void AppModel::reportGoodreadsSync(const GoodreadsSyncResult &result, bool automatic)
{
    if (!result.succeeded) {
        reportGoodreadsFailure(result.message.value_or(QStringLiteral("Goodreads sync failed.")), automatic);
        return;
    }
    const QString text = automatic ? QStringLiteral("Goodreads synced automatically: %1 titles")
                                   : QStringLiteral("Synced %1 Goodreads titles");
    showToast(text.arg(result.count), ToastTimes::success);
    if (!result.warnings.isEmpty()) {
        AppLog::write(QStringLiteral("Goodreads sync warnings: ") + result.warnings.join(QStringLiteral(" | ")));
    }
}

void AppModel::reportGoodreadsFailure(const QString &description, bool automatic)
{
    if (m_isShuttingDown) {
        return; // a program that is ending gives no reason
    }
    AppLog::write(QStringLiteral("Goodreads sync failed: ") + description);
    if (automatic) {
        showToast(QStringLiteral("Automatic Goodreads sync failed: ") + description, ToastTimes::failure);
    } else {
        setNotice(AppNotice::error(QStringLiteral("Goodreads Sync Failed"), description));
    }
}

QCoro::Task<> AppModel::synchronizeAll()
{
    if (m_isWorking || m_isSyncingAll) {
        co_return;
    }
    const QPointer self(this);
    assign(m_isSyncingAll, true, &AppModel::isSyncingAllChanged);
    if (m_settings.goodreadsRSSKeySet && !m_settings.goodreadsUserID.isEmpty()) {
        const auto synchronizing = synchronizeGoodreads(false);
        co_await synchronizing;
        if (!self) {
            co_return;
        }
    } else {
        AppLog::write(QStringLiteral("Sync skipped Goodreads because credentials are not configured."));
    }
    if (canReadAudible()) {
        const auto synchronizing = synchronizeAudible(false);
        co_await synchronizing;
        if (!self) {
            co_return;
        }
    } else {
        AppLog::write(QStringLiteral("Sync skipped Audible because local library access is unavailable."));
    }
    const auto publishing = publishReadingList(false);
    co_await publishing;
    if (!self) {
        co_return;
    }
    assign(m_isSyncingAll, false, &AppModel::isSyncingAllChanged);
}

} // namespace quire
