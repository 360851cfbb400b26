import QtQuick
import QtTest

import Quire

Item {
    id: root

    width: 800
    height: 600

    Item {
        id: head

        implicitHeight: 40
    }
    Item {
        id: foot

        implicitHeight: 30
    }
    CoverWall {
        id: wall

        anchors.fill: parent
        titles: fixture.shell.library.books
        head: head
        foot: foot
        card: LibraryCard {
            id: card

            accessibleName: card.title
            Keys.onPressed: event => wall.handleKey(event, card.index)
        }
    }

    TestCase {
        name: "CoverWall"
        when: windowShown

        function named(name, item = wall) {
            for (let i = 0; i < item.children.length; ++i) {
                const child = item.children[i];
                const found = child.Accessible.name === name ? child : named(name, child);
                if (found)
                    return found;
            }
            return null;
        }

        function topOf(item) {
            return item.mapToItem(root, 0, 0).y;
        }

        function init() {
            fixture.shell.library.selectedTab = "insights";
            fixture.shell.library.selectedTab = "books";
            fixture.shell.library.selectedSort = "title";
            head.implicitHeight = 40;
            wall.showTop();
            tryVerify(() => named("Book 01"));
            tryVerify(() => topOf(head) === 16);
        }

        function test_aHeadThatGrowsWhileItIsLookedAtGrowsDownwards() {
            const first = named("Book 01");
            const before = topOf(first);
            head.implicitHeight = 86;
            tryVerify(() => topOf(first) === before + 46);
            compare(topOf(head), 16);
        }

        function test_aHeadThatGrowsOutOfSightMovesNoCover() {
            const first = named("Book 01");
            first.forceActiveFocus(Qt.TabFocusReason);
            keyClick(Qt.Key_End);
            tryVerify(() => named("Book 36") && topOf(named("Book 36")) > 0 && topOf(named("Book 36")) < root.height);
            wait(50);
            const before = topOf(named("Book 36"));
            head.implicitHeight = 86;
            wait(50);
            compare(topOf(named("Book 36")), before);
        }
    }
}
