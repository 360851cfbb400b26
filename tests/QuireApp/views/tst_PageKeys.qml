import QtQuick
import QtTest

import Quire

// The keys that turn pages, wherever the keyboard is.
Item {
    id: root

    width: 1180
    height: 860

    RootView {
        id: view

        anchors.fill: parent
        shell: fixture.shell
    }

    TestCase {
        name: "PageKeys"
        when: windowShown

        // The first shown item below whose accessible name is that.
        function named(name, item = view) {
            for (let i = 0; i < item.children.length; ++i) {
                const child = item.children[i];
                if (!child.visible)
                    continue;
                if (child.Accessible.name === name && !child.Accessible.ignored)
                    return child;
                const found = named(name, child);
                if (found)
                    return found;
            }
            return null;
        }

        function book(number) {
            return named("View details for Book " + String(number).padStart(2, "0"));
        }

        function hasKeyboard(number) {
            return book(number) !== null && book(number).activeFocus;
        }

        function topOf(name) {
            return named(name).mapToItem(view, 0, 0).y;
        }

        function inSight(item) {
            const top = item.mapToItem(view, 0, 0).y;
            return top >= 0 && top + item.height <= view.height;
        }

        function initTestCase() {
            fixture.shell.library.selectedTab = "insights";
            fixture.shell.library.selectedTab = "books";
            fixture.shell.library.selectedSort = "title";
            tryVerify(() => book(1)); // the sections follow the first frame
        }

        function test_theWallIsTurnedFromTheSidebar_data() {
            return [
                {
                    tag: "Settings"
                },
                {
                    tag: "Search library"
                }
            ];
        }

        function test_theWallIsTurnedFromTheSidebar(data) {
            fixture.shell.library.selectedTab = "insights";
            fixture.shell.library.selectedTab = "books";
            wait(50); // the sidebar lays its shelves out again
            named(data.tag).forceActiveFocus(Qt.TabFocusReason);
            const start = topOf("37 titles");
            verify(start > 0);
            keyClick(Qt.Key_PageDown);
            tryVerify(() => topOf("37 titles") < start - view.height / 2);
            keyClick(Qt.Key_PageUp);
            tryVerify(() => topOf("37 titles") === start);
            keyClick(Qt.Key_PageUp);
            compare(topOf("37 titles"), start);
            for (let turn = 0; turn < 6; ++turn)
                keyClick(Qt.Key_PageDown);
            tryVerify(() => inSight(named("Next")));
            verify(named(data.tag).activeFocus);
        }

        function test_atACoverTheKeyboardGoesAlong() {
            fixture.shell.library.selectedTab = "insights";
            fixture.shell.library.selectedTab = "books";
            wait(50); // the wall lays its cards out again
            book(2).forceActiveFocus(Qt.TabFocusReason);
            keyClick(Qt.Key_PageDown); // three rows of five are in sight
            tryVerify(() => hasKeyboard(17));
            tryVerify(() => inSight(book(17)));
            keyClick(Qt.Key_End);
            tryVerify(() => hasKeyboard(36));
            tryVerify(() => inSight(book(36)));
            keyClick(Qt.Key_PageDown);
            tryVerify(() => hasKeyboard(36));
            for (let turn = 0; turn < 3; ++turn)
                keyClick(Qt.Key_PageUp);
            tryVerify(() => hasKeyboard(1)); // of the same column
            keyClick(Qt.Key_PageDown);
            keyClick(Qt.Key_Home);
            tryVerify(() => hasKeyboard(1));
            tryVerify(() => topOf("37 titles") > 0);
        }

        function test_theInsightsAreTurnedFromTheSidebar() {
            fixture.shell.library.selectedTab = "insights";
            tryVerify(() => named("Your reading activity"));
            named("Settings").forceActiveFocus(Qt.TabFocusReason);
            const start = topOf("Your reading activity");
            keyClick(Qt.Key_End);
            tryVerify(() => topOf("Your reading activity") < start - 100);
            keyClick(Qt.Key_Home);
            tryVerify(() => topOf("Your reading activity") === start);
            fixture.shell.library.selectedTab = "books";
        }
    }
}
