#include "QuireApp/QuireApp/QuireDesktop.h"

#include <QCoroFuture>

#include <QDesktopServices>

namespace quire {

QCoro::Task<std::optional<QString>> QuireDesktop::chooseFolder(FolderQuestion question)
{
    const auto asking = m_folderPicker.ask(question);
    co_return co_await asking;
}

void QuireDesktop::open(const QUrl &address)
{
    QDesktopServices::openUrl(address);
}

} // namespace quire
