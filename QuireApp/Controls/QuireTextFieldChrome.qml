// The surface of a text field: lightly filled, with an edge that the focus
// makes stronger.

import QtQuick

import Quire

Rectangle {
    id: chrome

    required property Item field

    implicitHeight: 34
    radius: 9
    color: Theme.field
    border.width: chrome.field.activeFocus ? 2 : 1
    border.color: chrome.field.activeFocus ? Theme.mark : Theme.hairline
}
