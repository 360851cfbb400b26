import QtQuick

import Quire

SettingsSection {
    id: tab

    required property AppearanceViewModel appearance
    required property bool isReady

    firstField: sidebar
    title: "Appearance"
    systemImage: "paintpalette"

    SettingsField {
        width: parent.width
        title: "Sidebar"

        MenuChoice {
            id: sidebar

            width: 200
            height: 34
            enabled: tab.isReady
            accessibleLabel: "Sidebar"
            choices: tab.appearance.sidebars
            selectedWord: tab.appearance.sidebarAppearance
            onChosen: word => tab.appearance.chooseSidebar(word)
        }
    }
    SettingsField {
        width: parent.width
        title: "App Font"

        MenuChoice {
            width: 200
            height: 34
            enabled: tab.isReady
            accessibleLabel: "App Font"
            choices: tab.appearance.fonts
            selectedWord: tab.appearance.interfaceFont
            onChosen: word => tab.appearance.chooseFont(word)
        }
    }
    SettingsField {
        width: parent.width
        title: "Accent Color"

        Item {
            width: parent.width
            height: 34

            AccentSwatchRow {
                x: 4 // the ring of the first stands at the edge of the fields
                anchors.verticalCenter: parent.verticalCenter
                enabled: tab.isReady
                appearance: tab.appearance
            }
        }
    }
    SettingsNote {
        text: "Quire uses the Nordic Snow, Fjord, Pine, and Cabin palette for both accents and sidebars; Glass remains available for the sidebar. The color wheel accepts any custom accent."
    }
}
