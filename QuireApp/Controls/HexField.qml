// A colour by its digits. Six of them are taken as they are typed; fewer, and
// what is no colour, when the reader has done.

import QtQuick

import Quire

QuireTextField {
    id: field

    required property CustomColorPanelPresenter panel

    function finish() {
        field.panel.enterHex(field.text);
        field.text = field.panel.hex;
    }

    leftPadding: 36
    placeholderText: "Hex color"
    maximumLength: 20
    inputMethodHints: Qt.ImhNoPredictiveText | Qt.ImhNoAutoUppercase

    onTextEdited: {
        if (field.panel.isWholeHex(field.text))
            field.panel.enterHex(field.text);
    }
    onAccepted: {
        field.finish();
        field.selectAll();
    }
    onActiveFocusChanged: {
        if (field.activeFocus)
            field.selectAll();
        else
            field.finish();
    }
    Component.onCompleted: field.text = field.panel.hex

    Connections {
        target: field.panel
        function onColorChanged() {
            // What is being typed is left alone when it is the colour.
            if (!field.activeFocus || !field.panel.isShownHex(field.text))
                field.text = field.panel.hex;
        }
    }

    Rectangle {
        x: 9
        anchors.verticalCenter: parent.verticalCenter
        width: 18
        height: 18
        radius: 9
        color: field.panel.color
        border.width: 1
        border.color: Qt.alpha(Theme.ink, 0.16)
    }
}
