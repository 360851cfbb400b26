// The head of a panel that adds titles: what it is for, and its two modes.

import QtQuick

import Quire

Item {
    id: head

    required property string heading
    required property string line
    required property ChoiceListModel modes
    required property bool entersManually

    signal modeChosen(bool entersManually)

    implicitHeight: 44

    Column {
        anchors.left: parent.left
        anchors.right: modes.left
        anchors.rightMargin: 16
        anchors.verticalCenter: parent.verticalCenter
        spacing: 4

        QuireText {
            width: parent.width
            elide: Text.ElideRight
            text: head.heading
            size: 18
            weight: Font.DemiBold
            Accessible.role: Accessible.Heading
        }
        QuireText {
            width: parent.width
            elide: Text.ElideRight
            text: head.line
            color: Theme.secondary
        }
    }
    SegmentedChoice {
        id: modes

        anchors.right: parent.right
        anchors.verticalCenter: parent.verticalCenter
        accessibleLabel: "Way of adding"
        choices: head.modes
        selectedWord: head.entersManually ? "manual" : "search"
        onChosen: word => head.modeChosen(word === "manual")
    }
}
