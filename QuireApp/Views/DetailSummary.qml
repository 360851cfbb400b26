// What a title is about, in what room is left for it.

import QtQuick
import QtQuick.Templates as T

import Quire

Item {
    id: summary

    required property string text

    QuireText {
        id: heading

        text: "SUMMARY"
        size: 11
        weight: Font.DemiBold
        color: Theme.secondary
        Accessible.role: Accessible.Heading
    }
    Flickable {
        id: scroller

        // As many lines as there is room for, none of them cut through.
        readonly property real room: summary.height - scroller.y

        anchors.top: heading.bottom
        anchors.topMargin: 7
        width: parent.width
        height: Math.max(1, Math.floor(scroller.room / words.lineHeight)) * words.lineHeight
        contentHeight: words.implicitHeight
        boundsBehavior: Flickable.StopAtBounds
        interactive: contentHeight > height
        clip: interactive
        activeFocusOnTab: interactive

        Accessible.role: Accessible.Grouping
        Accessible.name: "Summary"

        Keys.onUpPressed: scroller.flick(0, 400)
        Keys.onDownPressed: scroller.flick(0, -400)

        QuireText {
            id: words

            width: scroller.width - 13
            text: summary.text.length > 0 ? summary.text : "No summary available."
            wrapMode: Text.Wrap
            lineHeightMode: Text.FixedHeight
            lineHeight: metrics.lineSpacing + 2
        }
        FontMetrics {
            id: metrics

            font: words.font
        }

        T.ScrollBar.vertical: QuireScrollBar {
            staysAboveMore: true
        }
    }
    FocusRing {
        anchors.fill: scroller
        control: scroller
        visible: scroller.activeFocus
    }
}
