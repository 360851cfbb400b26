import unittest

from quire_driver import ProgramTestCase
from quire_world import OldBook

SUMMARY = "A lighthouse keeper writes to the sea for forty years, and the sea writes back. " * 30
LONG = "The Collected Letters of a Lighthouse Keeper to the Sea, With the Replies of the Sea, Volume the Third: " \
    "Being the Winter in Which Nobody Came"


class BookDetails(ProgramTestCase):
    def setUp(self):
        super().setUp()
        self.home.write_settings(selectedTab="books", automaticGoodreadsSync="0")
        self.home.write_books(
            OldBook("1", "The Salt Road", author="Ada Lindqvist", user_rating=3, num_pages=320, description=SUMMARY,
                    read_at="2026-03-11", date_added="2026-01-01", tags=("sea", "essays")),
            OldBook("2", LONG, author=LONG, tags=tuple(f"a tag that is number {n}" for n in range(20))))

    def open(self, program, title="The Salt Road"):
        program.find(f"View details for {title}").click()
        return program.find(title, role="dialog")

    def stored(self):
        return self.home.query(
            "SELECT user_rating, shelf, notes, hidden FROM goodreads_books WHERE title = 'The Salt Road'")[0]

    def test_what_is_known_of_a_book(self):
        program = self.start()
        panel = self.open(program)
        for words in ("Ada Lindqvist", "11 Mar 2026 · 320 pages", "sea", "essays", "SUMMARY", "3 stars", "Book"):
            panel.find(words)
        program.wait_until_idle()
        program.screenshot("book-details")

    def test_rating_state_and_notes_are_saved(self):
        program = self.start()
        panel = self.open(program)
        panel.find("Set rating to 4.5").click()
        panel.find("4.5 stars")
        panel.find("Notes", role="text").click()
        program.type("for Ida")
        panel.find("Reading Status").click()
        program.find("Want to Read", role="menu item").click()
        program.wait_until_idle()
        program.screenshot("book-details-changed")
        panel.find("Save Changes").click()
        program.wait_for_text("Title updated")
        program.wait_gone("The Salt Road", role="dialog")
        self.assertEqual(self.stored(), (4.5, "to-read", "for Ida", 0))

    def test_what_is_closed_without_saving_is_as_it_was(self):
        program = self.start()
        before = None
        for way in ("Escape", "Close"):
            panel = self.open(program)
            before = before or self.stored()
            panel.find("Set rating to 1").click()
            if way == "Escape":
                program.keys(way)
            else:
                panel.find(way).click()
            program.wait_gone("The Salt Road", role="dialog")
            self.assertEqual(self.stored(), before)

    def test_a_book_is_hidden_and_restored(self):
        program = self.start()
        self.open(program).find("Hide from Library").click()
        program.wait_for_text("Book hidden")
        self.eventually(lambda: self.stored()[3] == 1)
        program.find("Hidden", role="push button").click()
        self.open(program).find("Restore to Library").click()
        program.wait_for_text("Book restored to the library")
        self.assertEqual(self.stored()[3], 0)

    def test_what_cannot_be_saved_is_told_and_stays(self):
        program = self.start()
        panel = self.open(program)
        panel.find("Set rating to 1").click()
        self.home.execute(
            "CREATE TRIGGER full BEFORE UPDATE ON goodreads_books BEGIN SELECT RAISE(ABORT, 'no room'); END")
        panel.find("Save Changes").click()
        program.wait_for_text("Title Could Not Be Updated")
        program.screenshot("book-details-not-saved")
        program.find("OK", role="push button").click()
        program.wait_gone("OK", role="push button")
        program.find("The Salt Road", role="dialog").find("1 star")

    def test_a_book_is_rated_with_the_keyboard_alone(self):
        program = self.start()
        program.tab_to("View details for The Salt Road")
        program.keys("Return")
        panel = program.find("The Salt Road", role="dialog")
        program.tab_to("My Rating")
        program.keys("Right")
        panel.find("3.5 stars")
        program.tab_to("Save Changes")
        program.screenshot("book-details-keyboard")
        program.keys("Return")
        program.wait_for_text("Title updated")
        self.assertEqual(self.stored()[0], 3.5)

    def test_long_words_fit_into_the_smallest_window(self):
        program = self.start()
        program.resize(920, 700)
        panel = self.open(program, LONG)
        program.wait_until_idle()
        program.screenshot("small-book-details")
        left, top, width, height = program.find("Quire", role="frame").frame
        x, y, across, down = panel.frame
        self.assertGreaterEqual(x, left)
        self.assertLessEqual(x + across, left + width)
        self.assertLessEqual(y + down, top + height)


if __name__ == "__main__":
    unittest.main()
