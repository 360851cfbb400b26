// What fills the main window: the menu bar over the root view.

pragma ComponentBehavior: Bound

import QtQuick

import Quire

FocusScope {
    id: view

    required property ShellViewModel shell
    // Made when they are first asked for.
    property QuireSettingsWindow settings: null
    property QuireHelpWindow help: null

    function openSettings() {
        if (!view.settings)
            view.settings = settingsWindow.createObject(view);
        view.settings.present();
    }

    function openHelp() {
        if (!view.help) {
            view.help = helpWindow.createObject(view);
            view.help.transientParent = null; // it stays when the main window is closed
        }
        view.help.present();
    }

    anchors.fill: parent
    focus: true

    RootView {
        anchors.top: menuBar.bottom
        anchors.bottom: parent.bottom
        width: parent.width
        shell: view.shell
        showsNotice: !view.settings || !view.settings.visible
        onSettingsRequested: view.openSettings()
    }

    ApplicationMenuBar {
        id: menuBar

        width: parent.width
        shell: view.shell
        onSettingsRequested: view.openSettings()
        onQuickHelpRequested: view.openHelp()
    }

    Component {
        id: settingsWindow

        QuireSettingsWindow {
            shell: view.shell
            transientParent: view.Window.window
        }
    }
    Component {
        id: helpWindow

        QuireHelpWindow {
            shell: view.shell
        }
    }
}
