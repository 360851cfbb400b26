// A colour to be chosen: on a wheel and a slider, or by its digits. Every change
// is seen at once.

import QtQuick

import Quire

FocusScope {
    id: view

    required property CustomColorPanelPresenter panel

    signal dismissed

    function focusFirst() {
        wheel.forceActiveFocus();
        wheel.isPointedAt = true;
    }

    implicitWidth: 256
    implicitHeight: content.implicitHeight + 40
    focus: true

    Column {
        id: content

        x: 20
        y: 20
        width: parent.width - 40
        spacing: 16

        ColorWheel {
            id: wheel

            width: parent.width
            height: width
            panel: view.panel
        }

        Column {
            width: parent.width
            spacing: 5

            QuireText {
                text: "Brightness"
                size: 11
                color: Theme.secondary
                Accessible.ignored: true
            }
            BrightnessSlider {
                width: parent.width
                panel: view.panel
            }
        }

        Item {
            width: parent.width
            height: 34

            HexField {
                width: 118
                panel: view.panel
            }
            ProminentButton {
                anchors.right: parent.right
                anchors.verticalCenter: parent.verticalCenter
                text: "Done"
                onClicked: view.dismissed()
            }
        }
    }
}
