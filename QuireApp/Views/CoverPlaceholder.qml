// A cover for a title that has none.

import QtQuick

import Quire

Rectangle {
    id: placeholder

    property string title
    property real cornerRadius: 6

    radius: placeholder.cornerRadius
    border.width: Theme.isAccentLight ? 1 : 0 // white on white otherwise
    border.color: Theme.hairline
    gradient: Gradient {
        GradientStop {
            position: 0
            color: Theme.emptyCover
        }
        GradientStop {
            position: 1
            color: Theme.card
        }
    }

    Column {
        anchors.centerIn: parent
        width: parent.width - 16
        spacing: 8

        SymbolPicture {
            anchors.horizontalCenter: parent.horizontalCenter
            name: "book.closed"
            size: 30
            color: Theme.mark
            opacity: 0.35
        }
        QuireText {
            width: parent.width
            visible: placeholder.title.length > 0
            text: placeholder.title
            size: 12
            weight: Font.Medium
            horizontalAlignment: Text.AlignHCenter
            wrapMode: Text.Wrap
            maximumLineCount: 6
            elide: Text.ElideRight
            Accessible.ignored: true
        }
    }
}
