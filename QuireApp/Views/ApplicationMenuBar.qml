// The commands of the program with their shortcuts.

import QtQuick

import Quire

QuireMenuBar {
    id: bar

    required property ShellViewModel shell

    signal settingsRequested
    signal quickHelpRequested

    QuireMenu {
        title: "&Quire"

        QuireMenuItem {
            text: "Check for Updates…"
            onTriggered: bar.shell.checkForUpdates()
        }
        QuireMenuSeparator {}
        QuireMenuItem {
            text: "Open Data Folder"
            onTriggered: bar.shell.openDataFolder()
        }
        QuireMenuItem {
            text: "Open Logs"
            onTriggered: bar.shell.logsRequested()
        }
        QuireMenuSeparator {}
        QuireMenuItem {
            text: "Settings…"
            shortcutText: "Ctrl+,"
            onTriggered: bar.settingsRequested()
        }
        QuireMenuSeparator {}
        QuireMenuItem {
            text: "Quit"
            shortcutText: "Ctrl+Q"
            onTriggered: bar.shell.quitRequested()
        }
    }

    QuireMenu {
        title: "&File"

        QuireMenuItem {
            text: "Back Up Quire Database…"
            shortcutText: "Ctrl+Shift+B"
            enabled: bar.shell.activity.isReady
            onTriggered: bar.shell.backUpDatabase()
        }
    }

    QuireMenu {
        title: "&View"

        ChoiceMenu {
            title: "Library Section"
            choices: bar.shell.library.menuTabs
            selectedWord: bar.shell.library.selectedTab
            onChosen: word => bar.shell.library.selectedTab = word
        }
        ChoiceMenu {
            title: "Library View"
            enabled: !bar.shell.library.showsInsights
            choices: bar.shell.library.menuShelves
            selectedWord: bar.shell.library.selectedShelf
            onChosen: word => bar.shell.library.selectedShelf = word
        }
        ChoiceMenu {
            title: "Sort Library"
            enabled: !bar.shell.library.showsInsights
            choices: bar.shell.library.sorts
            selectedWord: bar.shell.library.selectedSort
            onChosen: word => bar.shell.library.selectedSort = word
        }
        QuireMenuSeparator {}
        QuireMenuItem {
            text: "Previous Library Page"
            enabled: bar.shell.library.hasPreviousPage
            onTriggered: bar.shell.library.showPreviousPage()
        }
        QuireMenuItem {
            text: "Next Library Page"
            enabled: bar.shell.library.hasNextPage
            onTriggered: bar.shell.library.showNextPage()
        }
    }

    QuireMenu {
        title: "&Library"

        QuireMenuItem {
            text: "Sync"
            shortcutText: "Ctrl+R"
            enabled: bar.shell.activity.canWork
            onTriggered: bar.shell.activity.synchronizeAll()
        }
    }

    QuireMenu {
        title: "&Help"

        QuireMenuItem {
            text: "Quire Help"
            shortcutText: "Ctrl+?"
            onTriggered: bar.shell.linkRequested(bar.shell.help.helpPage)
        }
        QuireMenuItem {
            text: "Quick Help in Quire"
            onTriggered: bar.quickHelpRequested()
        }
        QuireMenuItem {
            text: "Send Feedback…"
            onTriggered: bar.shell.linkRequested(bar.shell.help.feedbackURL)
        }
        QuireMenuItem {
            text: "About Quire"
            onTriggered: bar.shell.help.showQuireAboutDialog()
        }
    }

    Shortcut {
        sequence: "Ctrl+?"
        context: Qt.ApplicationShortcut
        onActivated: bar.shell.linkRequested(bar.shell.help.helpPage)
    }
    Shortcut {
        sequence: "Ctrl+,"
        context: Qt.ApplicationShortcut
        onActivated: bar.settingsRequested()
    }
    Shortcut {
        sequence: "Ctrl+Q"
        context: Qt.ApplicationShortcut
        onActivated: bar.shell.quitRequested()
    }
    Shortcut {
        sequence: "Ctrl+Shift+B"
        context: Qt.ApplicationShortcut
        enabled: bar.shell.activity.isReady
        onActivated: bar.shell.backUpDatabase()
    }
    Shortcut {
        sequence: "Ctrl+R"
        context: Qt.ApplicationShortcut
        enabled: bar.shell.activity.canWork
        onActivated: bar.shell.activity.synchronizeAll()
    }
}
