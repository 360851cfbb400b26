// The program's one main window: the menu bar over the root view. Closing it
// is the application delegate's business.

pragma ComponentBehavior: Bound

import QtQuick
import QtQuick.Templates as T

import Quire

T.ApplicationWindow {
    id: window

    required property ShellViewModel shell
    property QuireSettingsWindow settings: null // made when it is first asked for

    function openSettings() {
        if (!window.settings)
            window.settings = settingsWindow.createObject(window);
        window.settings.present();
    }

    objectName: "main"
    title: "Quire"
    width: 1180
    height: 860
    minimumWidth: 920
    minimumHeight: 700
    visible: true
    color: Theme.window
    menuBar: ApplicationMenuBar {
        shell: window.shell
        onSettingsRequested: window.openSettings()
        onQuickHelpRequested: helpWindow.present()
    }

    RootView {
        anchors.fill: parent
        shell: window.shell
        showsNotice: !window.settings || !window.settings.visible
        onSettingsRequested: window.openSettings()
    }

    Component {
        id: settingsWindow

        QuireSettingsWindow {
            shell: window.shell
            transientParent: window
        }
    }
    QuireHelpWindow {
        id: helpWindow

        shell: window.shell
    }
}
