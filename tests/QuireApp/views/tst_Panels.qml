import QtQuick
import QtQuick.Templates as T
import QtTest

import Quire

// What stands over the library, and the way there and back by the keyboard.
Item {
    id: root

    width: 1180
    height: 860

    RootView {
        id: view

        anchors.fill: parent
        shell: fixture.shell
    }

    SignalSpy {
        id: toastVisible

        signalName: "visibleChanged"
    }

    TestCase {
        name: "Panels"
        when: windowShown

        // The first shown item below whose accessible name is that.
        function named(name, item = root.Window.contentItem) {
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

        function initTestCase() {
            fixture.shell.library.selectedTab = "insights";
            fixture.shell.library.selectedTab = "books";
            fixture.shell.library.selectedSort = "title";
            tryVerify(() => named("View details for Book 01")); // the sections follow the first frame
        }

        function cleanup() {
            view.showsAddBook = false;
            view.showsAddAudiobook = false;
            if (fixture.shell.bookDetail.isOpen)
                fixture.shell.bookDetail.close();
            fixture.showToast("");
            tryVerify(() => !named("Close"));
            fixture.shell.library.selectedTab = "insights";
            fixture.shell.library.selectedTab = "books";
        }

        function openBook(name) {
            fixture.shell.library.openBook(named("View details for " + name).rowId);
        }

        function test_controlFBringsTheKeyboardToTheSearch() {
            const field = named("Search library");
            verify(!field.activeFocus);
            keyClick(Qt.Key_F, Qt.ControlModifier);
            verify(field.activeFocus);
            for (const letter of "book 17")
                keyClick(letter);
            tryVerify(() => named("1 title"));
            named("View details for Book 17").forceActiveFocus(Qt.TabFocusReason);
            keyClick(Qt.Key_F, Qt.ControlModifier);
            verify(field.activeFocus);
            compare(field.selectedText, "book 17");
        }

        function test_aPanelKeepsTheKeyboard() {
            openBook("Book 01");
            tryVerify(() => named("Save Changes"));
            wait(200);
            keyClick(Qt.Key_F, Qt.ControlModifier);
            verify(!named("Search library").activeFocus);
        }

        function test_escapeClosesAPanelAndTheKeyboardIsWhereItWas() {
            tryVerify(() => named("View details for Book 02"));
            const card = named("View details for Book 02");
            card.forceActiveFocus(Qt.TabFocusReason);
            keyClick(Qt.Key_Return);
            tryVerify(() => named("Save Changes"));
            keyClick(Qt.Key_Escape);
            tryVerify(() => !named("Save Changes"));
            compare(fixture.selectedTitle(), "");
            tryVerify(() => card.visualFocus); // and the reader sees where
        }

        function test_aMenuGivesTheKeyboardBack() {
            const sort = named("Sort library");
            sort.forceActiveFocus(Qt.TabFocusReason);
            keyClick(Qt.Key_Space);
            tryVerify(() => !sort.activeFocus);
            keyClick(Qt.Key_Escape);
            tryVerify(() => sort.visualFocus);
        }

        function test_whatTheMouseOpenedGivesTheKeyboardBackWithoutARing() {
            const card = named("View details for Book 04");
            mouseClick(card);
            tryVerify(() => named("Save Changes"));
            wait(200);
            keyClick(Qt.Key_Escape);
            tryVerify(() => card.activeFocus);
            verify(!card.visualFocus);
        }

        function test_thePanelsHaveTheirTitlesAndTheirHeader() {
            view.showsAddAudiobook = true;
            tryVerify(() => named("Add an audiobook manually") || named("Title, author, narrator, or series"));
            verify(named("Add Audiobook"));
            const close = named("Close");
            compare([close.width, close.height].join(), "11,11");
            mouseClick(close);
            tryVerify(() => !named("Close"));
            verify(!view.showsAddAudiobook);
        }

        function test_theHeaderHasAnEdge() {
            openBook("Book 01");
            tryVerify(() => named("Save Changes"));
            wait(250); // it has faded in
            const dialog = named("Close").parent.parent; // the header
            compare(dialog.height, 38);
            const place = dialog.mapToItem(root, dialog.width / 2, 37);
            compare(String(grabImage(root).pixel(place.x, place.y)), String(Theme.accentTint(0.3)));
        }

        function test_anOpenBookComesFirstAndWhatWasBehindItAfterwards() {
            view.showsAddBook = true;
            tryVerify(() => named("Title, author, or ISBN"));
            openBook("Book 03");
            tryVerify(() => named("Save Changes"));
            tryVerify(() => !named("Title, author, or ISBN"));
            verify(view.showsAddBook);
            wait(200);
            keyClick(Qt.Key_Escape);
            tryVerify(() => named("Title, author, or ISBN"));
            compare(fixture.selectedTitle(), "");
            wait(200);
            keyClick(Qt.Key_Escape);
            tryVerify(() => !named("Title, author, or ISBN"));
            verify(!view.showsAddBook);
        }

        function test_aToastStandsOverThePanel() {
            openBook("Book 01");
            tryVerify(() => named("Save Changes"));
            fixture.showToast("Goodreads sync failed");
            tryVerify(() => named("Goodreads sync failed"));
            const toast = named("Goodreads sync failed").parent;
            tryCompare(toast, "opacity", 1);
            tryVerify(() => toast.y === root.height - 24 - toast.height); // 24 from the foot
            fuzzyCompare(toast.x, (root.width - toast.width) / 2, 1);
            const place = toast.mapToItem(root, 10, toast.height / 2);
            verify(grabImage(root).red(place.x, place.y) > 235, "not dimmed with the library");
        }

        function test_aToastInThePlaceOfAnotherComesUpAnew() {
            fixture.showToast("Book hidden");
            tryVerify(() => named("Book hidden"));
            toastVisible.target = named("Book hidden");
            toastVisible.clear();
            fixture.showToast("Book restored to the library");
            compare(toastVisible.count, 2);
            verify(named("Book restored to the library"));
        }

        function test_theHeadingRowHasItsMeasures() {
            const add = named("Add Book");
            const sort = named("Sort library");
            compare(add.height, 24); // a small one
            compare([sort.width, sort.height].join(), "96,24");
            compare(sort.mapToItem(root, 0, 0).x - add.mapToItem(root, add.width, 0).x, 12);
        }

        function test_theSearchResultKeepsItsSpacing() {
            fixture.shell.library.selectedTab = "audio";
            const top = item => item.mapToItem(root, 0, 0).y;
            tryVerify(() => named("Add Audiobook"));
            const head = top(named("Add Audiobook"));
            fixture.shell.library.searchText = "zz";
            tryVerify(() => named("In Your Library"));
            const row = named("Add Audiobook").parent;
            const mine = named("In Your Library").parent;
            const none = named("No matching titles in your library.").parent;
            const theirs = named("Audible").parent;
            tryVerify(() => top(none) > top(mine) && top(mine) > top(row)); // they are laid out
            compare(top(named("Add Audiobook")), head); // what is new comes below
            compare(top(mine) - top(row) - row.height, 16 + 6);
            compare(top(none) - top(mine) - mine.height, 24);
            compare(top(theirs) - top(none) - none.height, 24);
            verify(named("Searching Audible…"));
            fixture.shell.library.searchText = " z "; // one letter is no search
            tryVerify(() => !named("In Your Library"));
            verify(named("No audio titles found"));
        }
    }
}
