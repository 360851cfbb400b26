"""The tour of the two panels that add titles, in both of their ways, and of the overlay while they work."""

import threading
import unittest

from quire_driver import TourCase
from quire_driver.tour import stars
from quire_world import Answer, AudioTitle, CatalogueBook

BOOK_SEARCH = """
    heading 'Search Books'
    label 'Search Open Library, then add a title to the appropriate shelf.'
    page tab list 'Way of adding'
      page tab 'Search Books' (selected)
      page tab 'Enter Manually'
"""
AUDIO_SEARCH = """
    heading 'Search Audible'
    label 'Find an audiobook, then add it as read or currently listening.'
    page tab list 'Way of adding'
      page tab 'Search Audible' (selected)
      page tab 'Enter Manually'
"""


IDLE = "push button 'Search' (disabled)"


def bar(prompt, query="", search="push button 'Search'"):
    return f"text '{prompt}'" + (f" = '{query}'" if query else "") + f"\n{search}"


def foot(title):
    return f"push button 'Close'\nheading '{title}'"


def empty(title, detail):
    return f"label '{title}'\nlabel '{detail}'"


class AddingTour(TourCase):
    PROMPT = ""

    def panel(self, program, name):
        program.find(name, role="push button").click()
        return program.find(name, role="dialog")

    def fill(self, program, panel, **fields):
        for name, text in fields.items():
            panel.find(name, role="text").click()
            program.type(text)

    def choose_state(self, program, panel, picker, state):
        panel.find(picker, role="combo box").click()
        program.find(state, role="menu item").click()
        program.wait_gone(role="popup menu")


