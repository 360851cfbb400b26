// The frame of one result of a catalogue: its cover, its words, and what can be
// done with it.

import QtQuick

import Quire

Rectangle {
    id: row

    required property string title
    required property url coverUrl
    default property alias words: column.data
    property alias actions: buttons.data
    property int titleSize: 14

    implicitHeight: Math.max(106, column.implicitHeight, buttons.implicitHeight) + 24
    radius: 10
    color: Theme.field
    border.width: 1
    border.color: Theme.faded(Theme.hairline, 0.55)

    Accessible.role: Accessible.ListItem
    Accessible.name: row.title

    RemoteCoverImage {
        id: cover

        x: 12
        y: 12
        width: 70
        height: 106
        cornerRadius: 5
        url: row.coverUrl
    }
    Column {
        id: column

        anchors.left: cover.right
        anchors.leftMargin: 15
        anchors.right: buttons.left
        anchors.rightMargin: 15
        anchors.verticalCenter: parent.verticalCenter
        spacing: 4

        QuireText {
            width: parent.width
            elide: Text.ElideRight
            wrapMode: Text.Wrap
            maximumLineCount: 2
            text: row.title
            size: row.titleSize
            weight: Font.DemiBold
        }
    }
    Column {
        id: buttons

        anchors.right: parent.right
        anchors.rightMargin: 12
        anchors.verticalCenter: parent.verticalCenter
        spacing: 6
    }
}
