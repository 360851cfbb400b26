import QtQuick
import QtQuick.Templates as T

import Quire

T.AbstractButton {
    id: button

    required property string title
    required property string systemImage
    required property bool selected

    implicitHeight: 37
    leftPadding: 10
    rightPadding: 10
    text: button.title
    hoverEnabled: true
    focusPolicy: Qt.StrongFocus

    Keys.onReturnPressed: button.clicked()
    Keys.onEnterPressed: button.clicked()
    Accessible.onPressAction: {
        if (button.enabled)
            button.clicked();
    }

    Accessible.role: Accessible.Button
    Accessible.name: button.title
    Accessible.selectable: true
    Accessible.selected: button.selected

    background: Rectangle {
        radius: 8
        color: button.selected ? Theme.sidebarSelection : button.hovered ? Theme.sidebarHover : "transparent"
        border.width: button.selected && Theme.sidebarSelectionEdge.a > 0 ? 1 : 0
        border.color: Theme.sidebarSelectionEdge

        FocusRing {
            control: button
            controlRadius: 8
            anchors.margins: -2
            border.color: Theme.sidebarFocusRing
            visible: button.visualFocus
        }
    }

    contentItem: Row {
        spacing: 10

        SymbolPicture {
            anchors.verticalCenter: parent.verticalCenter
            width: 20
            name: button.systemImage
            size: 15
            color: Theme.sidebarForeground
        }
        QuireText {
            anchors.verticalCenter: parent.verticalCenter
            text: button.title
            weight: button.selected ? Font.Bold : Font.Medium
            color: Theme.sidebarForeground
            Accessible.ignored: true
        }
    }
}
