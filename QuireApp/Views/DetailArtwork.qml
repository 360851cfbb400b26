// The large cover of a detail view.

import QtQuick

import Quire

Item {
    id: frame

    required property coverSource source
    property string title
    property int spineMode: CoverPicture.NoSpine

    implicitWidth: 190
    implicitHeight: 286

    Accessible.role: Accessible.Graphic
    Accessible.name: "Cover for " + frame.title

    PanelShadow {
        anchors.fill: parent
        radius: 6
        blur: 5
        offset: 0
        strength: 0.18
    }
    CoverImage {
        anchors.fill: parent
        title: frame.title
        source: frame.source
        spineMode: frame.spineMode
        cornerRadius: 6
    }
}
