// An audiobook that the catalogue knows.

pragma ComponentBehavior: Bound

import QtQuick

import Quire

CatalogRow {
    id: row

    required property string author
    required property string narrator
    required property string series
    required property var details
    required property bool canAdd

    signal chosen(string status)

    titleSize: 15
    actions: [
        ProminentButton {
            width: 128
            text: "Add as Read"
            enabled: row.canAdd
            onClicked: row.chosen("read")
        },
        BorderedButton {
            width: 128
            text: "Add as Listening"
            enabled: row.canAdd
            onClicked: row.chosen("reading")
        }
    ]

    Line {
        text: row.author
    }
    Line {
        text: row.narrator
    }
    Line {
        text: row.series
        size: 11
    }
    Repeater {
        model: row.details

        Line {
            required property string modelData

            text: modelData
            size: 11
        }
    }

    component Line: QuireText {
        width: row.width - 70 - 128 - 54
        elide: Text.ElideRight
        visible: text.length > 0
        color: Theme.secondary
    }
}
