// A book that was finished not long ago.

import QtQuick
import QtQuick.Templates as T

import Quire

T.AbstractButton {
    id: card

    required property string title
    required property string author
    required property coverSource cover
    required property string accessibleName

    implicitHeight: 108
    padding: 13
    hoverEnabled: true
    focusPolicy: Qt.StrongFocus

    Keys.onReturnPressed: card.clicked()
    Keys.onEnterPressed: card.clicked()
    Accessible.onPressAction: {
        if (card.enabled)
            card.clicked();
    }

    Accessible.role: Accessible.Button
    Accessible.name: card.accessibleName

    background: Rectangle {
        radius: 12
        color: card.hovered ? Theme.hover : Theme.field
        border.width: 1
        border.color: Theme.faded(Theme.hairline, 0.6)

        FocusRing {
            control: card
            controlRadius: 12
            visible: card.visualFocus
        }
    }

    contentItem: Item { // qmllint disable deferred-property-id
        CoverImage {
            id: image

            width: 54
            height: 82
            source: card.cover
            cornerRadius: 5
        }
        Column {
            anchors.left: image.right
            anchors.leftMargin: 13
            anchors.right: parent.right
            anchors.verticalCenter: parent.verticalCenter
            spacing: 4

            QuireText {
                width: parent.width
                text: card.title
                size: 13
                weight: Font.DemiBold
                wrapMode: Text.Wrap
                maximumLineCount: 3
                elide: Text.ElideRight
                Accessible.ignored: true
            }
            QuireText {
                width: parent.width
                elide: Text.ElideRight
                text: card.author
                size: 11
                visible: text.length > 0
                Accessible.ignored: true
            }
        }
    }
}
