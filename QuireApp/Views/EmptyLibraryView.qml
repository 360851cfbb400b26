import QtQuick

import Quire

Column {
    id: empty

    required property string label
    required property string systemImage

    spacing: 10

    SymbolPicture {
        anchors.horizontalCenter: parent.horizontalCenter
        name: empty.systemImage
        size: 34
        color: Theme.secondary
    }
    QuireText {
        anchors.horizontalCenter: parent.horizontalCenter
        text: empty.label
        size: 14
        weight: Font.DemiBold
    }
    QuireText {
        anchors.horizontalCenter: parent.horizontalCenter
        text: "Adjust the search or filter."
        color: Theme.secondary
    }
}
