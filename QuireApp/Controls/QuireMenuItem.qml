// One entry: a check when it is the choice in force, words, its shortcut.

import QtQuick
import QtQuick.Templates as T

import Quire

T.MenuItem {
    id: entry

    property string shortcutText
    property string symbol // where the check is
    property string family // of the words; empty for that of the interface

    implicitWidth: title.implicitWidth + shortcut.implicitWidth + (shortcut.visible ? 24 : 0) + leftPadding
        + rightPadding
    implicitHeight: entry.visible ? 28 : 0
    leftPadding: 28
    rightPadding: 24
    hoverEnabled: true
    opacity: entry.enabled ? 1 : 0.45

    Accessible.role: Accessible.MenuItem
    Accessible.name: entry.text
    Accessible.checkable: entry.checkable
    Accessible.checked: entry.checked
    Accessible.onPressAction: entry.clicked()

    background: Rectangle {
        radius: 6
        color: entry.highlighted && entry.enabled ? Theme.menuHover : "transparent"
    }

    contentItem: Item { // qmllint disable deferred-property-id
        QuireText {
            id: title

            anchors.verticalCenter: parent.verticalCenter
            text: entry.text
            font.family: entry.family.length > 0 ? entry.family : Theme.fontFamily
            Accessible.ignored: true
        }
        QuireText {
            id: shortcut

            anchors.right: parent.right
            anchors.rightMargin: -10
            anchors.verticalCenter: parent.verticalCenter
            text: entry.shortcutText
            visible: text.length > 0
            color: Theme.secondary
            Accessible.ignored: true
        }
    }

    indicator: SymbolPicture {
        x: 9
        anchors.verticalCenter: parent.verticalCenter
        visible: entry.checked || entry.symbol.length > 0
        name: entry.checked ? "checkmark" : entry.symbol
        size: 12
        color: Theme.ink
    }

    arrow: SymbolPicture {
        x: entry.width - width - 9
        anchors.verticalCenter: parent.verticalCenter
        visible: entry.subMenu !== null
        name: "chevron.right"
        size: 10
        color: Theme.secondary
    }
}
