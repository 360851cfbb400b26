import QtQuick
import QtTest

import Quire

Item {
    id: root

    width: 1180
    height: 860

    RootView {
        id: view

        anchors.fill: parent
        shell: fixture.shell
    }

    Rectangle {
        id: panel

        width: 100
        height: 100
    }

    Component {
        id: text

        QuireText {}
    }

    SignalSpy {
        id: settingsRequested

        target: view
        signalName: "settingsRequested"
    }

    TestCase {
        id: test

        name: "RootView"
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

        function initTestCase() {
            tryVerify(() => named("View details for Book 01")); // the sections follow the first frame
        }

        function init() {
            if (fixture.shell.bookDetail.isOpen) {
                fixture.shell.bookDetail.close();
                wait(200); // it takes the clicks until it has faded
            }
            fixture.shell.library.selectedTab = "insights";
            fixture.shell.library.selectedTab = "books";
            fixture.shell.library.selectedSort = "title";
            fixture.shell.library.showPreviousPage(); // a list that stayed the same keeps its page
            settingsRequested.clear();
            wait(50); // the sidebar lays its shelves out again, which are clicked on
        }

        function test_theShelfAndTheCountStandOverTheGrid() {
            verify(named("Read"));
            tryVerify(() => named("37 titles"));
        }

        function test_onePageHoldsThirtySixAndTheNextTheRest() {
            tryVerify(() => named("View details for Book 01"));
            const next = named("Next");
            verify(next.enabled);
            verify(!named("Previous").enabled);
            next.clicked();
            tryVerify(() => named("Page 2 of 2"));
            tryVerify(() => named("View details for Book 37"));
            verify(!named("Next").enabled);
            verify(named("Previous").enabled);
        }

        function test_theGridKeepsItsMeasures() {
            tryVerify(() => named("View details for Book 01"));
            const columns = 5;
            const place = number => named("View details for Book " + String(number).padStart(2, "0")).mapToItem(view, 0, 0);
            const first = named("View details for Book 01");
            compare([first.width, first.height].join(), "142,218");
            compare(place(2).x - place(1).x, 142 + 28);
            compare(place(1 + columns).x, place(1).x);
            compare(place(1 + columns).y - place(1).y, 218 + 18);
            named("Next").clicked();
            tryVerify(() => named("View details for Book 37"));
            tryVerify(() => named("Next").mapToItem(view, 0, 0).y - place(37).y === 218 + 18); // laid out anew
        }

        function test_aSectionShownAgainIsNotMadeAnew() {
            const card = named("View details for Book 01");
            for (const section of ["Audio", "Insights", "Books"])
                mouseClick(named(section));
            tryVerify(() => named("View details for Book 01"));
            compare(named("View details for Book 01"), card);
        }

        function test_anotherListIsShownByTheCardsThatAreThere() {
            const card = named("View details for Book 01");
            const menu = openMenu(card);
            named("Next").clicked(); // behind the open menu, as a sync would
            tryVerify(() => named("View details for Book 37"));
            compare(named("View details for Book 37"), card);
            tryVerify(() => !menu.opened, 5000, "it was asked of another title");
        }

        function test_aMenuGoesWithTheCardThatItWasAskedOf() {
            const menu = openMenu(named("View details for Book 01"));
            fixture.shell.library.searchText = "no such title";
            tryVerify(() => !menu.opened);
            fixture.shell.library.searchText = "";
            tryVerify(() => named("View details for Book 01"));
        }

        function openMenu(card) {
            mouseClick(card, card.width / 2, card.height / 2, Qt.RightButton);
            tryVerify(() => card.openedMenu && card.openedMenu.opened);
            return card.openedMenu;
        }

        function test_anotherSearchShelfOrOrderIsLookedAtFromItsTop_data() {
            return [
                { tag: "search", change: () => fixture.shell.library.searchText = "book" },
                { tag: "shelf", change: () => fixture.shell.library.selectedShelf = "hidden" },
                { tag: "order", change: () => fixture.shell.library.selectedSort = "rating" },
            ];
        }

        function test_anotherSearchShelfOrOrderIsLookedAtFromItsTop(row) {
            const top = () => named("37 titles") ? named("37 titles").mapToItem(view, 0, 0).y : NaN;
            const before = top();
            mouseWheel(named("View details for Book 08"), 50, 50, 0, -360);
            tryVerify(() => top() < before);
            row.change();
            tryVerify(() => named(row.tag === "shelf" ? "1 title" : "37 titles").mapToItem(view, 0, 0).y === before);
            fixture.shell.library.searchText = "";
            fixture.shell.library.selectedShelf = "read";
        }

        function test_aShelfWithOnePageShowsNoPaging() {
            mouseClick(named("Want to Read"));
            tryVerify(() => named("1 title"));
            verify(!named("Next"));
        }

        function test_aHiddenBookIsOnlyUnderHidden() {
            mouseClick(named("Hidden"));
            tryVerify(() => named("View details for Book 38"));
            verify(named("1 title"));
        }

        function test_anEmptyShelfSaysSo() {
            mouseClick(named("Did Not Finish"));
            tryVerify(() => named("No titles found"));
            verify(named("Adjust the search or filter."));
            verify(named("0 titles"));
        }

        function test_theWallIsCentredAndTheHeadingSharesItsEdges_data() {
            return [920, 1055, 1089, 1090, 1180, 1257, 1258, 1366, 1920, 2560].map(width => ({ tag: width, width: width }));
        }

        function test_theWallIsCentredAndTheHeadingSharesItsEdges(row) {
            const before = root.width;
            root.width = row.width;
            tryVerify(() => named("View details for Book 01"));
            wait(50); // the grid lays itself out
            const sidebar = 218;
            const cards = [];
            for (let number = 1; number <= 15; ++number)
                cards.push(named("View details for Book " + String(number).padStart(2, "0")).mapToItem(view, 0, 0));
            const firstRow = cards.filter(card => card.y === cards[0].y);
            const left = firstRow[0].x - sidebar;
            const right = row.width - (firstRow[firstRow.length - 1].x + 142);
            fuzzyCompare(left, right, 1);
            verify(left >= 16, "left " + left);
            verify(left < 16 + 170 / 2, "room for another column: " + left);
            for (let column = 1; column < firstRow.length; ++column)
                compare(firstRow[column].x - firstRow[column - 1].x, 142 + 28);
            compare(named("Read", named("37 titles").parent).mapToItem(view, 0, 0).x, firstRow[0].x);
            const sort = named("Sort library");
            compare(sort.mapToItem(view, sort.width, 0).x, firstRow[firstRow.length - 1].x + 142);
            root.width = before;
        }

        function test_capitalsStandInTheMiddleOfTheirLine() {
            // Lato leaves more room below than above its capitals, Inter does not.
            for (const family of ["Lato", "Inter", "TeX Gyre Heros", "TeX Gyre Pagella"]) {
                for (const size of [11, 13, 18, 22]) {
                    const words = createTemporaryObject(text, panel, { size: size, text: "EH" });
                    words.font.family = family;
                    const height = words.implicitHeight;
                    compare(height % 2, 0, family + " " + size);
                    const image = grabImage(words);
                    let top = height;
                    let bottom = 0;
                    for (let y = 0; y < height; ++y) {
                        for (let x = 0; x < words.width; ++x) {
                            if (image.red(x, y) < 200) {
                                top = Math.min(top, y);
                                bottom = Math.max(bottom, y);
                            }
                        }
                    }
                    verify(bottom - top > size / 2 && bottom - top < size, family + " was drawn");
                    fuzzyCompare((top + bottom + 1) / 2, height / 2, 1, family + " " + size);
                    words.visible = false; // the next stands in its place
                }
            }
        }

        function test_clickingACardSelectsItsTitle() {
            tryVerify(() => named("View details for Book 02"));
            mouseClick(named("View details for Book 02"));
            compare(fixture.selectedTitle(), "Book 02");
        }

        function test_arrowKeysWalkTheCoversAndReturnOpensOne() {
            tryVerify(() => named("View details for Book 01"));
            named("View details for Book 01").forceActiveFocus(Qt.TabFocusReason);
            keyClick(Qt.Key_Right);
            const second = named("View details for Book 02");
            verify(second.activeFocus);
            verify(second.visualFocus);
            keyClick(Qt.Key_Left);
            verify(named("View details for Book 01").activeFocus);
            keyClick(Qt.Key_Right);
            keyClick(Qt.Key_Return);
            compare(fixture.selectedTitle(), "Book 02");
        }

        function test_searchNarrowsAndTheClearButtonGoesWithTheText() {
            verify(!named("Clear search"));
            const field = named("Search library");
            mouseClick(field);
            for (const letter of "book 17")
                keyClick(letter);
            tryVerify(() => named("1 title"));
            mouseClick(named("Clear search"));
            tryVerify(() => named("37 titles"));
            verify(!named("Clear search"));
        }

        function test_theSortIsChosenFromItsMenu() {
            const sort = named("Sort library");
            compare(sort.text, "Title");
            sort.chosen("rating");
            compare(sort.text, "Rating");
            compare(fixture.shell.library.selectedSort, "rating");
        }

        function test_audioHasItsOwnWordsAndNoHiddenShelf() {
            mouseClick(named("Audio"));
            tryVerify(() => named("No audio titles found"));
            verify(named("Currently Listening"));
            verify(!named("Hidden"));
            verify(named("Search library & Audible"));
        }

        function test_insightsShowNoShelvesAndNoSort() {
            mouseClick(named("Insights"));
            tryVerify(() => named("Your reading activity"));
            verify(named("Nothing in progress"));
            verify(!named("Want to Read"));
            verify(!named("Sort library"));
            verify(!named("No finished titles yet")); // there are some
        }

        function test_theSettingsButtonAsksForTheSettings() {
            const button = named("Settings");
            button.forceActiveFocus(Qt.TabFocusReason);
            keyClick(Qt.Key_Return);
            keyClick(Qt.Key_Space);
            compare(settingsRequested.count, 2);
        }

        function test_aToastComesAndGoes() {
            fixture.showToast("Synced 2 Goodreads titles");
            const window = root.Window.contentItem; // over all that is in the view
            tryVerify(() => named("Synced 2 Goodreads titles", window));
            fixture.showToast("");
            tryVerify(() => !named("Synced 2 Goodreads titles", window));
        }

        function test_aNoticeIsDismissedByEscapeAndByReturn() {
            for (const key of [Qt.Key_Escape, Qt.Key_Return]) {
                fixture.showNotice("Goodreads Sync Failed", "The server said no.");
                const alert = findChild(view, "noticeAlert");
                tryVerify(() => alert.opened);
                keyClick(key);
                tryVerify(() => !fixture.hasNotice());
                tryVerify(() => !alert.visible);
            }
        }

        function test_zz_theSoftwareRendererShowsCoversAndSidebar() {
            tryVerify(() => named("View details for Book 01"));
            wait(100);
            const image = grabImage(view);
            const card = named("View details for Book 01");
            const place = card.mapToItem(view, 71, 200);
            verify(image.pixel(place.x, place.y) !== image.pixel(1170, 850), "a placeholder differs from the window");
            verify(Qt.colorEqual(image.pixel(10, 700), "#264f47"), "the sidebar is Pine: " + image.pixel(10, 700));
        }
    }
}
