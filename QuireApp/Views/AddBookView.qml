// Adds a book: found in the catalogue, or typed in.

pragma ComponentBehavior: Bound

import QtQuick
import QtQuick.Templates as T

import Quire

FocusScope {
    id: view

    required property AddBookViewModel draft

    signal closed

    implicitWidth: 876
    implicitHeight: 640
    focus: true

    function takeFocus() {
        if (view.draft.entersManually)
            titleField.focusField();
        else
            bar.focusField();
    }

    // What is to have the keyboard is not in sight yet when the mode changes.
    Timer {
        id: focusing

        interval: 0
        running: true
        onTriggered: view.takeFocus()
    }

    Connections {
        target: view.draft
        function onAdded() {
            view.closed();
        }
        function onEntersManuallyChanged() {
            focusing.start();
        }
    }

    Item {
        anchors.fill: parent
        anchors.leftMargin: 24
        anchors.rightMargin: 24
        anchors.topMargin: 62
        anchors.bottomMargin: 24

        AddTitleHead {
            id: head

            width: parent.width
            heading: view.draft.entersManually ? "Add a book manually" : "Search Books"
            line: view.draft.entersManually ? "Use this when a title is not available in the book catalog."
                : "Search Open Library, then add a title to the appropriate shelf."
            modes: view.draft.modes
            entersManually: view.draft.entersManually
            onModeChosen: entersManually => view.draft.entersManually = entersManually
        }

        CatalogSearchBar {
            id: bar

            anchors.top: head.bottom
            anchors.topMargin: 16
            width: parent.width
            visible: !view.draft.entersManually
            search: view.draft.search
            placeholder: "Title, author, or ISBN"
        }
        CatalogResults {
            anchors.top: bar.bottom
            anchors.topMargin: 16
            anchors.bottom: parent.bottom
            width: parent.width
            visible: !view.draft.entersManually
            search: view.draft.search
            results: view.draft.results
            searchingWords: "Searching books…"
            failureTitle: "Book Search Failed"
            emptySymbol: "book.pages"
            emptyTitle: "Search for a Book"
            emptyDetail: "Enter at least two characters to search Open Library."
            row: BookCatalogRow {
                required property int index

                width: ListView.view.width
                canAdd: view.draft.canWork
                onChosen: shelf => view.draft.addResult(index, shelf)
            }
        }

        Flickable {
            id: form

            anchors.top: head.bottom
            anchors.topMargin: 16
            anchors.bottom: actions.top
            anchors.bottomMargin: 16
            width: parent.width
            visible: view.draft.entersManually
            contentHeight: fields.implicitHeight
            boundsBehavior: Flickable.StopAtBounds
            interactive: contentHeight > height
            clip: interactive

            Column {
                id: fields

                width: form.width
                spacing: 16

                Row {
                    id: names

                    width: parent.width
                    spacing: 12

                    ManualEntryField {
                        id: titleField

                        width: (names.width - 12) / 2
                        title: "Title"
                        prompt: "Required"
                        text: view.draft.title
                        onEdited: text => view.draft.title = text
                        onAccepted: actions.accept()
                    }
                    ManualEntryField {
                        width: (names.width - 12) / 2
                        title: "Author"
                        prompt: "Required"
                        text: view.draft.author
                        onEdited: text => view.draft.author = text
                        onAccepted: actions.accept()
                    }
                }
                Row {
                    id: numbers

                    width: parent.width
                    spacing: 12

                    ManualEntryField {
                        width: (numbers.width - 12) / 2
                        title: "ISBN"
                        prompt: "Optional"
                        text: view.draft.isbn
                        onEdited: text => view.draft.isbn = text
                        onAccepted: actions.accept()
                    }
                    ManualEntryField {
                        width: (numbers.width - 36) / 4
                        title: "Pages"
                        prompt: "Optional"
                        text: view.draft.pages
                        onEdited: text => view.draft.pages = text
                        onAccepted: actions.accept()
                    }
                    ManualEntryField {
                        width: (numbers.width - 36) / 4
                        title: "Year"
                        prompt: "Optional"
                        text: view.draft.year
                        onEdited: text => view.draft.year = text
                        onAccepted: actions.accept()
                    }
                }
                Row {
                    spacing: 32

                    DetailStarRating {
                        title: "My Rating"
                        rating: view.draft.rating
                        onRated: rating => view.draft.rating = rating
                    }
                    DetailPicker {
                        title: "Reading Status"
                        options: view.draft.shelves
                        selection: view.draft.shelf
                        onChosen: word => view.draft.shelf = word
                    }
                }
                ManualTextArea {
                    width: parent.width
                    title: "Summary"
                    editorHeight: 92
                    text: view.draft.summary
                    onEdited: text => view.draft.summary = text
                }
                ManualTextArea {
                    width: parent.width
                    title: "Notes"
                    editorHeight: 92
                    text: view.draft.notes
                    onEdited: text => view.draft.notes = text
                }
            }

            T.ScrollBar.vertical: QuireScrollBar {
                staysAboveMore: true
            }

            KeyboardFollower {
                page: form
            }
        }

        Row {
            id: actions

            function accept() {
                if (addButton.enabled)
                    view.draft.addDraft();
            }

            anchors.right: parent.right
            anchors.bottom: parent.bottom
            spacing: 10
            visible: view.draft.entersManually

            CatalogControlButton {
                text: "Cancel"
                onClicked: view.closed()
            }
            CatalogControlButton {
                id: addButton

                prominent: true
                text: "Add Book"
                enabled: view.draft.canAdd && view.draft.canWork
                onClicked: actions.accept()
            }
        }
    }
}
