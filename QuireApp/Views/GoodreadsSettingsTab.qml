import QtQuick

import Quire

SettingsSection {
    id: tab

    required property SettingsViewModel settings

    signal linkActivated(url address)
    // Return in a field.
    signal accepted

    firstField: userID
    title: "Goodreads"
    systemImage: "arrow.triangle.2.circlepath"

    SettingsField {
        width: parent.width
        title: "Goodreads User ID"

        QuireTextField {
            id: userID

            width: parent.width
            placeholderText: "User ID"
            text: tab.settings.goodreadsUserID
            onTextEdited: tab.settings.goodreadsUserID = text
            onAccepted: tab.accepted()
        }
    }
    SettingsField {
        width: parent.width
        title: "Goodreads RSS Key"

        QuireTextField {
            width: parent.width
            secret: true
            placeholderText: tab.settings.goodreadsKeyPrompt
            text: tab.settings.goodreadsKey
            onTextEdited: tab.settings.goodreadsKey = text
            onAccepted: tab.accepted()
        }
    }
    SettingsField {
        width: parent.width

        Column {
            width: parent.width
            spacing: 6

            LinkText {
                text: "How to find your Goodreads User ID"
                onClicked: tab.linkActivated(tab.settings.goodreadsUserIDHelp)
            }
            LinkText {
                text: "How to obtain the RSS key"
                onClicked: tab.linkActivated(tab.settings.goodreadsKeyHelp)
            }
        }
    }
    SettingsNote {
        text: "Automatic and manual sync controls are in Libraries. Goodreads data complements Quire and never replaces your existing values."
    }
}
