import unittest

from quire_driver import ProgramTestCase
from quire_driver.controls import Announcements
from quire_world import OldBook


class Navigation(ProgramTestCase):
    def setUp(self):
        super().setUp()
        self.home.connect_goodreads()
        self.home.write_books(OldBook("1", "The Salt Road"))

    def test_tabs_change_by_mouse_and_by_press(self):
        program = self.start()
        program.find("Books", role="push button").click()
        program.wait_for_cards("The Salt Road")
        program.find("Audio", role="push button").press()
        program.wait_for_text("No audio titles found")
        program.find("Insights", role="push button").press()
        program.wait_gone("No audio titles found")
        self.assertFalse(program.has("Sort library"))

    def test_tabs_change_by_keyboard(self):
        program = self.start()
        program.tab_to("Books")
        program.keys("space")
        program.wait_for_cards("The Salt Road")
        program.tab_to("Audio")
        program.keys("Return")
        program.wait_for_text("No audio titles found")

    def test_every_control_of_the_library_is_reached_by_keyboard(self):
        program = self.start()
        program.open_tab("Books")
        program.wait_for_cards("The Salt Road")
        wanted = {
            "Search library", "Books", "Insights", "Audio", "All Titles", "Read", "Want to Read", "Sync", "Settings", "Sort library",
            "View details for The Salt Road"}
        reached = set()
        for _ in range(60):
            program.keys("Tab")
            if focused := program.focused():
                reached.add(focused.name)
            if wanted <= reached:
                break
        self.assertEqual(wanted - reached, set())

    def test_command_r_syncs(self):
        self.services.netlify.pause = 2
        program = self.start()
        program.keys("ctrl+r")
        program.wait_for_text("Synced 0 Goodreads titles", seconds=30)
        self.assertEqual(len(self.services.asked_shelves), 5)

    def test_every_control_has_a_name_and_a_press(self):
        program = self.start()
        program.open_tab("Books")
        program.wait_for_cards("The Salt Road")
        nameless = [control.frame for control in program.all(role="push button") if not control.name.strip()]
        self.assertEqual(nameless, [])
        pressless = [control.name for control in program.all(role="push button") if "Press" not in control.actions]
        self.assertEqual(pressless, [])

    def test_menus_open_and_close_by_keyboard(self):
        program = self.start()
        program.open_tab("Books")
        program.wait_for_cards("The Salt Road")
        program.keys("alt+v")
        program.find("Library View", role="menu item")
        program.keys("Down", "Down", "Right")
        program.find("Did Not Finish", role="menu item")
        program.keys("Down", "Return")
        program.wait_for_text("0 titles")
        program.wait_gone("Library View", role="menu item")
        program.keys("F10")
        program.find("Open Logs", role="menu item")
        program.keys("Right")
        program.find("Back Up Quire Database…", role="menu item")
        program.keys("Right")
        program.find("Library View", role="menu item")
        program.keys("Escape")
        program.wait_gone("Library View", role="menu item")

    def test_settings_open_with_the_keyboard_in_the_first_control(self):
        program = self.start()
        program.keys("ctrl+comma")
        sidebar = program.find("Quire Settings", role="frame").find("Sidebar", role="combo box")
        self.eventually(lambda: sidebar.is_focused)
        self.assertEqual(sidebar.description, "Snow")
        program.keys("space", "Down", "Return")
        self.eventually(lambda: sidebar.description == "Fjord")

    def test_control_f_brings_the_keyboard_to_the_search(self):
        program = self.start()
        program.open_tab("Books")
        program.wait_for_cards("The Salt Road")
        program.keys("ctrl+f")
        self.eventually(lambda: program.focused().name == "Search library")
        program.type("winters")
        program.wait_for_text("No titles found")

    def test_what_cannot_be_used_tells_a_screen_reader_so(self):
        announcements = Announcements.of_usable_buttons()
        self.addCleanup(announcements.end)
        program = self.start()
        program.open_tab("Books")
        program.find("Add Book", role="push button").press()
        panel = program.find("Add Book", role="dialog")
        panel.find("Enter Manually").click()
        add = panel.find("Add Book", role="push button")
        self.assertFalse(add.is_enabled)
        panel.find("Title", role="text").click()
        program.type("Emma")
        panel.find("Author", role="text").click()
        program.type("Austen")
        self.eventually(lambda: add.is_enabled)
        self.eventually(lambda: "Add Book" in announcements.heard, "its use was not announced")
        panel.find("Close").press()
        program.wait_gone("Add Book", role="dialog")
        program.keys("alt+v")
        self.assertFalse(program.find("Next Library Page", role="menu item").is_enabled)
        self.assertTrue(program.find("Sort Library", role="menu item").is_enabled)
        program.keys("Escape")

    def test_toasts_and_notices_are_announced(self):
        self.services.netlify.pause = 2  # what follows the sync has a toast of its own
        announcements = Announcements.of_alerts()
        self.addCleanup(announcements.end)
        program = self.start()
        program.keys("ctrl+r")
        # Listening all the while: a toast that has gone has no name.
        self.eventually(lambda: "Synced 0 Goodreads titles" in announcements.heard, "no toast was heard", 30)
        program.keys("ctrl+shift+b")
        self.eventually(lambda: "Quire Database Backed Up" in announcements.heard, "no notice was heard", 30)

    def test_the_smallest_window_still_holds_everything(self):
        program = self.start()
        program.open_tab("Books")
        program.wait_for_cards("The Salt Road")
        program.resize(920, 700)
        self.eventually(lambda: program.find("Settings").frame[1] < 700)
        program.screenshot("navigation-smallest")
        for name in ("Sync", "Settings", "Sort library", "Search library"):
            left, top, width, height = program.find(name).frame
            self.assertLessEqual(left + width, 920, name)
            self.assertLessEqual(top + height, 700, name)


if __name__ == "__main__":
    unittest.main()
