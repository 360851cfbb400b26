// The program's one main window: the menu bar over the root view. Closing it
// is the application delegate's business.

import QtQuick
import QtQuick.Templates as T

import Quire

T.ApplicationWindow {
    id: window

    required property ShellViewModel shell

    function openSettings() {
        settingsWindow.present();
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
    }

    RootView {
        anchors.fill: parent
        shell: window.shell
        showsNotice: !settingsWindow.visible
        onSettingsRequested: window.openSettings()
    }

    QuireSettingsWindow {
        id: settingsWindow

        shell: window.shell
        transientParent: window
    }
}
