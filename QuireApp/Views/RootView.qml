// What the main window shows, from the back: the sidebar and the library, a panel
// over them, the toast, the working overlay, the notice.

pragma ComponentBehavior: Bound

import QtQuick
import QtQuick.Templates as T

import Quire

FocusScope {
    id: root

    required property ShellViewModel shell
    property bool showsNotice: true
    property bool showsAddBook: false
    property bool showsAddAudiobook: false
    // One panel at a time, and the one behind it when it closes.
    readonly property string panel: root.shell.bookDetail.isOpen ? "book"
        : root.shell.audiobookDetail.isOpen ? "audiobook"
        : root.showsAddBook ? "addBook"
        : root.showsAddAudiobook ? "addAudiobook" : ""

    // The window has shown its first frame, with the sidebar in it.
    property bool isOnScreen: false

    signal settingsRequested

    focus: true
    // A page is turned wherever the keyboard is.
    Keys.forwardTo: [library.made as Item, insights.made as Item]

    // Where the keyboard was before a panel or a menu took it, it is when that has
    // closed. The toolkit gives it back in windows of its own kind alone.
    readonly property Item focused: root.Window.activeFocusItem
    readonly property bool hasLostFocus: root.panel.length === 0 && root.focused !== null
        && root.focused === root.Window.contentItem
    property Item lastFocused: null
    property int lastFocusReason: Qt.OtherFocusReason

    function keepFocus(item: var) {
        root.lastFocused = item;
        root.lastFocusReason = item.focusReason ?? Qt.OtherFocusReason;
    }

    onFocusedChanged: {
        let ancestor = root.focused;
        while (ancestor && ancestor !== root)
            ancestor = ancestor.parent;
        if (ancestor)
            root.keepFocus(root.focused);
    }

    Timer {
        interval: 0
        running: root.hasLostFocus
        onTriggered: {
            const item = root.lastFocused && root.lastFocused.visible ? root.lastFocused : root;
            item.forceActiveFocus(root.lastFocusReason);
        }
    }

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

    Shortcut {
        sequences: [StandardKey.Find] // qmllint disable unqualified
        onActivated: sidebar.focusSearch()
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
        wanted: root.panel === "book"
        content: DetailModalOverlay {
            id: bookDetails

            title: root.shell.bookDetail.title
            contextLabel: "Book"
            tallest: 640
            visible: root.panel === "book"
            onClosed: {
                if (root.panel === "book")
                    root.shell.bookDetail.close();
                bookDetails.visible = Qt.binding(() => root.panel === "book");
            }
            panel: BookDetailView {
                book: root.shell.bookDetail
                onLinkRequested: address => root.shell.linkRequested(address)
            }
        }
    }
    OnDemand {
        wanted: root.panel === "audiobook"
        content: DetailModalOverlay {
            id: audiobookDetails

            title: root.shell.audiobookDetail.title
            contextLabel: "Audiobook"
            tallest: 640
            visible: root.panel === "audiobook"
            onClosed: {
                if (root.panel === "audiobook")
                    root.shell.audiobookDetail.close();
                audiobookDetails.visible = Qt.binding(() => root.panel === "audiobook");
            }
            panel: AudiobookDetailView {
                audiobook: root.shell.audiobookDetail
                onLinkRequested: address => root.shell.linkRequested(address)
            }
        }
    }
    OnDemand {
        wanted: root.panel === "addBook"
        content: DetailModalOverlay {
            id: addBook

            title: "Add Book"
            visible: root.panel === "addBook"
            onAboutToShow: root.shell.addBook.reset()
            onClosed: {
                if (root.panel === "addBook")
                    root.showsAddBook = false;
                addBook.visible = Qt.binding(() => root.panel === "addBook");
            }
            panel: AddBookView {
                draft: root.shell.addBook
                onClosed: root.showsAddBook = false
            }
        }
    }
    OnDemand {
        wanted: root.panel === "addAudiobook"
        content: DetailModalOverlay {
            id: addAudiobook

            title: "Add Audiobook"
            visible: root.panel === "addAudiobook"
            onAboutToShow: root.shell.addAudiobook.reset()
            onClosed: {
                if (root.panel === "addAudiobook")
                    root.showsAddAudiobook = false;
                addAudiobook.visible = Qt.binding(() => root.panel === "addAudiobook");
            }
            panel: AddAudiobookView {
                draft: root.shell.addAudiobook
                onClosed: root.showsAddAudiobook = false
            }
        }
    }

    ToastView {
        text: root.shell.activity.toast
        parent: root.Window.contentItem // over the panels, which are not in this view
        z: T.Overlay.overlay ? T.Overlay.overlay.z + 1 : 0
    }

    OnDemand {
        wanted: root.shell.activity.showsOverlay
        content: WorkingOverlay {
            shown: root.shell.activity.showsOverlay
            label: root.shell.activity.activityLabel
        }
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
