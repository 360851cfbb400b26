// The walls of the library, of which one is shown: books come in pages,
// audiobooks all at once. Each has its own list for good. A list that is given
// another delegate makes its cards many times over, and gives the old ones back
// late.

pragma ComponentBehavior: Bound

import QtQuick

import Quire

FocusScope {
    id: view

    required property LibraryViewModel library
    required property bool canAdd // the library is open, and no job runs

    signal bookPageChanged
    signal addBookRequested
    signal addAudiobookRequested

    function showTop() {
        books.showTop();
        audiobooks.showTop();
    }

    Keys.forwardTo: [books, audiobooks]

    // The page in words: a new one is looked at from its top, whoever turned it.
    readonly property string page: view.library.pageDescription
    onPageChanged: view.bookPageChanged()

    // Another search, shelf or order is another list.
    Connections {
        target: view.library

        function onSearchTextChanged() {
            view.showTop();
        }
        function onSelectedShelfChanged() {
            view.showTop();
        }
        function onSelectedSortChanged() {
            view.showTop();
        }
    }

    CoverWall {
        id: books

        anchors.fill: parent
        visible: view.library.showsBooks
        titles: view.library.books
        head: LibraryControlsView {
            width: parent ? parent.width : 0
            library: view.library
            addText: "Add Book"
            addToolTip: "Search the book catalog or enter a title manually"
            onAddRequested: view.addBookRequested()
        }
        foot: LibraryPagingRow {
            width: parent ? parent.width : 0
            visible: !books.isEmpty
            library: view.library
        }
        card: BookCard {
            id: bookCard

            activeFocusOnTab: GridView.isCurrentItem || activeFocus
            onVisualFocusChanged: if (bookCard.visualFocus) books.makeCurrent(bookCard.index)
            onClicked: view.library.openBook(bookCard.rowId)
            canHide: view.library.isReady
            onHideRequested: hidden => view.library.setBookHidden(bookCard.rowId, hidden)
            Keys.onPressed: event => books.handleKey(event, bookCard.index)
        }
    }

    CoverWall {
        id: audiobooks

        anchors.fill: parent
        visible: view.library.showsAudiobooks
        titles: view.library.audiobooks
        headGap: view.library.showsAudibleCatalog ? 24 : 26
        head: Column {
            width: parent ? parent.width : 0
            spacing: 22

            LibraryControlsView {
                width: parent.width
                library: view.library
                addText: "Add Audiobook"
                addToolTip: "Search Audible and add a title to Quire"
                onAddRequested: view.addAudiobookRequested()
            }
            ResultGroupHeader {
                width: parent.width
                visible: view.library.showsAudibleCatalog
                title: "In Your Library"
                value: view.library.foundInLibraryText
            }
        }
        foot: AudibleSearchResultsView {
            width: parent ? parent.width : 0
            visible: view.library.showsAudibleCatalog
            library: view.library
            canAdd: view.canAdd
        }
        card: AudiobookCard {
            id: audiobookCard

            activeFocusOnTab: GridView.isCurrentItem || activeFocus
            onVisualFocusChanged: if (audiobookCard.visualFocus) audiobooks.makeCurrent(audiobookCard.index)
            onClicked: view.library.openAudiobook(audiobookCard.rowId)
            Keys.onPressed: event => audiobooks.handleKey(event, audiobookCard.index)
        }
    }
}
