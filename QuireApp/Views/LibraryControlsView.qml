// The row over the grid: what is shown and how many, and the sort.

import QtQuick

import Quire

Item {
    id: controls

    required property LibraryViewModel library
    readonly property Item sortChoice: sort

    implicitHeight: 44

    Column {
        anchors.left: parent.left
        anchors.right: sort.left
        anchors.rightMargin: 12
        anchors.verticalCenter: parent.verticalCenter
        spacing: 2

        QuireText {
            width: parent.width
            elide: Text.ElideRight
            text: controls.library.heading
            size: 18
            weight: Font.DemiBold
            Accessible.role: Accessible.Heading
        }
        QuireText {
            text: controls.library.countText
            size: 11
            color: Theme.secondary
        }
    }

    MenuChoice {
        id: sort

        anchors.right: parent.right
        anchors.verticalCenter: parent.verticalCenter
        width: 96
        accessibleLabel: "Sort library"
        choices: controls.library.sorts
        selectedWord: controls.library.selectedSort
        onChosen: word => controls.library.selectedSort = word
    }
}
