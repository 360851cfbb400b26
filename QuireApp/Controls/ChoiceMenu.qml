// A menu of choices with a check beside the one in force.

pragma ComponentBehavior: Bound

import QtQuick

import Quire

QuireMenu {
    id: menu

    required property ChoiceListModel choices
    required property string selectedWord

    signal chosen(string word)

    Instantiator {
        model: menu.choices
        delegate: QuireMenuItem {
            required property string word
            required property string title
            required family

            text: title
            checkable: true
            // Asked once more while the menu goes.
            checked: word === menu?.selectedWord
            onTriggered: {
                menu.chosen(word);
                checked = Qt.binding(() => word === menu?.selectedWord);
            }
        }
        onObjectAdded: (index, object) => menu.insertItem(index, object)
        onObjectRemoved: (index, object) => menu.removeItem(object)
    }
}
