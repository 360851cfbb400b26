// A book that the catalogue knows.

pragma ComponentBehavior: Bound

import QtQuick

import Quire

CatalogRow {
    id: row

    required property string author
    required property var details
    required property bool canAdd

    signal chosen(string shelf)

    actions: [
        ProminentButton {
            width: 128
            text: "Add as Read"
            enabled: row.canAdd
            onClicked: row.chosen("read")
        },
        BorderedButton {
            width: 128
            text: "Add as Reading"
            enabled: row.canAdd
            onClicked: row.chosen("currently-reading")
        },
        BorderedButton {
            width: 128
            text: "Want to Read"
            enabled: row.canAdd
            onClicked: row.chosen("to-read")
        }
    ]

    QuireText {
        width: parent.width
        elide: Text.ElideRight
        text: row.author
        color: Theme.secondary
    }
    Row {
        spacing: 8

        Repeater {
            model: row.details

            QuireText {
                required property string modelData

                text: modelData
                size: 11
                color: Theme.secondary
            }
        }
    }
}
