// A cover in a frame, or what stands in for it until it is decoded.

pragma ComponentBehavior: Bound

import QtQuick

import Quire

Item {
    id: frame

    required property coverSource source
    property string title
    property int contentMode: CoverPicture.Fit
    property int spineMode: CoverPicture.NoSpine
    property real cornerRadius: 6
    property bool clearsLoadedBackground: false

    // Where the picture is, in this frame; all of it without one.
    readonly property rect paintedRect: picture.hasImage ? picture.paintedRect
        : Qt.rect(0, 0, frame.width, frame.height)

    WhileWanted {
        anchors.fill: parent
        wanted: !frame.clearsLoadedBackground

        Rectangle {
            anchors.fill: parent
            radius: frame.cornerRadius
            color: Theme.emptyCover
        }
    }
    // Most covers are there at once, and never need one.
    WhileWanted {
        anchors.fill: parent
        wanted: picture.isLacking

        CoverPlaceholder {
            anchors.fill: parent
            title: frame.title
            cornerRadius: frame.cornerRadius
        }
    }
    CoverPicture {
        id: picture

        anchors.fill: parent
        source: frame.source
        contentMode: frame.contentMode
        spineMode: frame.spineMode
        cornerRadius: frame.cornerRadius
    }
}