class AddBookTour(AddingTour):
    PROMPT = "Title, author, or ISBN"

    def setUp(self):
        super().setUp()
        self.home.write_settings(selectedTab="books", automaticGoodreadsSync="0")
        self.services.catalogue = [
            CatalogueBook("OL1W", "Glass Orchard", author="Runa Vik"),
            CatalogueBook("OL2W", "Glass", author="Piet Aalders", isbn="9780000000026", pages=None, year=None)]

    def stored(self, title):
        return self.home.query(
            "SELECT author, isbn, num_pages, published_year, user_rating, shelf, description, notes, goodreads_id "
            "FROM goodreads_books WHERE title = ?", title)[0]

    def test_a_search_for_books_in_all_its_states(self):
        program = self.start()
        panel = self.panel(program, "Add Book")
        before = empty("Search for a Book", "Enter at least two characters to search Open Library.")
        self.shows(panel, BOOK_SEARCH, bar(self.PROMPT), before, foot("Add Book"))
        self.assertEqual(program.focused().name, self.PROMPT)
        panel.find("Search", role="push button").click()
        failed = empty("Book Search Failed", "Enter at least two characters.")
        self.shows(panel, BOOK_SEARCH, bar(self.PROMPT), failed, foot("Add Book"))

        self.fill(program, panel, **{self.PROMPT: "nobody knows"})
        panel.find("Search", role="push button").click()
        nothing = empty("Book Search Failed", "No matching titles were found.")
        self.shows(panel, BOOK_SEARCH, bar(self.PROMPT, "nobody knows"), nothing, foot("Add Book"))

        self.services.files["/search.json"] = Answer(delay=120)
        panel.find("Search", role="push button").click()
        searching = bar(self.PROMPT, "nobody knows", IDLE), "label 'Searching books…'"
        self.shows(panel, BOOK_SEARCH, *searching, foot("Add Book"))
        asked = len(self.services.requests)
        panel.find("Search", role="push button").click()  # not while one goes on
        self.assertEqual(len(self.services.requests), asked)

        del self.services.files["/search.json"]
        panel.find(self.PROMPT, role="text").click()
        program.keys("ctrl+a")
        program.type("glass")
        program.keys("Return")  # another search takes the place of one that goes on
        results = """
            list item 'Glass Orchard'
              label 'Glass Orchard'
              label 'Runa Vik'
              label '1999'
              label '312 pages'
              label 'ISBN 9780000000019'
              push button 'Add as Read'
              push button 'Add as Reading'
              push button 'Want to Read'
            list item 'Glass'
              label 'Glass'
              label 'Piet Aalders'
              label 'ISBN 9780000000026'
              push button 'Add as Read'
              push button 'Add as Reading'
              push button 'Want to Read'
        """
        self.shows(panel, BOOK_SEARCH, bar(self.PROMPT, "glass"), results, foot("Add Book"))
        panel.find("Glass", role="list item").find("Add as Reading").click()
        program.wait_for_text("Book added")
        program.wait_gone("Add Book", role="dialog")
        program.wait_for_cards("Glass")
        self.assertEqual(self.stored("Glass"), (
            "Piet Aalders", "9780000000026", None, None, 0, "currently-reading", None, "", "openlibrary:OL2W"))

        panel = self.panel(program, "Add Book")
        self.shows(panel, BOOK_SEARCH, bar(self.PROMPT), before, foot("Add Book"))  # nothing is left of the last time
        self.fill(program, panel, **{self.PROMPT: "orchard"})
        program.keys("Return")
        panel.find("Glass Orchard", role="list item").find("Add as Read").click()
        program.wait_gone("Add Book", role="dialog")
        program.wait_for_cards("Glass Orchard")
        self.assertEqual(self.stored("Glass Orchard"), (
            "Runa Vik", "9780000000019", 312, 1999, 0, "read", None, "", "openlibrary:OL1W"))

    def form(self, rating=0, state="Read", **texts):
        hints = {"Title": "Required", "Author": "Required", "ISBN": "Optional", "Pages": "Optional", "Year": "Optional"}

        def field(name):
            return f"text '{name}'" + (f": {hints[name]}" if name in hints else "") \
                + (f" = '{texts[name]}'" if name in texts else "")

        return "\n".join([
            "heading 'Add a book manually'", "label 'Use this when a title is not available in the book catalog.'",
            "page tab list 'Way of adding'", "  page tab 'Search Books'", "  page tab 'Enter Manually' (selected)",
            *map(field, hints), stars(rating), f"combo box 'Reading Status': {state}", field("Summary"), field("Notes"),
            "push button 'Cancel'", "push button 'Add Book'" + ("" if "Author" in texts else " (disabled)"), foot("Add Book")])

    def test_each_field_of_a_book_typed_in_is_stored(self):
        program = self.start()
        panel = self.panel(program, "Add Book")
        panel.find("Enter Manually", role="page tab").click()
        self.shows(panel, self.form())
        self.assertEqual(program.focused().name, "Title")
        typed = dict(Title="Nine Winters", Author="Piet Aalders", ISBN="978-0", Pages="211", Year="1987", Summary="Snow.",
                     Notes="from Ida")
        self.fill(program, panel, **typed)
        panel.find("Set rating to 4.5").click()
        self.choose_state(program, panel, "Reading Status", "Did Not Finish")
        self.shows(panel, self.form(4.5, "Did Not Finish", **typed))
        panel.find("Search Books", role="page tab").click()  # and back: nothing typed is lost
        panel.find(self.PROMPT, role="text")
        panel.find("Enter Manually", role="page tab").click()
        self.shows(panel, self.form(4.5, "Did Not Finish", **typed))

        seen = threading.Event()
        self.services.files["/search.json"] = Answer(b"{}", until=seen)  # the look for a cover takes its time
        panel.find("Add Book", role="push button").click()
        program.find("Adding Nine Winters…", role="alert")
        seen.set()
        program.wait_for_text("Book added", seconds=30)
        program.wait_gone("Adding Nine Winters…")
        program.wait_gone("Add Book", role="dialog")
        program.wait_for_cards("Nine Winters")
        self.assertTrue(program.has("Did Not Finish", role="heading"))
        self.assertEqual(self.stored("Nine Winters")[:8], (
            "Piet Aalders", "978-0", 211, 1987, 4.5, "did-not-finish", "Snow.", "from Ida"))

        panel = self.panel(program, "Add Book")
        panel.find("Enter Manually", role="page tab").click()
        self.fill(program, panel, Title="Never", Author="Nobody")
        panel.find("Cancel", role="push button").click()
        program.wait_gone("Add Book", role="dialog")
        self.assertEqual(self.home.value("SELECT COUNT(*) FROM goodreads_books"), 1)


