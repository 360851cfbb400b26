import QtQuick

import Quire

SettingsSection {
    id: tab

    required property SettingsViewModel settings
    required property bool canWork

    signal accepted // Return in a field
    signal dataFolderRequested
    signal logsRequested

    firstField: libraryFolder.field
    fallibleFields: ({
            databaseFolderPath: libraryFolder.field,
            backupPath: backupFolder.field,
            backupInterval: backupInterval,
            maximumBackupFiles: maximumBackupFiles
        })
    title: "Data & Backups"
    systemImage: "externaldrive"

    SettingsField {
        width: parent.width
        title: "Library Folder"

        FolderField {
            id: libraryFolder

            width: parent.width
            name: "Library Folder"
            path: tab.settings.databaseFolderPath
            onEdited: path => tab.settings.databaseFolderPath = path
            onAccepted: tab.accepted()
            onFolderRequested: tab.settings.chooseDatabaseFolder()
            onResetRequested: tab.settings.useDefaultDatabaseFolder()
        }
    }
    SettingsNote {
        text: "Quire keeps the database in Application Support by default. A locally synchronized Dropbox, iCloud Drive, Google Drive, or other cloud folder can be shared between Macs. Use Quire on only one Mac at a time, close it, and let the service finish syncing before opening it elsewhere."
    }
    SettingsField {
        width: parent.width
        title: "Backup Folder"

        FolderField {
            id: backupFolder

            width: parent.width
            name: "Backup Folder"
            path: tab.settings.backupPath
            onEdited: path => tab.settings.backupPath = path
            onAccepted: tab.accepted()
            onFolderRequested: tab.settings.chooseBackupFolder()
            onResetRequested: tab.settings.useDefaultBackupFolder()
        }
    }
    SettingsField {
        width: parent.width
        title: "Automatic Backups"

        Row {
            height: 34
            spacing: 8

            QuireText {
                anchors.verticalCenter: parent.verticalCenter
                text: "Every"
            }
            NumberField {
                id: backupInterval

                placeholderText: "Days"
                value: tab.settings.backupInterval
                to: 365
                onEdited: days => tab.settings.backupInterval = days
                onAccepted: tab.accepted()
            }
            QuireText {
                anchors.verticalCenter: parent.verticalCenter
                width: 44
                text: tab.settings.backupInterval === 1 ? "day" : "days"
            }
            QuireText {
                anchors.verticalCenter: parent.verticalCenter
                text: "Keep"
            }
            NumberField {
                id: maximumBackupFiles

                placeholderText: "Files"
                value: tab.settings.maximumBackupFiles
                to: 200
                onEdited: files => tab.settings.maximumBackupFiles = files
                onAccepted: tab.accepted()
            }
            QuireText {
                anchors.verticalCenter: parent.verticalCenter
                text: "files"
            }
        }
    }
    SettingsNote {
        text: "Backup timing is independent from publishing. Sync-related safety backups respect this interval, and Quire keeps only the newest number of files you choose."
    }
    Flow {
        width: parent.width
        spacing: 10

        BorderedButton {
            text: "Back Up Database"
            enabled: tab.settings.isReady
            busy: tab.settings.isBackingUp
            onClicked: tab.settings.backUpDatabase()
        }
        BorderedButton {
            text: "Refresh Audio Covers"
            enabled: tab.canWork
            onClicked: tab.settings.refreshAudiobookCovers()
        }
        BorderedButton {
            text: "Open Backups"
            onClicked: tab.settings.openBackups()
        }
        BorderedButton {
            text: "Open Data Folder"
            onClicked: tab.dataFolderRequested()
        }
        BorderedButton {
            text: "Open Logs"
            onClicked: tab.logsRequested()
        }
    }
}
