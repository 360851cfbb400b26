"""The look of the window: chosen in the settings, seen at once, kept by the library and by the next start."""

import unittest

from quire_driver import Desktop, ProgramTestCase, Settings, colour_at, colours_of, contrast, fill_of
from quire_world import OldBook

SIDEBARS = {"Snow": "F7F7F2", "Fjord": "426F83", "Pine": "264F47", "Cabin": "CB5D52", "Glass": None}
ACCENTS = {"Snow": "F7F7F2", "Fjord": "426F83", "Pine": "264F47", "Cabin": "CB5D52"}
FONTS = {
    "System": "system", "Avenir Next": "avenirNext", "Helvetica Neue": "helveticaNeue", "Charter": "charter",
    "Georgia": "georgia", "Baskerville": "baskerville", "Gill Sans": "gillSans", "Futura": "futura",
    "Optima": "optima", "Palatino": "palatino"}
NOTE = ("Quire uses the Nordic Snow, Fjord, Pine, and Cabin palette for both accents and sidebars; Glass remains "
        "available for the sidebar. The color wheel accepts any custom accent.")


class AppearanceTestCase(ProgramTestCase):
    def setUp(self):
        super().setUp()
        self.home.write_settings(selectedTab="books", automaticGoodreadsSync="0", backupIntervalDays="365")
        self.home.write_books(OldBook("1", "The Salt Road", read_at="2026-02-01"), OldBook("2", "Nine Winters"))

    @property
    def launch_appearance(self) -> bytes:
        file = self.home.support / "Launch Appearance.plist"
        return file.read_bytes() if file.exists() else b""

    def sidebar_colour(self) -> str:
        """Of the main window, where no smaller window of the program lies over it."""
        return colour_at(4, 800)

    def choose(self, program, field, title):
        """From a menu of the settings."""
        program.find(field, role="push button").click()
        program.find(title, role="menu item").click()
        program.wait_gone(title, role="menu item")

    def swatch(self, program, name):
        return program.find(name, role="push button")

    def chosen_swatch(self, program) -> list[str]:
        return [name for name in [*ACCENTS, "Custom Color"] if self.swatch(program, name).description == "Selected"]

    def accent(self, program) -> str:
        """As the button is painted that carries the chief action of the settings."""
        return fill_of(program.find("Quire Settings", role="frame").find("Save", role="push button"))

    def wait_for_accent(self, program, colour):
        self.eventually(lambda: self.accent(program) == colour, f"the accent is {self.accent(program)}, not {colour}")

    def wait_for_setting(self, key, value):
        self.eventually(lambda: self.home.setting(key) == value, f"{key} is {self.home.setting(key)}, not {value}")

    def enter_hex(self, program, digits):
        program.find("Hex color", role="text").click()
        program.keys("ctrl+a")
        program.type(digits)


