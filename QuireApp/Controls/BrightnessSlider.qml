// How bright a colour is, from black to as bright as it can be.

import QtQuick

import Quire

// Not one of the toolkit's controls, which overrule the role that a screen reader
// is told (Qt 6.4).
Item {
    id: slider

    required property CustomColorPanelPresenter panel

    // In percent; by these names a screen reader reads and sets them.
    property int value
    readonly property int minimumValue: 0
    readonly property int maximumValue: 100
    readonly property int stepSize: 1

    property bool isPointedAt: false // the mouse brought the keyboard here: no ring before a key is pressed
    readonly property real inset: height / 2 // the bead stays within the track
    readonly property real span: width - 2 * inset

    function step(by: int) {
        slider.isPointedAt = false;
        slider.panel.brightness = Math.max(0, Math.min(100, slider.panel.brightness + by));
    }

    onValueChanged: slider.panel.brightness = slider.value

    Binding on value {
        value: slider.panel.brightness
    }

    implicitWidth: 216
    implicitHeight: 22
    activeFocusOnTab: true
    onActiveFocusChanged: {
        if (!slider.activeFocus)
            slider.isPointedAt = false;
    }

    Keys.onLeftPressed: slider.step(-1)
    Keys.onDownPressed: slider.step(-1)
    Keys.onRightPressed: slider.step(1)
    Keys.onUpPressed: slider.step(1)
    Keys.onPressed: event => {
        const jumps = {
            [Qt.Key_PageUp]: 10,
            [Qt.Key_PageDown]: -10,
            [Qt.Key_Home]: -100,
            [Qt.Key_End]: 100
        };
        event.accepted = event.key in jumps;
        if (event.accepted)
            slider.step(jumps[event.key]);
    }

    Accessible.role: Accessible.Slider
    Accessible.name: "Brightness"
    Accessible.description: slider.value + "%"
    Accessible.focusable: true
    Accessible.onIncreaseAction: slider.step(1)
    Accessible.onDecreaseAction: slider.step(-1)

    // Ends of one colour, which the bead does not pass; a gradient with round ends
    // is drawn with corners by the software renderer.
    Rectangle {
        id: track

        anchors.verticalCenter: parent.verticalCenter
        width: parent.width / 2
        height: 14
        radius: 7
        color: "black"
    }
    Rectangle {
        x: width
        y: track.y
        width: parent.width / 2
        height: track.height
        radius: track.radius
        color: slider.panel.brightest
    }
    Rectangle {
        x: slider.inset
        y: track.y
        width: slider.span
        height: track.height
        gradient: Gradient {
            orientation: Gradient.Horizontal

            GradientStop {
                position: 0
                color: "black"
            }
            GradientStop {
                position: 1
                color: slider.panel.brightest
            }
        }
    }
    Rectangle {
        y: track.y
        width: parent.width
        height: track.height
        radius: track.radius
        color: "transparent"
        border.width: 1
        border.color: Qt.alpha(Theme.ink, 0.16)
    }

    ColorMarker {
        x: slider.inset + slider.span * slider.panel.value - width / 2
        anchors.verticalCenter: parent.verticalCenter
        color: slider.panel.color
    }

    FocusRing {
        control: slider
        controlRadius: 10
        visible: slider.activeFocus && !slider.isPointedAt
    }

    MouseArea {
        function pick(mouse: var) {
            slider.panel.value = (mouse.x - slider.inset) / slider.span;
        }

        anchors.fill: parent
        onPressed: mouse => {
            slider.forceActiveFocus();
            slider.isPointedAt = true;
            pick(mouse);
        }
        onPositionChanged: mouse => pick(mouse)
    }
}
