import QtQuick
import QtTest

import Quire

Item {
    id: root

    width: 876
    height: 640

    AddBookView {
        id: view

        anchors.fill: parent
        draft: fixture.shell.addBook
    }

    SignalSpy {
        id: closed

        target: view
        signalName: "closed"
    }

    TestCase {
        name: "AddBookView"
        when: windowShown

        function allNamed(name, item = view, found = []) {
            for (let i = 0; i < item.children.length; ++i) {
                const child = item.children[i];
                if (!child.visible)
                    continue;
                if (child.Accessible.name === name && !child.Accessible.ignored)
                    found.push(child);
                allNamed(name, child, found);
            }
            return found;
        }

        function named(name) {
            const found = allNamed(name);
            verify(found.length > 0, name);
            return found[0];
        }

        function init() {
            fixture.shell.addBook.reset();
            closed.clear();
            wait(20); // it takes the keyboard to the field
        }

        function test_itBeginsWithASearchThatHasTheKeyboard() {
            verify(named("Title, author, or ISBN").activeFocus);
            for (const words of ["Search Open Library, then add a title to the appropriate shelf.", "Enter Manually",
                    "Search for a Book", "Enter at least two characters to search Open Library."])
                named(words);
            keyClick("g");
            keyClick(Qt.Key_Return);
            named("Book Search Failed");
            named("Enter at least two characters.");
        }

        function test_theButtonsHaveTheirMeasures() {
            const search = named("Search");
            compare([search.width, search.height].join(), "118,42");
            compare(named("Title, author, or ISBN").height, 42);
            const edge = search.mapToItem(root, 0, 21);
            verify(Qt.colorEqual(grabImage(root).pixel(edge.x, edge.y), Theme.accent), "filled to its edge");
            fixture.shell.addBook.entersManually = true;
            compare([named("Cancel").width, named("Cancel").height].join(), "126,42");
        }

        function test_everyResultIsReachedByTabAndSeen() {
            fixture.serveBooks(8);
            for (const letter of "found")
                keyClick(letter);
            keyClick(Qt.Key_Return);
            tryVerify(() => allNamed("Want to Read").length === 8);
            const buttons = [];
            for (let row = 0; row < 8; ++row)
                for (const name of ["Add as Read", "Add as Reading", "Want to Read"])
                    buttons.push(allNamed(name)[row]);
            buttons[0].forceActiveFocus(Qt.TabFocusReason);
            for (let number = 0; number < buttons.length; ++number) {
                verify(buttons[number].activeFocus, number);
                const top = buttons[number].mapToItem(root, 0, 0).y;
                verify(top > 170 && top + 28 <= root.height - 24, number + " is at " + top);
                keyClick(Qt.Key_Tab);
            }
        }

        function test_byHandTheTitleHasTheKeyboardAndBothNamesAreRequired() {
            mouseClick(named("Enter Manually"));
            tryVerify(() => named("Title").activeFocus);
            named("Use this when a title is not available in the book catalog.");
            compare(named("Title").Accessible.description, "Required");
            compare(named("Author").Accessible.description, "Required");
            for (const optional of ["ISBN", "Pages", "Year"])
                compare(named(optional).Accessible.description, "Optional");
            verify(!named("Add Book").enabled);
            keyClick("x");
            verify(!named("Add Book").enabled);
            mouseClick(named("Author"));
            keyClick(" ");
            verify(!named("Add Book").enabled);
            keyClick("y");
            verify(named("Add Book").enabled);
            mouseClick(named("Cancel"));
            compare(closed.count, 1);
        }

        function test_byHandTabGoesFromTheNotesToTheButtonsAndBack() {
            mouseClick(named("Enter Manually"));
            tryVerify(() => named("Title").activeFocus);
            for (const letter of "xy")
                keyClick(letter);
            keyClick(Qt.Key_Tab);
            keyClick("z");
            tryVerify(() => named("Add Book").enabled);
            mouseClick(named("Summary"));
            for (const next of ["Notes", "Cancel", "Add Book"]) {
                keyClick(Qt.Key_Tab);
                verify(named(next).activeFocus, next);
            }
            for (const last of ["Cancel", "Notes", "Summary", "Reading Status"]) {
                keyClick(Qt.Key_Backtab, Qt.ShiftModifier);
                verify(named(last).activeFocus, last);
            }
        }
    }
}
