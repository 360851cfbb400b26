// Something told over the window. Return presses the first button; Escape puts
// it away.

pragma ComponentBehavior: Bound

import QtQuick
import QtQuick.Templates as T

import Quire

T.Popup {
    id: alert

    required property string title
    required property string message
    property var buttons: ["OK"] // of texts; the first is the one that is meant

    signal pressed(int button)

    readonly property real longestMessage: 280

    parent: T.Overlay.overlay
    x: parent ? Math.round((parent.width - width) / 2) : 0
    y: parent ? Math.round(Math.max(24, (parent.height - height) / 4)) : 0
    z: 2 // over everything else in the window
    width: 400
    height: contentItem.implicitHeight + topPadding + bottomPadding
    padding: 20
    modal: true
    focus: true
    closePolicy: T.Popup.CloseOnEscape
    onOpened: (row.children[0] as Item).forceActiveFocus(Qt.TabFocusReason)

    T.Overlay.modal: Rectangle {
        color: Qt.rgba(0, 0, 0, 0.22)
    }

    enter: Transition {
        NumberAnimation {
            property: "opacity"
            from: 0
            to: 1
            duration: 150
            easing.type: Easing.OutQuad
        }
    }

    background: Item {
        PanelShadow {
            anchors.fill: parent
            radius: 14
        }
        Rectangle {
            anchors.fill: parent
            radius: 14
            color: "white"
        }
    }

    contentItem: FocusScope { // qmllint disable deferred-property-id
        implicitHeight: words.implicitHeight
        focus: true

        Accessible.role: Accessible.AlertMessage
        Accessible.name: alert.title
        Accessible.description: alert.message

        Keys.onReturnPressed: alert.pressed(0)
        Keys.onEnterPressed: alert.pressed(0)

        Column {
            id: words

            width: parent.width

            QuireText {
                width: parent.width
                text: alert.title
                size: 15
                weight: Font.DemiBold
                wrapMode: Text.Wrap
            }
            Item {
                width: 1
                height: 8
            }
            Item {
                width: parent.width
                height: scroller.height

                Flickable {
                    id: scroller

                    width: parent.width
                    height: Math.min(message.implicitHeight, alert.longestMessage)
                    contentHeight: message.implicitHeight
                    boundsBehavior: Flickable.StopAtBounds
                    interactive: contentHeight > height
                    clip: interactive
                    activeFocusOnTab: interactive

                    Accessible.role: Accessible.Grouping
                    Accessible.name: "Message"

                    Keys.onUpPressed: scroller.flick(0, 600)
                    Keys.onDownPressed: scroller.flick(0, -600)

                    TextEdit {
                        id: message

                        width: scroller.width
                        text: alert.message
                        textFormat: TextEdit.PlainText
                        wrapMode: TextEdit.Wrap
                        readOnly: true
                        selectByMouse: true
                        activeFocusOnPress: true
                        font.family: Theme.fontFamily
                        font.pixelSize: 13
                        color: Theme.ink
                        selectionColor: Theme.mark
                        selectedTextColor: "white"
                        Accessible.role: Accessible.StaticText
                        Accessible.name: alert.message
                    }

                    T.ScrollBar.vertical: QuireScrollBar {}
                }
                FocusRing {
                    control: scroller
                }
            }
            Item {
                width: 1
                height: 18
            }
            Row {
                id: row

                anchors.right: parent.right
                layoutDirection: Qt.RightToLeft
                spacing: 10

                ProminentButton {
                    text: alert.buttons.length > 0 ? alert.buttons[0] : ""
                    focus: true
                    onClicked: alert.pressed(0)
                }
                Repeater {
                    model: Math.max(0, alert.buttons.length - 1)

                    BorderedButton {
                        required property int index

                        text: alert.buttons[index + 1]
                        onClicked: alert.pressed(index + 1)
                    }
                }
            }
        }
    }
}
