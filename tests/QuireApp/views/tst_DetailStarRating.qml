import QtQuick
import QtTest

import Quire

Item {
    id: root

    property double rating: 0

    width: 400
    height: 120

    DetailStarRating {
        id: stars

        x: 20
        y: 20
        title: "My Rating"
        rating: root.rating
        onRated: rating => root.rating = rating
    }

    TestCase {
        name: "DetailStarRating"
        when: windowShown

        function named(name, item = stars) {
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
        function half(value) {
            return named("Set rating to " + value);
        }
        // The symbols of the five stars.
        function drawn() {
            const names = [];
            const collect = item => {
                for (let i = 0; i < item.children.length; ++i) {
                    const child = item.children[i];
                    if (String(child).startsWith("quire::SymbolPicture") && child.size === 24)
                        names.push(child.name.replace("star.leadinghalf.filled", "half").replace("star.fill", "full"));
                    collect(child);
                }
            };
            collect(stars);
            return names.join(" ");
        }
        function init() {
            root.rating = 0;
            mouseMove(root, 390, 110);
        }

        function test_aSecondClickOnTheSameHalfClears() {
            root.rating = 3;
            mouseClick(half("3"));
            compare(root.rating, 0);
            mouseClick(half("2.5"));
            compare(root.rating, 2.5);
            mouseMove(root, 390, 110);
            compare(drawn(), "full full half star star");
            verify(named("2.5 stars"));
        }

        function test_oneIsAStarAndEveryOtherNumberStars() {
            verify(named("Unrated"));
            root.rating = 1;
            verify(named("1 star"));
            root.rating = 1.5;
            verify(named("1.5 stars"));
            root.rating = 0.5;
            verify(named("0.5 stars"));
        }

        function test_thePointerShowsWhatItWouldGiveAndTheWordsWhatIs() {
            root.rating = 2;
            mouseMove(half("5"));
            compare(drawn(), "full full full full full");
            verify(named("2 stars"));
            mouseMove(root, 390, 110);
            compare(drawn(), "full full star star star");
        }

        function test_thePointerMayGoFromHalfToHalf() {
            for (const value of ["4.5", "5", "4.5", "4"]) {
                mouseMove(half(value));
                compare(stars.hoverRating, Number(value));
            }
            compare(drawn(), "full full full full star");
            mouseMove(root, 390, 110);
            compare(stars.hoverRating, -1);
        }

        function test_aRatingIsToldWithOneDecimalAtMost() {
            root.rating = 2.04; // as a feed may have it
            verify(named("2 stars"));
            root.rating = 3.25;
            verify(named("3.3 stars"));
        }

        function test_aRatingCanBeClearedOnlyWhileThereIsOne() {
            verify(!named("Clear rating"));
            root.rating = 4;
            mouseClick(named("Clear rating"));
            compare(root.rating, 0);
            verify(!named("Clear rating"));
        }

        function test_whoClearsByTheKeyboardStaysAtTheStars() {
            root.rating = 4;
            named("My Rating").forceActiveFocus(Qt.TabFocusReason);
            keyClick(Qt.Key_Tab);
            verify(named("Clear rating").activeFocus);
            keyClick(Qt.Key_Return);
            compare(root.rating, 0);
            verify(named("My Rating").activeFocus);
        }

        function test_whatStandsBesideTheStarsStaysWhenThereIsARating() {
            const width = stars.width;
            root.rating = 4;
            wait(50); // the row takes its width
            compare(stars.width, width);
        }

        function test_aHalfIsFourteenWideAndThirtyHigh() {
            compare(half("3.5").width, 14);
            compare(half("3.5").height, 30);
            compare(half("4").mapToItem(half("3.5"), 0, 0).x, 14);
        }

        function test_theChosenHalfSaysSo() {
            root.rating = 3.5;
            compare(half("3.5").Accessible.description, "Selected");
            compare(half("3").Accessible.description, "");
        }

        function test_theArrowsGoByHalvesAndStopAtTheEnds() {
            named("My Rating").forceActiveFocus();
            keyClick(Qt.Key_Left);
            compare(root.rating, 0);
            keyClick(Qt.Key_Right);
            keyClick(Qt.Key_Up);
            keyClick(Qt.Key_Right);
            compare(root.rating, 1.5);
            keyClick(Qt.Key_5);
            keyClick(Qt.Key_Right);
            compare(root.rating, 5);
            keyClick(Qt.Key_Delete);
            compare(root.rating, 0);
        }
    }
}
