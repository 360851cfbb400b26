import unittest

from quire_driver import GRAPHICS_CARD, ProgramTestCase
from quire_driver.windows import class_of, icons_of, windows_of
from quire_world import OldBook


class Start(ProgramTestCase):
    def test_an_empty_home_opens_on_insights(self):
        program = self.start()
        self.eventually(lambda: self.home.database.exists(), "the library was never created")
        self.assertEqual(program.cards(), [])
        self.assertFalse(program.has("Sort library"))
        self.assertFalse(program.has("Add Book"))
        program.screenshot("start-empty-insights")
        self.assertEqual(program.quit(), 0)
        self.assertEqual(self.home.value("PRAGMA user_version"), 2)
        self.assertEqual(self.home.value("SELECT COUNT(*) FROM goodreads_books"), 0)

    def test_a_screen_reader_that_asks_before_there_are_views_finds_every_name(self):
        program = self.launch()
        while not program.has("Quire", role="frame"):
            pass
        for control in program.root.walk():  # of a window with nothing in it
            control.name
        program.find("Settings", role="push button")
        program.wait_until_idle()
        unnamed = [control for control in program.all(role="push button") if not control.name]
        self.assertEqual(unnamed, [])

    def test_the_books_of_an_empty_library_say_so(self):
        program = self.start()
        program.open_tab("Books")
        program.wait_for_text("No titles found")
        program.wait_for_text("Adjust the search or filter.")
        program.wait_for_text("0 titles")
        program.screenshot("start-empty-books")

    def test_the_library_of_an_older_version_is_taken_over(self):
        self.home.write_settings(selectedTab="books")
        self.home.write_books(
            OldBook("1", "The Salt Road", shelf="read", read_at="2026-02-01", user_rating=4, notes="by the sea"),
            OldBook("2", "Hidden Harbour", hidden=1))
        program = self.start()
        program.wait_for_cards("The Salt Road")
        program.wait_for_text("1 title")
        self.assertEqual(program.quit(), 0)
        self.assertEqual(self.home.value("PRAGMA user_version"), 2)
        copies = list((self.home.support / "Recovery" / "Schema Migrations").glob("Quire Before Schema *.db"))
        self.assertEqual(len(copies), 2)
        self.assertEqual(
            self.home.query("SELECT title, user_rating, notes, hidden FROM goodreads_books ORDER BY id"),
            [("The Salt Road", 4.0, "by the sea", 0), ("Hidden Harbour", 0.0, "", 1)])

    def test_a_secret_in_the_table_moves_to_the_credential_file(self):
        self.home.write_settings(goodreadsRssKey="kept-by-an-older-version", automaticGoodreadsSync="0")
        program = self.start()
        self.eventually(lambda: self.home.credentials.exists(), "no credential file")
        self.assertEqual(program.quit(), 0)
        self.assertIn(b"kept-by-an-older-version", self.home.credentials.read_bytes())
        self.assertEqual(self.home.query("SELECT value FROM settings WHERE key = 'goodreadsRssKey'"), [])

    def test_the_tab_of_the_last_run_is_opened_again(self):
        first = self.start()
        first.open_tab("Books")
        first.wait_for_text("No titles found")
        self.eventually(
            lambda: self.home.setting("selectedTab") == "books",
            "the tab was not remembered")
        first.quit()
        second = self.start()
        second.wait_for_text("No titles found")

    def test_the_window_is_as_large_as_it_was_left(self):
        first = self.start()
        self.assertEqual(first.find("Quire", role="frame").frame[2:], (1180, 860))
        first.resize(1000, 720)
        self.assertEqual(first.quit(), 0)
        second = self.start()
        self.assertEqual(second.find("Quire", role="frame").frame[2:], (1000, 720))
        second.resize(1010, 730)
        second.close_window()
        self.assertEqual(second.wait(), 0)
        third = self.start()
        self.assertEqual(third.find("Quire", role="frame").frame[2:], (1010, 730))

    def test_the_window_shows_its_desktop_the_icon_and_the_menu_entry(self):
        program = self.start()
        window = windows_of(program.pid, "^Quire$")[-1]
        icons = icons_of(window)
        self.assertEqual(sorted((width, height) for width, height, _ in icons),
                         [(size, size) for size in (16, 24, 32, 48, 64, 128)])
        for width, height, pixels in icons:
            self.assertEqual(pixels[0] >> 24, 0, "its corners are round")
            middle_of_the_top = pixels[height // 8 * width + width // 2]
            self.assertEqual(middle_of_the_top >> 24, 255)
            self.assertGreater(middle_of_the_top & 0xff, middle_of_the_top >> 16 & 0xff, "its wall is blue")
        self.assertEqual(class_of(window), ["quire", "Quire"])

    def test_the_window_also_draws_on_the_graphics_card_path(self):
        self.home.write_settings(selectedTab="books")
        self.home.write_books(OldBook("1", "The Salt Road"))
        program = self.start(QT_QUICK_BACKEND=GRAPHICS_CARD)
        program.wait_for_cards("The Salt Road")
        self.assertIsNotNone(program.graphics, f"it drew by itself: {program.errors}")
        program.screenshot("start-graphics-card")


if __name__ == "__main__":
    unittest.main()
