import QtQuick

import Quire

Item {
    id: empty

    required property string systemImage
    required property string title
    required property string detail

    implicitHeight: Math.max(70, words.implicitHeight + 28)

    Rectangle {
        id: circle

        x: 14
        y: 14
        width: 42
        height: 42
        radius: 21
        color: Theme.pill

        SymbolPicture {
            anchors.centerIn: parent
            name: empty.systemImage
            size: 21
            color: Theme.mark
        }
    }
    Column {
        id: words

        anchors.left: circle.right
        anchors.leftMargin: 12
        anchors.right: parent.right
        anchors.rightMargin: 14
        y: Math.max(14, (70 - implicitHeight) / 2)
        spacing: 3

        QuireText {
            width: parent.width
            elide: Text.ElideRight
            text: empty.title
            size: 14
            weight: Font.DemiBold
        }
        QuireText {
            width: parent.width
            wrapMode: Text.Wrap // why something failed may take more than a line
            lineHeight: lineCount > 1 ? 1.3 : 1
            maximumLineCount: 8
            elide: Text.ElideRight
            text: empty.detail
            size: 12
            color: Theme.secondary
        }
    }
}
