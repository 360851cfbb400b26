import QtQuick

import Quire

SettingsSection {
    id: tab

    required property SettingsViewModel settings

    signal linkActivated(url address)
    // Return in a field.
    signal accepted

    firstField: token
    fallibleFields: ({
            localPublishPath: publishFolder.field,
            publishInterval: publishInterval
        })
    title: "Publishing"
    systemImage: "square.and.arrow.up"

    SettingsField {
        width: parent.width
        title: "Published Page"

        Item {
            width: parent.width
            height: 34

            LinkText {
                width: Math.min(implicitWidth, parent.width)
                anchors.verticalCenter: parent.verticalCenter
                visible: tab.settings.publishedPage.length > 0
                text: tab.settings.publishedPage
                onClicked: tab.linkActivated(tab.settings.publishedPage)
            }
            QuireText {
                anchors.verticalCenter: parent.verticalCenter
                visible: tab.settings.publishedPage.length === 0
                text: "Not connected"
                color: Theme.secondary
            }
        }
    }
    SettingsField {
        width: parent.width
        title: "Netlify Token"

        QuireTextField {
            id: token

            width: parent.width
            secret: true
            placeholderText: tab.settings.netlifyTokenPrompt
            text: tab.settings.netlifyToken
            onTextEdited: tab.settings.netlifyToken = text
            onAccepted: tab.accepted()
        }
    }
    SettingsField {
        width: parent.width

        LinkText {
            text: "Netlify setup and token instructions"
            onClicked: tab.linkActivated(tab.settings.netlifyHelp)
        }
    }
    SettingsField {
        width: parent.width
        title: "Local Publishing Folder (Optional)"

        FolderField {
            id: publishFolder

            width: parent.width
            name: "Local Publishing Folder (Optional)"
            prompt: "No local copy"
            path: tab.settings.localPublishPath
            resetTitle: "Clear"
            onEdited: path => tab.settings.localPublishPath = path
            onAccepted: tab.accepted()
            onFolderRequested: tab.settings.chooseLocalPublishFolder()
            onResetRequested: tab.settings.localPublishPath = ""
        }
    }
    SettingsField {
        width: parent.width
        title: "Minutes Between Updates"

        NumberField {
            id: publishInterval

            width: 100
            placeholderText: "Minutes"
            value: tab.settings.publishInterval
            to: 10080 // a week
            onEdited: minutes => tab.settings.publishInterval = minutes
            onAccepted: tab.accepted()
        }
    }
    SettingsField {
        width: parent.width

        QuireCheckBox {
            text: "Publish automatically while Quire is open"
            checked: tab.settings.automaticPublishing
            onToggled: tab.settings.automaticPublishing = checked
        }
    }
    SettingsNote {
        text: "The local folder is optional. Leave it blank to publish only to Netlify. Automatic publishing is off by default; manual updates remain available in the sidebar."
    }
}
