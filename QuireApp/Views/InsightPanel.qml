// The frame of a chart or of a list of facts.

import QtQuick

import Quire

Rectangle {
    id: panel

    default property alias content: inside.data

    implicitHeight: inside.childrenRect.height + 40
    radius: 14
    color: Theme.field
    border.width: 1
    border.color: Theme.faded(Theme.hairline, 0.65)

    Item {
        id: inside

        anchors.fill: parent
        anchors.margins: 20
    }
}
