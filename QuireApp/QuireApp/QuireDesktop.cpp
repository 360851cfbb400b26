#include "QuireApp/QuireApp/QuireDesktop.h"

#include <QCoroFuture>

#include <QDesktopServices>
#include <QGuiApplication>
#include <QPointer>

namespace quire {

QCoro::Task<std::optional<QString>> QuireDesktop::chooseFolder(FolderQuestion question)
{
    const QPointer<FileChooserPortal> self(&m_portal); // lives and dies with this
    const auto lending = m_portal.chooseFolder(question, QGuiApplication::focusWindow());
    const auto lent = co_await lending;
    if (!self || lent.isFromDesktop) {
        co_return lent.folder;
    }
    const auto asking = m_folderPicker.ask(question);
    const auto chosen = co_await asking;
    co_return chosen;
}

QCoro::Task<int> QuireDesktop::showAlert(DesktopAlert alert)
{
    const auto showing = m_alerts.show(std::move(alert));
    co_return co_await showing;
}

void QuireDesktop::open(const QUrl &address)
{
    QDesktopServices::openUrl(address);
}

} // namespace quire
