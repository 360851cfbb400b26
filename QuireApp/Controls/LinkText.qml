// Words that open a page elsewhere.

import QtQuick
import QtQuick.Templates as T

import Quire

T.AbstractButton {
    id: link

    readonly property int accessibleRole: Accessible.Link

    implicitWidth: implicitContentWidth
    implicitHeight: implicitContentHeight + 4
    hoverEnabled: true

    Keys.onReturnPressed: link.clicked()
    Keys.onEnterPressed: link.clicked()
    Accessible.onPressAction: {
        if (link.enabled)
            link.clicked();
    }

    Accessible.name: link.text

    background: Item {
        FocusRing {
            control: link
            controlRadius: 3
            anchors.margins: -3
            visible: link.visualFocus
        }
    }
    contentItem: Item { // qmllint disable deferred-property-id
        implicitWidth: words.implicitWidth + 15
        implicitHeight: words.implicitHeight

        QuireText {
            id: words

            width: Math.min(implicitWidth, link.availableWidth - 15)
            elide: Text.ElideMiddle
            text: link.text
            color: Theme.mark
            font.underline: link.hovered
            Accessible.ignored: true
        }
        SymbolPicture {
            x: words.width + 5
            anchors.verticalCenter: parent.verticalCenter
            name: "arrow.up.right"
            size: 10
            color: Theme.mark
        }
    }

    HoverHandler {
        cursorShape: Qt.PointingHandCursor
    }
}
