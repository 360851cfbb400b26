// A symbol that turns once in 1.15 seconds while work goes on.

import QtQuick

import Quire

Item {
    id: icon

    required property string name
    required property bool spinning

    implicitHeight: 13

    SymbolPicture {
        id: symbol

        anchors.centerIn: parent
        name: icon.name
        size: 13
        color: Theme.sidebarForeground

        RotationAnimation on rotation {
            running: icon.spinning
            from: 0
            to: 360
            duration: 1150
            loops: Animation.Infinite
            onRunningChanged: if (!running) symbol.rotation = 0
        }
    }
}
