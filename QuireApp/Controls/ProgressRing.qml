// Work of unknown length: 16 wide beside words, 28 on a panel of its own.

import QtQuick

import Quire

Item {
    id: ring

    property bool small: false
    property color color: Theme.mark

    implicitWidth: ring.small ? 16 : 28
    implicitHeight: implicitWidth

    ProgressRingPicture {
        anchors.fill: parent
        color: ring.color

        RotationAnimation on rotation {
            running: ring.visible
            from: 0
            to: 360
            duration: 1150
            loops: Animation.Infinite
        }
    }
}
