// One colour to choose: a disc with a ring around it and a check on it when it
// is the chosen one. The reader's own lies on a small colour wheel.

import QtQuick
import QtQuick.Templates as T

import Quire

T.AbstractButton {
    id: swatch

    required property color color
    required property bool selected
    property bool isCustom: false
    readonly property int accessibleRole: Accessible.RadioButton
    readonly property bool accessibleChecked: swatch.selected

    implicitWidth: 23
    implicitHeight: 23
    hoverEnabled: true
    focusPolicy: Qt.StrongFocus
    opacity: swatch.enabled ? 1 : 0.45

    Keys.onReturnPressed: swatch.clicked()
    Keys.onEnterPressed: swatch.clicked()
    Accessible.onPressAction: {
        if (swatch.enabled)
            swatch.clicked();
    }

    Accessible.name: swatch.text
    Accessible.description: swatch.selected ? "Selected" : "Not selected"
    Accessible.checked: swatch.accessibleChecked

    background: Item { // qmllint disable deferred-property-id
        PanelShadow {
            anchors.fill: parent
            radius: 11
            blur: 4
            offset: 1
            strength: 0.22
        }
        Rectangle {
            anchors.fill: parent
            radius: width / 2
            color: swatch.color
            border.width: swatch.isCustom ? 0 : 1
            border.color: Theme.isAccentLight ? Theme.hairline : Theme.pill
        }
        ColorWheelPicture {
            anchors.fill: parent
            visible: swatch.isCustom
        }
        Rectangle {
            anchors.fill: parent
            anchors.margins: 4
            radius: width / 2
            visible: swatch.isCustom
            color: swatch.color
            border.width: 1
            border.color: "white"
        }
        Rectangle {
            anchors.fill: parent
            radius: width / 2
            visible: swatch.isCustom
            color: "transparent"
            border.width: 1
            border.color: Theme.isAccentLight ? Theme.hairline : Theme.pill
        }
        Rectangle {
            // Its middle is 3 outside the edge.
            anchors.fill: parent
            anchors.margins: -4
            radius: width / 2
            color: "transparent"
            border.width: 2
            border.color: Theme.mark
            visible: swatch.selected
        }
        FocusRing {
            control: swatch
            controlRadius: 15
            anchors.margins: -8 // around the other ring
            visible: swatch.visualFocus
        }
    }

    contentItem: Item {
        SymbolPicture {
            anchors.centerIn: parent
            name: "checkmark"
            size: 9
            color: Theme.foregroundOn(swatch.color)
            visible: swatch.selected
        }
    }

    QuireToolTip {
        y: -implicitHeight - 10
        text: swatch.text
        visible: swatch.hovered
    }
}
