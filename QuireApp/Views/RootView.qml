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

    signal settingsRequested

    focus: true

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

        ReadingInsightsView {
            anchors.fill: parent
            visible: root.shell.library.showsInsights
            insights: root.shell.insights
            onBookChosen: id => root.shell.library.openBook(id)
        }
        LibraryView {
            anchors.fill: parent
            visible: !root.shell.library.showsInsights
            library: root.shell.library
            canAdd: !root.shell.activity.isWorking
            onAddBookRequested: root.showsAddBook = true
            onAddAudiobookRequested: root.showsAddAudiobook = true
        }
    }

    DetailModalOverlay {
        title: "Add Book"
        visible: root.showsAddBook
        onAboutToShow: root.shell.addBook.reset()
        onClosed: {
            root.showsAddBook = false;
            visible = Qt.binding(() => root.showsAddBook);
        }
        panel: AddBookView {
            draft: root.shell.addBook
            onClosed: root.showsAddBook = false
        }
    }
    DetailModalOverlay {
        title: "Add Audiobook"
        visible: root.showsAddAudiobook
        onAboutToShow: root.shell.addAudiobook.reset()
        onClosed: {
            root.showsAddAudiobook = false;
            visible = Qt.binding(() => root.showsAddAudiobook);
        }
        panel: AddAudiobookView {
            draft: root.shell.addAudiobook
            onClosed: root.showsAddAudiobook = false
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

    NoticeAlert {
        activity: root.shell.activity
        wanted: root.showsNotice
    }
    QuestionAlert {
        alerts: root.shell.alerts
        wanted: root.showsNotice
    }
}
