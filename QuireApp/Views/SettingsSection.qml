// A panel of fields that belong together.

import QtQuick

import Quire

Rectangle {
    id: section

    required property string title
    required property string systemImage
    property Item firstField // where the reader begins
    property var fallibleFields: ({}) // the fields whose values may be refused, by the property they show
    default property alias content: fields.data

    implicitHeight: column.implicitHeight + 36
    radius: 12
    color: Theme.field
    border.width: 1
    border.color: Theme.faded(Theme.hairline, 0.65)

    Column {
        id: column

        x: 18
        y: 18
        width: section.width - 36
        spacing: 16

        Row {
            spacing: 8

            SymbolPicture {
                anchors.verticalCenter: parent.verticalCenter
                name: section.systemImage
                size: 14
                color: Theme.mark
            }
            QuireText {
                text: section.title
                size: 14
                weight: Font.DemiBold
                Accessible.role: Accessible.Heading
            }
        }
        Column {
            id: fields

            width: parent.width
            spacing: 12
        }
    }
}
