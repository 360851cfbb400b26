// A folder: typed, chosen, or put back to what it is without the reader.

import QtQuick

import Quire

Row {
    id: row

    required property string name
    required property string path
    property string prompt
    property string resetTitle: "Default"

    signal edited(string path)
    signal accepted // Return in the field
    signal folderRequested
    signal resetRequested

    readonly property Item field: input

    height: 34
    spacing: 8

    QuireTextField {
        id: input

        width: row.width - folderButton.width - resetButton.width - 2 * row.spacing
        placeholderText: row.prompt
        text: row.path
        Accessible.name: row.name
        onTextEdited: row.edited(text)
        onAccepted: row.accepted()

        QuireToolTip {
            text: row.path
            visible: input.hovered && !input.activeFocus && input.contentWidth > input.width - 24
        }
    }
    BorderedButton {
        id: folderButton

        anchors.verticalCenter: parent.verticalCenter
        text: "Folder"
        Accessible.description: row.name
        onClicked: row.folderRequested()
    }
    BorderedButton {
        id: resetButton

        anchors.verticalCenter: parent.verticalCenter
        text: row.resetTitle
        Accessible.description: row.name
        onClicked: row.resetRequested()
    }
}
