"""What the window shows before the library is open, or when it does not open at all."""

import sqlite3
import unittest
from contextlib import closing

from quire_driver import ProgramTestCase, Settings
from quire_driver.desktop import Desktop
from quire_world import OldBook

DISPLAYED = "Displayed asynchronously loaded library cache: 2 books, 0 audiobooks."


class LaunchCache(ProgramTestCase):
    def setUp(self):
        super().setUp()
        self.home.write_settings(
            selectedTab="books", sidebarAppearance="pine", automaticGoodreadsSync="0", backupIntervalDays="365")
        self.home.write_books(OldBook("1", "The Salt Road", read_at="2026-02-01"), OldBook("2", "Nine Winters"))

    def run_once(self, tab="Books"):
        program = self.start()
        program.open_tab(tab)
        self.eventually(lambda: self.home.setting("selectedTab") == tab.lower(), "the tab was not remembered")
        self.assertEqual(program.quit(), 0)

    def hold_library(self):
        """Another reader of this computer opens the library first."""
        rival = self.make_home()
        rival.use_library_in(self.home.support)
        return self.start(rival)

    def refused(self):
        program = self.start()
        program.wait_for_text("Quire Could Not Open")
        program.wait_for_cards("The Salt Road", "Nine Winters")
        return program

    def dismiss_notice(self, program):
        program.find("OK", role="push button").click()
        program.wait_gone("Quire Could Not Open")

    def press_in_vain(self, place, *names):
        """With the mouse and as a screen reader does: of what is tried, the program would tell a failure."""
        for name in names:
            button = place.find(name)
            button.click()
            if "Press" in button.actions:
                button.press()

    def test_yesterdays_titles_stand_beneath_the_notice_while_another_has_the_library(self):
        self.run_once()
        self.hold_library()
        program = self.refused()
        program.screenshot("launch-cache-notice")
        self.assertIn(DISPLAYED, self.home.log)
        self.dismiss_notice(program)
        program.wait_for_cards("The Salt Road", "Nine Winters")
        program.screenshot("launch-cache-refused")
        self.assertEqual(program.quit(), 0)

    def test_nothing_is_offered_that_would_need_the_library(self):
        self.run_once()
        self.hold_library()
        program = self.refused()
        self.dismiss_notice(program)
        self.press_in_vain(program, "Sync", "Add Book")
        program.find("View details for Nine Winters").click(button=3)
        program.find("Hide from Library")
        program.screenshot("launch-cache-menu")
        self.press_in_vain(program, "Hide from Library")
        program.keys("Escape")
        program.keys("ctrl+r", "ctrl+shift+b")
        settings = Settings(program, "Data")
        self.press_in_vain(settings.window, "Save", "Back Up Database", "Refresh Audio Covers")
        settings.field("Days").click()
        program.keys("Return")
        settings.show("Libraries")
        self.press_in_vain(settings.window, "Grant Access", "Sync")
        program.screenshot("launch-cache-settings")
        settings.close()
        program.wait_until_idle()
        self.assertFalse(program.has("OK", role="push button"), "something was tried, and failed")
        self.assertFalse(program.has("Title, author, or ISBN"), "the panel for new books was opened")
        program.wait_for_cards("The Salt Road", "Nine Winters")
        self.assertNotIn("failed", self.home.log.rpartition("Startup failed: ")[2])
        self.assertEqual(program.quit(), 0)

    def test_what_can_be_looked_at_can_be_sorted_searched_and_told_of(self):
        self.run_once()
        self.hold_library()
        program = self.refused()
        self.dismiss_notice(program)
        program.find("Search library", role="text").click()
        program.type("winters")
        program.wait_for_cards("Nine Winters")
        program.open_tab("Insights")
        program.wait_for_text("Reading Frequency")
        self.assertEqual(program.quit(), 0)

    def test_the_cached_titles_are_there_while_the_library_is_slow_to_open_and_then_the_library_is(self):
        self.run_once()
        with closing(sqlite3.connect(self.home.database, isolation_level=None)) as slow:
            slow.execute("PRAGMA locking_mode = EXCLUSIVE")
            slow.execute("UPDATE goodreads_books SET title = 'Ten Winters' WHERE goodreads_id = '2'")
            program = self.launch()
            program.wait_for_cards("The Salt Road", "Nine Winters")
            program.screenshot("launch-cache-before-the-library")
        program.wait_for_cards("The Salt Road", "Ten Winters")
        program.find("Add Book", role="push button").click()
        program.find("Title, author, or ISBN", role="text")
        self.assertEqual(program.quit(), 0)
        self.assertIn(DISPLAYED, self.home.log)

    def test_the_look_and_the_tab_are_there_without_the_library(self):
        self.run_once("Insights")
        first = self.start()
        wanted = self.sidebar_colour()
        first.open_tab("Books")
        first.wait_for_cards("The Salt Road", "Nine Winters")
        self.assertEqual(first.quit(), 0)
        self.hold_library()
        self.dismiss_notice(self.refused())  # it dims the window
        self.eventually(lambda: self.sidebar_colour() == wanted, "another look")

    def sidebar_colour(self) -> str:
        """Of the pixel at the left edge of the newest window, below the shelves."""
        picture = Desktop.shared().run("import", "-window", "root", "-crop", "1x1+4+600", "txt:-")
        return picture.splitlines()[-1].split()[2]

    def test_the_cache_of_another_library_is_not_shown(self):
        self.run_once()
        elsewhere = self.make_home()
        elsewhere.write_books(OldBook("9", "Hidden Harbour"))
        self.home.use_library_in(elsewhere.support)
        program = self.start()
        program.wait_for_cards("Hidden Harbour")
        self.assertEqual(program.quit(), 0)
        self.assertNotIn(DISPLAYED, self.home.log)

    def test_a_damaged_cache_is_as_none(self):
        for damage in (b"", b"garbage", None):
            with self.subTest(damage=damage):
                self.run_once()
                for name in ("Launch Library.plist", "Launch Appearance.plist"):
                    file = self.home.support / name
                    whole = file.read_bytes()
                    file.write_bytes(whole[:len(whole) // 2] if damage is None else damage)
                displayed = self.home.log.count(DISPLAYED)
                program = self.start()
                program.wait_for_cards("The Salt Road", "Nine Winters")
                self.assertEqual(program.quit(), 0)
                self.assertEqual(self.home.log.count(DISPLAYED), displayed)
                self.assertGreater((self.home.support / "Launch Library.plist").stat().st_size, 100)


if __name__ == "__main__":
    unittest.main()
