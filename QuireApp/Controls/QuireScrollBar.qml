// A thin bar over the content that fades when nothing moves. Where nothing else tells
// that there is more below, it stays as long as there is.

import QtQuick
import QtQuick.Templates as T

import Quire

T.ScrollBar {
    id: bar

    property bool staysAboveMore: false
    readonly property bool isShown: bar.active || (bar.staysAboveMore && bar.position + bar.size < 0.999)

    // The keys that turn pages, from whoever has the keyboard.
    function handleKey(event: var) {
        const end = 1 - bar.size;
        const turn = 0.9 * bar.size;
        switch (event.key) {
        case Qt.Key_PageUp:
            bar.position = Math.max(0, bar.position - turn);
            break;
        case Qt.Key_PageDown:
            bar.position = Math.min(end, bar.position + turn);
            break;
        case Qt.Key_Home:
            bar.position = 0;
            break;
        case Qt.Key_End:
            bar.position = end;
            break;
        default:
            return;
        }
        event.accepted = true;
    }

    implicitWidth: 13
    implicitHeight: 13
    padding: 2
    minimumSize: 0.08
    visible: bar.size < 1

    contentItem: Item {
        Rectangle {
            anchors.right: parent.right
            width: bar.hovered || bar.pressed ? 9 : 7
            height: parent.height
            radius: width / 2
            color: Theme.scrollBar
            opacity: bar.isShown ? 1 : 0

            Behavior on width {
                NumberAnimation {
                    duration: 120
                    easing.type: Easing.OutQuad
                }
            }
            Behavior on opacity {
                SequentialAnimation {
                    PauseAnimation {
                        duration: bar.isShown ? 0 : 800
                    }
                    NumberAnimation {
                        duration: 160
                        easing.type: Easing.OutQuad
                    }
                }
            }
        }
    }
}
