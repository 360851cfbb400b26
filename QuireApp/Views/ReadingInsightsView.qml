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
    activeFocusOnTab: contentHeight > height // there may be no card on it to take the keyboard

    Accessible.role: Accessible.Grouping
    Accessible.name: "Reading insights"

    Keys.onUpPressed: view.flick(0, 600)
    Keys.onDownPressed: view.flick(0, -600)
    Keys.onPressed: event => bar.handleKey(event)

    T.ScrollBar.vertical: QuireScrollBar {
        id: bar
    }

    FocusRing {
        parent: view
        control: view
        anchors.margins: 4
    }
    KeyboardFollower {
        page: view
    }

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
                color: Theme.isAccentLight ? Theme.hairline : Theme.pill
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

            InsightSectionHeader {
                title: "This Year"
                detail: view.insights.year
            }
            AdaptiveGrid {
                id: metrics

                width: parent.width
                leastWidth: 140

                InsightMetricCard {
                    width: metrics.widthOf(0)
                    title: "Books Finished"
                    value: view.insights.booksFinished
                    systemImage: "books.vertical"
                }
                InsightMetricCard {
                    width: metrics.widthOf(1)
                    title: "Pages Read"
                    value: view.insights.pagesRead
                    systemImage: "book.pages"
                }
                InsightMetricCard {
                    width: metrics.widthOf(2)
                    title: "Average Rating"
                    value: view.insights.ratingThisYear
                    systemImage: "star"
                }
                InsightMetricCard {
                    width: metrics.widthOf(3)
                    title: "Active Months"
                    value: view.insights.activeMonths
                    systemImage: "calendar"
                }
            }
        }

        Column {
            width: parent.width
            spacing: 14

            InsightSectionHeader {
                title: "Reading Frequency"
                detail: view.insights.rhythm
            }
            InsightPanel {
                width: parent.width

                BarChart {
                    width: parent.width
                    height: 210
                    bars: view.insights.months
                    accessibleLabel: "Books finished by month"
                    labelTitle: "Month"
                    valueTitle: "Books"
                }
            }
        }

        Row {
            id: profiles

            readonly property real columnWidth: (profiles.width - profiles.spacing) / 2

            width: parent.width
            spacing: 18

            Column {
                width: profiles.columnWidth
                spacing: 14

                InsightSectionHeader {
                    title: "Patterns"
                    detail: "All finished books"
                }
                Column {
                    width: parent.width
                    spacing: 9

                    InsightPatternRow {
                        width: parent.width
                        systemImage: "person.crop.circle"
                        title: "Most-read author"
                        value: view.insights.topAuthor
                        detail: view.insights.topAuthorDetail
                    }
                    InsightPatternRow {
                        width: parent.width
                        systemImage: "calendar.badge.clock"
                        title: "Strongest month"
                        value: view.insights.strongestMonth
                        detail: view.insights.strongestMonthDetail
                    }
                    InsightPatternRow {
                        width: parent.width
                        systemImage: "ruler"
                        title: "Average book length"
                        value: view.insights.averageLength
                    }
                    InsightPatternRow {
                        width: parent.width
                        systemImage: "sparkles"
                        title: "Five-star reads"
                        value: view.insights.fiveStars
                        detail: view.insights.fiveStarsDetail
                    }
                }
                Column {
                    width: parent.width
                    spacing: 8
                    visible: view.insights.tags.length > 0

                    QuireText {
                        text: "FREQUENT TAGS"
                        size: 10
                        weight: Font.DemiBold
                        font.letterSpacing: 0.6
                        color: Theme.secondary
                    }
                    FlexibleTagRow {
                        width: parent.width
                        tags: view.insights.tags
                    }
                }
            }
            Column {
                width: profiles.columnWidth
                spacing: 14

                InsightSectionHeader {
                    title: "Rating Profile"
                    detail: view.insights.averageRating
                }
                InsightPanel {
                    width: parent.width

                    BarChart {
                        width: parent.width
                        height: 225
                        bars: view.insights.ratings
                        accessibleLabel: "Rating distribution"
                        labelTitle: "Rating"
                        valueTitle: "Books"
                        hasLines: false
                    }
                }
            }
        }

        Column {
            width: parent.width
            spacing: 14

            InsightSectionHeader {
                title: "Recent Finishes"
            }
            InsightEmptyState {
                width: parent.width
                visible: !view.insights.hasRecentFinishes
                systemImage: "checkmark.circle"
                title: "No finished titles yet"
                detail: "Completed books will collect here."
            }
            AdaptiveGrid {
                id: recent

                width: parent.width
                leastWidth: 250
                visible: view.insights.recentBooks.count > 0

                Repeater {
                    model: view.insights.recentBooks

                    RecentReadInsightCard {
                        id: finished

                        required property int index
                        required property double rowId

                        width: recent.widthOf(finished.index)
                        onClicked: view.bookChosen(finished.rowId)
                    }
                }
            }
        }
    }

    // As many columns of one width as fit; of whole pixels, so that some are wider by one.
    component AdaptiveGrid: Grid {
        id: grid

        required property int leastWidth
        property int mostColumns: 4

        function widthOf(index: int): real {
            const step = (grid.width + grid.spacing) / grid.columns;
            const column = index % grid.columns;
            return Math.round((column + 1) * step) - Math.round(column * step) - grid.spacing;
        }

        columns: Math.max(1, Math.min(grid.mostColumns, Math.floor((grid.width + grid.spacing) / (grid.leastWidth + grid.spacing))))
        spacing: 16
    }
}
