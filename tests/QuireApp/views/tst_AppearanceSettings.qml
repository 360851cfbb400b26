import QtQuick
import QtTest

import Quire

Item {
    id: root

    width: 820
    height: 620

    QuireSettingsView {
        id: view

        anchors.fill: parent
        settings: fixture.shell.settings
        appearance: fixture.shell.appearance
        canWork: true
    }

    SignalSpy {
        id: presented

        target: fixture.shell.colorPanel
        signalName: "presented"
    }

    TestCase {
        name: "AppearanceSettingsTab"
        when: windowShown

        readonly property AppearanceViewModel appearance: fixture.shell.appearance
        readonly property var swatchNames: ["Snow", "Fjord", "Pine", "Cabin", "Custom Color"]

        // The visible controls of that name, in the order of the page.
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

        function menu(name) {
            return allNamed(name).find(item => item instanceof MenuChoice);
        }

        function swatch(name) {
            return allNamed(name).find(item => item instanceof AccentSwatch);
        }

        // All that is drawn below an item and seen.
        function drawn(item, found = []) {
            for (let i = 0; i < item.children.length; ++i) {
                const child = item.children[i];
                if (child.visible) {
                    found.push(child);
                    drawn(child, found);
                }
            }
            return found;
        }

        function init() {
            fixture.store("sidebarAppearance", "snow");
            fixture.store("interfaceFont", "avenirNext");
            fixture.store("accentColor", "fjord");
            fixture.store("usesCustomAccentColor", "0");
            fixture.store("customAccentRed", "0.2");
            fixture.store("customAccentGreen", "0.4");
            fixture.store("customAccentBlue", "0.6");
            fixture.shell.settings.load();
            fixture.shell.settings.selectedTab = "appearance";
            presented.clear();
        }

        function cleanup() {
            fixture.shell.colorPanel.detach();
            fixture.pass(1000);
            fixture.settle();
        }

        function test_appearanceIsTheFirstTab() {
            const tabs = fixture.shell.settings.tabs;
            const titles = [];
            for (let row = 0; row < tabs.count; ++row)
                titles.push(tabs.titleOf(tabs.wordAt(row)));
            compare(titles, ["Appearance", "Libraries", "Goodreads", "Publishing", "Data"]);
        }

        function test_theTabHasItsFieldsAndItsNote() {
            for (const words of ["Appearance", "Sidebar", "App Font", "Accent Color",
                    "Quire uses the Nordic Snow, Fjord, Pine, and Cabin palette for both accents and sidebars; Glass remains available for the sidebar. The color wheel accepts any custom accent."])
                verify(allNamed(words).length > 0, words);
            const note = allNamed(note_()).find(item => item instanceof QuireText);
            compare(note.size, 11);
            compare(allNamed("Goodreads User ID").length, 0);
            compare(allNamed("Library Folder").length, 0);
        }

        function note_() {
            return "Quire uses the Nordic Snow, Fjord, Pine, and Cabin palette for both accents and sidebars; Glass remains available for the sidebar. The color wheel accepts any custom accent.";
        }

        function test_theReaderBeginsAtTheFirstField() {
            view.focusFirstField();
            verify(menu("Sidebar").activeFocus);
        }

        function test_aSidebarIsChosenFromItsMenuAndStoredAtOnce() {
            const sidebar = menu("Sidebar");
            compare(sidebar.text, "Snow");
            sidebar.forceActiveFocus();
            keyClick(Qt.Key_Space);
            keyClick(Qt.Key_Down);
            keyClick(Qt.Key_Down);
            keyClick(Qt.Key_Return);
            compare(sidebar.text, "Pine");
            tryVerify(() => fixture.stored("sidebarAppearance") === "pine");
        }

        function test_aFontIsShownInItsMenuAndNotStored() {
            const font = menu("App Font");
            compare(font.text, "Avenir Next");
            font.forceActiveFocus();
            keyClick(Qt.Key_Space);
            keyClick(Qt.Key_Up);
            keyClick(Qt.Key_Return);
            compare(font.text, "System");
            compare(appearance.interfaceFont, "system");
            fixture.pass(1000);
            wait(50);
            compare(fixture.stored("interfaceFont"), "avenirNext");
        }

        function test_theSwatchesHaveTheirSizeAndColours() {
            const colours = ["#f7f7f2", "#426f83", "#264f47", "#cb5d52", "#336699"];
            let right = 0;
            const image = grabImage(view);
            for (let i = 0; i < swatchNames.length; ++i) {
                const item = swatch(swatchNames[i]);
                compare(item.width, 23);
                compare(item.height, 23);
                compare(item.color.toString(), colours[i]);
                const place = item.mapToItem(view, 0, 0);
                verify(place.x > right);
                right = place.x + item.width;
                compare(image.pixel(place.x + (item.isCustom ? 6 : 4), place.y + 11), item.color, swatchNames[i]);
            }
        }

        function test_theChosenSwatchAloneHasARingAndACheck() {
            for (const chosen of ["Fjord", "Cabin", "Custom Color"]) {
                mouseClick(swatch(chosen));
                for (const name of swatchNames) {
                    const item = swatch(name);
                    const parts = drawn(item);
                    const rings = parts.filter(part => part instanceof Rectangle && part.width > 23);
                    const checks = parts.filter(part => part instanceof SymbolPicture);
                    const isChosen = name === chosen;
                    compare(item.Accessible.description, isChosen ? "Selected" : "Not selected");
                    compare(item.Accessible.checked, isChosen);
                    compare(rings.length, isChosen ? 1 : 0, name);
                    compare(checks.length, isChosen ? 1 : 0, name);
                    if (isChosen) {
                        compare(rings[0].border.width, 2);
                        compare(rings[0].mapToItem(item, 0, 0), Qt.point(-4, -4)); // its line has its middle 3 outside
                        compare(rings[0].width, 31);
                        compare(checks[0].name, "checkmark");
                        compare(checks[0].size, 9);
                    }
                }
            }
        }

        function test_theCheckIsSeenOnEveryColour() {
            const ink = Qt.rgba(0.18, 0.15, 0.15, 1).toString();
            for (const [name, colour] of [["Snow", ink], ["Pine", "#ffffff"]]) {
                mouseClick(swatch(name));
                const check = drawn(swatch(name)).find(part => part instanceof SymbolPicture);
                compare(check.color.toString(), colour);
            }
        }

        function test_aSwatchRepaintsAtOnceAndIsStoredAfterACalm() {
            mouseClick(swatch("Cabin"));
            compare(appearance.accent, "cabin");
            fixture.pass(159);
            wait(50);
            compare(fixture.stored("accentColor"), "fjord");
            fixture.pass(1);
            tryVerify(() => fixture.stored("accentColor") === "cabin");
            compare(presented.count, 0);
        }

        function test_theReadersOwnOpensThePanelWithItsColour() {
            mouseClick(swatch("Custom Color"));
            compare(appearance.accent, "custom");
            compare(presented.count, 1);
            compare(fixture.shell.colorPanel.hex, "#336699");
            mouseClick(swatch("Custom Color"));
            compare(presented.count, 2);
            compare(fixture.shell.colorPanel.hex, "#336699");
            fixture.shell.colorPanel.enterHex("#ffcc00");
            compare(swatch("Custom Color").color.toString(), "#ffcc00");
        }

        function test_theSwatchesAreOneStopWithArrowsBetweenThem() {
            menu("App Font").forceActiveFocus(Qt.TabFocusReason);
            keyClick(Qt.Key_Tab);
            verify(swatch("Fjord").activeFocus);
            verify(swatch("Fjord").visualFocus);
            keyClick(Qt.Key_Right);
            verify(swatch("Pine").activeFocus);
            compare(appearance.accent, "fjord");
            keyClick(Qt.Key_Space);
            compare(appearance.accent, "pine");
            keyClick(Qt.Key_Left);
            keyClick(Qt.Key_Left);
            keyClick(Qt.Key_Left);
            verify(swatch("Snow").activeFocus);
            keyClick(Qt.Key_Return);
            compare(appearance.accent, "snow");
            for (let i = 0; i < 6; ++i)
                keyClick(Qt.Key_Right);
            verify(swatch("Custom Color").activeFocus);
            keyClick(Qt.Key_Tab);
            verify(named("Cancel").activeFocus);
            keyClick(Qt.Key_Backtab);
            verify(swatch("Snow").activeFocus);
            keyClick(Qt.Key_Backtab);
            verify(menu("App Font").activeFocus);
        }

        function test_theFocusIsSeenBesideTheRingOfTheChosen() {
            const item = swatch("Fjord");
            item.forceActiveFocus(Qt.TabFocusReason);
            const rings = drawn(item).filter(part => part instanceof Rectangle && part.width > 23);
            compare(rings.length, 2);
            verify(rings[1].width >= rings[0].width + 8);
            menu("Sidebar").forceActiveFocus();
            mouseClick(item);
            verify(item.activeFocus);
            verify(!item.visualFocus);
        }

        function test_everythingFitsWithoutScrollingAtTheLeastSize() {
            const note = named(note_());
            verify(note.mapToItem(view, 0, note.height).y < named("Save").mapToItem(view, 0, 0).y - 30);
        }
    }
}