class Appearance(AppearanceTestCase):
    def test_it_is_the_tab_that_settings_open_with(self):
        program = self.start()
        program.find("Settings", role="push button").click()
        window = program.find("Quire Settings", role="frame")
        for words in ("Sidebar", "App Font", "Accent Color", NOTE):
            program.wait_for_text(words)
        self.assertEqual(window.find("Sidebar", role="push button").description, "Snow")
        self.assertEqual(window.find("App Font", role="push button").description, "Avenir Next")
        self.assertEqual(self.chosen_swatch(program), ["Fjord"])
        program.screenshot("settings-appearance")

    def test_each_sidebar_is_on_the_screen_at_once_and_at_the_next_start(self):
        shown = {}
        program = self.start()
        for title, colour in reversed(SIDEBARS.items()):  # the first one is there already
            with self.subTest(title):
                before = self.sidebar_colour()
                settings = Settings(program, "Appearance")
                self.choose(program, "Sidebar", title)
                self.eventually(lambda: self.sidebar_colour() != before, "nothing was repainted")
                shown[title] = self.sidebar_colour()
                self.assertIn(colour, (None, shown[title]))
                self.wait_for_setting("sidebarAppearance", title.lower())
                self.eventually(lambda: title.lower().encode() in self.launch_appearance)
                settings.close()
                program.screenshot(f"appearance-sidebar-{title.lower()}")
                self.assertEqual(program.quit(), 0)
                program = self.start()
                self.assertEqual(self.sidebar_colour(), shown[title])
        self.assertEqual(len(set(shown.values())), len(SIDEBARS))

    def test_each_font_is_in_force_once_the_settings_are_saved(self):
        program = self.start()
        pictures = set()
        for title, word in FONTS.items():
            with self.subTest(title):
                settings = Settings(program, "Appearance")
                self.choose(program, "App Font", title)
                self.assertEqual(program.find("App Font", role="push button").description, title)
                settings.save()
                program.wait_for_text("Settings saved")
                program.wait_gone("Quire Settings")
                self.assertEqual(self.home.setting("interfaceFont"), word)
                self.eventually(lambda: word.encode() in self.launch_appearance)
                program.wait_until_idle()
                pictures.add(frozenset(colours_of(program.find("Insights", role="push button")).items()))
        self.assertEqual(len(pictures), len(FONTS), "two fonts look the same")

    def test_a_font_that_was_not_saved_is_dropped(self):
        program = self.start()
        settings = Settings(program, "Appearance")
        self.choose(program, "App Font", "Futura")
        settings.close()
        Settings(program, "Appearance")
        self.assertEqual(program.find("App Font", role="push button").description, "Avenir Next")
        self.assertEqual(program.quit(), 0)
        self.assertIsNone(self.home.setting("interfaceFont"))

    def test_the_list_of_fonts_shows_each_in_its_own_face(self):
        program = self.start()
        Settings(program, "Appearance")
        program.find("App Font", role="push button").click()
        program.find("Palatino", role="menu item")
        program.wait_until_idle()
        program.screenshot("settings-appearance-fonts")

    def test_each_swatch_repaints_the_window_and_is_kept(self):
        program = self.start()
        for title, colour in [*ACCENTS.items()]:
            with self.subTest(title):
                settings = Settings(program, "Appearance")
                self.swatch(program, title).click()
                self.wait_for_accent(program, colour)
                self.assertEqual(self.chosen_swatch(program), [title])
                if title != "Fjord":  # the default is not stored before there was another
                    self.wait_for_setting("accentColor", title.lower())
                self.eventually(lambda: title.lower().encode() in self.launch_appearance)
                settings.close()  # Cancel keeps it
                self.assertEqual(program.quit(), 0)
                self.assertEqual(self.home.setting("accentColor"), title.lower())
                program = self.start()
                Settings(program, "Appearance")
                self.assertEqual(self.accent(program), colour)
                self.assertEqual(self.chosen_swatch(program), [title])
                program.find("Cancel", role="push button").click()
                program.wait_gone("Quire Settings")

    def test_the_keyboard_alone_chooses_sidebar_and_accent(self):
        program = self.start()
        Settings(program, "Appearance")
        program.tab_to("Sidebar")
        program.keys("space", "Down", "Down", "Return")
        self.wait_for_setting("sidebarAppearance", "pine")
        program.tab_to("Fjord")
        program.keys("Right", "Right", "space")
        self.wait_for_accent(program, ACCENTS["Cabin"])
        program.screenshot("settings-appearance-keyboard")
        program.keys("Left", "Left", "Left", "Return")
        self.wait_for_accent(program, ACCENTS["Snow"])
        self.wait_for_setting("accentColor", "snow")

    def test_an_accent_picked_just_before_the_end_is_kept(self):
        for end in ("signal", "window"):
            with self.subTest(end):
                program = self.start()
                Settings(program, "Appearance")
                before = self.launch_appearance
                wanted = "Pine" if end == "signal" else "Cabin"
                self.swatch(program, wanted).click()
                self.eventually(lambda: self.launch_appearance not in (before, b""))
                if end == "signal":
                    self.assertEqual(program.quit(), 0)
                else:
                    program.close_window("^Quire$")
                    self.assert_ended_cleanly(program)
                self.assertEqual(self.home.setting("accentColor"), wanted.lower())

    def test_an_accent_that_cannot_be_stored_is_taken_back(self):
        self.assertEqual(self.start().quit(), 0)
        self.home.execute("CREATE TRIGGER full BEFORE INSERT ON settings WHEN NEW.key = 'accentColor'"
                          " BEGIN SELECT RAISE(ABORT, 'no room'); END")
        program = self.start()
        settings = Settings(program, "Appearance")
        self.swatch(program, "Cabin").click()
        program.wait_for_text("Appearance Could Not Be Saved")
        settings.dismiss_notice()
        self.wait_for_accent(program, ACCENTS["Fjord"])
        self.assertEqual(self.chosen_swatch(program), ["Fjord"])


