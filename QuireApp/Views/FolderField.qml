// A folder: typed, chosen, or the one that Quire would take by itself.

import QtQuick

import Quire

Row {
    id: row

    required property string name
    required property string path

    signal edited(string path)
    signal accepted // Return in the field
    signal folderRequested
    signal defaultRequested

    readonly property Item field: input

    height: 34
    spacing: 8

    QuireTextField {
        id: input

        width: row.width - folderButton.width - defaultButton.width - 2 * row.spacing
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
        id: defaultButton

        anchors.verticalCenter: parent.verticalCenter
        text: "Default"
        Accessible.description: row.name
        onClicked: row.defaultRequested()
    }
}
