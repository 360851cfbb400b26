// The search of the library, with a button that empties it.

import QtQuick
import QtQuick.Templates as T

import Quire

FocusScope {
    id: search

    required property string prompt
    required property string text

    signal edited(string text)

    function focusField() {
        field.forceActiveFocus(Qt.ShortcutFocusReason);
        field.selectAll();
    }

    implicitHeight: 32

    Rectangle {
        anchors.fill: parent
        radius: 8
        color: Theme.sidebarSearchFill
        border.width: 1
        border.color: Theme.sidebarBorder

        FocusRing {
            control: field
            controlRadius: 8
            anchors.margins: -2
            border.color: Theme.sidebarFocusRing
        }
    }

    SymbolPicture {
        id: glass

        anchors.left: parent.left
        anchors.leftMargin: 9
        anchors.verticalCenter: parent.verticalCenter
        name: "magnifyingglass"
        size: 12
        color: Theme.sidebarSearchMuted
    }

    T.TextField {
        id: field

        anchors.left: glass.right
        anchors.leftMargin: 7
        anchors.right: parent.right
        anchors.rightMargin: clear.visible ? 30 : 9
        anchors.top: parent.top
        anchors.bottom: parent.bottom
        focus: true
        clip: true
        verticalAlignment: TextInput.AlignVCenter
        topPadding: Math.max(0, Theme.capitalsDrop(field.font.family, 12))
        font.family: Theme.fontFamily
        font.pixelSize: 12
        color: Theme.sidebarSearchForeground
        selectionColor: Theme.mark
        selectedTextColor: "white"
        placeholderText: search.prompt
        text: search.text
        onTextEdited: search.edited(field.text)
        Keys.onEscapePressed: search.edited("")

        Accessible.name: search.prompt

        QuireText {
            anchors.fill: parent
            verticalAlignment: Text.AlignVCenter
            elide: Text.ElideRight
            text: search.prompt
            size: 12
            color: Theme.sidebarSearchMuted
            visible: field.length === 0 && field.preeditText.length === 0
            Accessible.ignored: true
        }
    }

    T.AbstractButton {
        id: clear

        anchors.right: parent.right
        anchors.rightMargin: 5
        anchors.verticalCenter: parent.verticalCenter
        width: 22
        height: 22
        visible: search.text.length > 0
        hoverEnabled: true
        focusPolicy: Qt.TabFocus
        onClicked: {
            search.edited("");
            field.forceActiveFocus();
        }

        Keys.onReturnPressed: clear.clicked()
        Accessible.onPressAction: {
            if (clear.enabled)
                clear.clicked();
        }

        Accessible.role: Accessible.Button
        Accessible.name: "Clear search"

        background: Item {
            FocusRing {
                control: clear
                controlRadius: 11
                anchors.margins: -1
                border.color: Theme.focusRing
                visible: clear.visualFocus
            }
        }
        contentItem: SymbolPicture {
            name: "xmark.circle.fill"
            size: 12
            color: clear.hovered ? Theme.sidebarSearchForeground : Theme.sidebarSearchMuted
        }
    }
}
