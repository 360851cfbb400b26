// The colour panel, in a small window of its own beside the one that it was
// opened from.

import QtQuick
import QtQuick.Templates as T

import Quire

T.ApplicationWindow {
    id: window

    required property CustomColorPanelPresenter panel

    function present() {
        const owner = window.transientParent;
        if (!window.visible) {
            window.x = owner.x + owner.width - window.width - 48;
            window.y = owner.y + 168;
            window.show();
            view.focusFirst();
        }
        window.raise();
        window.requestActivate();
    }

    objectName: "color-panel"
    title: "Custom Color"
    flags: Qt.Dialog
    width: view.implicitWidth
    height: view.implicitHeight
    minimumWidth: width
    minimumHeight: height
    maximumWidth: width
    maximumHeight: height
    color: Theme.window

    onVisibleChanged: {
        if (!window.visible)
            window.panel.detach();
    }

    Connections {
        target: window.panel
        function onIsShownChanged() {
            if (!window.panel.isShown)
                window.close();
        }
    }

    ColorPanelView {
        id: view

        anchors.fill: parent
        panel: window.panel
        onDismissed: window.close()
    }

    Shortcut {
        sequences: ["Ctrl+W", "Escape"]
        onActivated: window.close()
    }
}
