// A folder among its neighbours.

import QtQuick

import Quire

Rectangle {
    id: row

    required property string name
    property bool isCurrent: false

    signal pressed
    signal entered

    implicitHeight: 28
    radius: 6
    color: row.isCurrent ? Theme.menuHover : hover.hovered ? Theme.hover : "transparent"

    Accessible.role: Accessible.ListItem
    Accessible.name: row.name
    Accessible.selectable: true
    Accessible.selected: row.isCurrent
    Accessible.onPressAction: row.pressed()

    SymbolPicture {
        x: 9
        anchors.verticalCenter: parent.verticalCenter
        name: "folder"
        size: 14
        color: Theme.mark
    }
    QuireText {
        x: 32
        width: row.width - x - 9
        anchors.verticalCenter: parent.verticalCenter
        elide: Text.ElideMiddle
        text: row.name
        Accessible.ignored: true
    }

    HoverHandler {
        id: hover
    }
    TapHandler {
        onPressedChanged: if (pressed)
            row.pressed()
        onDoubleTapped: row.entered()
    }
}
