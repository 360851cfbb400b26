// Saving from the settings window.

#include "core/AppModelAssign.h"
#include "core/ToastTimes.h"
#include "persistence/LibraryStore.h"
#include "records/Failure.h"

#include <QCoroFuture>

#include <QPointer>

namespace quire {

QCoro::Task<bool> AppModel::saveSettings(SettingsEdit edit)
{
    if (const auto fault = firstFault(edit)) {
        setNotice(fault->notice);
        co_return false;
    }
    const QPointer self(this);
    bool libraryMoved = false;
    try {
        const auto writes = settingsToWrite(edit);
        for (const auto &[key, value] : writes) {
            const auto writing = m_store->setSetting(key, value);
            co_await writing;
            if (!self || m_isShuttingDown) {
                co_return false;
            }
        }
        if (const QString folder = libraryFolder(edit); folder != m_settings.databaseFolderPath) {
            const auto moving = m_store->relocateDatabase(folder);
            libraryMoved = co_await moving;
            if (!self || m_isShuttingDown) {
                co_return false;
            }
        }
        const auto loading = reload();
        co_await loading;
        if (!self || m_isShuttingDown) {
            co_return false;
        }
    } catch (const std::exception &error) {
        if (self && !m_isShuttingDown) {
            setNotice(AppNotice::error(QStringLiteral("Settings Could Not Be Saved"), describe(error)));
        }
        co_return false;
    }
    setSelectedTab(visibleTab(m_selectedTab)); // a section may just have been switched off
    scheduleAutomaticPublishing();
    scheduleAutomaticBackups();
    showToast(
        libraryMoved ? QStringLiteral("Settings saved and Quire library moved") : QStringLiteral("Settings saved"),
        ToastTimes::success);
    co_return true;
}

} // namespace quire
