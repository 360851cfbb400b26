// The settings: a header, the choice of tab, the tab, and the foot with Cancel
// and Save.

import QtQuick
import QtQuick.Templates as T

import Quire

FocusScope {
    id: view

    required property SettingsViewModel settings
    required property AppearanceViewModel appearance
    required property bool canWork // the library is open, and no job runs

    signal dismissed
    signal linkActivated(url address)
    signal dataFolderRequested
    signal logsRequested
    signal syncRequested

    function focusFirstField() {
        view.shownTab.firstField.forceActiveFocus();
    }

    readonly property SettingsSection shownTab: appearanceTab.visible ? appearanceTab : libraries.visible ? libraries
        : goodreads.visible ? goodreads : publishing.visible ? publishing : data

    focus: true
    Keys.onEscapePressed: view.dismissed()

    Connections {
        target: view.settings
        function onSaved() {
            view.dismissed();
        }
        function onRefused(property: string) {
            view.shownTab.fallibleFields[property].forceActiveFocus();
        }
    }

    Item {
        anchors.fill: parent
        anchors.margins: 24

        Column {
            id: header

            width: parent.width
            spacing: 4

            QuireText {
                text: "Quire Settings"
                size: 21
                weight: Font.DemiBold
                Accessible.role: Accessible.Heading
            }
            QuireText {
                text: "Appearance, syncing, publishing, and local data."
                color: Theme.secondary
            }
        }

        SegmentedChoice {
            id: tabs

            anchors.top: header.bottom
            anchors.topMargin: 18
            accessibleLabel: "Settings section"
            choices: view.settings.tabs
            selectedWord: view.settings.selectedTab
            onChosen: word => view.settings.selectedTab = word
        }

        Flickable {
            id: scroller

            anchors.top: tabs.bottom
            anchors.topMargin: 18
            anchors.bottom: footer.top
            anchors.bottomMargin: 18
            width: parent.width
            contentHeight: view.shownTab.implicitHeight
            boundsBehavior: Flickable.StopAtBounds
            interactive: contentHeight > height
            clip: interactive

            AppearanceSettingsTab {
                id: appearanceTab

                width: scroller.width
                visible: view.settings.selectedTab === "appearance"
                appearance: view.appearance
                isReady: view.settings.isReady
            }
            LibrariesSettingsTab {
                id: libraries

                width: scroller.width
                visible: view.settings.selectedTab === "libraries"
                settings: view.settings
                canWork: view.canWork
                onSyncRequested: view.syncRequested()
            }
            GoodreadsSettingsTab {
                id: goodreads

                width: scroller.width
                visible: view.settings.selectedTab === "goodreads"
                settings: view.settings
                onLinkActivated: address => view.linkActivated(address)
                onAccepted: view.settings.save()
            }
            PublishingSettingsTab {
                id: publishing

                width: scroller.width
                visible: view.settings.selectedTab === "publishing"
                settings: view.settings
                onLinkActivated: address => view.linkActivated(address)
                onAccepted: view.settings.save()
            }
            DataSettingsTab {
                id: data

                width: scroller.width
                visible: view.settings.selectedTab === "data"
                settings: view.settings
                canWork: view.canWork
                onAccepted: view.settings.save()
                onDataFolderRequested: view.dataFolderRequested()
                onLogsRequested: view.logsRequested()
            }

            KeyboardFollower {
                page: scroller
            }

            T.ScrollBar.vertical: QuireScrollBar {
                staysAboveMore: true
            }
        }

        Item {
            id: footer

            anchors.bottom: parent.bottom
            width: parent.width
            height: 45

            Rectangle {
                width: parent.width
                height: 1
                color: Theme.hairline
            }
            QuireText {
                anchors.left: parent.left
                anchors.bottom: parent.bottom
                anchors.bottomMargin: 7
                text: view.settings.lastUpdatedText
                size: 11
                color: Theme.secondary
            }
            Row {
                anchors.right: parent.right
                anchors.bottom: parent.bottom
                spacing: 10

                BorderedButton {
                    text: "Cancel"
                    onClicked: view.dismissed()
                }
                ProminentButton {
                    text: "Save"
                    enabled: view.settings.isReady
                    busy: view.settings.isSaving
                    onClicked: view.settings.save()
                }
            }
        }
    }
}
