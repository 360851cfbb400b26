// A panel over the library, which is dimmed; a click beside it, its close
// control or Escape closes it.

pragma ComponentBehavior: Bound

import QtQuick
import QtQuick.Templates as T

import Quire

T.Popup {
    id: overlay

    required property string title
    property string contextLabel
    property Component panel // the content, at least 876 by 640
    property int tallest: 720

    parent: T.Overlay.overlay
    x: parent ? Math.round((parent.width - width) / 2) : 0
    y: parent ? Math.round((parent.height - height) / 2) : 0
    width: parent ? Math.min(parent.width - 32, 940) : 876
    height: parent ? Math.min(parent.height - 32, overlay.tallest) : 640
    modal: true
    focus: true
    closePolicy: T.Popup.CloseOnEscape | T.Popup.CloseOnPressOutside

    T.Overlay.modal: Rectangle {
        color: Qt.rgba(0, 0, 0, 0.22)
        Accessible.role: Accessible.Button
        Accessible.name: "Close details"
        Accessible.onPressAction: overlay.close()
    }

    enter: Transition {
        NumberAnimation {
            property: "opacity"
            from: 0
            to: 1
            duration: 160
            easing.type: Easing.OutQuad
        }
        NumberAnimation {
            property: "scale"
            from: 0.985
            to: 1
            duration: 160
            easing.type: Easing.OutQuad
        }
    }
    exit: Transition {
        NumberAnimation {
            property: "opacity"
            to: 0
            duration: 140
            easing.type: Easing.OutQuad
        }
        NumberAnimation {
            property: "scale"
            to: 0.985
            duration: 140
            easing.type: Easing.OutQuad
        }
    }

    background: Item {
        PanelShadow {
            anchors.fill: parent
            radius: 12
        }
        Rectangle {
            anchors.fill: parent
            radius: 12
            color: Theme.window
            border.width: 1
            border.color: Qt.rgba(1, 1, 1, 0.2)
        }
    }

    contentItem: FocusScope { // qmllint disable deferred-property-id
        id: content

        // What closes behind this one gives the keyboard to the window.
        readonly property bool hasLostFocus: overlay.opened && content.Window.activeFocusItem !== null
            && content.Window.activeFocusItem === content.Window.contentItem

        focus: true

        Accessible.role: Accessible.Dialog
        Accessible.name: overlay.title

        Timer {
            interval: 0
            running: content.hasLostFocus
            onTriggered: content.forceActiveFocus(Qt.PopupFocusReason)
        }

        // Made by hand: a Loader cannot make a component that is bound to the
        // ids of its file.
        FocusScope {
            id: slot

            property Item shown

            function update() {
                if (overlay.visible === (slot.shown !== null))
                    return;
                if (slot.shown) {
                    slot.shown.destroy();
                    slot.shown = null;
                } else {
                    slot.shown = overlay.panel.createObject(slot);
                    slot.shown.anchors.fill = slot;
                }
            }

            anchors.fill: parent
            focus: true
            Component.onCompleted: slot.update()

            Connections {
                target: overlay
                function onVisibleChanged() {
                    slot.update();
                }
            }
        }
        DetailHeader {
            width: parent.width
            title: overlay.title
            contextLabel: overlay.contextLabel
            onClosed: overlay.close()
        }
    }
}
