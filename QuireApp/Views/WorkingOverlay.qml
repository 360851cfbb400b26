// Work that has no button of its own: the window is dimmed and waits.

import QtQuick

import Quire

Rectangle {
    id: overlay

    required property bool shown
    required property string label

    color: Qt.rgba(0, 0, 0, 0.12)
    opacity: overlay.shown ? 1 : 0
    visible: overlay.opacity > 0

    Behavior on opacity {
        NumberAnimation {
            duration: 200
            easing.type: Easing.OutQuad
        }
    }

    MouseArea {
        anchors.fill: parent
        hoverEnabled: true
        onWheel: wheel => wheel.accepted = true
    }

    Item {
        anchors.centerIn: parent
        width: 280 // does not follow the words, so it never jumps
        height: 116

        Accessible.role: Accessible.AlertMessage
        Accessible.name: overlay.label
        Accessible.ignored: !overlay.shown

        PanelShadow {
            anchors.fill: parent
            radius: 14
        }
        Rectangle {
            anchors.fill: parent
            radius: 14
            color: "white"
        }
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
