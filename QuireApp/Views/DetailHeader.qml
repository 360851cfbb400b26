// The bar over a panel: three dots in the manner of window controls, of which
// the first closes, and what the panel is about.

import QtQuick
import QtQuick.Templates as T

import Quire

Item {
    id: header

    required property string title
    property string contextLabel

    signal closed

    implicitHeight: 38

    Rectangle {
        anchors.bottom: parent.bottom
        width: parent.width
        height: 1
        color: Theme.isAccentLight ? Theme.hairline : Theme.card
    }
    Row {
        id: dots

        x: 13
        anchors.verticalCenter: parent.verticalCenter
        spacing: 7

        T.AbstractButton {
            id: closeButton

            width: 11
            height: 11
            hoverEnabled: true
            focusPolicy: Qt.StrongFocus
            onClicked: header.closed()

            Keys.onReturnPressed: closeButton.clicked()
            Keys.onEnterPressed: closeButton.clicked()
            Accessible.onPressAction: closeButton.clicked()
            Accessible.role: Accessible.Button
            Accessible.name: "Close"

            background: Rectangle {
                radius: width / 2
                color: Qt.rgba(1, 0.38, 0.36, 1)

                SymbolPicture {
                    anchors.centerIn: parent
                    name: "xmark"
                    size: 6
                    color: Theme.ink
                    opacity: 0.52
                    visible: closeButton.hovered || closeButton.visualFocus
                }
                FocusRing {
                    control: closeButton
                    controlRadius: 5.5
                    visible: closeButton.visualFocus
                }
            }

            QuireToolTip {
                text: "Close"
                visible: closeButton.hovered
            }
        }
        Rectangle {
            width: 11
            height: 11
            radius: 5.5
            color: Qt.rgba(1, 0.75, 0.25, 1)
        }
        Rectangle {
            width: 11
            height: 11
            radius: 5.5
            color: Qt.rgba(0.2, 0.78, 0.34, 1)
        }
    }
    QuireText {
        anchors.left: dots.right
        anchors.leftMargin: 13
        anchors.right: context.visible ? context.left : parent.right
        anchors.rightMargin: 13
        anchors.verticalCenter: parent.verticalCenter
        elide: Text.ElideRight
        text: header.title
        weight: Font.Medium
        Accessible.role: Accessible.Heading
    }
    Rectangle {
        id: context

        anchors.right: parent.right
        anchors.rightMargin: 13
        anchors.verticalCenter: parent.verticalCenter
        width: Math.min(120, label.implicitWidth + 18)
        height: 20
        radius: 10
        color: Theme.pill
        border.width: Theme.isAccentLight ? 1 : 0
        border.color: Theme.hairline
        visible: header.contextLabel.length > 0

        QuireText {
            id: label

            anchors.fill: parent
            anchors.leftMargin: 9
            anchors.rightMargin: 9
            horizontalAlignment: Text.AlignHCenter
            verticalAlignment: Text.AlignVCenter
            elide: Text.ElideRight
            text: header.contextLabel
            size: 10
            weight: Font.Medium
        }
    }
}
