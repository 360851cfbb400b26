// The foot of the grid: the page shown and its neighbours. Takes no room while
// there is one page.

import QtQuick

import Quire

Item {
    id: paging

    required property LibraryViewModel library

    implicitHeight: paging.library.showsPaging ? 18 + 28 + 8 : 8

    Row {
        anchors.horizontalCenter: parent.horizontalCenter
        anchors.top: parent.top
        anchors.topMargin: 18
        spacing: 12
        visible: paging.library.showsPaging

        BorderedButton {
            text: "Previous"
            enabled: paging.library.hasPreviousPage
            onClicked: paging.library.showPreviousPage()
        }
        QuireText {
            anchors.verticalCenter: parent.verticalCenter
            text: paging.library.pageDescription
            size: 12
        }
        BorderedButton {
            text: "Next"
            enabled: paging.library.hasNextPage
            onClicked: paging.library.showNextPage()
        }
    }
}
