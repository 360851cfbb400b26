// Newer versions: asking for one now and then, or at the reader's command.

#include "concurrency/Detach.h"
#include "core/AppModelAssign.h"
#include "core/Desktop.h"
#include "core/UserDefaults.h"
#include "records/Failure.h"

#include <QPointer>

namespace quire {

namespace {

using namespace std::chrono_literals;

constexpr auto spacing = 24h; // of the checks that nobody asked for

DesktopAlert status(const QString &title, const QString &message)
{
    return {.title = title, .message = message, .buttons = {QStringLiteral("OK")}};
}

} // namespace

void AppModel::checkForUpdatesIfNeeded()
{
    // An instant to come counts as one just passed, until the clock is beyond it.
    const auto last = UserDefaults(m_dependencies.userDefaultsFile).lastUpdateCheck();
    if (last && m_dependencies.clock.now() - *last < spacing) {
        return;
    }
    checkForUpdates(false);
}

void AppModel::checkForUpdates(bool manual)
{
    m_updateCheckTask.start([this, manual](std::stop_token stop) { return askForUpdate(manual, std::move(stop)); });
}

QCoro::Task<> AppModel::askForUpdate(bool manual, std::stop_token stop)
{
    const QPointer self(this);
    QuireUpdateCheckResult result;
    std::optional<QString> failure;
    try {
        const auto checking = m_updateService.check(stop);
        result = co_await checking;
    } catch (const std::exception &error) {
        failure = describe(error);
    }
    if (!self || stop.stop_requested()) {
        co_return;
    }
    if (failure) {
        if (manual) {
            const auto telling
                = m_dependencies.desktop.showAlert(status(QStringLiteral("Couldn’t check for updates"), *failure));
            co_await telling;
        }
        co_return; // a failed check that nobody asked for is tried again at the next start
    }
    UserDefaults(m_dependencies.userDefaultsFile).setLastUpdateCheck(m_dependencies.clock.now());
    if (result.available) {
        const auto offering = offerUpdate(*result.available);
        co_await offering;
    } else if (manual) {
        const auto telling = m_dependencies.desktop.showAlert(status(QStringLiteral("Quire is up to date"),
            QStringLiteral("You’re using the newest available version of Quire.")));
        co_await telling;
    }
}

QCoro::Task<> AppModel::offerUpdate(QuireUpdateManifest manifest)
{
    Desktop &desktop = m_dependencies.desktop; // outlives the model
    const auto asking = desktop.showAlert({
        .title = QStringLiteral("Quire %1 is available").arg(manifest.version),
        .message = QStringLiteral("Open the Quire website to get the newest version."),
        .buttons = {QStringLiteral("Open Website"), QStringLiteral("Later")},
    });
    const int pressed = co_await asking;
    if (pressed == 0) {
        desktop.open(manifest.downloadPage.toQUrl());
    }
}

} // namespace quire
