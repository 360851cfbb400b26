// The ordinary button: white with a hairline, a symbol and words.

import QtQuick
import QtQuick.Templates as T

import Quire

T.Button {
    id: button

    property string symbol
    property bool small: false
    // What it began goes on: a ring in place of its words, which keeps its width.
    property bool busy: false
    property string toolTipText
    property color fill: "white"
    property color fillHovered: Theme.hover
    property color fillPressed: Theme.pill
    property color edge: Theme.hairline
    property color foreground: Theme.ink

    implicitWidth: implicitContentWidth + leftPadding + rightPadding
    implicitHeight: button.small ? 24 : 28
    leftPadding: 12
    rightPadding: 12
    opacity: button.enabled ? 1 : 0.45
    hoverEnabled: true

    Keys.onReturnPressed: button.clicked()
    Keys.onEnterPressed: button.clicked()
    Accessible.onPressAction: {
        if (button.enabled)
            button.clicked();
    }

    Accessible.role: Accessible.Button
    Accessible.name: button.text

    background: Rectangle {
        radius: 7
        color: button.down ? button.fillPressed : button.hovered ? button.fillHovered : button.fill
        border.width: 1
        border.color: button.edge

        FocusRing {
            control: button
            visible: button.visualFocus
        }
    }

    contentItem: Item { // qmllint disable deferred-property-id
        implicitWidth: words.implicitWidth

        Row {
            id: words

            anchors.centerIn: parent
            spacing: 6
            opacity: button.busy ? 0 : 1

            SymbolPicture {
                anchors.verticalCenter: parent.verticalCenter
                visible: button.symbol.length > 0
                name: button.symbol
                size: 14
                color: button.foreground
            }
            QuireText {
                anchors.verticalCenter: parent.verticalCenter
                text: button.text
                size: button.small ? 12 : 13
                weight: Font.Medium
                color: button.foreground
                Accessible.ignored: true
            }
        }
        ProgressRing {
            anchors.centerIn: parent
            small: true
            color: button.foreground
            visible: button.busy
        }
    }

    QuireToolTip {
        text: button.toolTipText
        visible: button.hovered && button.toolTipText.length > 0
    }
}
