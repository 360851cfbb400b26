// The Insights section: one page that scrolls.

pragma ComponentBehavior: Bound

import QtQuick
import QtQuick.Templates as T

import Quire

Flickable {
    id: view

    required property InsightsViewModel insights

    signal bookChosen(double id)

    contentWidth: width
    contentHeight: page.height + 26 + 32
    boundsBehavior: Flickable.StopAtBounds

    T.ScrollBar.vertical: QuireScrollBar {}

    Column {
        id: page

        x: 32
        y: 26
        width: view.width - 64
        spacing: 28

        Column {
            width: parent.width
            spacing: 4

            QuireText {
                text: "Insights"
                size: 27
                weight: Font.DemiBold
                Accessible.role: Accessible.Heading
            }
            QuireText {
                text: "Your reading activity"
                size: 14
                color: Theme.secondary
            }
            Item {
                width: 1
                height: 14
            }
            Rectangle {
                width: parent.width
                height: 1
                color: Theme.pill
            }
        }

        Column {
            width: parent.width
            spacing: 14

            InsightSectionHeader {
                title: "Currently Reading"
            }
            InsightEmptyState {
                width: parent.width
                visible: view.insights.currentBooks.count === 0
                systemImage: "book.closed"
                title: "Nothing in progress"
                detail: "Mark a title as Currently Reading and it will appear here."
            }
            Column {
                width: parent.width
                spacing: 18
                visible: view.insights.currentBooks.count > 0

                Repeater {
                    model: view.insights.currentBooks

                    CurrentReadingInsightCard {
                        id: card

                        required property double rowId

                        width: parent ? parent.width : 0
                        onClicked: view.bookChosen(card.rowId)
                    }
                }
            }
        }

        Column {
            width: parent.width
            spacing: 14
            visible: !view.insights.hasFinishedBooks

            InsightSectionHeader {
                title: "Recent Finishes"
            }
            InsightEmptyState {
                width: parent.width
                systemImage: "checkmark.circle"
                title: "No finished titles yet"
                detail: "Completed books will collect here."
            }
        }
    }
}
