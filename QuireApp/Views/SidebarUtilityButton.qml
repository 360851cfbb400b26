import QtQuick
import QtQuick.Templates as T

import Quire

T.AbstractButton {
    id: button

    required property string title
    property string systemImage
    property bool spinning: false

    implicitHeight: 36
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
    // The toolkit has no value for buttons; the description is read in its place.
    Accessible.description: button.spinning ? "In progress" : ""

    background: Rectangle {
        radius: 8
        color: button.hovered && button.enabled ? Theme.sidebarHover : "transparent"

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
        opacity: button.enabled ? 0.82 : 0.55

        SidebarActivityIcon {
            anchors.verticalCenter: parent.verticalCenter
            width: 19
            name: button.systemImage
            spinning: button.spinning
        }
        QuireText {
            anchors.verticalCenter: parent.verticalCenter
            text: button.title
            color: Theme.sidebarForeground
            Accessible.ignored: true
        }
    }
}
