import QtQuick
import QtQuick.Templates as T

import Quire

T.MenuBar {
    id: bar

    implicitWidth: contentItem.implicitWidth + leftPadding + rightPadding
    implicitHeight: 30
    leftPadding: 8
    rightPadding: 8
    topPadding: 3
    bottomPadding: 3

    delegate: T.MenuBarItem {
        id: item

        implicitWidth: implicitContentWidth + 20
        implicitHeight: 24

        background: Rectangle {
            radius: 6
            color: item.highlighted || item.hovered ? Theme.menuHover : "transparent"

            FocusRing {
                control: item
                controlRadius: 6
                anchors.margins: -2
                visible: item.visualFocus
            }
        }
        contentItem: QuireText {
            horizontalAlignment: Text.AlignHCenter
            verticalAlignment: Text.AlignVCenter
            text: item.text
            Accessible.ignored: true
        }
    }

    background: Rectangle {
        color: Theme.window

        Rectangle {
            anchors.bottom: parent.bottom
            width: parent.width
            height: 1
            color: Theme.hairline
        }
    }

    contentItem: Row {
        Repeater {
            model: bar.contentModel
        }
    }
}
