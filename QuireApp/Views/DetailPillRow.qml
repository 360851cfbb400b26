// Facts in one line, which is moved sideways where they are too many for it.

import QtQuick

import Quire

ListView {
    id: row

    implicitHeight: 24
    orientation: ListView.Horizontal
    spacing: 8
    boundsBehavior: Flickable.StopAtBounds
    interactive: contentWidth > width
    clip: interactive

    delegate: DetailPill {
        required property string title

        text: title
    }

    WheelHandler {
        enabled: row.interactive
        orientation: Qt.Vertical
        onWheel: event => row.contentX = Math.max(0, Math.min(row.contentWidth - row.width, row.contentX - event.angleDelta.y / 2))
    }
}
