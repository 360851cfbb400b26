// A passing report at the foot of the window. It enters and leaves from there.

import QtQuick

import Quire

Item {
    id: toast

    required property string text
    required property real restingY

    readonly property bool shown: toast.text.length > 0

    // The words stay while the toast leaves.
    property string lastText
    onTextChanged: if (toast.text.length > 0) toast.lastText = toast.text

    width: words.width + 36
    height: words.height + 24
    y: toast.shown ? toast.restingY : toast.restingY + 24 + toast.height
    opacity: toast.shown ? 1 : 0
    visible: toast.opacity > 0

    Accessible.role: Accessible.AlertMessage
    Accessible.name: toast.text
    Accessible.ignored: !toast.shown

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
