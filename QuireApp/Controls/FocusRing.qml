// The ring around what has the keyboard's focus, two pixels outside it.

import QtQuick

import Quire

Rectangle {
    id: ring

    required property Item control
    property real controlRadius: 7

    anchors.fill: parent
    anchors.margins: -4
    radius: ring.controlRadius + 4
    color: "transparent"
    border.width: 2
    border.color: Theme.focusRing
    visible: ring.control.activeFocus
}
