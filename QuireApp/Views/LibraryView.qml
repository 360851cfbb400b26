// The main column of the library: heading row, grid and pages scroll together.

import QtQuick

import Quire

FocusScope {
    id: view

    required property LibraryViewModel library
    required property bool canAdd // the library is open, and no job runs

    signal addBookRequested
    signal addAudiobookRequested

    Keys.forwardTo: [grid]

    LibraryGridView {
        id: grid

        anchors.fill: parent
        library: view.library
        canAdd: view.canAdd
        onBookPageChanged: grid.showTop()
        onAddBookRequested: view.addBookRequested()
        onAddAudiobookRequested: view.addAudiobookRequested()
    }

    EmptyLibraryView {
        anchors.centerIn: parent
        visible: view.library.isEmpty && !view.library.showsAudibleCatalog
        label: view.library.emptyLabel
        systemImage: view.library.emptySymbol
    }
}
