// A fact in a few words.

import QtQuick

import Quire

Rectangle {
    id: pill

    required property string text
    required property string symbol

    implicitWidth: words.implicitWidth + 18
    implicitHeight: 24
    radius: height / 2
    color: Theme.pill
    border.width: Theme.isAccentLight ? 1 : 0
    border.color: Theme.hairline

    Row {
        id: words

        anchors.centerIn: parent
        spacing: 5

        SymbolPicture {
            anchors.verticalCenter: parent.verticalCenter
            name: pill.symbol
            size: 11
            color: Theme.ink
        }
        QuireText {
            anchors.verticalCenter: parent.verticalCenter
            text: pill.text
            size: 11
        }
    }
}
