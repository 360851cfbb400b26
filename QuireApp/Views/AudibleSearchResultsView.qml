// What follows the reader's own audiobooks while they search: a word when they
// have none that match, and what the catalogue has.

pragma ComponentBehavior: Bound

import QtQuick

import Quire

Column {
    id: view

    required property LibraryViewModel library
    required property bool canAdd // the library is open, and no job runs

    topPadding: view.library.isEmpty ? 0 : 24
    bottomPadding: 16
    spacing: 24

    SearchEmptyView {
        width: parent.width
        visible: view.library.isEmpty
        message: "No matching titles in your library."
    }
    ResultGroupHeader {
        width: parent.width
        title: "Audible"
        value: "Available to Add"
    }
    Row {
        spacing: 10
        visible: view.library.isSearchingAudible

        ProgressRing {
            anchors.verticalCenter: parent.verticalCenter
            small: true
        }
        QuireText {
            text: "Searching Audible…"
        }
    }
    SearchEmptyView {
        width: parent.width
        visible: view.library.catalogMessage.length > 0
        message: view.library.catalogMessage
    }
    Column {
        width: parent.width
        spacing: 10
        visible: view.library.catalog.count > 0

        Repeater {
            model: view.library.catalog

            AudibleCatalogRow {
                required property int index

                width: view.width
                canAdd: view.canAdd
                onChosen: status => view.library.addCatalogResult(index, status)
            }
        }
    }
}
