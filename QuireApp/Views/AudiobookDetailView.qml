// An audiobook, and what the reader may change of it.

import QtQuick

import Quire

TitleDetailView {
    id: view

    required property AudiobookDetailViewModel audiobook

    detail: audiobook
    stateTitle: "Listening Status"
    linkTitle: "Audible"
    spineMode: CoverPicture.PortraitSpine
    factSpacing: 10

    facts: [
        QuireText {
            width: parent.width
            visible: text.length > 0
            text: view.audiobook.author
            size: 14
            color: Theme.secondary
            elide: Text.ElideRight
        },
        QuireText {
            width: parent.width
            visible: text.length > 0
            text: view.audiobook.narration
            elide: Text.ElideRight
        },
        QuireText {
            width: parent.width
            visible: text.length > 0
            text: view.audiobook.series
            elide: Text.ElideRight
        }
    ]
}
