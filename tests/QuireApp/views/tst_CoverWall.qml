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
                if (!child.visible)
                    continue;
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
            search("");
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

        function search(text) {
            fixture.shell.library.searchText = text;
        }

        function test_aSearchThatFindsNothingLeavesNoCardForAnybody() {
            const card = named("Book 01");
            search("no such title");
            tryVerify(() => wall.isEmpty);
            verify(!card.visible, "a screen reader would find it");
            search("");
            tryVerify(() => named("Book 01") && named("Book 15"));
        }

        function test_theCardsAreToldInTheOrderOfTheirTitles() {
            for (let round = 0; round < 3; ++round) {
                search("no such title");
                tryVerify(() => wall.isEmpty);
                search("");
                tryVerify(() => named("Book 15"));
                const cards = named("Book 01").parent.children;
                const told = [];
                for (let i = 0; i < cards.length; ++i) {
                    if (cards[i].Accessible.name.startsWith("Book"))
                        told.push(cards[i].Accessible.name);
                }
                compare(told.join(), told.slice().sort().join());
            }
        }

        function test_aCardThatGoesKeepsNoKeyboardFromTheOneInItsPlace() {
            const card = named("Book 05");
            card.forceActiveFocus(Qt.TabFocusReason);
            verify(card.visualFocus);
            search("no such title");
            tryVerify(() => wall.isEmpty);
            verify(!card.activeFocus);
            search("");
            tryVerify(() => named("Book 01") && named("Book 01").visualFocus);
            for (let number = 2; number <= 15; ++number)
                verify(!named("Book " + String(number).padStart(2, "0")).visualFocus, number);
        }

        function test_aCardThatComesBackIsNotLiftedByThePointerOfThen() {
            const card = named("Book 01");
            mouseMove(card, 60, 60);
            tryCompare(card, "scale", 1.025);
            search("no such title");
            tryVerify(() => wall.isEmpty);
            mouseMove(root, 2, 2);
            search("");
            tryVerify(() => named("Book 01"));
            wait(50);
            for (let number = 1; number <= 15; ++number) {
                const shown = named("Book " + String(number).padStart(2, "0"));
                verify(!shown.hovered, number);
                tryCompare(shown, "scale", 1);
            }
        }
    }
}
