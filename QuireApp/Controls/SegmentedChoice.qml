// One of a few, all in sight: a trough in which the chosen piece is white.

pragma ComponentBehavior: Bound

import QtQuick
import QtQuick.Templates as T

import Quire

FocusScope {
    id: choice

    required property ChoiceListModel choices
    required property string selectedWord
    required property string accessibleLabel

    signal chosen(string word)

    readonly property int selectedRow: choice.choices.rowOf(choice.selectedWord)
    // Asks for the count, which tells when the pieces are there.
    readonly property Item selectedPiece: choice.selectedRow < 0 || pieces.count === 0 ? null
        : pieces.itemAt(choice.selectedRow)

    function chooseNeighbour(step: int) {
        const row = Math.max(0, Math.min(choice.choices.count - 1, choice.selectedRow + step));
        choice.chosen(choice.choices.wordAt(row));
        pieces.itemAt(row).forceActiveFocus(Qt.TabFocusReason);
    }

    implicitWidth: row.implicitWidth + 6
    implicitHeight: 32

    Accessible.role: Accessible.PageTabList
    Accessible.name: choice.accessibleLabel

    Rectangle {
        anchors.fill: parent
        radius: 9
        color: Theme.trough
    }

    PanelShadow {
        x: slider.x
        y: slider.y
        width: slider.width
        height: slider.height
        radius: 7
        blur: 4
        offset: 1
        strength: 0.14
    }
    Rectangle {
        id: slider

        x: choice.selectedPiece ? choice.selectedPiece.x + row.x : 3
        y: 3
        width: choice.selectedPiece ? choice.selectedPiece.width : 0
        height: choice.height - 6
        radius: 7
        color: "white"

        Behavior on x {
            NumberAnimation {
                duration: 150
                easing.type: Easing.OutQuad
            }
        }
    }

    Row {
        id: row

        x: 3
        y: 3

        Repeater {
            id: pieces

            model: choice.choices

            T.AbstractButton {
                id: piece

                required property int index
                required property string word
                required property string title
                readonly property int accessibleRole: Accessible.PageTab

                implicitWidth: implicitContentWidth + 28
                implicitHeight: choice.height - 6
                text: piece.title
                checkable: false
                activeFocusOnTab: piece.index === choice.selectedRow || piece.activeFocus
                focusPolicy: Qt.StrongFocus
                onClicked: choice.chosen(piece.word)

                Keys.onReturnPressed: piece.clicked()
                Accessible.onPressAction: {
                    if (piece.enabled)
                        piece.clicked();
                }
                Keys.onLeftPressed: choice.chooseNeighbour(-1)
                Keys.onRightPressed: choice.chooseNeighbour(1)

                Accessible.name: piece.title
                Accessible.selectable: true
                Accessible.selected: piece.index === choice.selectedRow

                background: Item {
                    FocusRing {
                        control: piece
                        visible: piece.visualFocus
                    }
                }
                contentItem: QuireText {
                    horizontalAlignment: Text.AlignHCenter
                    verticalAlignment: Text.AlignVCenter
                    text: piece.title
                    weight: Font.Medium
                    Accessible.ignored: true
                }
            }
        }
    }
}
