// A row of the settings: what it is on the left, its control on the right.

import QtQuick

import Quire

Item {
    id: field

    property string title
    default property alias content: slot.data

    implicitHeight: slot.childrenRect.height

    QuireText {
        width: 190
        height: Math.min(34, slot.childrenRect.height)
        verticalAlignment: Text.AlignVCenter
        wrapMode: Text.Wrap
        maximumLineCount: 2
        elide: Text.ElideRight
        text: field.title
        visible: text.length > 0
    }
    Item {
        id: slot

        x: 190 + 16
        width: field.width - x
        height: childrenRect.height
    }
}
