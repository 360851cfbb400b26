// The program's one main window: the menu bar over the root view. Closing it
// is the application delegate's business.

pragma ComponentBehavior: Bound

import QtQuick
import QtQuick.Templates as T

import Quire

T.ApplicationWindow {
    id: window

    required property ShellViewModel shell
    // Made when they are first asked for.
    property QuireSettingsWindow settings: null
    property QuireHelpWindow help: null

    function openSettings() {
        if (!window.settings)
            window.settings = settingsWindow.createObject(window);
        window.settings.present();
    }

    function openHelp() {
        if (!window.help)
            window.help = helpWindow.createObject(window);
        window.help.present();
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
        onQuickHelpRequested: window.openHelp()
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
    Component {
        id: helpWindow

        QuireHelpWindow {
            shell: window.shell
        }
    }
}
