import QtQuick
import QtTest

import Quire

Item {
    id: root

    width: 256
    height: 420

    ColorPanelView {
        id: view

        anchors.fill: parent
        panel: fixture.shell.colorPanel
    }

    SignalSpy {
        id: dismissed

        target: view
        signalName: "dismissed"
    }

    TestCase {
        name: "ColorPanelView"
        when: windowShown

        readonly property CustomColorPanelPresenter panel: fixture.shell.colorPanel

        function find(matches, item = view) {
            for (let i = 0; i < item.children.length; ++i) {
                const child = item.children[i];
                const found = matches(child) ? child : find(matches, child);
                if (found)
                    return found;
            }
            return null;
        }

        function named(name) {
            const found = find(item => item.Accessible.name === name && !item.Accessible.ignored);
            verify(found !== null, name);
            return found;
        }

        function hexField() {
            return find(item => item instanceof HexField);
        }

        function init() {
            fixture.store("usesCustomAccentColor", "1");
            fixture.store("customAccentRed", "1.0");
            fixture.store("customAccentGreen", "0.0");
            fixture.store("customAccentBlue", "0.0");
            fixture.shell.settings.load();
            fixture.shell.appearance.chooseAccent("custom");
            view.focusFirst();
            dismissed.clear();
        }

        function cleanup() {
            panel.detach();
            fixture.pass(1000);
            fixture.settle();
        }

        function test_itsControlsTellTheirNamesAndValues() {
            compare(named("Color wheel").Accessible.description, "Hue 0°, saturation 100%");
            compare(named("Hue").value, 0);
            compare(named("Hue").maximumValue, 359);
            compare(named("Saturation").value, 100);
            compare(named("Brightness").value, 100);
            compare(named("Brightness").Accessible.role, Accessible.Slider);
            compare(named("Hex color").text, "#FF0000");
            panel.enterHex("#008080");
            compare(named("Color wheel").Accessible.description, "Hue 180°, saturation 100%");
            compare(named("Brightness").Accessible.description, "50%");
        }

        function test_aScreenReaderSetsItsValues() {
            named("Hue").value = 120;
            compare(panel.hex, "#00FF00");
            named("Saturation").value = 50;
            compare(panel.hex, "#80FF80");
            named("Brightness").value = 50;
            compare(panel.hex, "#408040");
            compare(named("Hue").value, 120);
        }

        function test_theWheelShowsWhatIsPicked() {
            const wheel = named("Color wheel");
            mouseClick(wheel, wheel.width / 2, 0.25 * wheel.height);
            compare(panel.hue, 90);
            compare(panel.saturation, 50);
            compare(fixture.shell.appearance.customAccentColor.toString(), panel.color.toString());
            const marker = find(item => item instanceof ColorMarker, wheel);
            compare(marker.x + marker.width / 2, wheel.width / 2);
            compare(marker.y + marker.height / 2, 0.25 * wheel.height);
        }

        function test_aDragGoesOnBeyondTheRim() {
            const wheel = named("Color wheel");
            mousePress(wheel, wheel.width / 2, wheel.height / 2);
            compare(panel.hex, "#FFFFFF");
            mouseMove(wheel, wheel.width / 2, -60);
            compare(panel.hue, 90);
            compare(panel.saturation, 100);
            mouseMove(wheel, -300, wheel.height / 2);
            compare(panel.hue, 180);
            mouseRelease(wheel, -300, wheel.height / 2);
        }

        function test_theRingAroundTheWheelIsForTheKeyboard() {
            const wheel = named("Color wheel");
            const ring = find(item => item instanceof FocusRing, wheel);
            verify(wheel.activeFocus && !ring.visible);
            keyClick(Qt.Key_Left);
            verify(ring.visible);
            mouseClick(wheel, wheel.width / 2, wheel.height / 2);
            verify(wheel.activeFocus && !ring.visible);
        }

        function test_theCornersOfTheWheelAreNotPartOfIt() {
            const wheel = named("Color wheel");
            mouseClick(wheel, 4, 4);
            compare(panel.hex, "#FF0000");
        }

        function test_arrowKeysMoveOverTheWheelAndShiftMovesFarther() {
            const wheel = named("Color wheel");
            verify(wheel.activeFocus);
            keyClick(Qt.Key_Left);
            compare(panel.saturation, 98);
            keyClick(Qt.Key_Left, Qt.ShiftModifier);
            compare(panel.saturation, 88);
            keyClick(Qt.Key_Right, Qt.ShiftModifier);
            keyClick(Qt.Key_Right);
            keyClick(Qt.Key_Right);
            compare(panel.hex, "#FF0000");
            keyClick(Qt.Key_Up, Qt.ShiftModifier);
            verify(panel.hue > 0 && panel.hue < 10);
            keyClick(Qt.Key_Down, Qt.ShiftModifier);
            keyClick(Qt.Key_Down, Qt.ShiftModifier);
            verify(panel.hue > 350);
        }

        function test_brightnessIsDraggedAndStepped() {
            const slider = named("Brightness");
            mousePress(slider, slider.width / 2, slider.height / 2);
            compare(panel.brightness, 50);
            compare(panel.hex, "#800000");
            mouseMove(slider, -50, slider.height / 2);
            compare(panel.hex, "#000000");
            mouseMove(slider, slider.width + 50, slider.height / 2);
            mouseRelease(slider, slider.width + 50, slider.height / 2);
            compare(panel.hex, "#FF0000");
            verify(slider.activeFocus);
            for (const [key, value] of [[Qt.Key_Left, 99], [Qt.Key_Down, 98], [Qt.Key_PageDown, 88], [Qt.Key_Home, 0],
                    [Qt.Key_Right, 1], [Qt.Key_Up, 2], [Qt.Key_PageUp, 12], [Qt.Key_End, 100]]) {
                keyClick(key);
                compare(panel.brightness, value);
                compare(slider.value, value);
            }
        }

        function test_aColourFindsBackFromBlackAndWhite() {
            const slider = named("Brightness");
            slider.forceActiveFocus();
            panel.enterHex("#3366CC");
            keyClick(Qt.Key_Home);
            compare(panel.hex, "#000000");
            keyClick(Qt.Key_End);
            compare(panel.hex, "#4080FF");
        }

        function type(text) {
            const field = hexField();
            field.forceActiveFocus(Qt.TabFocusReason);
            for (const letter of text)
                keyClick(letter);
            return field;
        }

        function test_sixDigitsAreTakenAsTheyAreTyped() {
            const field = type("#00cc6");
            compare(panel.hex, "#FF0000");
            keyClick("6");
            compare(panel.hex, "#00CC66");
            compare(field.text, "#00cc66"); // left alone while it is typed
            compare(fixture.shell.appearance.customAccentColor.toString(), "#00cc66");
            keyClick(Qt.Key_Tab);
            compare(field.text, "#00CC66");
        }

        function test_threeDigitsAreTakenWithReturn() {
            const field = type("fc0");
            compare(panel.hex, "#FF0000");
            keyClick(Qt.Key_Return);
            compare(panel.hex, "#FFCC00");
            compare(field.text, "#FFCC00");
            verify(field.selectedText === "#FFCC00");
        }

        function test_whatIsNoColourIsTakenBack() {
            const field = type("teal");
            keyClick(Qt.Key_Return);
            compare(panel.hex, "#FF0000");
            compare(field.text, "#FF0000");
        }

        function test_theFieldFollowsTheWheel() {
            hexField().forceActiveFocus(Qt.TabFocusReason);
            named("Hue").value = 240;
            compare(hexField().text, "#0000FF");
        }

        function test_everyControlIsReachedWithTab() {
            for (const name of ["Brightness", "Hex color", "Done", "Color wheel"]) {
                keyClick(Qt.Key_Tab);
                verify(named(name).activeFocus, name);
                const ring = find(item => item instanceof FocusRing, named(name));
                verify(name === "Hex color" || ring.visible, name);
            }
        }

        function test_doneDismisses() {
            mouseClick(named("Done"));
            compare(dismissed.count, 1);
        }

        function test_theWheelIsPaintedInItsColours() {
            const wheel = named("Color wheel");
            const place = wheel.mapToItem(view, 0, 0);
            const middle = wheel.width / 2;
            const image = grabImage(view);
            const white = image.pixel(place.x + middle, place.y + middle);
            verify(white.r > 0.97 && white.g > 0.97 && white.b > 0.97, white);
            const green = image.pixel(place.x + middle, place.y + 8);
            verify(green.r < 0.62 && green.g > 0.95 && green.b < 0.1, green);
            named("Brightness").value = 0;
            const dark = grabImage(view).pixel(place.x + middle, place.y + middle);
            verify(dark.r > 0.2 && dark.r < 0.4, dark); // the wheel never goes out
        }
    }
}
