// A title as its cover alone. It lifts a little under the pointer.

pragma ComponentBehavior: Bound

import QtQuick
import QtQuick.Templates as T

import Quire

T.AbstractButton {
    id: card

    required property int index
    required property double rowId
    required property string title
    required property coverSource cover
    required property string accessibleName
    property int spineMode: CoverPicture.AlwaysSpine

    property bool isSpare: false // kept out of sight for another title

    implicitWidth: 142
    implicitHeight: 218
    onIsSpareChanged: if (card.isSpare) card.focus = false
    hoverEnabled: true
    focusPolicy: Qt.StrongFocus
    z: card.hovered || card.visualFocus ? 1 : 0
    scale: card.hovered ? 1.025 : 1

    // The grid hands the focus from card to card without a reason; it was a key.
    onActiveFocusChanged: if (card.activeFocus && card.focusReason === Qt.OtherFocusReason) card.focusReason = Qt.TabFocusReason

    Keys.onReturnPressed: card.clicked()
    Keys.onEnterPressed: card.clicked()
    Accessible.onPressAction: {
        if (card.enabled)
            card.clicked();
    }

    Accessible.role: Accessible.Button
    Accessible.name: card.accessibleName

    Behavior on scale {
        NumberAnimation {
            duration: 150
            easing.type: Easing.OutQuad
        }
    }

    contentItem: Item { // qmllint disable deferred-property-id
        PanelShadow {
            // As large as the card stands, and not scaled with it: drawn by the processor, the pieces of
            // a scaled shadow leave seams.
            width: Math.round(image.paintedRect.width * card.scale)
            height: Math.round(image.paintedRect.height * card.scale)
            x: image.paintedRect.x + (image.paintedRect.width - width) / 2
            y: image.paintedRect.y + (image.paintedRect.height - height) / 2
            scale: 1 / card.scale
            radius: 6
            blur: 7
            offset: 4
            strength: 0.15
        }
        CoverImage {
            id: image

            anchors.fill: parent
            title: card.title
            source: card.cover
            cornerRadius: 6
            spineMode: card.spineMode
            clearsLoadedBackground: true
        }
        WhileWanted {
            anchors.fill: parent
            wanted: card.visualFocus

            FocusRing {
                control: card
                controlRadius: 6
            }
        }
    }
}
