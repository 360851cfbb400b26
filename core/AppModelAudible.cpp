// The Audible application's library: whether it can be read, bringing it in, and
// being shown where it is.

#include "concurrency/InBackground.h"
#include "core/AppModelAssign.h"
#include "core/Desktop.h"
#include "core/ToastTimes.h"
#include "persistence/AppLog.h"
#include "persistence/LibraryStore.h"
#include "records/Failure.h"
#include "sources/AudibleLibraryLocation.h"
#include "sources/AudibleLibraryService.h"

#include <QCoroFuture>

#include <QDir>
#include <QFileInfo>
#include <QPointer>

namespace quire {

namespace {

const QString pathKey = QStringLiteral("audibleLibraryPath");

// Of another platform: what stands for the right to read the folder there.
const QString bookmarkKey = QStringLiteral("audibleLibraryBookmark");

QFuture<AudibleAppAvailability> availabilityAt(const std::optional<QString> &path)
{
    return inBackground([path] { return AudibleLibraryService::availability(path); });
}

} // namespace

QFuture<AudibleAppAvailability> AppModel::audibleAvailabilityIn(const QMap<QString, QString> &settings)
{
    const auto path = settings.constFind(pathKey);
    return availabilityAt(path == settings.cend() ? std::nullopt : std::optional(*path));
}

bool AppModel::canReadAudible() const
{
    return m_audibleAvailability.isInstalled() && m_audibleAvailability.libraryURL;
}

std::function<QCoro::Task<AudibleSyncResult>()> AppModel::audibleSync() const
{
    return [store = m_store, world = m_dependencies, stop = m_ending.get_token()] {
        return AudibleLibraryService::synchronize(*store, world.endpoints, world.clock, stop);
    };
}

QCoro::Task<> AppModel::synchronizeAudible(bool automatic)
{
    const QPointer self(this);
    beginWork(SidebarOperation::AudibleSync, QStringLiteral("Syncing Audible…"));
    const auto running = runSync<AudibleSyncResult>(QuireBackgroundJob::AudibleSync, automatic, audibleSync(),
        [this, automatic](const AudibleSyncResult &result) { reportAudibleSync(result, automatic); });
    const auto failure = co_await running;
    if (!self) {
        co_return;
    }
    if (failure && !m_isShuttingDown) { // a program that is ending gives no reason
        reportAudibleFailure(*failure, automatic);
        const auto looking = refreshAudibleAvailability();
        co_await looking;
        if (!self) {
            co_return;
        }
    }
    endWork();
}

void AppModel::reportAudibleSync(const AudibleSyncResult &result, bool automatic)
{
    showToast(automatic
            ? QStringLiteral("Audible synced automatically: %1 titles").arg(result.count)
            : QStringLiteral("Audible synced: %1 added, %2 refreshed").arg(result.added).arg(result.refreshed),
        ToastTimes::success);
}

void AppModel::reportAudibleFailure(const QString &description, bool automatic)
{
    AppLog::write(QStringLiteral("Audible sync failed: ") + description);
    if (automatic) {
        showToast(QStringLiteral("Automatic Audible sync failed: ") + description, ToastTimes::failure);
    } else {
        setNotice(AppNotice::error(QStringLiteral("Audible Sync Failed"), description));
    }
}

QCoro::Task<> AppModel::refreshAudibleAvailability()
{
    const QPointer self(this);
    QMap<QString, QString> settings;
    try {
        const auto reading = m_store->settings();
        settings = co_await reading;
    } catch (const std::exception &) {
        // As if nothing were configured.
    }
    const auto looking = audibleAvailabilityIn(settings);
    const auto found = co_await looking;
    if (self) {
        assign(m_audibleAvailability, found, &AppModel::audibleAvailabilityChanged);
    }
}

QCoro::Task<> AppModel::grantAudibleLibraryAccess()
{
    const QPointer self(this);
    // The folder that shows the one to select, where there is such a thing.
    const auto choosing = chooseFolder(
        {QStringLiteral("Grant Quire Access to the Audible Library"),
            QStringLiteral("Select the “Application Support” folder shown here. Quire will only read Audible library "
                           "information."),
            QStringLiteral("Grant Access"), QDir::homePath(), false},
        QFileInfo(AudibleLibraryLocation::containerFolder()).path());
    const auto folder = co_await choosing;
    if (!self || !folder) {
        co_return;
    }
    try {
        const auto looking = availabilityAt(*folder);
        const auto found = co_await looking;
        if (!self) {
            co_return;
        }
        if (!found.libraryURL) {
            setNotice(AppNotice::error(QStringLiteral("Wrong Audible Folder"),
                QStringLiteral("Choose Audible’s “Application Support” folder. It contains the file ending in "
                               "“-library.sqlite”.")));
            co_return;
        }
        const auto saving = m_store->setSettings({{pathKey, *folder}, {bookmarkKey, QString()}});
        co_await saving;
        if (!self) {
            co_return;
        }
        const auto loading = reload();
        co_await loading;
        if (self) {
            showToast(QStringLiteral("Audible library access granted"), ToastTimes::success);
        }
    } catch (const std::exception &error) {
        if (self) {
            setNotice(AppNotice::error(QStringLiteral("Audible Access Could Not Be Saved"), describe(error)));
        }
    }
}

} // namespace quire
