// The main column of the library: heading row, grid and pages scroll together.

import QtQuick

import Quire

FocusScope {
    id: view

    required property LibraryViewModel library

    LibraryGridView {
        id: grid

        anchors.fill: parent
        library: view.library
        onBookPageChanged: grid.showTop()
    }

    EmptyLibraryView {
        anchors.centerIn: parent
        visible: view.library.isEmpty
        label: view.library.emptyLabel
        systemImage: view.library.emptySymbol
    }
}
