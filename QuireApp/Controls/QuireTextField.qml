// One line of text; named by its prompt.

import QtQuick
import QtQuick.Templates as T

import Quire

T.TextField {
    id: field

    property bool secret: false

    implicitWidth: 200
    implicitHeight: 34
    leftPadding: 12
    rightPadding: 12
    topPadding: Math.max(0, Theme.capitalsDrop(field.font.family, 13)) // level with the words beside it
    verticalAlignment: TextInput.AlignVCenter
    font.family: Theme.fontFamily
    font.pixelSize: 13
    color: Theme.ink
    selectionColor: Theme.mark
    selectedTextColor: "white"
    selectByMouse: true
    echoMode: field.secret ? TextInput.Password : TextInput.Normal

    Accessible.name: field.placeholderText

    background: QuireTextFieldChrome {
        field: field
    }

    QuireText {
        anchors.fill: parent
        anchors.leftMargin: field.leftPadding
        anchors.rightMargin: field.rightPadding
        horizontalAlignment: field.effectiveHorizontalAlignment
        verticalAlignment: Text.AlignVCenter
        elide: Text.ElideRight
        text: field.placeholderText
        color: Theme.secondary
        visible: field.length === 0 && field.preeditText.length === 0
        Accessible.ignored: true
    }
}
