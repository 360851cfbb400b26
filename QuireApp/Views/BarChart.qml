// Bars over their labels, with the lines of a round axis behind them. The
// number of a bar shows under the pointer.

pragma ComponentBehavior: Bound

import QtQuick

import Quire

Item {
    id: chart

    required property BarListModel bars
    required property string accessibleLabel
    required property string labelTitle // under the labels
    required property string valueTitle // over the axis
    property bool hasLines: true

    readonly property real axisWidth: 34
    readonly property real plotTop: 22
    readonly property real plotHeight: chart.height - chart.plotTop - 40
    readonly property real barSlot: chart.bars.count > 0 ? (chart.width - chart.axisWidth) / chart.bars.count : 0

    Accessible.role: Accessible.Chart
    Accessible.name: chart.accessibleLabel

    QuireText {
        text: chart.valueTitle
        size: 10
        color: Theme.secondary
    }
    QuireText {
        x: chart.axisWidth + (chart.width - chart.axisWidth - width) / 2
        anchors.bottom: parent.bottom
        text: chart.labelTitle
        size: 10
        color: Theme.secondary
    }

    Repeater {
        model: chart.bars.ticks

        Item {
            id: tick

            required property real modelData
            readonly property list<real> ticks: chart.bars.ticks

            y: chart.plotTop + chart.plotHeight * (1 - tick.modelData / tick.ticks[tick.ticks.length - 1])
            width: chart.width

            Rectangle {
                x: chart.axisWidth
                width: chart.width - chart.axisWidth
                height: 1
                visible: chart.hasLines || tick.modelData === 0
                color: Theme.faded(Theme.hairline, tick.modelData === 0 ? 0.9 : 0.45)
            }
            QuireText {
                x: chart.axisWidth - width - 8
                anchors.verticalCenter: parent.top
                text: Number(tick.modelData).toLocaleString(Qt.locale(), "f", 0)
                size: 10
                color: Theme.secondary
                Accessible.ignored: true
            }
        }
    }

    Repeater {
        model: chart.bars

        Item {
            id: slot

            required property int index
            required property string label
            required property real bookCount
            required property real share
            required property string accessibleName

            x: chart.axisWidth + slot.index * chart.barSlot
            y: chart.plotTop
            width: chart.barSlot
            height: chart.height - chart.plotTop

            Accessible.role: Accessible.StaticText
            Accessible.name: slot.accessibleName

            HoverHandler {
                id: pointer
            }
            Rectangle {
                anchors.horizontalCenter: parent.horizontalCenter
                y: chart.plotHeight - height
                width: Math.min(44, slot.width * 0.62)
                height: chart.plotHeight * slot.share
                radius: Math.min(4, height / 2)
                visible: slot.share > 0
                color: pointer.hovered ? Theme.accentHovered : Theme.accent
                border.width: Theme.isAccentLight ? 1 : 0
                border.color: Theme.hairline

                QuireText {
                    anchors.horizontalCenter: parent.horizontalCenter
                    anchors.bottom: parent.top
                    anchors.bottomMargin: 3
                    visible: pointer.hovered
                    text: Number(slot.bookCount).toLocaleString(Qt.locale(), "f", 0)
                    size: 11
                    weight: Font.DemiBold
                    Accessible.ignored: true
                }
            }
            QuireText {
                anchors.horizontalCenter: parent.horizontalCenter
                y: chart.plotHeight + 5
                text: slot.label
                size: 10
                color: Theme.secondary
                Accessible.ignored: true
            }
        }
    }
}
