// The buttons of one section of the sidebar. Tab reaches each; the arrow keys
// move between them.

pragma ComponentBehavior: Bound

import QtQuick

import Quire

Column {
    id: list

    required property ChoiceListModel choices
    required property string selectedWord

    signal chosen(string word)

    function focusRow(row: int) {
        const button = buttons.itemAt(row);
        if (button)
            button.forceActiveFocus(Qt.TabFocusReason);
    }

    spacing: 3

    Repeater {
        id: buttons

        model: list.choices

        SidebarNavigationButton {
            id: button

            required property int index
            required property string word
            required property string symbol

            width: list.width
            systemImage: button.symbol
            selected: button.word === list.selectedWord
            onClicked: list.chosen(button.word)
            Keys.onUpPressed: list.focusRow(button.index - 1)
            Keys.onDownPressed: list.focusRow(button.index + 1)
        }
    }
}
