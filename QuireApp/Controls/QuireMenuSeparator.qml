import QtQuick
import QtQuick.Templates as T

import Quire

T.MenuSeparator {
    implicitWidth: 40
    implicitHeight: 11
    topPadding: 5
    bottomPadding: 5
    leftPadding: 9
    rightPadding: 9

    contentItem: Rectangle {
        implicitHeight: 1
        color: Theme.hairline
    }
}
