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

    signal bookPageChanged

    function showTop() {
        books.showTop();
    }

    // The page in words: a new one is looked at from its top, whoever turned it.
    readonly property string page: view.library.pageDescription
    onPageChanged: view.bookPageChanged()

    CoverWall {
        id: books

        anchors.fill: parent
        visible: view.library.showsBooks
        library: view.library
        titles: view.library.books
        card: BookCard {
            id: bookCard

            activeFocusOnTab: GridView.isCurrentItem || activeFocus
            onVisualFocusChanged: if (bookCard.visualFocus) books.makeCurrent(bookCard.index)
            onClicked: view.library.openBook(bookCard.rowId)
            Keys.onPressed: event => books.handleKey(event, bookCard.index)
        }
    }

    CoverWall {
        id: audiobooks

        anchors.fill: parent
        visible: view.library.showsAudiobooks
        library: view.library
        titles: view.library.audiobooks
        card: AudiobookCard {
            id: audiobookCard

            activeFocusOnTab: GridView.isCurrentItem || activeFocus
            onVisualFocusChanged: if (audiobookCard.visualFocus) audiobooks.makeCurrent(audiobookCard.index)
            onClicked: view.library.openAudiobook(audiobookCard.rowId)
            Keys.onPressed: event => audiobooks.handleKey(event, audiobookCard.index)
        }
    }
}
