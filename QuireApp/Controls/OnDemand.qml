// A place for something that most runs of the program never show, or not at once:
// it is made when it is first wanted, and kept.

import QtQuick

FocusScope {
    id: place

    // Made by hand: a Loader cannot make a component that is bound to the ids of
    // its file.
    required property Component content
    required property bool wanted
    property bool isUnhurried: false // made in pieces, between frames

    property QtObject made: null
    property var incubator: null

    function make() {
        if (!place.wanted || place.made || place.incubator)
            return;
        if (!place.isUnhurried) {
            place.made = place.content.createObject(place);
            return;
        }
        place.incubator = place.content.incubateObject(place, {}, Qt.Asynchronous);
        place.incubator.onStatusChanged = () => place.take();
        place.take();
    }

    function take() {
        if (place.incubator && place.incubator.status === Component.Ready)
            place.made = place.incubator.object;
    }

    onWantedChanged: place.make()
    Component.onCompleted: place.make()
}
