import unittest

from quire_driver import ProgramTestCase
from quire_world import OldBook


def day(number: int) -> str:
    return f"2026-{1 + number // 28:02d}-{1 + number % 28:02d}"


class Library(ProgramTestCase):
    def opened(self, *books, **settings):
        self.home.write_settings(selectedTab="books", automaticGoodreadsSync="0", **settings)
        self.home.write_books(*books)
        return self.start()

    def choose(self, program, control, choice):
        program.find(control).click()
        program.find(choice).click()

    def test_a_page_holds_thirty_six_titles(self):
        books = [OldBook(str(n), f"Title {n:02d}", read_at=day(n)) for n in range(37)]
        program = self.opened(*books)
        program.wait_for_text("37 titles")
        self.eventually(lambda: program.cards()[:1] == ["Title 36"])
        program.screenshot("library-page-1")
        program.find(starting="View details for ").scroll(40)
        program.wait_for_text("Page 1 of 2")
        program.find("Previous", role="push button").click()
        program.wait_until_idle()
        self.assertTrue(program.says("Page 1 of 2"))
        program.find("Next", role="push button").click()
        program.wait_for_text("Page 2 of 2")
        program.wait_for_cards("Title 00")
        program.find("Next", role="push button").click()
        program.wait_until_idle()
        self.assertTrue(program.says("Page 2 of 2"))
        program.screenshot("library-page-2")
        program.find("Previous", role="push button").press()
        self.eventually(lambda: program.cards()[:1] == ["Title 36"], "the first page did not come back, from its top")

    def test_one_page_has_no_paging_row(self):
        program = self.opened(*[OldBook(str(n), f"Title {n:02d}", read_at=day(n)) for n in range(36)])
        program.wait_for_text("36 titles")
        self.assertFalse(program.has("Next"))
        self.assertFalse(program.has("Previous"))

    def test_each_shelf_shows_its_own(self):
        program = self.opened(
            OldBook("1", "Done"), OldBook("2", "Wanted", shelf="to-read"), OldBook("3", "Now", shelf="currently-reading"),
            OldBook("4", "Dropped", shelf="did-not-finish"), OldBook("5", "Away", hidden=1))
        program.wait_for_cards("Done")
        for label, titles in {
            "Currently Reading": ["Now"],
            "Want to Read": ["Wanted"],
            "Did Not Finish": ["Dropped"],
            "Hidden": ["Away"],
            "Read": ["Done"],
        }.items():
            with self.subTest(label):
                program.find(label, role="push button").click()
                program.wait_for_cards(*titles)
        program.screenshot("library-shelf-read")

    def test_search_finds_accents_typed_or_not(self):
        program = self.opened(OldBook("1", "Kåseri på Ærø", author="Zoë Müller"), OldBook("2", "Plain Song"))
        program.find("Search library").click()
        for typed in ("kaseri pa", "zoe muller", "Zoë Mü"):
            with self.subTest(typed):
                program.type(typed)
                program.wait_for_cards("Kåseri på Ærø")
                program.find("Clear search").click()
                program.wait_for_text("2 titles")
                self.assertFalse(program.has("Clear search"))
                program.find("Search library").click()
        program.type("no such book")
        program.wait_for_text("No titles found")
        program.screenshot("library-search-nothing")

    def test_the_order_follows_the_choice(self):
        program = self.opened(
            OldBook("1", "Book 10", read_at=day(3), user_rating=2), OldBook("2", "Book 9", read_at=day(1), user_rating=5),
            OldBook("3", "album", read_at=day(2), user_rating=2))
        program.wait_for_cards("Book 10", "album", "Book 9")
        for choice, titles in {
            "Title": ["album", "Book 9", "Book 10"],
            "Rating": ["Book 9", "album", "Book 10"],
            "Recent": ["Book 10", "album", "Book 9"],
        }.items():
            with self.subTest(choice):
                self.choose(program, "Sort library", choice)
                program.wait_for_cards(*titles)

    def test_another_tab_starts_with_an_empty_search_and_the_shelf_read(self):
        program = self.opened(OldBook("1", "Done"), OldBook("2", "Wanted", shelf="to-read"))
        program.find("Want to Read", role="push button").click()
        program.find("Search library").click()
        program.type("wan")
        program.wait_for_cards("Wanted")
        program.open_tab("Audio")
        program.wait_for_text("No audio titles found")
        program.open_tab("Books")
        program.wait_for_cards("Done")
        self.assertEqual(program.find("Search library").text, "")

    def test_titles_of_every_script_are_shown(self):
        titles = ["夜行列車の栞", "الطريق إلى البحر", "🌊 Tide", "W" * 200]
        program = self.opened(*[OldBook(str(n), title, read_at=day(9 - n)) for n, title in enumerate(titles)])
        program.wait_for_cards(*titles)
        program.screenshot("library-scripts")

    def test_wrong_types_in_a_row_do_not_stop_the_library(self):
        self.home.write_settings(selectedTab="books", automaticGoodreadsSync="0")
        self.home.write_books(OldBook("1", "Whole", read_at=day(1)), OldBook("2", "Odd"))
        self.home.execute(
            "UPDATE goodreads_books SET user_rating = 'five', num_pages = x'00ff', published_year = 1.5, "
            "cover_data = 'no picture', cover_url = 'http://[', read_at = 17 WHERE goodreads_id = '2'")
        program = self.start()
        program.wait_for_text("2 titles")
        self.assertEqual(sorted(program.cards()), ["Odd", "Whole"])


if __name__ == "__main__":
    unittest.main()
