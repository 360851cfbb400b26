// One of a few, chosen from a list that opens: a bordered button with the
// present choice.

import QtQuick
import QtQuick.Templates as T

import Quire

T.AbstractButton {
    id: choice

    required property ChoiceListModel choices
    required property string selectedWord
    required property string accessibleLabel

    signal chosen(string word)

    readonly property int accessibleRole: Accessible.ComboBox

    property int reason: Qt.OtherFocusReason // for having the keyboard, before the list opened

    implicitWidth: 96
    implicitHeight: 28
    leftPadding: 12
    rightPadding: 26
    text: choice.choices.titleOf(choice.selectedWord)
    opacity: choice.enabled ? 1 : 0.45
    hoverEnabled: true
    focusPolicy: Qt.StrongFocus
    onClicked: {
        choice.reason = choice.visualFocus ? Qt.TabFocusReason : Qt.OtherFocusReason;
        list.open();
    }

    Keys.onReturnPressed: choice.clicked()
    Keys.onEnterPressed: choice.clicked()
    Keys.onUpPressed: choice.clicked()
    Keys.onDownPressed: choice.clicked()
    Accessible.onPressAction: {
        if (choice.enabled)
            choice.clicked();
    }

    Accessible.name: choice.accessibleLabel
    Accessible.description: choice.text

    background: Rectangle {
        radius: 7
        color: choice.down || list.visible ? Theme.pill : choice.hovered ? Theme.hover : "white"
        border.width: 1
        border.color: Theme.hairline

        FocusRing {
            control: choice
            visible: choice.visualFocus
        }
    }

    contentItem: QuireText {
        verticalAlignment: Text.AlignVCenter
        elide: Text.ElideRight
        text: choice.text
        font.family: choice.choices.familyOf(choice.selectedWord) || Theme.fontFamily
        weight: Font.Medium
        Accessible.ignored: true
    }

    SymbolPicture {
        anchors.right: parent.right
        anchors.rightMargin: 8
        anchors.verticalCenter: parent.verticalCenter
        name: "chevron.up.chevron.down"
        size: 11
        color: Theme.secondary
    }

    ChoiceMenu {
        id: list

        x: choice.width - width
        y: choice.height + 4
        width: Math.max(implicitWidth, choice.width)
        choices: choice.choices
        selectedWord: choice.selectedWord
        onChosen: word => choice.chosen(word)
        // Not only when it has faded in: a key that is pressed at once goes on from here.
        onClosed: choice.forceActiveFocus(choice.reason)
        onAboutToShow: currentIndex = choice.choices.rowOf(choice.selectedWord)
    }
}
