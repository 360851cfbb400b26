import QtQuick
import QtTest

import Quire

Item {
    width: 920
    height: 200

    ApplicationMenuBar {
        id: bar

        width: parent.width
        shell: fixture.shell
    }

    TestCase {
        name: "ApplicationMenuBar"
        when: windowShown

        function menu(title) {
            for (let i = 0; i < bar.count; ++i)
                if (bar.menuAt(i).title.replace("&", "") === title)
                    return bar.menuAt(i);
            return null;
        }

        function item(menuTitle, text) {
            const entries = menu(menuTitle);
            for (let i = 0; i < entries.count; ++i)
                if (entries.itemAt(i).text === text)
                    return entries.itemAt(i);
            return null;
        }

        function entriesOf(subMenu) {
            const entries = [];
            for (let i = 0; i < subMenu.count; ++i)
                entries.push(subMenu.itemAt(i));
            return entries;
        }

        function init() {
            fixture.shell.library.selectedTab = "insights";
            fixture.shell.library.selectedTab = "books";
        }

        function test_onInsightsOnlyTheSectionCanBeChosen() {
            const needBooks = ["Library View", "Sort Library", "Next Library Page"];
            for (const text of needBooks)
                verify(item("View", text).enabled, text);
            fixture.shell.library.selectedTab = "insights";
            for (const text of needBooks.concat("Previous Library Page"))
                verify(!item("View", text).enabled, text);
            verify(item("View", "Library Section").enabled);
        }

        function test_thePageCommandsStopAtTheEnds() {
            verify(!item("View", "Previous Library Page").enabled);
            item("View", "Next Library Page").triggered();
            compare(fixture.shell.library.pageDescription, "Page 2 of 2");
            verify(!item("View", "Next Library Page").enabled);
            item("View", "Previous Library Page").triggered();
            compare(fixture.shell.library.pageDescription, "Page 1 of 2");
        }

        function test_aChoiceIsCheckedAndMakesItself() {
            const shelves = entriesOf(item("View", "Library View").subMenu);
            compare(shelves.filter(shelf => shelf.checked).map(shelf => shelf.text).join(), "Read");
            shelves.find(shelf => shelf.text === "Want to Read").triggered();
            compare(fixture.shell.library.selectedShelf, "to-read");
            compare(shelves.filter(shelf => shelf.checked).map(shelf => shelf.text).join(), "Want to Read");
            compare(entriesOf(item("View", "Sort Library").subMenu).map(sort => sort.text).join(), "Recent,Title,Rating");
            compare(entriesOf(item("View", "Library Section").subMenu).map(tab => tab.text).join(), "Books,Insights,Audio");
        }
    }
}
