// A title over a choice. A word that is none of the choices shows nothing, and
// stays until the reader chooses.

import QtQuick

import Quire

Column {
    id: picker

    required property string title
    required property ChoiceListModel options
    required property string selection

    signal chosen(string word)

    spacing: 6

    QuireText {
        text: picker.title
        size: 11
        weight: Font.DemiBold
        color: Theme.secondary
        Accessible.ignored: true
    }
    MenuChoice {
        width: 190
        height: 34
        accessibleLabel: picker.title
        choices: picker.options
        selectedWord: picker.selection
        onChosen: word => picker.chosen(word)
    }
}
