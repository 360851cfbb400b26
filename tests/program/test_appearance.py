"""The look of the window: chosen in the settings, seen at once, kept by the library and by the next start."""

import unittest

from quire_driver import ProgramTestCase, Settings, colour_at, colours_of, fill_of
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
        program.find(field, role="combo box").click()
        program.find(title, role="menu item").click()
        program.wait_gone(title, role="menu item")

    def swatch(self, program, name):
        return program.find(name, role="radio button")

    def chosen_swatch(self, program) -> list[str]:
        return [name for name in [*ACCENTS, "Custom Color"] if self.swatch(program, name).description == "Selected"]

    def accent(self, program) -> str:
        """As the button is painted that carries the chief action of the settings."""
        return fill_of(program.find("Quire Settings", role="frame").find("Save", role="push button"))

    def wait_for_accent(self, program, colour):
        self.eventually(lambda: self.accent(program) == colour, f"the accent is {self.accent(program)}, not {colour}")

    def wait_for_setting(self, key, value):
        self.eventually(lambda: self.home.setting(key) == value, f"{key} is {self.home.setting(key)}, not {value}")


class AWhiteAccent(AppearanceTestCase):
    def test_fields_and_buttons_of_a_form_keep_an_edge(self):
        self.home.write_settings(usesCustomAccentColor="1", customAccentRed="1", customAccentGreen="1", customAccentBlue="1")
        program = self.start()
        program.find("Add Book", role="push button").click()
        panel = program.find("Add Book", role="dialog")
        panel.find("Enter Manually", role="page tab").click()
        panel.find("Author", role="text")
        program.wait_until_idle()
        for name, role in (("Author", "text"), ("Summary", "text"), ("Cancel", "push button"), ("Add Book", "push button")):
            with self.subTest(name):
                self.assertNotEqual(colour_at(*self.above(panel.find(name, role=role))), "FFFFFF")

    def above(self, control):
        """A place on the upper edge of what frames the control."""
        left, top, width, height = control.frame
        middle = left + width // 2
        return next(((middle, y) for y in range(top, top - 9, -1) if colour_at(middle, y) != "FFFFFF"), (middle, top))


class Appearance(AppearanceTestCase):
    def test_it_is_the_tab_that_settings_open_with(self):
        program = self.start()
        program.find("Settings", role="push button").click()
        window = program.find("Quire Settings", role="frame")
        for words in ("Sidebar", "App Font", "Accent Color", NOTE):
            program.wait_for_text(words)
        self.assertEqual(window.find("Sidebar", role="combo box").description, "Snow")
        self.assertEqual(window.find("App Font", role="combo box").description, "Avenir Next")
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
                self.assertEqual(program.find("App Font", role="combo box").description, title)
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
        self.assertEqual(program.find("App Font", role="combo box").description, "Avenir Next")
        self.assertEqual(program.quit(), 0)
        self.assertIsNone(self.home.setting("interfaceFont"))

    def test_the_list_of_fonts_shows_each_in_its_own_face(self):
        program = self.start()
        Settings(program, "Appearance")
        program.find("App Font", role="combo box").click()
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


if __name__ == "__main__":
    unittest.main()
