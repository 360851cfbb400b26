// What is made only while it is wanted, and fills this item. A Loader does not make
// a component that is bound to its file.

import QtQuick

Item {
    id: place

    required property bool wanted
    default required property Component content

    property Item made: null

    function update() {
        if (place.wanted === (place.made !== null))
            return;
        if (place.wanted) {
            place.made = place.content.createObject(place);
        } else {
            place.made.destroy(); // later
            place.made = null;
        }
    }

    visible: place.wanted
    onWantedChanged: place.update()
    Component.onCompleted: place.update()
}
