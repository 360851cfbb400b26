// Adds an audiobook: found in the catalogue, or typed in.

pragma ComponentBehavior: Bound

import QtQuick
import QtQuick.Templates as T

import Quire

FocusScope {
    id: view

    required property AddAudiobookViewModel draft

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
            heading: view.draft.entersManually ? "Add an audiobook manually" : "Search Audible"
            line: view.draft.entersManually ? "Use this when the audiobook is not available from Audible."
                : "Find an audiobook, then add it as read or currently listening."
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
            placeholder: "Title, author, narrator, or series"
        }
        CatalogResults {
            anchors.top: bar.bottom
            anchors.topMargin: 16
            anchors.bottom: parent.bottom
            width: parent.width
            visible: !view.draft.entersManually
            search: view.draft.search
            results: view.draft.results
            searchingWords: "Searching Audible…"
            failureTitle: "Audible Search Failed"
            emptySymbol: "headphones"
            emptyTitle: "Search for an Audiobook"
            emptyDetail: "Enter at least two characters to search Audible."
            row: AudibleCatalogRow {
                required property int index

                width: ListView.view.width
                canAdd: view.draft.canWork
                onChosen: status => view.draft.addResult(index, status)
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

                ManualEntryField {
                    id: titleField

                    width: parent.width
                    title: "Title"
                    prompt: "Required"
                    text: view.draft.manualTitle
                    onEdited: text => view.draft.manualTitle = text
                    onAccepted: actions.accept()
                }
                Row {
                    id: people

                    width: parent.width
                    spacing: 12

                    ManualEntryField {
                        width: (people.width - 12) / 2
                        title: "Author"
                        text: view.draft.manualAuthor
                        onEdited: text => view.draft.manualAuthor = text
                        onAccepted: actions.accept()
                    }
                    ManualEntryField {
                        width: (people.width - 12) / 2
                        title: "Narrator"
                        text: view.draft.manualNarrator
                        onEdited: text => view.draft.manualNarrator = text
                        onAccepted: actions.accept()
                    }
                }
                Row {
                    id: place

                    width: parent.width
                    spacing: 12

                    ManualEntryField {
                        width: (place.width - 12) / 2
                        title: "Series"
                        prompt: "Optional"
                        text: view.draft.manualSeries
                        onEdited: text => view.draft.manualSeries = text
                        onAccepted: actions.accept()
                    }
                    ManualEntryField {
                        width: (place.width - 36) / 4
                        title: "Number"
                        prompt: "Optional"
                        text: view.draft.manualBookNumber
                        onEdited: text => view.draft.manualBookNumber = text
                        onAccepted: actions.accept()
                    }
                }
                DetailPicker {
                    title: "Listening Status"
                    options: view.draft.statuses
                    selection: view.draft.manualStatus
                    onChosen: word => view.draft.manualStatus = word
                }
                ManualTextArea {
                    width: parent.width
                    title: "Summary"
                    editorHeight: 126
                    text: view.draft.manualSummary
                    onEdited: text => view.draft.manualSummary = text
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
                text: "Add Audiobook"
                enabled: view.draft.canAdd && view.draft.canWork
                onClicked: actions.accept()
            }
        }
    }
}
