// A book being read, large.

import QtQuick
import QtQuick.Templates as T

import Quire

T.AbstractButton {
    id: card

    required property string title
    required property string author
    required property string pages
    required property coverSource cover
    required property string accessibleName

    implicitHeight: Math.max(172, implicitContentHeight + topPadding + bottomPadding)
    padding: 18
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
        radius: 14
        color: Theme.card
        border.width: Theme.isAccentLight ? 1 : 0
        border.color: Theme.hairline

        FocusRing {
            control: card
            controlRadius: 14
            visible: card.visualFocus
        }
    }

    contentItem: Item { // qmllint disable deferred-property-id
        implicitHeight: words.implicitHeight

        PanelShadow {
            x: image.paintedRect.x
            y: image.paintedRect.y
            width: image.paintedRect.width
            height: image.paintedRect.height
            radius: 6
            blur: 3
            offset: 8
            strength: 0.12
        }
        CoverImage {
            id: image

            width: 90
            height: 136
            source: card.cover
            cornerRadius: 6
        }
        Column {
            id: words

            anchors.left: image.right
            anchors.leftMargin: 18
            anchors.right: parent.right
            anchors.verticalCenter: parent.verticalCenter
            spacing: 5

            QuireText {
                text: "NOW READING"
                size: 10
                weight: Font.DemiBold
                font.letterSpacing: 0.6
                color: Theme.secondary
                Accessible.ignored: true
            }
            QuireText {
                width: parent.width
                text: card.title
                size: 18
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
                visible: text.length > 0
                Accessible.ignored: true
            }
            Row {
                spacing: 6
                opacity: 0.78
                visible: card.pages.length > 0

                SymbolPicture {
                    anchors.verticalCenter: parent.verticalCenter
                    name: "book.pages"
                    size: 11
                    color: Theme.ink
                }
                QuireText {
                    text: card.pages
                    size: 11
                    Accessible.ignored: true
                }
            }
        }
    }
}
