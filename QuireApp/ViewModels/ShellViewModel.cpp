#include "QuireApp/ViewModels/ShellViewModel.h"

#include "concurrency/Detach.h"
#include "core/AppModel.h"

namespace quire {

ShellViewModel::ShellViewModel(AppModel &model, Clock &clock, AlertViewModel &alerts,
    FolderPickerViewModel &folderPicker, const ProgramFacts &facts, QObject *parent)
    : QObject(parent)
    , m_model(model)
    , m_alerts(alerts)
    , m_folderPicker(folderPicker)
    , m_library(model)
    , m_activity(model)
    , m_insights(model)
    , m_appearance(model, clock, m_colorPanel)
    , m_settings(model, m_appearance, facts.helpHost)
    , m_addBook(model)
    , m_addAudiobook(model)
    , m_bookDetail(model)
    , m_audiobookDetail(model)
    , m_help(facts, alerts)
{
    connect(&m_help, &HelpViewModel::linkRequested, this, &ShellViewModel::linkRequested);
}

void ShellViewModel::checkForUpdates()
{
    m_model.checkForUpdates(true);
}

void ShellViewModel::openDataFolder()
{
    detach(m_model.openDataFolder());
}

void ShellViewModel::backUpDatabase()
{
    detach(m_model.backUpDatabase());
}

} // namespace quire
