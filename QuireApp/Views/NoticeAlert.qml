// The modal report of the model. One button; Return and Escape press it too.

import QtQuick
import QtQuick.Templates as T

import Quire

T.Popup {
    id: alert

    objectName: "noticeAlert"

    required property ActivityViewModel activity
    // Another window shows it meanwhile.
    required property bool wanted

    readonly property real longestMessage: 280

    parent: T.Overlay.overlay
    x: parent ? Math.round((parent.width - width) / 2) : 0
    y: parent ? Math.round(Math.max(24, (parent.height - height) / 4)) : 0
    width: 400
    height: contentItem.implicitHeight + topPadding + bottomPadding
    padding: 20
    modal: true
    focus: true
    closePolicy: T.Popup.CloseOnEscape
    visible: alert.wanted && alert.activity.hasNotice
    onClosed: {
        if (alert.wanted)
            alert.activity.dismissNotice();
        alert.visible = Qt.binding(() => alert.wanted && alert.activity.hasNotice);
    }
    onOpened: button.forceActiveFocus(Qt.TabFocusReason)

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
        Accessible.name: alert.activity.noticeTitle
        Accessible.description: alert.activity.noticeMessage

        Keys.onReturnPressed: alert.close()
        Keys.onEnterPressed: alert.close()

        Column {
            id: words

            width: parent.width

            QuireText {
                width: parent.width
                text: alert.activity.noticeTitle
                size: 15
                weight: Font.DemiBold
                wrapMode: Text.Wrap
            }
            Item {
                width: 1
                height: 8
            }
            Flickable {
                id: scroller

                width: parent.width
                height: Math.min(message.implicitHeight, alert.longestMessage)
                contentHeight: message.implicitHeight
                boundsBehavior: Flickable.StopAtBounds
                interactive: contentHeight > height
                clip: interactive

                TextEdit {
                    id: message

                    width: scroller.width
                    text: alert.activity.noticeMessage
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
                    Accessible.name: alert.activity.noticeMessage
                }

                T.ScrollBar.vertical: QuireScrollBar {}
            }
            Item {
                width: 1
                height: 18
            }
            ProminentButton {
                id: button

                anchors.right: parent.right
                text: "OK"
                focus: true
                onClicked: alert.close()
            }
        }
    }
}
