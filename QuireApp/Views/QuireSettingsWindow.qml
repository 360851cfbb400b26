// The settings in a window of their own. Closing it drops what was not saved, and
// takes the colour panel with it.

pragma ComponentBehavior: Bound

import QtQuick
import QtQuick.Templates as T

import Quire

T.ApplicationWindow {
    id: window

    required property ShellViewModel shell
    property CustomColorPanel colorPanel: null // made when it is first asked for

    function present() {
        if (!window.visible) {
            window.shell.settings.load();
            window.show();
            view.focusFirstField();
        }
        window.raise();
        window.requestActivate();
    }

    function presentColorPanel() {
        if (!window.colorPanel)
            window.colorPanel = colorPanelWindow.createObject(window.contentItem);
        window.colorPanel.present();
    }

    onVisibleChanged: {
        if (!window.visible)
            window.shell.colorPanel.detach();
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
        appearance: window.shell.appearance
        canWork: window.shell.activity.canWork
        onSyncRequested: window.shell.activity.synchronizeAll()
        onDismissed: window.close()
        onLinkActivated: url => window.shell.linkRequested(url)
        onDataFolderRequested: window.shell.openDataFolder()
        onLogsRequested: window.shell.logsRequested()
    }

    Connections {
        target: window.shell.colorPanel
        function onPresented() {
            window.presentColorPanel();
        }
    }
    Component {
        id: colorPanelWindow

        CustomColorPanel {
            panel: window.shell.colorPanel
            transientParent: window
        }
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
