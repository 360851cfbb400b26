import QtQuick

Window {
    id: window

    property string word

    title: "Empty"
    width: 1180
    height: 860
    visible: true

    Loader {
        active: window.word.length > 0
        sourceComponent: Text {
            text: window.word
        }
    }
}
