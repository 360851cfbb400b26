// A passing report at the foot of the window. It enters and leaves from there.

import QtQuick

import Quire

Item {
    id: toast

    required property string text

    readonly property real restingY: toast.parent ? toast.parent.height - toast.height - 24 : 0
    readonly property bool shown: toast.text.length > 0

    // The words stay while the toast leaves.
    property string lastText
    onTextChanged: {
        if (toast.text.length > 0)
            toast.lastText = toast.text;
        announcement.visible = false;
        announcement.visible = toast.text.length > 0;
    }

    width: words.width + 36
    height: words.height + 24
    x: toast.parent ? Math.round((toast.parent.width - toast.width) / 2) : 0
    y: toast.shown ? toast.restingY : toast.restingY + 24 + toast.height
    opacity: toast.shown ? 1 : 0
    visible: toast.opacity > 0

    Behavior on y {
        NumberAnimation {
            duration: 200
            easing.type: Easing.OutQuad
        }
    }
    Behavior on opacity {
        NumberAnimation {
            duration: 200
            easing.type: Easing.OutQuad
        }
    }

    // A screen reader speaks of what comes up, and not of one whose words change.
    Item {
        id: announcement

        anchors.fill: parent
        visible: false

        Accessible.role: Accessible.AlertMessage
        Accessible.name: toast.text
    }

    PanelShadow {
        anchors.fill: parent
        radius: 13
        blur: 20
        offset: 6
        strength: 0.18
    }
    Rectangle {
        anchors.fill: parent
        radius: 13
        color: Qt.rgba(1, 1, 1, 0.94)
        border.width: 1
        border.color: Theme.hairline
    }
    QuireText {
        id: words

        anchors.centerIn: parent
        width: Math.min(implicitWidth, 560 - 36)
        text: toast.lastText
        weight: Font.Medium
        horizontalAlignment: Text.AlignHCenter
        wrapMode: Text.Wrap
        maximumLineCount: 2
        elide: Text.ElideRight
        Accessible.ignored: true
    }
}
