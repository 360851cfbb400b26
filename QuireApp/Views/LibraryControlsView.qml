// The row over the grid: what is shown and how many, a button to add to it, and
// the sort.

import QtQuick

import Quire

Item {
    id: controls

    required property LibraryViewModel library
    required property string addText
    required property string addToolTip
    readonly property Item sortChoice: sort

    signal addRequested

    implicitHeight: 44

    Column {
        anchors.left: parent.left
        anchors.right: add.left
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

    BorderedButton {
        id: add

        anchors.right: sort.left
        anchors.rightMargin: 12
        anchors.verticalCenter: parent.verticalCenter
        small: true
        symbol: "plus"
        text: controls.addText
        toolTipText: controls.addToolTip
        enabled: controls.library.isReady
        onClicked: controls.addRequested()
    }
    MenuChoice {
        id: sort

        anchors.right: parent.right
        anchors.verticalCenter: parent.verticalCenter
        width: 96
        height: 24 // as the button beside it
        accessibleLabel: "Sort library"
        choices: controls.library.sorts
        selectedWord: controls.library.selectedSort
        onChosen: word => controls.library.selectedSort = word
    }
}
