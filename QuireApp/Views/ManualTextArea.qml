// A title over several lines of text.

import QtQuick
import QtQuick.Templates as T

import Quire

Column {
    id: area

    required property string title
    required property int editorHeight
    property string text
    property int titleWeight: Font.Normal
    property int textSize: 13
    property int inset: 5 // between the edge and what moves
    property color edge: Theme.faded(Theme.hairline, 0.8)

    signal edited(string text)

    spacing: 5

    QuireText {
        text: area.title
        size: 11
        weight: area.titleWeight
        color: Theme.secondary
        Accessible.ignored: true
    }
    Rectangle {
        width: parent.width
        height: area.editorHeight
        radius: 7
        color: Theme.field
        border.width: editor.activeFocus ? 2 : 1
        border.color: editor.activeFocus ? Theme.mark : area.edge

        Flickable {
            id: scroller

            anchors.fill: parent
            anchors.margins: area.inset
            contentHeight: editor.implicitHeight
            boundsBehavior: Flickable.StopAtBounds
            interactive: contentHeight > height
            clip: true

            T.TextArea.flickable: T.TextArea {
                id: editor

                // What the reader types, and nothing that is put here for them.
                property bool isFollowing: false

                leftPadding: 5
                rightPadding: 5
                topPadding: 3
                bottomPadding: 3
                wrapMode: TextEdit.Wrap
                textFormat: TextEdit.PlainText
                selectByMouse: true
                font.family: Theme.fontFamily
                font.pixelSize: area.textSize
                color: Theme.ink
                selectionColor: Theme.mark
                selectedTextColor: "white"
                onTextChanged: if (!editor.isFollowing) area.edited(editor.text)
                // The neighbours are asked for when they are wanted: they come and go with the form.
                Keys.priority: Keys.BeforeItem
                Keys.onTabPressed: editor.nextItemInFocusChain(true).forceActiveFocus(Qt.TabFocusReason)
                Keys.onBacktabPressed: editor.nextItemInFocusChain(false).forceActiveFocus(Qt.BacktabFocusReason)

                Accessible.name: area.title
            }

            T.ScrollBar.vertical: QuireScrollBar {}
        }
    }

    function follow() {
        if (editor.text === area.text)
            return;
        editor.isFollowing = true;
        editor.text = area.text;
        editor.isFollowing = false;
    }

    onTextChanged: area.follow()
    Component.onCompleted: area.follow()
}
