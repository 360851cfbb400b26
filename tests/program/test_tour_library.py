"""The tour of the library's two walls: the row over them, the covers, the pages, the menus of covers."""

import unittest

from quire_driver import TourCase
from quire_driver.tour import MENU_BAR, sidebar
from quire_world import OldAudiobook, OldBook, picture

SORTS = ("Recent", "Title", "Rating")


def head(heading, count, add, sort="Recent"):
    return f"heading '{heading}'\nlabel '{count}'\npush button '{add}'\ncombo box 'Sort library': {sort}"


def cards(*titles):
    return "\n".join(f"push button 'View details for {title}'" for title in titles)


EMPTY = "label 'No titles found'\nlabel 'Adjust the search or filter.'"


class LibraryTour(TourCase):
    def frame(self, program):
        return program.find("Quire", role="frame")

    def shows_sorts(self, program, checked):
        program.find("Sort library").click()
        self.shows(program.find(role="popup menu"), "\n".join(
            f"menu item '{sort}'" + (" (checked)" if sort == checked else "") for sort in SORTS))

    def shows_tooltip(self, program, button, words):
        program.find(button, role="push button").hover()
        program.find(words, role="label")
        program.find("Settings", role="push button").hover()
        program.wait_gone(words)

    def test_one_title_then_none_then_what_is_hidden(self):
        self.home.write_settings(selectedTab="books", automaticGoodreadsSync="0")
        self.home.write_books(OldBook("1", "The Salt Road"))
        program = self.start()
        frame = self.frame(program)
        self.shows(frame, sidebar("Books"), head("Read", "1 title", "Add Book"), cards("The Salt Road"), MENU_BAR)
        self.shows_tooltip(program, "Add Book", "Search the book catalog or enter a title manually")
        self.shows_sorts(program, "Recent")
        program.find("Rating", role="menu item").click()
        self.shows(frame, sidebar("Books"), head("Read", "1 title", "Add Book", "Rating"), cards("The Salt Road"), MENU_BAR)

        program.find("View details for The Salt Road").click(button=3)
        self.shows(program.find(role="popup menu"), "menu item 'Hide from Library'")
        program.find("Hide from Library", role="menu item").click()
        program.wait_for_text("Book hidden")
        self.eventually(lambda: self.home.value("SELECT hidden FROM goodreads_books") == 1)
        program.wait_gone("Book hidden")  # the toast goes by itself
        self.shows(frame, sidebar("Books"), head("Read", "0 titles", "Add Book", "Rating"), EMPTY, MENU_BAR)
        program.find("All Titles", role="push button").click()
        self.shows(frame, sidebar("Books", "All Titles"), head("All Titles", "0 titles", "Add Book", "Rating"), EMPTY, MENU_BAR)
        program.find("Hidden", role="push button").click()
        self.shows(frame, sidebar("Books", "Hidden"), head("Hidden", "1 title", "Add Book", "Rating"),
                   cards("The Salt Road"), MENU_BAR)
        program.find("View details for The Salt Road").click(button=3)
        self.shows(program.find(role="popup menu"), "menu item 'Restore to Library'")
        program.keys("Escape")
        program.wait_gone(role="popup menu")

        program.find("Search library", role="text").click()
        program.type("salt")
        self.shows(frame, sidebar("Books", "Hidden", search="salt"), head("Hidden", "1 title", "Add Book", "Rating"),
                   cards("The Salt Road"), MENU_BAR)
        program.type("y")
        self.shows(frame, sidebar("Books", "Hidden", search="salty"), head("Hidden", "0 titles", "Add Book", "Rating"),
                   EMPTY, MENU_BAR)
        program.find("Clear search", role="push button").press()
        self.shows(frame, sidebar("Books", "Hidden"), head("Hidden", "1 title", "Add Book", "Rating"),
                   cards("The Salt Road"), MENU_BAR)

    def test_two_thousand_titles_in_fifty_six_pages(self):
        self.home.write_settings(selectedTab="books", automaticGoodreadsSync="0")
        cover = picture(200, 300)  # or covers would be drawn for all of them
        self.home.write_books(*[OldBook(str(n), f"Title {n:04d}", cover_data=cover, cover_data_source="manual")
                                for n in range(2000)])
        program = self.start()
        frame = self.frame(program)
        program.wait_for_text("2,000 titles")
        program.resize(1180, 2400)
        page = [f"Title {n:04d}" for n in range(36)]
        foot = "push button 'Previous' (disabled)\nlabel 'Page 1 of 56'\npush button 'Next'"
        self.shows(frame, sidebar("Books"), head("Read", "2,000 titles", "Add Book"), cards(*page), foot, MENU_BAR)
        program.find("Previous", role="push button").press()
        self.stays(program, frame, sidebar("Books"), head("Read", "2,000 titles", "Add Book"), cards(*page), foot, MENU_BAR)
        program.find("Next", role="push button").press()
        page = [f"Title {n:04d}" for n in range(36, 72)]
        self.shows(frame, sidebar("Books"), head("Read", "2,000 titles", "Add Book"), cards(*page),
                   "push button 'Previous'\nlabel 'Page 2 of 56'\npush button 'Next'", MENU_BAR)
        program.find("Search library", role="text").click()
        program.type("title 1999")  # a list that is filtered anew begins with its first page, of which it has one
        self.shows(frame, sidebar("Books", search="title 1999"), head("Read", "1 title", "Add Book"), cards("Title 1999"),
                   MENU_BAR)

    def test_audiobooks_stand_on_one_page_and_have_no_menu(self):
        self.home.write_settings(selectedTab="audio")
        self.home.write_audiobooks(
            *[OldAudiobook(f"B{n}", f"Title {n:02d}") for n in range(40)],
            OldAudiobook("C1", "Begun", status="reading"), OldAudiobook("C2", "Wanted", status="to-read"),
            OldAudiobook("C3", "Left", status="did-not-finish"))
        program = self.start()
        frame = self.frame(program)
        program.wait_for_text("40 titles")
        program.resize(1180, 2400)
        titles = [f"Title {n:02d}" for n in range(40)]
        everything = sidebar("Audio"), head("Read", "40 titles", "Add Audiobook"), cards(*titles), MENU_BAR
        self.shows(frame, *everything)
        self.shows_tooltip(program, "Add Audiobook", "Search Audible and add a title to Quire")
        program.find("View details for Title 07").click(button=3)
        self.stays(program, frame, *everything)
        self.assertFalse(program.has(role="popup menu"))
        self.shows_sorts(program, "Recent")
        program.find("Title", role="menu item").click()
        for shelf, title in (("Currently Listening", "Begun"), ("Want to Read", "Wanted"), ("Did Not Finish", "Left")):
            program.find(shelf, role="push button").click()
            self.shows(frame, sidebar("Audio", shelf), head(shelf, "1 title", "Add Audiobook", "Title"), cards(title), MENU_BAR)
        program.find("All Audio", role="push button").click()
        self.shows(frame, sidebar("Audio", "All Audio"), head("All Audio", "43 titles", "Add Audiobook", "Title"),
                   cards("Begun", "Left", *titles, "Wanted"), MENU_BAR)
        program.find("View details for Wanted").press()
        program.find("Wanted", role="dialog")


if __name__ == "__main__":
    unittest.main()
