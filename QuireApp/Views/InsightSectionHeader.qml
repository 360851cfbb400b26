import QtQuick

import Quire

Row {
    id: header

    required property string title
    property string detail

    spacing: 8

    QuireText {
        id: words

        text: header.title
        size: 18
        weight: Font.DemiBold
        Accessible.role: Accessible.Heading
    }
    QuireText {
        anchors.baseline: words.baseline
        text: header.detail
        size: 11
        color: Theme.secondary
        visible: header.detail.length > 0
    }
}
