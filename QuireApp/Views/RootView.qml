// What the main window shows, from the back: the sidebar and the library, the
// toast, the working overlay, the notice.

pragma ComponentBehavior: Bound

import QtQuick

import Quire

FocusScope {
    id: root

    required property ShellViewModel shell
    property bool showsNotice: true
    property bool showsAddBook: false
    property bool showsAddAudiobook: false
    // One panel at a time: an open book comes first.
    readonly property bool showsAudiobook: root.shell.audiobookDetail.isOpen && !root.shell.bookDetail.isOpen

    // The window has shown its first frame, with the sidebar in it.
    property bool isOnScreen: false

    signal settingsRequested

    focus: true

    Connections {
        target: root.Window.window
        enabled: !root.isOnScreen

        function onFrameSwapped() {
            root.isOnScreen = true;
        }
    }

    Rectangle {
        anchors.fill: parent
        color: Theme.window
    }

    QuireSidebar {
        id: sidebar

        anchors.left: parent.left
        anchors.top: parent.top
        anchors.bottom: parent.bottom
        width: 218
        library: root.shell.library
        activity: root.shell.activity
        onSettingsRequested: root.settingsRequested()
    }

    Item {
        id: column

        anchors.left: sidebar.right
        anchors.right: parent.right
        anchors.top: parent.top
        anchors.bottom: parent.bottom
        clip: true

        // The section that is shown is made behind the first frame, and the other
        // one behind it.
        OnDemand {
            id: insights

            anchors.fill: parent
            isUnhurried: true
            wanted: root.isOnScreen && (visible || library.made !== null)
            visible: root.shell.library.showsInsights
            content: ReadingInsightsView {
                anchors.fill: parent
                insights: root.shell.insights
                onBookChosen: id => root.shell.library.openBook(id)
            }
        }
        OnDemand {
            id: library

            anchors.fill: parent
            isUnhurried: true
            wanted: root.isOnScreen && (visible || insights.made !== null)
            visible: !root.shell.library.showsInsights
            content: LibraryView {
                anchors.fill: parent
                library: root.shell.library
                canAdd: root.shell.activity.canWork
                onAddBookRequested: root.showsAddBook = true
                onAddAudiobookRequested: root.showsAddAudiobook = true
            }
        }
    }

    OnDemand {
        wanted: root.shell.bookDetail.isOpen
        content: DetailModalOverlay {
            id: bookDetails

            title: root.shell.bookDetail.title
            contextLabel: "Book"
            tallest: 640
            visible: root.shell.bookDetail.isOpen
            onClosed: {
                root.shell.bookDetail.close();
                bookDetails.visible = Qt.binding(() => root.shell.bookDetail.isOpen);
            }
            panel: BookDetailView {
                book: root.shell.bookDetail
                onLinkRequested: address => root.shell.linkRequested(address)
            }
        }
    }
    OnDemand {
        wanted: root.showsAudiobook
        content: DetailModalOverlay {
            id: audiobookDetails

            title: root.shell.audiobookDetail.title
            contextLabel: "Audiobook"
            tallest: 640
            visible: root.showsAudiobook
            onClosed: {
                root.shell.audiobookDetail.close();
                audiobookDetails.visible = Qt.binding(() => root.showsAudiobook);
            }
            panel: AudiobookDetailView {
                audiobook: root.shell.audiobookDetail
                onLinkRequested: address => root.shell.linkRequested(address)
            }
        }
    }
    OnDemand {
        wanted: root.showsAddBook
        content: DetailModalOverlay {
            id: addBook

            title: "Add Book"
            visible: root.showsAddBook
            onAboutToShow: root.shell.addBook.reset()
            onClosed: {
                root.showsAddBook = false;
                addBook.visible = Qt.binding(() => root.showsAddBook);
            }
            panel: AddBookView {
                draft: root.shell.addBook
                onClosed: root.showsAddBook = false
            }
        }
    }
    OnDemand {
        wanted: root.showsAddAudiobook
        content: DetailModalOverlay {
            id: addAudiobook

            title: "Add Audiobook"
            visible: root.showsAddAudiobook
            onAboutToShow: root.shell.addAudiobook.reset()
            onClosed: {
                root.showsAddAudiobook = false;
                addAudiobook.visible = Qt.binding(() => root.showsAddAudiobook);
            }
            panel: AddAudiobookView {
                draft: root.shell.addAudiobook
                onClosed: root.showsAddAudiobook = false
            }
        }
    }

    ToastView {
        id: toast

        anchors.horizontalCenter: parent.horizontalCenter
        text: root.shell.activity.toast
        restingY: root.height - height - 24
    }

    WorkingOverlay {
        anchors.fill: parent
        shown: root.shell.activity.showsOverlay
        label: root.shell.activity.activityLabel
    }

    OnDemand {
        wanted: root.shell.activity.hasNotice
        content: NoticeAlert {
            activity: root.shell.activity
            wanted: root.showsNotice
        }
    }
    OnDemand {
        wanted: root.shell.alerts.isOpen
        content: QuestionAlert {
            alerts: root.shell.alerts
            wanted: root.showsNotice
        }
    }
}
