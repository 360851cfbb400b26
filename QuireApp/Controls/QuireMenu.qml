// A list that opens over the window: a menu of the menu bar or of a control.

import QtQuick
import QtQuick.Templates as T

import Quire

T.Menu {
    id: menu

    implicitWidth: Math.max(136, contentItem.implicitWidth + leftPadding + rightPadding)
    implicitHeight: contentItem.implicitHeight + topPadding + bottomPadding
    padding: 5
    margins: 6
    overlap: 4

    delegate: QuireMenuItem {}

    background: Item {
        PanelShadow {
            anchors.fill: parent
            radius: 9
            blur: 18
            offset: 6
            strength: 0.18
        }
        Rectangle {
            anchors.fill: parent
            radius: 9
            color: "white"
            border.width: 1
            border.color: Theme.hairline
        }
    }

    contentItem: ListView {
        implicitWidth: {
            let widest = 0;
            for (let row = 0; row < menu.count; ++row)
                widest = Math.max(widest, menu.itemAt(row).implicitWidth);
            return widest;
        }
        implicitHeight: contentHeight
        model: menu.contentModel
        interactive: contentHeight > height
        boundsBehavior: Flickable.StopAtBounds
        currentIndex: menu.currentIndex
        clip: interactive
    }

    enter: Transition {
        NumberAnimation {
            property: "opacity"
            from: 0
            to: 1
            duration: 120
            easing.type: Easing.OutQuad
        }
    }
}
