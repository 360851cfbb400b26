import QtQuick

import Quire

Item {
    id: section

    required property string label

    implicitWidth: words.implicitWidth + 7
    implicitHeight: 17

    QuireText {
        id: words

        x: 7
        text: section.label
        size: 10
        weight: Font.DemiBold
        color: Theme.sidebarMuted
        opacity: 0.7
        font.letterSpacing: 0.6
    }
}
