// The colours to choose the accent from. With the keyboard they are one stop:
// the arrows go from one to the next, Space or Return chooses.

pragma ComponentBehavior: Bound

import QtQuick

import Quire

FocusScope {
    id: row

    required property AppearanceViewModel appearance

    readonly property int selectedRow: row.appearance.accents.rowOf(row.appearance.accent)

    function focusNeighbour(index: int) {
        const neighbour = swatches.itemAt(index);
        if (neighbour)
            neighbour.forceActiveFocus(Qt.TabFocusReason);
    }

    implicitWidth: content.implicitWidth
    implicitHeight: content.implicitHeight

    Accessible.role: Accessible.Grouping
    Accessible.name: "Accent Color"

    Row {
        id: content

        spacing: 15

        Repeater {
            id: swatches

            model: row.appearance.accents

            AccentSwatch {
                id: swatch

                required property int index
                required property string word
                required property string title

                text: title
                color: isCustom ? row.appearance.customAccentColor : row.appearance.accentColorOf(word)
                isCustom: word === row.appearance.customAccent
                selected: swatch.index === row.selectedRow
                activeFocusOnTab: swatch.selected || swatch.activeFocus
                onClicked: row.appearance.chooseAccent(word)

                Keys.onLeftPressed: row.focusNeighbour(swatch.index - 1)
                Keys.onRightPressed: row.focusNeighbour(swatch.index + 1)
            }
        }
    }
}
