// A book. Its menu takes it out of the library's sight, and back.

pragma ComponentBehavior: Bound

import QtQuick

import Quire

LibraryCard {
    id: card

    required property bool isHidden
    required property bool canHide

    signal hideRequested(bool hidden)

    spineMode: CoverPicture.AlwaysSpine

    Keys.onMenuPressed: card.openMenu(0, card.height)
    Keys.onPressed: event => {
        if (event.key === Qt.Key_F10 && event.modifiers === Qt.ShiftModifier) {
            card.openMenu(0, card.height);
            event.accepted = true;
        }
    }

    TapHandler {
        acceptedButtons: Qt.RightButton
        onTapped: point => card.openMenu(point.position.x, point.position.y)
    }
    // Most cards are never asked for theirs.
    property QuireMenu openedMenu: null

    // The card shows another title: what the menu offers was not for that one.
    onRowIdChanged: card.closeMenu()
    onIsSpareChanged: if (card.isSpare) card.closeMenu()

    function closeMenu() {
        if (card.openedMenu)
            card.openedMenu.close();
    }

    function openMenu(x, y) {
        if (!card.openedMenu)
            card.openedMenu = menu.createObject(card);
        card.openedMenu.popup(card, x, y);
    }

    Component {
        id: menu

        QuireMenu {
            QuireMenuItem {
                text: card.isHidden ? "Restore to Library" : "Hide from Library"
                symbol: card.isHidden ? "eye" : "eye.slash"
                enabled: card.canHide
                onTriggered: card.hideRequested(!card.isHidden)
            }
        }
    }
}
