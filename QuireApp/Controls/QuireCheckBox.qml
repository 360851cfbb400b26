// Something that is on or off. Its words can be clicked on as well.

import QtQuick
import QtQuick.Templates as T

import Quire

// Not the toolkit's own check box, which loses memory for each that is made while a
// screen reader listens (Qt 6.4).
T.AbstractButton {
    id: box

    implicitWidth: implicitContentWidth + leftPadding + rightPadding
    implicitHeight: 24
    leftPadding: 24
    checkable: true
    hoverEnabled: true
    opacity: box.enabled ? 1 : 0.45

    function press() {
        box.toggle();
        box.toggled();
        box.clicked();
    }

    Keys.onReturnPressed: box.press()
    Keys.onEnterPressed: box.press()

    Accessible.role: Accessible.CheckBox
    Accessible.name: box.text
    Accessible.checkable: true
    Accessible.checked: box.checked
    Accessible.onToggleAction: box.press()

    indicator: Rectangle {
        y: (box.height - height) / 2
        width: 16
        height: 16
        radius: 4.5
        color: box.checked ? Theme.accent : box.hovered ? Theme.hover : "white"
        border.width: 1
        border.color: Theme.hairline

        SymbolPicture {
            anchors.centerIn: parent
            name: "checkmark"
            size: 12
            color: Theme.onAccent
            visible: box.checked
        }
        FocusRing {
            control: box
            controlRadius: 4.5
            visible: box.visualFocus
        }
    }

    contentItem: QuireText {
        verticalAlignment: Text.AlignVCenter
        text: box.text
        Accessible.ignored: true
    }
}
