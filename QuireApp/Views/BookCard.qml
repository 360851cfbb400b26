// A book. Its menu takes it out of the library's sight, and back.

import QtQuick

import Quire

LibraryCard {
    id: card

    required property bool isHidden

    signal hideRequested(bool hidden)

    spineMode: CoverPicture.AlwaysSpine

    Keys.onMenuPressed: menu.popup(card, 0, card.height)
    Keys.onPressed: event => {
        if (event.key === Qt.Key_F10 && event.modifiers === Qt.ShiftModifier) {
            menu.popup(card, 0, card.height);
            event.accepted = true;
        }
    }

    TapHandler {
        acceptedButtons: Qt.RightButton
        onTapped: menu.popup()
    }
    QuireMenu {
        id: menu

        QuireMenuItem {
            text: card.isHidden ? "Restore to Library" : "Hide from Library"
            symbol: card.isHidden ? "eye" : "eye.slash"
            onTriggered: card.hideRequested(!card.isHidden)
        }
    }
}
