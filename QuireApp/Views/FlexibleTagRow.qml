// Tags as chips, in as many lines as they need.

pragma ComponentBehavior: Bound

import QtQuick

import Quire

Flow {
    id: row

    required property var tags // of texts

    spacing: 8

    Repeater {
        model: row.tags

        Rectangle {
            id: chip

            required property string modelData

            width: Math.min(row.width, words.implicitWidth + 18)
            height: 26
            radius: 13
            color: Theme.pill
            border.width: Theme.isAccentLight ? 1 : 0
            border.color: Theme.hairline

            QuireText {
                id: words

                x: 9
                width: chip.width - 18
                anchors.verticalCenter: parent.verticalCenter
                elide: Text.ElideRight
                text: chip.modelData
                size: 10
            }
        }
    }
}
