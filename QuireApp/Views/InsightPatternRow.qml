// One fact about all that was read.

import QtQuick

import Quire

Item {
    id: row

    required property string systemImage
    required property string title
    required property string value
    property string detail

    implicitHeight: words.implicitHeight + 26

    Accessible.role: Accessible.StaticText
    Accessible.name: row.title + ": " + row.value
    Accessible.description: row.detail

    Rectangle {
        id: square

        x: 13
        y: 13
        width: 24
        height: 24
        radius: 7
        color: Theme.pill

        SymbolPicture {
            anchors.centerIn: parent
            name: row.systemImage
            size: 14
            color: Theme.mark
        }
    }
    Column {
        id: words

        x: 47
        y: 13
        width: row.width - 60
        spacing: 3

        QuireText {
            width: parent.width
            elide: Text.ElideRight
            text: row.title
            size: 11
            Accessible.ignored: true
        }
        QuireText {
            width: parent.width
            elide: Text.ElideRight
            text: row.value
            size: 14
            weight: Font.DemiBold
            Accessible.ignored: true
        }
        QuireText {
            width: parent.width
            elide: Text.ElideRight
            visible: row.detail.length > 0
            text: row.detail
            size: 11
            color: Theme.secondary
            Accessible.ignored: true
        }
    }
}
