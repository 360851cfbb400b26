// The settings in a window of their own. Closing it drops what was not saved.

import QtQuick
import QtQuick.Templates as T

import Quire

T.ApplicationWindow {
    id: window

    required property ShellViewModel shell

    function present() {
        if (!window.visible) {
            window.shell.settings.load();
            window.show();
            view.focusFirstField();
        }
        window.raise();
        window.requestActivate();
    }

    objectName: "settings"
    title: "Quire Settings"
    width: 820
    height: 620
    minimumWidth: 820
    minimumHeight: 620
    color: Theme.window

    QuireSettingsView {
        id: view

        anchors.fill: parent
        settings: window.shell.settings
        canWork: window.shell.activity.canWork
        onSyncRequested: window.shell.activity.synchronizeAll()
        onDismissed: window.close()
        onLinkActivated: url => window.shell.linkRequested(url)
        onDataFolderRequested: window.shell.openDataFolder()
        onLogsRequested: window.shell.logsRequested()
    }

    FolderPicker {
        folderPicker: window.shell.folderPicker
    }

    NoticeAlert {
        activity: window.shell.activity
        wanted: window.visible
    }
    QuestionAlert {
        alerts: window.shell.alerts
        wanted: window.visible
    }
}
