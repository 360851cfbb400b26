// Hue and saturation of a colour, picked with the mouse anywhere on a disc, or
// moved over it with the arrow keys, in bigger steps with Shift.

import QtQuick

import Quire

// Not one of the toolkit's controls, which overrule the role that a screen reader
// is told (Qt 6.4).
Item {
    id: wheel

    required property CustomColorPanelPresenter panel

    property bool isPointedAt: false // the mouse brought the keyboard here: no ring before a key is pressed
    readonly property real radius: wheel.width / 2

    function move(event: var, right: int, down: int) {
        const step = event.modifiers & Qt.ShiftModifier ? 0.1 : 0.02;
        wheel.isPointedAt = false;
        wheel.panel.moveOnWheel(right * step, down * step);
    }

    implicitWidth: 216
    implicitHeight: 216
    activeFocusOnTab: true
    onActiveFocusChanged: {
        if (!wheel.activeFocus)
            wheel.isPointedAt = false;
    }

    Keys.onLeftPressed: event => wheel.move(event, -1, 0)
    Keys.onRightPressed: event => wheel.move(event, 1, 0)
    Keys.onUpPressed: event => wheel.move(event, 0, -1)
    Keys.onDownPressed: event => wheel.move(event, 0, 1)

    Accessible.role: Accessible.Grouping
    Accessible.name: "Color wheel"
    Accessible.description: wheel.panel.wheelWords
    Accessible.focusable: true

    component Share: Item {
        id: share

        required property string title
        property int value
        property int minimumValue: 0
        required property int maximumValue
        property int stepSize: 1

        anchors.fill: parent

        Accessible.role: Accessible.Slider
        Accessible.name: share.title
    }

    // The two that the disc is made of, for a screen reader, which also sets them.
    Share {
        title: "Hue"
        maximumValue: 359
        onValueChanged: wheel.panel.hue = value

        Binding on value {
            value: wheel.panel.hue
        }
    }
    Share {
        title: "Saturation"
        maximumValue: 100
        onValueChanged: wheel.panel.saturation = value

        Binding on value {
            value: wheel.panel.saturation
        }
    }

    ColorWheelPicture {
        anchors.fill: parent
    }
    Rectangle {
        // A darker colour has a darker wheel, which never goes out.
        anchors.fill: parent
        radius: width / 2
        color: "black"
        opacity: 0.7 * (1 - wheel.panel.value)
    }
    Rectangle {
        anchors.fill: parent
        radius: width / 2
        color: "transparent"
        border.width: 1
        border.color: Qt.alpha(Theme.ink, 0.16)
    }

    ColorMarker {
        x: wheel.radius * (1 + wheel.panel.wheelPlace.x) - width / 2
        y: wheel.radius * (1 + wheel.panel.wheelPlace.y) - height / 2
        color: wheel.panel.color
    }

    FocusRing {
        control: wheel
        controlRadius: wheel.radius
        visible: wheel.activeFocus && !wheel.isPointedAt
    }

    MouseArea {
        readonly property real reach: wheel.radius + 6 // the marker at the rim stands out a little

        function placeOf(mouse: var): point {
            return Qt.point(mouse.x / wheel.radius - 1, mouse.y / wheel.radius - 1);
        }

        anchors.fill: parent
        onPressed: mouse => {
            mouse.accepted = Math.hypot(mouse.x - wheel.radius, mouse.y - wheel.radius) <= reach;
            if (mouse.accepted) {
                wheel.forceActiveFocus();
                wheel.isPointedAt = true;
                wheel.panel.pickOnWheel(placeOf(mouse));
            }
        }
        onPositionChanged: mouse => wheel.panel.pickOnWheel(placeOf(mouse))
    }
}
