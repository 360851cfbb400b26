// The field of a catalogue search with its button.

import QtQuick

import Quire

Item {
    id: bar

    required property CatalogSearch search
    required property string placeholder

    function focusField() {
        field.forceActiveFocus();
        field.selectAll();
    }

    implicitHeight: 42

    QuireTextField {
        id: field

        anchors.left: parent.left
        anchors.right: button.left
        anchors.rightMargin: 10
        height: parent.height
        leftPadding: 36
        placeholderText: bar.placeholder
        text: bar.search.query
        onTextEdited: bar.search.query = text
        onAccepted: bar.search.search()

        SymbolPicture {
            x: 13
            anchors.verticalCenter: parent.verticalCenter
            name: "magnifyingglass"
            size: 14
            color: Theme.secondary
        }
    }
    CatalogControlButton {
        id: button

        anchors.right: parent.right
        prominent: true
        text: "Search"
        enabled: !bar.search.isSearching
        onClicked: bar.search.search()
    }
}
