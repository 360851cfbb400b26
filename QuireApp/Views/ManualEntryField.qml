// A title over one control, in the forms that add a title by hand.

import QtQuick

import Quire

Column {
    id: field

    required property string title
    property string prompt
    property string text

    signal edited(string text)
    signal accepted

    function focusField() {
        input.forceActiveFocus();
    }

    spacing: 5

    QuireText {
        text: field.title
        size: 11
        color: Theme.secondary
        Accessible.ignored: true
    }
    QuireTextField {
        id: input

        width: parent.width
        placeholderText: field.prompt
        text: field.text
        onTextEdited: field.edited(text)
        onAccepted: field.accepted()
        Accessible.name: field.title
        Accessible.description: field.prompt
    }
}
