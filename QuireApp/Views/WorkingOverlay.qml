// Work that has no button of its own: the window is dimmed and waits, and so does
// the panel that began it.

import QtQuick
import QtQuick.Templates as T

import Quire

T.Popup {
    id: overlay

    required property bool shown
    required property string label

    parent: T.Overlay.overlay
    x: parent ? Math.round((parent.width - width) / 2) : 0
    y: parent ? Math.round((parent.height - height) / 2) : 0
    z: 1 // over the panels, under what is told
    width: 280 // does not follow the words, so it never jumps
    height: 116
    modal: true
    closePolicy: T.Popup.NoAutoClose
    visible: overlay.shown

    T.Overlay.modal: Rectangle {
        color: Qt.rgba(0, 0, 0, 0.12)

        Behavior on opacity {
            NumberAnimation {
                duration: 200
                easing.type: Easing.OutQuad
            }
        }
    }

    enter: Transition {
        NumberAnimation {
            property: "opacity"
            from: 0
            to: 1
            duration: 200
            easing.type: Easing.OutQuad
        }
    }
    exit: Transition {
        NumberAnimation {
            property: "opacity"
            to: 0
            duration: 200
            easing.type: Easing.OutQuad
        }
    }

    background: Item {
        PanelShadow {
            anchors.fill: parent
            radius: 14
        }
        Rectangle {
            anchors.fill: parent
            radius: 14
            color: "white"
        }
    }

    contentItem: Item {
        Accessible.role: Accessible.AlertMessage
        Accessible.name: overlay.label
        Accessible.ignored: !overlay.shown

        ProgressRing {
            anchors.horizontalCenter: parent.horizontalCenter
            y: 26
        }
        QuireText {
            x: 16
            y: 72
            width: parent.width - 32
            horizontalAlignment: Text.AlignHCenter
            elide: Text.ElideRight
            text: overlay.label
            weight: Font.Medium
            Accessible.ignored: true
        }
    }
}
