import QtQuick

import Quire

SettingsSection {
    id: tab

    required property SettingsViewModel settings
    required property bool canWork

    signal syncRequested

    firstField: books
    title: "Libraries & Syncing"
    systemImage: "books.vertical"

    Row {
        width: parent.width
        spacing: 10

        SymbolPicture {
            anchors.top: parent.top
            anchors.topMargin: 1
            name: tab.settings.isAudibleInstalled ? "checkmark.circle.fill" : "exclamationmark.triangle"
            size: 16
            color: tab.settings.isAudibleInstalled ? Theme.mark : Theme.secondary
        }
        Column {
            width: parent.width - 26
            spacing: 3

            QuireText {
                text: tab.settings.isAudibleInstalled ? "Audible detected" : "Audible not detected"
                weight: Font.Medium
            }
            SettingsNote {
                visible: tab.settings.isAudibleInstalled
                text: tab.settings.audibleDetail
            }
        }
    }
    SettingsNote {
        visible: tab.settings.isAudibleInstalled
        text: tab.settings.audiblePermissionText
    }
    SettingsNote {
        text: "Audible syncing requires the Audible app from the Mac App Store. Quire reads only audiobook information from its local library. Goodreads and Audible may add titles, fill empty details, or advance status; they never remove data or replace your Quire ratings, notes, or other existing values."
    }
    SettingsField {
        width: parent.width
        title: "Visible Sections"

        Row {
            height: 34
            spacing: 24

            QuireCheckBox {
                id: books

                anchors.verticalCenter: parent.verticalCenter
                text: "Books"
                checked: tab.settings.showBooksSection
                onToggled: tab.settings.showBooksSection = checked
            }
            QuireCheckBox {
                anchors.verticalCenter: parent.verticalCenter
                text: "Audio"
                checked: tab.settings.showAudioSection
                onToggled: tab.settings.showAudioSection = checked
            }
        }
    }
    SettingsField {
        width: parent.width
        title: "Automatic Sync"

        Column {
            spacing: 6
            topPadding: 5

            QuireCheckBox {
                text: "Goodreads when Quire opens"
                checked: tab.settings.automaticGoodreadsSync
                onToggled: tab.settings.automaticGoodreadsSync = checked
            }
            QuireCheckBox {
                text: "Audible when Quire opens"
                checked: tab.settings.automaticAudibleSync
                onToggled: tab.settings.automaticAudibleSync = checked
            }
        }
    }
    Flow {
        width: parent.width
        spacing: 10

        BorderedButton {
            text: "Grant Access"
            enabled: tab.settings.isReady
            onClicked: tab.settings.grantAudibleLibraryAccess()
        }
        BorderedButton {
            symbol: "arrow.triangle.2.circlepath"
            text: "Sync"
            enabled: tab.canWork
            onClicked: tab.syncRequested()
        }
    }
}
