// One number of the year.

import QtQuick

import Quire

Rectangle {
    id: card

    required property string title
    required property string value
    required property string systemImage

    implicitHeight: Math.max(118, column.implicitHeight + 34)
    radius: 13
    color: Theme.metricCard
    border.width: Theme.isAccentLight ? 1 : 0
    border.color: Theme.hairline

    Accessible.role: Accessible.StaticText
    Accessible.name: card.title + ": " + card.value

    Column {
        id: column

        x: 17
        y: 17
        width: card.width - 34
        spacing: 12

        SymbolPicture {
            name: card.systemImage
            size: 16
            color: Theme.onMetricCard
        }
        Item {
            width: parent.width
            height: 30

            QuireText {
                // A star comes from another font, whose lines are higher.
                anchors.baseline: parent.top
                anchors.baselineOffset: 24
                width: parent.width
                elide: Text.ElideRight
                text: card.value
                size: 24
                weight: Font.DemiBold
                color: Theme.onMetricCard
                Accessible.ignored: true
            }
        }
        QuireText {
            width: parent.width
            elide: Text.ElideRight
            text: card.title
            size: 11
            color: Theme.onMetricCard
            opacity: 0.78
            Accessible.ignored: true
        }
    }
}
