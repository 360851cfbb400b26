"""The tour of what frames the views: the sidebar and the menu bar. docs/tour.md tells where each control is tried."""

import unittest

from quire_driver import Settings, TourCase
from quire_driver.tour import MENU_BAR, sidebar
from quire_world import Answer, OldBook

NO_BOOKS = """
    heading 'Read'
    label '0 titles'
    push button 'Add Book'
    combo box 'Sort library': Recent
    label 'No titles found'
    label 'Adjust the search or filter.'
"""
VIEWS = "Library Section", "Library View", "Sort Library"
NO_AUDIO = NO_BOOKS.replace("Add Book", "Add Audiobook").replace("No titles", "No audio titles")


class ShellTour(TourCase):
    def frame(self, program):
        return program.find("Quire", role="frame")

    def shows_menu(self, program, title, *items):
        """One that is not to be had begins with a dash; a dash alone is a line."""
        menu = self.open_menu(program, title)
        self.shows(menu, "\n".join(
            "separator ''" if item == "-" else f"menu item '{item.removeprefix('-')}'" + (" (disabled)" if item[0] == "-" else "")
            for item in items))
        self.close_menus(program)

    def shows_choices(self, program, submenu, checked, *items):
        menu = self.open_submenu(program, "View", submenu, items[0])
        self.shows(menu, "\n".join(f"menu item '{item}'" + (" (checked)" if item == checked else "") for item in items))
        self.close_menus(program)

    def test_a_first_start_and_all_its_menus(self):
        program = self.start()
        frame = self.frame(program)
        program.open_tab("Books")
        self.shows(frame, sidebar("Books"), NO_BOOKS, MENU_BAR)
        program.open_tab("Audio")
        self.shows(frame, sidebar("Audio"), NO_AUDIO, MENU_BAR)

        self.shows_menu(program, "Quire", "Check for Updates…", "-", "Open Data Folder", "Open Logs", "-", "Settings…", "-",
                        "Quit")
        self.shows_menu(program, "File", "Back Up Quire Database…")
        self.shows_menu(program, "View", *VIEWS, "-", "-Previous Library Page", "-Next Library Page")
        self.shows_menu(program, "Library", "Sync")
        self.shows_menu(program, "Help", "Quire Help", "Quick Help in Quire", "Send Feedback…", "About Quire")
        self.shows_choices(program, "Library Section", "Audio", "Books", "Insights", "Audio")
        self.shows_choices(program, "Library View", "Read", "Read", "Did Not Finish", "Want to Read", "Currently Listening",
                           "Hidden", "All Audio")
        self.shows_choices(program, "Sort Library", "Recent", "Recent", "Title", "Rating")

        self.choose(program, "Quire", "Settings…")
        program.find("Quire Settings", role="frame").find("Cancel").click()
        program.wait_gone("Quire Settings", role="frame")
        self.choose(program, "Help", "Quire Help")
        self.choose(program, "Help", "Send Feedback…")
        self.eventually(lambda: self.home.opened == [
            f"{self.services.address}/quire/help.html", "mailto:feedback@quire.example?subject=Quire%20Feedback"])
        self.open_menu(program, "Quire")
        program.find("Quit", role="menu item").click()
        self.assert_ended_cleanly(program)

    def test_the_menu_chooses_section_shelf_order_and_page(self):
        self.home.write_settings(selectedTab="books", automaticGoodreadsSync="0")
        self.home.write_books(*[OldBook(str(n), f"Title {n:02d}", user_rating=n % 5, read_at=f"2026-01-{1 + n % 28:02d}")
                                for n in range(40)],
                              OldBook("50", "Wanted", shelf="to-read"), OldBook("51", "Away", hidden=1))
        program = self.start()
        program.wait_for_text("40 titles")
        self.choose(program, "View", "Sort Library", "Title")
        self.eventually(lambda: program.cards()[:1] == ["Title 00"])
        self.choose(program, "View", "Sort Library", "Rating")
        self.eventually(lambda: program.cards()[:1] == ["Title 04"])
        self.shows_choices(program, "Sort Library", "Rating", "Recent", "Title", "Rating")
        self.choose(program, "View", "Sort Library", "Title")

        # A command that is not to be had does nothing.
        self.shows_menu(program, "View", *VIEWS, "-", "-Previous Library Page", "Next Library Page")
        self.choose_in_vain(program, "Previous Library Page")
        self.assertEqual(program.cards()[:1], ["Title 00"])
        self.choose(program, "View", "Next Library Page")
        program.wait_for_cards("Title 36", "Title 37", "Title 38", "Title 39")
        self.shows_menu(program, "View", *VIEWS, "-", "Previous Library Page", "-Next Library Page")
        self.choose_in_vain(program, "Next Library Page")
        program.wait_for_cards("Title 36", "Title 37", "Title 38", "Title 39")
        self.choose(program, "View", "Previous Library Page")
        self.eventually(lambda: program.cards()[:1] == ["Title 00"])

        for shelf, title in (("Want to Read", "Wanted"), ("Hidden", "Away")):
            self.choose(program, "View", "Library View", shelf)
            program.wait_for_cards(title)
        self.choose(program, "View", "Library View", "All Titles")
        program.wait_for_text("41 titles")  # what is hidden is on its own shelf alone
        self.shows_choices(program, "Library View", "All Titles", "Read", "Did Not Finish", "Want to Read",
                           "Currently Reading", "Hidden", "All Titles")

        self.choose(program, "View", "Library Section", "Insights")
        program.wait_for_text("Your reading activity")
        self.shows_menu(program, "View", "Library Section", "-Library View", "-Sort Library", "-", "-Previous Library Page",
                        "-Next Library Page")
        for submenu in ("Library View", "Sort Library"):
            self.opens_nothing(program, submenu)
        for page in ("Previous Library Page", "Next Library Page"):
            self.choose_in_vain(program, page)
        self.choose(program, "View", "Library Section", "Audio")
        program.wait_for_text("No audio titles found")
        for page in ("Previous Library Page", "Next Library Page"):
            self.choose_in_vain(program, page)
        self.choose(program, "View", "Library Section", "Books")
        self.eventually(lambda: program.cards()[:1] == ["Title 00"], "the page was turned behind another section")

    def choose_in_vain(self, program, item):
        self.open_menu(program, "View")
        program.find(item, role="menu item").click()
        self.close_menus(program)

    def opens_nothing(self, program, submenu):
        self.open_menu(program, "View")
        program.find(submenu, role="menu item").click()
        program.wait_until_idle()
        self.assertEqual(len(program.all(role="popup menu")), 1, f"{submenu} opened")
        self.close_menus(program)

    def test_sections_that_are_switched_off_are_not_offered(self):
        self.home.write_settings(selectedTab="books", automaticGoodreadsSync="0", showAudioSection="0")
        program = self.start()
        self.shows(self.frame(program), sidebar("Books", tabs=("Books", "Insights")), NO_BOOKS, MENU_BAR)
        self.shows_choices(program, "Library Section", "Books", "Books", "Insights")

        settings = Settings(program, "Libraries")
        for section in ("Books", "Audio"):
            settings.window.find(section, role="check box").click()
        settings.save()
        program.wait_gone("Quire Settings", role="frame")
        program.wait_for_text("Your reading activity")  # where a reader goes whose section is gone
        for tab in ("Books", "Insights"):
            self.assertFalse(program.has(tab, role="push button"), tab)
        self.shows_choices(program, "Library Section", "Insights", "Insights", "Audio")
        program.open_tab("Audio")
        self.shows(self.frame(program), sidebar("Audio", tabs=("Audio",)), NO_AUDIO, MENU_BAR)

        settings = Settings(program, "Libraries")
        settings.window.find("Audio", role="check box").click()
        settings.save()
        program.wait_gone("Quire Settings", role="frame")
        program.wait_for_text("Your reading activity")
        self.assertFalse(program.has("Audio", role="push button"))
        self.shows_choices(program, "Library Section", "Insights", "Insights")
        self.assertEqual((self.home.setting("showBooksSection"), self.home.setting("showAudioSection")), ("0", "0"))

    def test_while_a_job_runs_the_sidebar_says_so_and_no_other_begins(self):
        self.home.connect_goodreads()
        self.home.write_settings(selectedTab="books")
        self.services.answer_every_shelf(Answer(delay=120))
        program = self.start()
        self.choose(program, "Library", "Sync")
        frame = self.frame(program)
        self.shows(frame, sidebar("Books", sync=": In progress (disabled)"), NO_BOOKS, MENU_BAR)  # and no overlay
        program.find("Sync", role="push button").click()
        program.keys("ctrl+r")
        self.shows_menu(program, "Library", "-Sync")
        self.open_menu(program, "Library")
        program.find("Sync", role="menu item").click()
        self.close_menus(program)
        program.open_tab("Audio")
        self.shows(frame, sidebar("Audio", sync=": In progress (disabled)"), NO_AUDIO, MENU_BAR)
        first = self.services.asked_shelves[0]
        self.assertEqual(self.services.asked_shelves.count(first), 1)  # another sync would begin with it anew
        self.services.stop()  # the feed fails, and the button comes to rest
        program.wait_for_text("Goodreads Sync Failed", seconds=30)
        program.find("OK", role="push button").click()
        program.wait_gone("OK", role="push button")
        self.shows(frame, sidebar("Audio"), NO_AUDIO, MENU_BAR)

    def test_a_menu_that_escape_closed_under_the_pointer_leaves_the_bar_at_rest(self):
        program = self.start()
        program.find("Quire", role="menu bar").click()
        program.find("Open Logs", role="menu item")
        program.keys("Escape")
        program.wait_gone(role="popup menu")
        program.find("File", role="menu bar").hover()
        program.wait_until_idle()
        self.assertFalse(program.has(role="popup menu"), "a menu opened without a click")
        program.find("File", role="menu bar").click()
        program.find("Back Up Quire Database…", role="menu item")
        program.find("View", role="menu bar").hover()  # while one is open the others follow the pointer
        program.find("Library Section", role="menu item")
        program.wait_gone("Back Up Quire Database…", role="menu item")
        program.find("View", role="menu bar").click()
        program.wait_gone(role="popup menu")


if __name__ == "__main__":
    unittest.main()
