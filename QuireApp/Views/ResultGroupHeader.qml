import QtQuick

import Quire

Item {
    id: header

    required property string title
    required property string value

    implicitHeight: 24

    QuireText {
        anchors.left: parent.left
        anchors.right: value.left
        anchors.rightMargin: 12
        anchors.verticalCenter: parent.verticalCenter
        elide: Text.ElideRight
        text: header.title
        size: 18
        weight: Font.DemiBold
        Accessible.role: Accessible.Heading
    }
    QuireText {
        id: value

        anchors.right: parent.right
        anchors.verticalCenter: parent.verticalCenter
        text: header.value
        size: 11
        color: Theme.secondary
    }
}
