// Help in brief, in a window of its own.

import QtQuick
import QtQuick.Templates as T

import Quire

T.ApplicationWindow {
    id: window

    required property ShellViewModel shell

    function present() {
        window.show();
        window.raise();
        window.requestActivate();
    }

    objectName: "quire-help"
    title: "Quire Help"
    width: 720
    height: 680
    minimumWidth: 580
    minimumHeight: 540
    color: Theme.window

    QuireHelpView {
        anchors.fill: parent
        help: window.shell.help
        onLinkRequested: address => window.shell.linkRequested(address)
    }

    Shortcut {
        sequences: ["Ctrl+W", "Escape"]
        onActivated: window.close()
    }
}
