import QtQuick

import Quire

Rectangle {
    id: empty

    required property string message

    implicitHeight: Math.max(30, words.implicitHeight + 24)
    radius: 10
    color: Theme.field

    QuireText {
        id: words

        anchors.left: parent.left
        anchors.right: parent.right
        anchors.leftMargin: 30
        anchors.rightMargin: 30
        anchors.verticalCenter: parent.verticalCenter
        horizontalAlignment: Text.AlignHCenter
        wrapMode: Text.Wrap
        maximumLineCount: 8
        elide: Text.ElideRight
        text: empty.message
        color: Theme.secondary
    }
}
