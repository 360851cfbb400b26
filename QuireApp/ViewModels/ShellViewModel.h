// Everything that the windows are handed, in one object: the view models and
// what the menus can ask of the desktop.
//
// Thread: interface thread.

#pragma once

#include "QuireApp/ViewModels/ActivityViewModel.h"
#include "QuireApp/ViewModels/AddAudiobookViewModel.h"
#include "QuireApp/ViewModels/AddBookViewModel.h"
#include "QuireApp/ViewModels/AlertViewModel.h"
#include "QuireApp/ViewModels/AppearanceViewModel.h"
#include "QuireApp/ViewModels/AudiobookDetailViewModel.h"
#include "QuireApp/ViewModels/BookDetailViewModel.h"
#include "QuireApp/ViewModels/CustomColorPanelPresenter.h"
#include "QuireApp/ViewModels/FolderPickerViewModel.h"
#include "QuireApp/ViewModels/HelpViewModel.h"
#include "QuireApp/ViewModels/InsightsViewModel.h"
#include "QuireApp/ViewModels/LibraryViewModel.h"
#include "QuireApp/ViewModels/SettingsViewModel.h"

#include <QObject>
#include <QtQml/qqmlregistration.h>
#include <QUrl>

namespace quire {

class ShellViewModel : public QObject
{
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("Made by the application")

    Q_PROPERTY(quire::LibraryViewModel *library READ library CONSTANT)
    Q_PROPERTY(quire::ActivityViewModel *activity READ activity CONSTANT)
    Q_PROPERTY(quire::InsightsViewModel *insights READ insights CONSTANT)
    Q_PROPERTY(quire::CustomColorPanelPresenter *colorPanel READ colorPanel CONSTANT)
    Q_PROPERTY(quire::AppearanceViewModel *appearance READ appearance CONSTANT)
    Q_PROPERTY(quire::SettingsViewModel *settings READ settings CONSTANT)
    Q_PROPERTY(quire::AddBookViewModel *addBook READ addBook CONSTANT)
    Q_PROPERTY(quire::AddAudiobookViewModel *addAudiobook READ addAudiobook CONSTANT)
    Q_PROPERTY(quire::BookDetailViewModel *bookDetail READ bookDetail CONSTANT)
    Q_PROPERTY(quire::AudiobookDetailViewModel *audiobookDetail READ audiobookDetail CONSTANT)
    Q_PROPERTY(quire::HelpViewModel *help READ help CONSTANT)
    Q_PROPERTY(quire::AlertViewModel *alerts READ alerts CONSTANT)
    Q_PROPERTY(quire::FolderPickerViewModel *folderPicker READ folderPicker CONSTANT)

public:
    // All but the facts and the parent outlive this.
    ShellViewModel(AppModel &model, Clock &clock, AlertViewModel &alerts, FolderPickerViewModel &folderPicker,
        const ProgramFacts &facts, QObject *parent = nullptr);

    LibraryViewModel *library() { return &m_library; }
    ActivityViewModel *activity() { return &m_activity; }
    InsightsViewModel *insights() { return &m_insights; }
    CustomColorPanelPresenter *colorPanel() { return &m_colorPanel; }
    AppearanceViewModel *appearance() { return &m_appearance; }
    SettingsViewModel *settings() { return &m_settings; }
    AddBookViewModel *addBook() { return &m_addBook; }
    AddAudiobookViewModel *addAudiobook() { return &m_addAudiobook; }
    BookDetailViewModel *bookDetail() { return &m_bookDetail; }
    AudiobookDetailViewModel *audiobookDetail() { return &m_audiobookDetail; }
    HelpViewModel *help() { return &m_help; }
    AlertViewModel *alerts() { return &m_alerts; }
    FolderPickerViewModel *folderPicker() { return &m_folderPicker; }

    Q_INVOKABLE void checkForUpdates(); // at the reader's command
    Q_INVOKABLE void openDataFolder();
    // Into the folder of the settings.
    Q_INVOKABLE void backUpDatabase();

Q_SIGNALS:
    // Asked for by a menu or a link; the application does them.
    void logsRequested();
    void quitRequested();
    void linkRequested(const QUrl &url);

private:
    AppModel &m_model;
    AlertViewModel &m_alerts;
    FolderPickerViewModel &m_folderPicker;
    LibraryViewModel m_library;
    ActivityViewModel m_activity;
    InsightsViewModel m_insights;
    CustomColorPanelPresenter m_colorPanel;
    AppearanceViewModel m_appearance;
    SettingsViewModel m_settings;
    AddBookViewModel m_addBook;
    AddAudiobookViewModel m_addAudiobook;
    BookDetailViewModel m_bookDetail;
    AudiobookDetailViewModel m_audiobookDetail;
    HelpViewModel m_help;
};

} // namespace quire
