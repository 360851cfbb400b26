// Where a colour lies on a wheel or a slider: a bead of that colour, seen on
// every other.

import QtQuick

import Quire

Item {
    id: marker

    required property color color

    width: 20
    height: 20

    PanelShadow {
        anchors.fill: parent
        radius: 10
        blur: 5
        offset: 1
        strength: 0.45
    }
    Rectangle {
        anchors.fill: parent
        radius: width / 2
        color: "white"
    }
    Rectangle {
        anchors.fill: parent
        anchors.margins: 3
        radius: width / 2
        color: marker.color
        border.width: 1
        border.color: Qt.alpha(Theme.ink, 0.16)
    }
}