class AddAudiobookTour(AddingTour):
    PROMPT = "Title, author, narrator, or series"

    def setUp(self):
        super().setUp()
        self.home.write_settings(selectedTab="audio", automaticGoodreadsSync="0")
        self.services.audio_titles = [
            AudioTitle("B1", "Tidewater", author="Runa Vik", series="Coast Songs", number="2", summary="Of the coast."),
            AudioTitle("B2", "Tide Pools")]

    def stored(self, title):
        return self.home.query(
            "SELECT author, narrator, series, book_number, status, description, user_rating FROM audible_books "
            "WHERE title = ?", title)[0]

    def test_a_search_for_audiobooks_in_all_its_states(self):
        program = self.start()
        panel = self.panel(program, "Add Audiobook")
        before = empty("Search for an Audiobook", "Enter at least two characters to search Audible.")
        self.shows(panel, AUDIO_SEARCH, bar(self.PROMPT), before, foot("Add Audiobook"))
        self.services.files["/1.0/catalog/products"] = Answer(delay=120)
        self.fill(program, panel, **{self.PROMPT: "tide"})
        program.keys("Return")
        self.shows(panel, AUDIO_SEARCH, bar(self.PROMPT, "tide", IDLE), "label 'Searching Audible…'", foot("Add Audiobook"))
        self.services.files["/1.0/catalog/products"] = Answer(b"Back soon", status=503, type="text/plain")
        program.keys("Return")
        program.wait_for_text("Audible Search Failed")
        del self.services.files["/1.0/catalog/products"]
        panel.find("Search", role="push button").click()
        self.shows(panel, AUDIO_SEARCH, bar(self.PROMPT, "tide"), """
            list item 'Tidewater'
              label 'Tidewater'
              label 'Runa Vik'
              label 'Piet Aalders'
              label 'Coast Songs #2'
              label '2019'
              push button 'Add as Read'
              push button 'Add as Listening'
            list item 'Tide Pools'
              label 'Tide Pools'
              label 'Ada Lindqvist'
              label 'Piet Aalders'
              label '2019'
              push button 'Add as Read'
              push button 'Add as Listening'
        """, foot("Add Audiobook"))
        panel.find("Tidewater", role="list item").find("Add as Read").click()
        program.wait_for_text("Audio title added")
        program.wait_gone("Add Audiobook", role="dialog")
        program.wait_for_cards("Tidewater")
        self.assertEqual(self.stored("Tidewater"), ("Runa Vik", "Piet Aalders", "Coast Songs", 2, "read", "Of the coast.", None))

    def form(self, state="Read", **texts):
        hints = {"Title": ": Required", "Author": "", "Narrator": "", "Series": ": Optional", "Number": ": Optional"}
        fields = [f"text '{name}'{hint}" + (f" = '{texts[name]}'" if name in texts else "") for name, hint in hints.items()]
        return "\n".join([
            "heading 'Add an audiobook manually'", "label 'Use this when the audiobook is not available from Audible.'",
            "page tab list 'Way of adding'", "  page tab 'Search Audible'", "  page tab 'Enter Manually' (selected)",
            *fields, f"combo box 'Listening Status': {state}",
            "text 'Summary'" + (f" = '{texts['Summary']}'" if "Summary" in texts else ""), "push button 'Cancel'",
            "push button 'Add Audiobook'" + ("" if "Title" in texts else " (disabled)"), foot("Add Audiobook")])

    def test_each_field_of_an_audiobook_typed_in_is_stored(self):
        program = self.start()
        panel = self.panel(program, "Add Audiobook")
        panel.find("Enter Manually", role="page tab").click()
        self.shows(panel, self.form())
        panel.find("Add Audiobook", role="push button").click()  # not without a title
        self.stays(program, panel, self.form())
        typed = dict(Title="Mother of Pearl", Author="Ada Lindqvist", Narrator="Runa Vik", Series="Shells", Number="3",
                     Summary="Under water.")
        self.fill(program, panel, **typed)
        self.choose_state(program, panel, "Listening Status", "Currently Listening")
        self.shows(panel, self.form("Currently Listening", **typed))
        panel.find("Add Audiobook", role="push button").click()
        program.wait_for_text("Audio title added", seconds=30)
        program.wait_gone("Add Audiobook", role="dialog")
        program.wait_for_cards("Mother of Pearl")
        self.assertTrue(program.has("Currently Listening", role="heading"))
        self.assertEqual(self.stored("Mother of Pearl"), (
            "Ada Lindqvist", "Runa Vik", "Shells", 3, "reading", "Under water.", None))

        panel = self.panel(program, "Add Audiobook")
        panel.find("Enter Manually", role="page tab").click()
        self.fill(program, panel, Title="Want")
        self.choose_state(program, panel, "Listening Status", "Want to Read")
        panel.find("Title", role="text").click()
        program.keys("Return")  # adds as the button does; what is wanted is on another shelf than the one shown
        program.wait_gone("Add Audiobook", role="dialog")
        program.wait_for_text("No audio titles found")
        self.assertEqual(self.stored("Want")[4], "to-read")

        panel = self.panel(program, "Add Audiobook")
        panel.find("Enter Manually", role="page tab").click()
        self.fill(program, panel, Title="Never")
        panel.find("Cancel", role="push button").click()
        program.wait_gone("Add Audiobook", role="dialog")
        self.assertEqual(self.home.value("SELECT COUNT(*) FROM audible_books"), 2)


if __name__ == "__main__":
    unittest.main()