class CustomColour(AppearanceTestCase):
    def open_panel(self, program):
        self.swatch(program, "Custom Color").click()
        return program.find("Custom Color", role="frame")

    def settings_with(self, **settings):
        self.home.write_settings(**settings)
        program = self.start()
        Settings(program, "Appearance")
        return program

    def use(self, red, green, blue):
        return {"usesCustomAccentColor": "1", "customAccentRed": str(red / 255), "customAccentGreen": str(green / 255),
                "customAccentBlue": str(blue / 255)}

    def test_a_colour_is_entered_by_its_digits_and_kept(self):
        program = self.settings_with()
        panel = self.open_panel(program)
        self.assertEqual(panel.find("Hex color", role="text").text, "#426F83")
        program.wait_until_idle()
        program.screenshot("color-panel")
        self.enter_hex(program, "#804020")
        self.wait_for_accent(program, "804020")
        self.wait_for_setting("customAccentRed", str(128 / 255))
        self.wait_for_setting("usesCustomAccentColor", "1")
        panel.find("Done", role="push button").click()
        program.wait_gone("Custom Color", role="frame")
        program.find("Cancel", role="push button").click()
        program.wait_gone("Quire Settings")
        self.assertEqual(program.quit(), 0)
        self.assertIn(b"usesCustomAccentColor\xf5", self.launch_appearance)  # true
        program = self.start()
        Settings(program, "Appearance")
        self.assertEqual(self.accent(program), "804020")
        self.assertEqual(self.chosen_swatch(program), ["Custom Color"])
        panel = self.open_panel(program)
        self.assertEqual(panel.find("Hex color", role="text").text, "#804020")

    def test_the_panel_opens_with_the_colour_that_was_chosen_before(self):
        program = self.settings_with(**self.use(51, 102, 153) | {"usesCustomAccentColor": "0", "accentColor": "cabin"})
        self.wait_for_accent(program, ACCENTS["Cabin"])
        panel = self.open_panel(program)
        self.assertEqual(panel.find("Hex color", role="text").text, "#336699")
        self.wait_for_accent(program, "336699")
        self.wait_for_setting("usesCustomAccentColor", "1")
        self.assertEqual(self.home.setting("accentColor"), "cabin")
        self.assertEqual(self.home.setting("customAccentRed"), "0.2")

    def test_the_mouse_picks_on_the_wheel_and_the_slider(self):
        program = self.settings_with(**self.use(255, 0, 0))
        panel = self.open_panel(program)
        left, top, width, height = panel.find("Color wheel").frame
        Desktop.shared().run("xdotool", "mousemove", str(left + width // 2), str(top + height // 4), "click", "1")
        self.eventually(lambda: panel.find("Color wheel").description.startswith(("Hue 90°", "Hue 89°")))
        self.assertRegex(panel.find("Color wheel").description, r"^Hue \d+°, saturation (49|50|51)%$")
        self.wait_for_accent(program, panel.find("Hex color", role="text").text.removeprefix("#"))
        panel.find("Brightness", role="slider").click()
        self.eventually(lambda: panel.find("Brightness", role="slider").description in ("49%", "50%", "51%"))
        self.wait_for_accent(program, panel.find("Hex color", role="text").text.removeprefix("#"))
        program.screenshot("color-panel-mouse")

    def test_the_keyboard_alone_chooses_a_colour(self):
        program = self.settings_with(**self.use(255, 0, 0))
        program.tab_to("Custom Color")
        program.keys("space")
        panel = program.find("Custom Color", role="frame")
        self.eventually(lambda: program.focused() and program.focused().name == "Color wheel", str(program.focused()))
        program.keys(*["shift+Left"] * 5)
        self.eventually(lambda: panel.find("Color wheel").description == "Hue 0°, saturation 50%")
        program.tab_to("Brightness")
        program.keys("Page_Down", "Page_Down")
        self.eventually(lambda: panel.find("Brightness", role="slider").description == "80%")
        program.screenshot("color-panel-keyboard")
        self.wait_for_accent(program, "CC6666")
        program.tab_to("Hex color")
        program.type("fc0")
        program.keys("Return")
        self.wait_for_accent(program, "FFCC00")
        program.keys("Escape")
        program.wait_gone("Custom Color", role="frame")
        self.assertTrue(program.has("Quire Settings", role="frame"))
        self.wait_for_setting("customAccentGreen", "0.8")

    def test_a_drag_repaints_at_once_and_is_written_at_its_end(self):
        self.home.write_settings(**self.use(255, 0, 0))
        self.assertEqual(self.start().quit(), 0)
        self.home.execute("CREATE TABLE writes (key TEXT)")
        for event in ("INSERT", "UPDATE"):
            self.home.execute(f"CREATE TRIGGER on_{event} AFTER {event} ON settings WHEN NEW.key = 'customAccentRed'"
                              " BEGIN INSERT INTO writes VALUES (NEW.key); END")
        program = self.start()
        Settings(program, "Appearance")
        panel = self.open_panel(program)
        left, top, width, height = panel.find("Color wheel").frame
        x, y = left + width // 2, top + height // 2
        moves = []
        for step in range(50):
            moves += ["mousemove", str(x - step), str(y - step % 7), "sleep", "0.03"]
        Desktop.shared().run("xdotool", "mousemove", str(x), str(y), "mousedown", "1", *moves)
        self.wait_for_accent(program, panel.find("Hex color", role="text").text.removeprefix("#"))
        self.assertNotEqual(self.accent(program), "FF0000")
        self.eventually(lambda: self.home.value("SELECT COUNT(*) FROM writes") > 0, "a drag that rests is written")
        Desktop.shared().run("xdotool", "mouseup", "1")
        self.assertEqual(program.quit(), 0)
        # Each movement is repainted; what is written is where the mouse has rested, once on a machine that keeps up.
        self.assertLess(self.home.value("SELECT COUNT(*) FROM writes"), 5)

    def test_the_panel_goes_with_the_settings_and_changes_nothing_afterwards(self):
        program = self.settings_with()
        self.open_panel(program)
        self.enter_hex(program, "336699")
        self.wait_for_accent(program, "336699")
        program.find("Cancel", role="push button").click()
        program.wait_gone("Quire Settings", role="frame")
        program.wait_gone("Custom Color", role="frame")
        self.wait_for_setting("customAccentRed", "0.2")
        Settings(program, "Appearance")
        self.assertFalse(program.has("Custom Color", role="frame"))
        self.assertEqual(self.accent(program), "336699")

    def test_another_swatch_may_be_chosen_while_the_panel_stands_open(self):
        program = self.settings_with()
        panel = self.open_panel(program)
        self.enter_hex(program, "336699")
        self.wait_for_accent(program, "336699")
        self.swatch(program, "Pine").click()
        self.wait_for_accent(program, ACCENTS["Pine"])
        self.enter_hex(program, "993366")
        self.wait_for_accent(program, "993366")
        self.assertEqual(self.chosen_swatch(program), ["Custom Color"])
        program.close_window("^Custom Color$")
        program.wait_gone("Custom Color", role="frame")
        self.assertEqual(self.accent(program), "993366")

    def test_words_are_readable_on_the_lightest_and_the_darkest_accent(self):
        for name, colour in (("white", (255, 255, 255)), ("black", (0, 0, 0)), ("yellow", (255, 255, 0)),
                             ("dark", (20, 24, 60))):
            with self.subTest(name):
                self.home.remove()
                self.home = self.make_home()
                self.home.write_settings(selectedTab="books", automaticGoodreadsSync="0", **self.use(*colour))
                self.home.write_books(OldBook("1", "The Salt Road", read_at="2026-02-01"))
                program = self.start()
                self.assertGreater(contrast(program.find("Books", role="push button")), 4.5)  # the section that is open
                program.screenshot(f"appearance-accent-{name}-library")
                Settings(program, "Appearance")
                window = program.find("Quire Settings", role="frame")
                self.assertEqual(self.chosen_swatch(program), ["Custom Color"])
                self.assertGreater(contrast(window.find("Save", role="push button")), 4.5)
                self.assertGreater(contrast(window.find("Cancel", role="push button")), 4.5)
                self.assertGreater(contrast(window.find("Sidebar", role="push button")), 4.5)
                program.screenshot(f"appearance-accent-{name}")
                program.find("Sidebar", role="push button").click()
                program.find("Pine", role="menu item").hover()
                program.wait_until_idle()
                self.assertGreater(contrast(program.find("Pine", role="menu item")), 4.5)
                program.screenshot(f"appearance-accent-{name}-menu")
                program.keys("Escape")
                panel = self.open_panel(program)
                program.wait_until_idle()
                self.assertGreater(contrast(panel.find("Done", role="push button")), 4.5)
                program.screenshot(f"appearance-accent-{name}-panel")
                self.assertEqual(program.quit(), 0)


if __name__ == "__main__":
    unittest.main()
