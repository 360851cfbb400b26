// Five stars with halves: the left half of a star is half of it. A second click
// on the same half takes the rating back. With the keyboard the stars are one
// stop: the arrows go by halves, Delete takes the rating back.

pragma ComponentBehavior: Bound

import QtQuick
import QtQuick.Templates as T

import Quire

Column {
    id: control

    required property string title
    required property double rating // 0 for none
    property double hoverRating: -1 // below 0 for none

    signal rated(double rating)

    readonly property double shownRating: control.hoverRating >= 0 ? control.hoverRating : control.rating
    readonly property string words: control.rating > 0
        ? control.formatted(control.rating) + (control.rating === 1 ? " star" : " stars") : "Unrated"

    // The pointer is in the next half before it has left the last one.
    function hover(value: double, isInside: bool) {
        if (isInside)
            control.hoverRating = value;
        else if (control.hoverRating === value)
            control.hoverRating = -1;
    }

    function formatted(value: double): string {
        const rounded = Math.round(value * 10) / 10;
        return Number(rounded).toLocaleString(Qt.locale(), "f", rounded % 1 === 0 ? 0 : 1);
    }

    spacing: 6

    QuireText {
        text: control.title
        size: 11
        weight: Font.DemiBold
        color: Theme.secondary
        Accessible.ignored: true
    }
    Row {
        height: 34
        spacing: 9

        Item {
            id: stars

            function step(by: double) {
                control.rated(Math.max(0, Math.min(5, control.rating + by)));
            }

            anchors.verticalCenter: parent.verticalCenter
            width: cells.width
            height: cells.height
            activeFocusOnTab: true

            Keys.onRightPressed: stars.step(0.5)
            Keys.onUpPressed: stars.step(0.5)
            Keys.onLeftPressed: stars.step(-0.5)
            Keys.onDownPressed: stars.step(-0.5)
            Keys.onDeletePressed: control.rated(0)
            Keys.onPressed: event => {
                const isDigit = event.key >= Qt.Key_0 && event.key <= Qt.Key_5;
                event.accepted = isDigit || event.key === Qt.Key_Backspace;
                if (event.accepted)
                    control.rated(isDigit ? event.key - Qt.Key_0 : 0);
            }

            Accessible.role: Accessible.Grouping
            Accessible.name: control.title
            Accessible.description: control.words
            Accessible.focusable: true

            Row {
                id: cells

                spacing: 3

                Repeater {
                    model: 5

                    Item {
                        id: star

                        required property int index
                        readonly property int number: star.index + 1
                        readonly property double part: control.shownRating - star.index

                        width: 28
                        height: 30

                        SymbolPicture {
                            anchors.centerIn: parent
                            name: star.part >= 1 ? "star.fill" : star.part >= 0.5 ? "star.leadinghalf.filled" : "star"
                            size: 24
                            color: star.number - 0.5 <= control.shownRating ? Theme.mark : Qt.alpha(Theme.mark, 0.32)
                        }
                        Row {
                            Repeater {
                                model: [star.number - 0.5, star.number]

                                T.AbstractButton {
                                    id: half

                                    required property double modelData
                                    readonly property int accessibleRole: Accessible.RadioButton
                                    readonly property bool accessibleChecked: control.rating === half.modelData

                                    width: 14
                                    height: 30
                                    hoverEnabled: true
                                    focusPolicy: Qt.NoFocus
                                    onHoveredChanged: control.hover(half.modelData, half.hovered)
                                    onClicked: control.rated(control.rating === half.modelData ? 0 : half.modelData)

                                    Accessible.onPressAction: half.clicked()
                                    Accessible.name: "Set rating to " + control.formatted(half.modelData)
                                    Accessible.checked: half.accessibleChecked
                                    Accessible.description: half.accessibleChecked ? "Selected" : ""
                                }
                            }
                        }
                    }
                }
            }
            FocusRing {
                control: stars
            }
        }
        QuireText {
            anchors.verticalCenter: parent.verticalCenter
            width: Math.max(58, implicitWidth)
            text: control.words
            size: 11
            color: control.rating > 0 ? Theme.ink : Theme.secondary
        }
        // Keeps its room, so that what stands beside the stars stays there.
        Item {
            anchors.verticalCenter: parent.verticalCenter
            width: 24
            height: 24

            T.AbstractButton {
                id: clear

                anchors.fill: parent
                visible: control.rating > 0
                hoverEnabled: true
                focusPolicy: Qt.StrongFocus
                onClicked: {
                    if (clear.visualFocus)
                        stars.forceActiveFocus(Qt.TabFocusReason); // it goes with the rating
                    control.rated(0);
                }

                Keys.onReturnPressed: clear.clicked()
                Keys.onEnterPressed: clear.clicked()
                Accessible.onPressAction: clear.clicked()
                Accessible.role: Accessible.Button
                Accessible.name: "Clear rating"

                SymbolPicture {
                    anchors.centerIn: parent
                    name: "xmark.circle.fill"
                    size: 13
                    color: clear.hovered ? Theme.ink : Theme.secondary
                }
                FocusRing {
                    control: clear
                    visible: clear.visualFocus
                }
                QuireToolTip {
                    text: "Clear rating"
                    visible: clear.hovered
                }
            }
        }
    }
}
