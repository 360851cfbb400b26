// What a catalogue search has come to: it runs, it failed, nothing was asked
// yet, or its results.

import QtQuick
import QtQuick.Templates as T

import Quire

Item {
    id: pane

    required property CatalogSearch search
    required property CatalogListModel results
    required property Component row
    required property string searchingWords
    required property string failureTitle
    required property string emptySymbol
    required property string emptyTitle
    required property string emptyDetail

    Row {
        spacing: 10
        visible: pane.search.isSearching

        ProgressRing {
            anchors.verticalCenter: parent.verticalCenter
            small: true
        }
        QuireText {
            text: pane.searchingWords
        }
    }
    InsightEmptyState {
        width: parent.width
        visible: !pane.search.isSearching && pane.search.errorMessage.length > 0
        systemImage: "exclamationmark.triangle"
        title: pane.failureTitle
        detail: pane.search.errorMessage
    }
    InsightEmptyState {
        width: parent.width
        visible: !pane.search.isSearching && pane.search.errorMessage.length === 0 && pane.results.count === 0
        systemImage: pane.emptySymbol
        title: pane.emptyTitle
        detail: pane.emptyDetail
    }
    ListView {
        id: list

        anchors.fill: parent
        visible: !pane.search.isSearching && pane.search.errorMessage.length === 0
        model: pane.results
        delegate: pane.row
        spacing: 10
        clip: true
        boundsBehavior: Flickable.StopAtBounds
        keyNavigationEnabled: false
        cacheBuffer: 2000 // all of them, so that Tab reaches each

        T.ScrollBar.vertical: QuireScrollBar {}

        KeyboardFollower {
            page: list
        }
    }
}
