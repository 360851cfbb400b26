// A book, and what the reader may change of it.

import QtQuick

import Quire

TitleDetailView {
    id: view

    required property BookDetailViewModel book

    detail: book
    stateTitle: "Reading Status"
    linkTitle: "Goodreads"

    facts: [
        QuireText {
            width: parent.width
            visible: text.length > 0
            text: view.book.author
            size: 14
            color: Theme.secondary
            elide: Text.ElideRight
        },
        QuireText {
            width: parent.width
            visible: text.length > 0
            text: view.book.metadata
            elide: Text.ElideRight
        }
    ]
    actions: [
        BorderedButton {
            text: view.book.isHidden ? "Restore to Library" : "Hide from Library"
            symbol: view.book.isHidden ? "eye" : "eye.slash"
            enabled: !view.book.isWorking
            onClicked: view.book.toggleHidden()
        }
    ]
}
