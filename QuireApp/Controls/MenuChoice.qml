// One of a few, chosen from a list that opens: a bordered button with the
// present choice.

pragma ComponentBehavior: Bound

import QtQuick
import QtQuick.Templates as T

import Quire

T.ComboBox {
    id: choice

    required property ChoiceListModel choices
    required property string selectedWord
    required property string accessibleLabel

    signal chosen(string word)

    implicitWidth: 96
    implicitHeight: 28
    leftPadding: 12
    rightPadding: 26
    hoverEnabled: true
    model: choice.choices
    textRole: "title"
    valueRole: "word"
    currentIndex: choice.choices.rowOf(choice.selectedWord)
    onActivated: index => choice.chosen(choice.choices.wordAt(index))

    Keys.onReturnPressed: choice.popup.open()
    Keys.onEnterPressed: choice.popup.open()

    Accessible.name: choice.accessibleLabel
    Accessible.onPressAction: choice.popup.open()

    background: Rectangle {
        radius: 7
        color: choice.down ? Theme.pill : choice.hovered ? Theme.hover : "white"
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
        text: choice.displayText
        weight: Font.Medium
        Accessible.ignored: true
    }

    indicator: SymbolPicture {
        x: choice.width - width - 8
        y: (choice.height - height) / 2
        name: "chevron.up.chevron.down"
        size: 11
        color: Theme.secondary
    }

    delegate: QuireMenuItem {
        id: row

        required property int index
        required property string word
        required property string title

        width: ListView.view ? ListView.view.width : implicitWidth
        text: row.title
        checkable: false
        highlighted: choice.highlightedIndex === row.index
        indicator: SymbolPicture {
            x: 9
            anchors.verticalCenter: parent.verticalCenter
            visible: row.word === choice.selectedWord
            name: "checkmark"
            size: 12
            color: Theme.ink
        }
    }

    popup: T.Popup {
        y: choice.height + 4
        width: Math.max(choice.width, 136)
        x: choice.width - width
        implicitHeight: contentItem.implicitHeight + topPadding + bottomPadding
        padding: 5
        margins: 6

        background: Item {
            PanelShadow {
                anchors.fill: parent
                radius: 9
                blur: 18
                offset: 6
                strength: 0.18
            }
            Rectangle {
                anchors.fill: parent
                radius: 9
                color: "white"
                border.width: 1
                border.color: Theme.hairline
            }
        }

        contentItem: ListView {
            implicitHeight: contentHeight
            model: choice.popup.visible ? choice.delegateModel : null
            currentIndex: choice.highlightedIndex
            boundsBehavior: Flickable.StopAtBounds
            clip: interactive
            interactive: contentHeight > height
        }
    }
}
