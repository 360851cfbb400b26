// The button of the panels that add a title: taller than the ordinary one.

import QtQuick
import QtQuick.Templates as T

import Quire

T.Button {
    id: button

    property bool prominent: false

    implicitWidth: Math.max(button.prominent ? 118 : 126, implicitContentWidth + leftPadding + rightPadding)
    implicitHeight: 42
    leftPadding: button.prominent ? 17 : 15
    rightPadding: leftPadding
    opacity: !button.enabled ? 0.45 : button.down ? 0.78 : 1
    hoverEnabled: true

    Keys.onReturnPressed: button.clicked()
    Keys.onEnterPressed: button.clicked()
    Accessible.onPressAction: {
        if (button.enabled)
            button.clicked();
    }

    Accessible.role: Accessible.Button
    Accessible.name: button.text

    background: Rectangle {
        radius: 9
        color: button.prominent ? (button.hovered ? Theme.accentHovered : Theme.accent)
            : button.hovered ? Theme.hover : Theme.field
        border.width: button.prominent && !Theme.isAccentLight ? 0 : 1
        border.color: Theme.hairline

        FocusRing {
            control: button
            controlRadius: 9
            visible: button.visualFocus
        }
    }

    contentItem: QuireText {
        horizontalAlignment: Text.AlignHCenter
        verticalAlignment: Text.AlignVCenter
        text: button.text
        weight: Font.Medium
        color: button.prominent ? Theme.onCatalogAccent : Theme.ink
        Accessible.ignored: true
    }
}
