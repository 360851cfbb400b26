"""The reader's own accent, chosen in the colour panel."""

import unittest

from quire_driver import Desktop, Settings, contrast
from quire_world import OldBook
from test_appearance import ACCENTS, AppearanceTestCase


class CustomColour(AppearanceTestCase):
    def open_panel(self, program):
        self.swatch(program, "Custom Color").click()
        return program.find("Custom Color", role="frame")

    def enter_hex(self, program, digits):
        program.find("Hex color", role="text").click()
        program.keys("ctrl+a")
        program.type(digits)

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
                self.assertGreater(contrast(window.find("Sidebar", role="combo box")), 4.5)
                program.screenshot(f"appearance-accent-{name}")
                program.find("Sidebar", role="combo box").click()
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
