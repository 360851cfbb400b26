// The desktop as it is: its own folder picker where it lends one and Quire's
// where it does not, and its own programs for what is to be opened.
//
// Thread: interface thread.

#pragma once

#include "core/Desktop.h"
#include "QuireApp/QuireApp/FileChooserPortal.h"
#include "QuireApp/ViewModels/AlertViewModel.h"
#include "QuireApp/ViewModels/FolderPickerViewModel.h"

namespace quire {

class QuireDesktop final : public Desktop
{
public:
    QCoro::Task<std::optional<QString>> chooseFolder(FolderQuestion question) override;
    QCoro::Task<int> showAlert(DesktopAlert alert) override;
    void open(const QUrl &address) override;

    // What is told, for a window to show.
    AlertViewModel &alerts() { return m_alerts; }

    // Quire's own picker, for a window to show.
    FolderPickerViewModel &folderPicker() { return m_folderPicker; }

private:
    FileChooserPortal m_portal;
    AlertViewModel m_alerts;
    FolderPickerViewModel m_folderPicker;
};

} // namespace quire
