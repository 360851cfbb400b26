// Help in brief: what the program is for, and its shortcuts.

pragma ComponentBehavior: Bound

import QtQuick
import QtQuick.Templates as T

import Quire

FocusScope {
    id: view

    required property HelpViewModel help

    signal linkRequested(url address)

    readonly property var sections: [
        {
            title: "Browse your library",
            body: "Choose Books, Insights, or Audio in the sidebar. Use the status choices to narrow the library, Search to find titles and details, and View to choose the current section, shelf, and sort order."
        },
        {
            title: "Add and update titles",
            body: "Add Book searches the book catalog and also supports manual entry. Add Audiobook searches Audible and also supports manual entry. Open any cover to update its status, rating, and notes."
        },
        {
            title: "Sync",
            body: "Sync updates configured Goodreads and Audible information and then refreshes publishing. Quire remains the source of truth: imports add missing information and advance status conservatively, but never replace your existing ratings or notes."
        },
        {
            title: "Insights",
            body: "Insights summarizes current reading, yearly progress, reading rhythm, ratings, authors, tags, and recent finishes."
        },
        {
            title: "Settings and local data",
            body: "Settings controls appearance, Goodreads, Audible, publishing, backups, and the library location. Quire keeps its database and artwork locally. You may choose an accessible folder, including a folder managed by iCloud Drive, Dropbox, or another cloud service."
        }
    ]
    readonly property var shortcuts: [
        {
            keys: "Command-R",
            meaning: "Sync"
        },
        {
            keys: "Shift-Command-B",
            meaning: "Back up the Quire database"
        },
        {
            keys: "Command-?",
            meaning: "Quire Help"
        }
    ]

    focus: true

    Flickable {
        id: scroller

        anchors.fill: parent
        contentHeight: column.height
        boundsBehavior: Flickable.StopAtBounds
        interactive: contentHeight > height
        focus: true

        Keys.onUpPressed: scroller.flick(0, 600)
        Keys.onDownPressed: scroller.flick(0, -600)
        Keys.onPressed: event => bar.handleKey(event)

        Column {
            id: column

            x: Math.max(0, (scroller.width - width) / 2)
            width: Math.min(680, scroller.width)
            padding: 32
            spacing: 22

            readonly property real room: column.width - 64

            Row {
                spacing: 14

                Rectangle {
                    width: 54
                    height: 54
                    radius: 12
                    color: Theme.pill

                    SymbolPicture {
                        anchors.centerIn: parent
                        name: "book.pages.fill"
                        size: 38
                        color: Theme.mark
                    }
                }
                Column {
                    anchors.verticalCenter: parent.verticalCenter
                    spacing: 4

                    QuireText {
                        text: "Quire Help"
                        size: 27
                        weight: Font.DemiBold
                        Accessible.role: Accessible.Heading
                    }
                    QuireText {
                        text: view.help.versionDescription
                        color: Theme.secondary
                    }
                }
            }

            Repeater {
                model: view.sections

                Column {
                    id: section

                    required property var modelData

                    width: column.room
                    spacing: 7

                    QuireText {
                        text: section.modelData.title
                        size: 16
                        weight: Font.DemiBold
                        Accessible.role: Accessible.Heading
                    }
                    QuireText {
                        width: parent.width
                        text: section.modelData.body
                        size: 14
                        wrapMode: Text.Wrap
                    }
                }
            }

            Column {
                width: column.room
                spacing: 6

                QuireText {
                    text: "Useful shortcuts"
                    size: 16
                    weight: Font.DemiBold
                    Accessible.role: Accessible.Heading
                }
                Repeater {
                    model: view.shortcuts

                    Row {
                        id: shortcut

                        required property var modelData

                        QuireText {
                            anchors.baseline: meaning.baseline
                            width: 165
                            text: shortcut.modelData.keys
                            font.family: "monospace"
                        }
                        QuireText {
                            id: meaning

                            text: shortcut.modelData.meaning
                            size: 14
                        }
                    }
                }
            }

            Row {
                id: buttons

                // Whoever comes here by the keyboard sees where they are.
                function reveal() {
                    scroller.contentY = Math.max(0, column.height - scroller.height);
                }

                spacing: 10

                BorderedButton {
                    text: "Open Complete Help"
                    onActiveFocusChanged: if (activeFocus) buttons.reveal()
                    onClicked: view.linkRequested(view.help.helpPage)
                }
                BorderedButton {
                    text: "Send Feedback…"
                    onActiveFocusChanged: if (activeFocus) buttons.reveal()
                    onClicked: view.linkRequested(view.help.feedbackURL)
                }
            }
        }

        T.ScrollBar.vertical: QuireScrollBar {
            id: bar

            staysAboveMore: true
        }
    }
}
