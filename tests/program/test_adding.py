import unittest

from quire_driver import ProgramTestCase
from quire_world import Answer, AudioTitle, CatalogueBook, OldBook

GLASS_ORCHARD = CatalogueBook("OL1W", "The Glass Orchard", author="Runa Vik")
TIDEWATER = AudioTitle("B0001", "Tidewater", series="Coast Songs", number="2")


class Adding(ProgramTestCase):
    def setUp(self):
        super().setUp()
        self.home.write_settings(selectedTab="books", automaticGoodreadsSync="0")
        self.home.write_books(OldBook("1", "The Salt Road"))
        self.services.catalogue = [GLASS_ORCHARD]
        self.services.audio_titles = [TIDEWATER]

    def panel(self, program, name):
        program.find(name, role="push button").click()
        return program.find(name, role="dialog")

    def fill(self, program, panel, field, text):
        panel.find(field, role="text").click()
        program.type(text)

    def stored_books(self):
        return self.home.query("SELECT title, author, shelf, goodreads_id FROM goodreads_books ORDER BY id")

    def test_a_book_that_the_catalogue_knows(self):
        program = self.start()
        panel = self.panel(program, "Add Book")
        program.wait_for_text("Search for a Book")
        program.screenshot("add-book-empty")
        program.type("glass")  # the field has the keyboard
        program.keys("Return")
        program.wait_for_text("Runa Vik")
        program.screenshot("add-book-results")
        panel.find("Want to Read", role="push button").click()
        program.wait_for_text("Book added")
        program.wait_for_cards("The Glass Orchard")
        self.assertFalse(program.has("Add Book", role="dialog"))
        self.eventually(lambda: self.stored_books()[-1] == (
            "The Glass Orchard", "Runa Vik", "to-read", "openlibrary:OL1W"))

    def test_a_book_that_is_there_already_keeps_the_panel_open(self):
        self.home.execute("UPDATE goodreads_books SET goodreads_id = 'openlibrary:OL1W', hidden = 1")
        program = self.start()
        panel = self.panel(program, "Add Book")
        program.type("glass")
        program.keys("Return")
        panel.find("Add as Read", role="push button").click()
        program.wait_for_text("Already in Quire")
        program.find("OK", role="push button").click()
        self.assertTrue(program.has("Add Book", role="dialog"))

    def test_a_book_typed_in_gets_a_drawn_cover(self):
        program = self.start()
        panel = self.panel(program, "Add Book")
        panel.find("Enter Manually", role="page tab").click()
        self.fill(program, panel, "Title", "Nine Winters")
        program.screenshot("add-book-manually")
        self.fill(program, panel, "Author", "Piet Aalders")
        self.fill(program, panel, "Pages", "12a")
        panel.find("Set rating to 3.5").click()
        panel.find("Add Book", role="push button").click()
        program.wait_for_text("Book added")
        program.wait_for_cards("Nine Winters", "The Salt Road")
        program.screenshot("book-added")
        [row] = self.home.query("SELECT num_pages, user_rating, cover_data_source, substr(cover_data, 2, 3) "
                                "FROM goodreads_books WHERE title = 'Nine Winters'")
        self.assertEqual(row, (None, 3.5, "manual", b"PNG"))

    def test_without_an_author_nothing_can_be_added(self):
        program = self.start()
        panel = self.panel(program, "Add Book")
        panel.find("Enter Manually", role="page tab").click()
        self.fill(program, panel, "Title", "Nine Winters")
        self.fill(program, panel, "Author", "  ")
        panel.find("Add Book", role="push button").click()
        program.wait_until_idle()
        self.assertEqual(len(self.stored_books()), 1)
        program.keys("Escape")
        program.wait_gone("Add Book", role="dialog")

    def test_a_search_that_fails_says_why(self):
        self.services.files["/search.json"] = Answer(b"Back soon", status=503, type="text/plain")
        program = self.start()
        self.panel(program, "Add Book")
        program.type("g ")
        program.keys("Return")
        program.wait_for_text("Enter at least two characters.")
        program.type("lass")
        program.keys("Return")
        program.wait_for_text("Book Search Failed")
        program.screenshot("add-book-failed")

    def test_an_audiobook_that_the_catalogue_knows(self):
        program = self.start()
        program.open_tab("Audio")
        panel = self.panel(program, "Add Audiobook")
        program.type("tide")
        program.keys("Return")
        program.wait_for_text("Coast Songs #2")
        program.screenshot("add-audiobook-results")
        panel.find("Add as Listening", role="push button").click()
        program.wait_for_text("Audio title added")
        program.wait_for_cards("Tidewater")

    def test_an_audiobook_typed_in(self):
        program = self.start()
        program.open_tab("Audio")
        panel = self.panel(program, "Add Audiobook")
        panel.find("Enter Manually", role="page tab").click()
        self.fill(program, panel, "Title", "Mother of Pearl")
        program.screenshot("add-audiobook-manually")
        panel.find("Add Audiobook", role="push button").click()
        program.wait_for_text("Audio title added")
        program.wait_for_cards("Mother of Pearl")

    def test_the_catalogue_answers_while_one_types_on_the_audio_tab(self):
        program = self.start()
        program.open_tab("Audio")
        program.find("Search library & Audible", role="text").click()
        program.type("t")
        program.wait_until_idle()
        self.assertFalse(program.says("Available to Add"))
        program.type("ide")
        program.wait_for_text("Available to Add")
        program.wait_for_text("Coast Songs #2")
        program.wait_for_text("No matching titles in your library.")
        program.screenshot("audio-search")
        program.find("Add as Read", role="push button").click()
        program.wait_for_text("Audio title added")
        program.wait_for_cards("Tidewater")

    def test_a_book_is_hidden_and_restored_by_its_menu(self):
        program = self.start()
        program.find("View details for The Salt Road").click(button=3)
        program.find("Hide from Library", role="menu item").click()
        program.wait_for_text("Book hidden")
        program.wait_for_text("No titles found")
        program.find("Hidden", role="push button").click()
        program.wait_for_cards("The Salt Road")
        program.find("View details for The Salt Road").click(button=3)
        program.screenshot("restore-by-menu")
        program.find("Restore to Library", role="menu item").click()
        program.wait_for_text("Book restored to the library")

    def test_everything_is_added_with_the_network_gone(self):
        self.services.stop()
        program = self.start()
        panel = self.panel(program, "Add Book")
        program.type("glass")
        program.keys("Return")
        program.wait_for_text("Book Search Failed", seconds=30)
        panel.find("Enter Manually", role="page tab").click()
        self.fill(program, panel, "Title", "Nine Winters")
        self.fill(program, panel, "Author", "Piet Aalders")
        panel.find("Add Book", role="push button").click()
        program.wait_for_text("Book added", seconds=30)


if __name__ == "__main__":
    unittest.main()
