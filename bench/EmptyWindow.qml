import QtQuick

Window {
    id: window

    property string word

    title: "Empty"
    width: 1180
    height: 860
    visible: true

    Text {
        visible: text.length > 0
        text: window.word
    }
}
