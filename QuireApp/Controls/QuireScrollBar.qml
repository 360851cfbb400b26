// A thin bar over the content that fades when nothing moves.

import QtQuick
import QtQuick.Templates as T

import Quire

T.ScrollBar {
    id: bar

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
            opacity: bar.active ? 1 : 0

            Behavior on width {
                NumberAnimation {
                    duration: 120
                    easing.type: Easing.OutQuad
                }
            }
            Behavior on opacity {
                SequentialAnimation {
                    PauseAnimation {
                        duration: bar.active ? 0 : 800
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
