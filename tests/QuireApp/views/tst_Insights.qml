import QtQuick
import QtTest

import Quire

Item {
    id: root

    width: 702
    height: 500

    ReadingInsightsView {
        id: view

        anchors.fill: parent
        insights: fixture.shell.insights
    }

    InsightEmptyState {
        id: empty

        width: 300
        z: 1
        systemImage: "exclamationmark.triangle"
        title: "Book Search Failed"
        detail: "Enter at least two characters."
    }

    TestCase {
        name: "ReadingInsightsView"
        when: windowShown

        // The shown items below whose accessible name begins with that.
        function allNamed(start, item = view, found = []) {
            for (let i = 0; i < item.children.length; ++i) {
                const child = item.children[i];
                if (!child.visible)
                    continue;
                if (child.Accessible.name.startsWith(start) && !child.Accessible.ignored)
                    found.push(child);
                allNamed(start, child, found);
            }
            return found;
        }

        function inSight(item) {
            const top = item.mapToItem(root, 0, 0).y;
            return top >= 0 && top + item.height <= root.height;
        }

        function test_theKeyboardScrollsThePage() {
            view.contentY = 0;
            view.forceActiveFocus(Qt.TabFocusReason);
            keyClick(Qt.Key_Down);
            tryVerify(() => view.contentY > 50);
            keyClick(Qt.Key_Up);
            tryVerify(() => view.contentY === 0);
        }

        function test_aCardThatTheKeyboardComesToIsInSight() {
            const cards = allNamed("View details for");
            verify(cards.length > 2);
            verify(!inSight(cards[0]), "the recent finishes are at the foot");
            view.forceActiveFocus(Qt.TabFocusReason);
            for (const card of cards) {
                keyClick(Qt.Key_Tab);
                verify(card.activeFocus);
                verify(inSight(card));
            }
        }

        function test_theCardsEndWhereThePageEnds_data() {
            return [697, 700, 701, 702].map(width => ({
                        tag: width,
                        width: width
                    }));
        }

        function test_theCardsEndWhereThePageEnds(data) {
            view.anchors.fill = undefined;
            view.width = data.width;
            const left = card => card.mapToItem(view, 0, 0).x;
            const cards = ["Books Finished", "Pages Read", "Average Rating", "Active Months"].map(name => allNamed(name)[0]);
            tryVerify(() => left(cards[3]) + cards[3].width === data.width - 32);
            compare(left(cards[0]), 32);
            for (let number = 1; number < 4; ++number)
                compare(left(cards[number]) - left(cards[number - 1]) - cards[number - 1].width, 16);
            view.anchors.fill = root;
        }

        function test_aLongReasonIsReadInFull() {
            compare(empty.height, 70);
            empty.detail = "The catalogue answered in a way that is not understood. ".repeat(4);
            tryVerify(() => empty.height > 100);
            empty.detail = "A page of an error. ".repeat(5000);
            tryVerify(() => empty.height > 150 && empty.height < 250);
        }
    }
}
