// The menu bar of a window. A letter behind "&" in a menu's title opens it with
// Alt, F10 opens the first.

import QtQuick
import QtQuick.Templates as T

import Quire

T.MenuBar {
    id: bar

    implicitWidth: contentItem.implicitWidth + leftPadding + rightPadding
    implicitHeight: 30
    leftPadding: 8
    rightPadding: 8
    topPadding: 3
    bottomPadding: 3

    delegate: T.MenuBarItem {
        id: item

        // The toolkit leaves the last menu highlighted when it has closed.
        readonly property bool isOpen: item.menu !== null && item.menu.visible
        readonly property string words: item.text.replace("&", "")

        implicitWidth: implicitContentWidth + 20
        implicitHeight: 24

        Accessible.role: Accessible.MenuItem
        Accessible.name: item.words
        Accessible.onPressAction: item.triggered()

        background: Rectangle {
            radius: 6
            color: item.isOpen || pointer.hovered ? Theme.menuHover : "transparent"

            FocusRing {
                control: item
                controlRadius: 6
                anchors.margins: -2
                visible: item.visualFocus
            }
        }
        contentItem: QuireText {
            horizontalAlignment: Text.AlignHCenter
            verticalAlignment: Text.AlignVCenter
            text: item.words
            Accessible.ignored: true
        }

        function isBesideOpenMenu(): bool {
            for (let place = 0; place < item.menuBar.count; ++place) {
                const menu = item.menuBar.menuAt(place);
                if (menu !== item.menu && menu.visible)
                    return true;
            }
            return false;
        }

        // The toolkit keeps the bar open when Escape has closed a menu whose title is hovered
        // over: the next one that the pointer comes to would open without a click.
        hoverEnabled: false

        HoverHandler {
            id: pointer

            // While one menu is open the others follow the pointer.
            onHoveredChanged: {
                if (pointer.hovered && item.isBesideOpenMenu())
                    item.triggered();
            }
        }
    }

    Shortcut {
        sequence: "F10"
        onActivated: (bar.itemAt(0) as T.MenuBarItem).triggered()
    }

    background: Rectangle {
        color: Theme.window

        Rectangle {
            anchors.bottom: parent.bottom
            width: parent.width
            height: 1
            color: Theme.hairline
        }
    }

    contentItem: Row {
        Repeater {
            model: bar.contentModel
        }
    }
}
