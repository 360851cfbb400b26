// The fixed left column and the only navigation: sections, search, shelves and
// the two utility buttons.

pragma ComponentBehavior: Bound

import QtQuick

import Quire

FocusScope {
    id: sidebar

    required property LibraryViewModel library
    required property ActivityViewModel activity

    signal settingsRequested

    function focusSearch() {
        search.focusField();
    }

    Rectangle {
        anchors.fill: parent
        color: Theme.sidebarBase
    }
    Rectangle {
        anchors.fill: parent
        gradient: Gradient {
            GradientStop {
                position: 0
                color: Theme.sidebarGradientTop
            }
            GradientStop {
                position: 1
                color: Theme.sidebarGradientBottom
            }
        }
    }
    Rectangle {
        anchors.right: parent.right
        width: 1
        height: parent.height
        color: Theme.sidebarBorder
    }

    Column {
        id: navigation

        anchors.left: parent.left
        anchors.right: parent.right
        anchors.top: parent.top
        anchors.leftMargin: 16
        anchors.rightMargin: 16
        anchors.topMargin: 20

        Row {
            spacing: 10

            SymbolPicture {
                anchors.verticalCenter: parent.verticalCenter
                name: "book.pages.fill"
                size: 20
                color: Theme.sidebarForeground
            }
            QuireText {
                text: "Quire"
                size: 22
                weight: Font.DemiBold
                color: Theme.sidebarForeground
            }
        }

        Item {
            width: 1
            height: 18
        }
        SidebarSearchField {
            id: search

            width: parent.width
            prompt: sidebar.library.searchPrompt
            text: sidebar.library.searchText
            onEdited: text => sidebar.library.searchText = text
        }

        Item {
            width: 1
            height: 18
        }
        SidebarSectionLabel {
            label: "LIBRARY"
        }
        SidebarNavigationList {
            width: parent.width
            choices: sidebar.library.sidebarTabs
            selectedWord: sidebar.library.selectedTab
            onChosen: word => sidebar.library.selectedTab = word
        }

        Item {
            width: 1
            height: 20
            visible: shelves.visible
        }
        SidebarSectionLabel {
            label: "STATUS"
            visible: shelves.visible
        }
        SidebarNavigationList {
            id: shelves

            width: parent.width
            visible: !sidebar.library.showsInsights
            choices: sidebar.library.sidebarShelves
            selectedWord: sidebar.library.selectedShelf
            onChosen: word => sidebar.library.selectedShelf = word
        }
    }

    Column {
        anchors.left: parent.left
        anchors.right: parent.right
        anchors.bottom: parent.bottom
        anchors.leftMargin: 16
        anchors.rightMargin: 16
        anchors.bottomMargin: 12
        spacing: 8

        SidebarUtilityButton {
            width: parent.width
            title: "Sync"
            systemImage: "arrow.triangle.2.circlepath"
            spinning: sidebar.activity.isSyncingAll
            enabled: sidebar.activity.canWork
            onClicked: sidebar.activity.synchronizeAll()
        }
        SidebarUtilityButton {
            width: parent.width
            title: "Settings"
            systemImage: "gearshape"
            onClicked: sidebar.settingsRequested()
        }
    }
}
