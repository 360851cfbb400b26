import QtQuick
import QtTest

import Quire

Item {
    id: root

    property var pressed: []

    width: 300
    height: 200

    Flickable {
        id: page

        anchors.fill: parent
        contentHeight: column.height

        Column {
            id: column

            spacing: 30

            Repeater {
                id: buttons

                model: 10

                BorderedButton {
                    required property int index

                    text: "Button " + index
                    onClicked: root.pressed.push(index)
                }
            }
        }
        KeyboardFollower {
            page: page
        }
    }

    TestCase {
        name: "KeyboardFollower"
        when: windowShown

        function inSight(item) {
            const top = item.mapToItem(root, 0, 0).y;
            return top >= 0 && top + item.height <= root.height;
        }

        function init() {
            page.contentY = 0;
            root.pressed = [];
        }

        function test_tabBringsEachIntoSightAndBacktabToo() {
            buttons.itemAt(0).forceActiveFocus(Qt.TabFocusReason);
            for (let row = 1; row < 10; ++row) {
                keyClick(Qt.Key_Tab);
                verify(buttons.itemAt(row).activeFocus);
                verify(inSight(buttons.itemAt(row)), row);
            }
            compare(page.contentY, page.contentHeight - page.height);
            for (let row = 8; row >= 0; --row) {
                keyClick(Qt.Key_Backtab);
                verify(inSight(buttons.itemAt(row)), row);
            }
            compare(page.contentY, 0);
        }

        function test_whatIsPressedWithTheMouseStaysUnderIt() {
            const half = buttons.itemAt(3); // 174 to 202
            verify(!inSight(half));
            mouseClick(root, 20, 190);
            compare(root.pressed.join(), "3");
            compare(page.contentY, 0);
        }
    }
}
