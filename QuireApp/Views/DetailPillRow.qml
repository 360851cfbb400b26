// Facts in one line, which is moved sideways where they are too many for it.

import QtQuick

import Quire

Item {
    id: row

    property alias model: list.model

    implicitHeight: 24

    ListView {
        id: list

        anchors.fill: parent
        orientation: ListView.Horizontal
        spacing: 8
        boundsBehavior: Flickable.StopAtBounds
        interactive: contentWidth > width
        clip: interactive
        activeFocusOnTab: interactive
        keyNavigationEnabled: false

        Accessible.role: Accessible.List
        Accessible.name: "Facts"

        Keys.onLeftPressed: list.flick(600, 0)
        Keys.onRightPressed: list.flick(-600, 0)

        delegate: DetailPill {
            required property string title

            text: title
        }

        WheelHandler {
            enabled: list.interactive
            orientation: Qt.Vertical
            onWheel: event => list.contentX = Math.max(0, Math.min(list.contentWidth - list.width, list.contentX - event.angleDelta.y / 2))
        }
    }
    FocusRing {
        control: list
        controlRadius: 12
    }
}
