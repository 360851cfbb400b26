// The folder picker for desktops that lend none: a path to type, the folders
// below it to walk through, and the answer. What the path says is what the
// answer will be.

pragma ComponentBehavior: Bound

import QtQuick
import QtQuick.Templates as T

import Quire

T.Popup {
    id: picker

    required property FolderPickerViewModel folderPicker

    property bool namesFolder: false // a name for a new folder is being entered

    objectName: "folderPicker"
    parent: T.Overlay.overlay
    x: parent ? Math.round((parent.width - width) / 2) : 0
    y: parent ? Math.round(Math.max(24, (parent.height - height) / 3)) : 0
    width: 540
    height: parent ? Math.min(480, parent.height - 48) : 480
    padding: 20
    modal: true
    focus: true
    closePolicy: T.Popup.CloseOnEscape
    visible: picker.folderPicker.isOpen
    onClosed: {
        picker.folderPicker.cancel();
        picker.namesFolder = false;
        picker.visible = Qt.binding(() => picker.folderPicker.isOpen);
    }
    onOpened: list.forceActiveFocus()

    function choose() {
        picker.folderPicker.choose(path.text);
    }

    function makeFolder() {
        picker.folderPicker.makeFolder(newName.text);
        picker.namesFolder = false;
        list.forceActiveFocus();
    }

    T.Overlay.modal: Rectangle {
        color: Qt.rgba(0, 0, 0, 0.22)
    }

    enter: Transition {
        NumberAnimation {
            property: "opacity"
            from: 0
            to: 1
            duration: 150
            easing.type: Easing.OutQuad
        }
    }

    background: Item {
        PanelShadow {
            anchors.fill: parent
            radius: 14
        }
        Rectangle {
            anchors.fill: parent
            radius: 14
            color: "white"
        }
    }

    contentItem: FocusScope { // qmllint disable deferred-property-id
        focus: true

        Accessible.role: Accessible.Dialog
        Accessible.name: picker.folderPicker.title
        Accessible.description: picker.folderPicker.message

        Column {
            id: words

            width: parent.width
            spacing: 6

            QuireText {
                width: parent.width
                text: picker.folderPicker.title
                size: 15
                weight: Font.DemiBold
                wrapMode: Text.Wrap
                Accessible.role: Accessible.Heading
            }
            QuireText {
                width: parent.width
                text: picker.folderPicker.message
                color: Theme.secondary
                wrapMode: Text.Wrap
            }
        }

        Row {
            id: place

            anchors.top: words.bottom
            anchors.topMargin: 14
            width: parent.width
            height: 34
            spacing: 8

            QuireTextField {
                id: path

                width: parent.width - upButton.width - parent.spacing
                text: picker.folderPicker.folder
                Accessible.name: "Folder path"
                onAccepted: picker.folderPicker.goTo(text)

                Connections {
                    target: picker.folderPicker
                    function onFolderChanged() {
                        path.text = picker.folderPicker.folder;
                        list.currentIndex = -1;
                        list.positionViewAtBeginning();
                    }
                }
            }
            BorderedButton {
                id: upButton

                anchors.verticalCenter: parent.verticalCenter
                symbol: "chevron.up"
                text: "Up"
                enabled: picker.folderPicker.folder !== "/"
                onClicked: picker.folderPicker.goUp()
            }
        }

        Rectangle {
            id: frame

            anchors.top: place.bottom
            anchors.topMargin: 10
            anchors.bottom: trouble.visible ? trouble.top : buttons.top
            anchors.bottomMargin: trouble.visible ? 8 : 14
            width: parent.width
            radius: 9
            color: "white"
            border.width: list.activeFocus ? 2 : 1
            border.color: list.activeFocus ? Theme.mark : Theme.hairline

            QuireText {
                anchors.centerIn: parent
                visible: list.count === 0
                text: "No folders in here"
                color: Theme.secondary
            }

            ListView {
                id: list

                function enterCurrent() {
                    if (list.currentItem)
                        picker.folderPicker.goTo(picker.folderPicker.pathOf((list.currentItem as FolderPickerRow).name));
                    else
                        picker.choose();
                }

                anchors.fill: parent
                anchors.margins: 5
                activeFocusOnTab: true
                model: picker.folderPicker.folders
                currentIndex: -1
                boundsBehavior: Flickable.StopAtBounds
                clip: true
                highlightMoveDuration: 0
                onCurrentItemChanged: {
                    if (list.currentItem)
                        path.text = picker.folderPicker.pathOf((list.currentItem as FolderPickerRow).name);
                }

                Accessible.role: Accessible.List
                Accessible.name: "Folders"

                Keys.onReturnPressed: list.enterCurrent()
                Keys.onEnterPressed: list.enterCurrent()
                Keys.onRightPressed: if (list.currentItem)
                    list.enterCurrent()
                Keys.onLeftPressed: picker.folderPicker.goUp()
                Keys.onPressed: event => {
                    if (event.key === Qt.Key_Backspace) {
                        picker.folderPicker.goUp();
                        event.accepted = true;
                    }
                }

                delegate: FolderPickerRow {
                    required property int index
                    required property string modelData

                    width: list.width
                    name: modelData
                    isCurrent: index === list.currentIndex
                    onPressed: {
                        list.currentIndex = index;
                        list.forceActiveFocus();
                    }
                    onEntered: picker.folderPicker.goTo(picker.folderPicker.pathOf(name))
                }

                T.ScrollBar.vertical: QuireScrollBar {}
            }
        }

        QuireText {
            id: trouble

            anchors.bottom: buttons.top
            anchors.bottomMargin: 12
            width: parent.width
            visible: text.length > 0
            text: picker.folderPicker.trouble
            size: 12
            wrapMode: Text.Wrap
            maximumLineCount: 2
            elide: Text.ElideRight
            Accessible.role: Accessible.AlertMessage
        }

        Item {
            id: buttons

            anchors.bottom: parent.bottom
            width: parent.width
            height: 34

            BorderedButton {
                anchors.verticalCenter: parent.verticalCenter
                visible: picker.folderPicker.allowsNewFolders && !picker.namesFolder
                text: "New Folder"
                onClicked: {
                    picker.namesFolder = true;
                    newName.clear();
                    newName.forceActiveFocus();
                }
            }
            Row {
                anchors.verticalCenter: parent.verticalCenter
                visible: picker.namesFolder
                spacing: 8

                QuireTextField {
                    id: newName

                    width: 190
                    placeholderText: "Name of the new folder"
                    onAccepted: picker.makeFolder()
                    Keys.onEscapePressed: {
                        picker.namesFolder = false;
                        list.forceActiveFocus();
                    }
                }
                BorderedButton {
                    anchors.verticalCenter: parent.verticalCenter
                    text: "Create"
                    enabled: newName.text.trim().length > 0
                    onClicked: picker.makeFolder()
                }
            }
            Row {
                anchors.right: parent.right
                anchors.verticalCenter: parent.verticalCenter
                spacing: 10

                BorderedButton {
                    text: "Cancel"
                    onClicked: picker.close()
                }
                ProminentButton {
                    text: picker.folderPicker.prompt
                    onClicked: picker.choose()
                }
            }
        }
    }
}
