import QtQuick
import QtQuick.Templates as T
import QtTest

import Quire

Item {
    id: root

    width: 300
    height: 100

    component Page: Flickable {
        id: page

        property alias staysAboveMore: bar.staysAboveMore
        property alias lines: text.height

        width: 150
        height: 100
        contentHeight: text.height

        Rectangle {
            id: text

            width: 150
            height: 300
        }

        T.ScrollBar.vertical: QuireScrollBar {
            id: bar
        }
    }

    Page {
        id: page

        staysAboveMore: true
    }
    Page {
        id: wall

        x: 150
    }

    TestCase {
        name: "QuireScrollBar"
        when: windowShown

        function isShown(page) {
            const colour = grabImage(root).pixel(page.x + 144, page.contentY === 0 ? 10 : 90);
            return !Qt.colorEqual(colour, "white");
        }

        function init() {
            page.contentY = 0;
            page.lines = 300;
            wall.contentY = 0;
            mouseMove(root, 20, 50);
        }

        function test_itStaysWhileThereIsMoreBelow() {
            wait(1200); // it would have faded
            verify(isShown(page));
            page.contentY = 200;
            tryVerify(() => !isShown(page), 3000);
            page.contentY = 0;
            tryVerify(() => isShown(page));
        }

        function test_itIsNotThereWhenAllIsInSight() {
            page.lines = 90;
            wait(0);
            tryVerify(() => !isShown(page));
        }

        function test_ordinarilyItFadesWhenNothingMoves() {
            tryVerify(() => !isShown(wall), 3000);
        }
    }
}
