"""The tour of the Insights section, from its head to its foot."""

import datetime
import textwrap
import unittest

from quire_driver import TourCase
from quire_driver.tour import MENU_BAR, sidebar
from quire_world import OldBook

YEAR = datetime.date.today().year
MONTHS = ("Jan", "Feb", "Mar", "Apr", "May", "Jun", "Jul", "Aug", "Sep", "Oct", "Nov", "Dec")


def books(count):
    return f"{count} book" if count == 1 else f"{count} books"


def page(current, numbers, rhythm, january, patterns, rating, ratings, recent):
    """The whole page as an inventory has it."""
    finished, pages, average, active = numbers
    months = {month: january if month == "Jan" else 0 for month in MONTHS}
    lines = "\n".join([
        "heading 'Insights'", "label 'Your reading activity'", "heading 'Currently Reading'", *current,
        "heading 'This Year'", f"label '{YEAR}'", f"label 'Books Finished: {finished}'", f"label 'Pages Read: {pages}'",
        f"label 'Average Rating: {average}'", f"label 'Active Months: {active} of 12'", "heading 'Reading Frequency'",
        f"label '{rhythm}'", "chart 'Books finished by month'", "  label 'Books'", "  label 'Month'",
        *(f"  label '{month}: {books(count)}'" for month, count in months.items()), "heading 'Patterns'",
        "label 'All finished books'", *patterns, "heading 'Rating Profile'", f"label '{rating}'",
        "chart 'Rating distribution'", "  label 'Books'", "  label 'Rating'",
        *(f"  label '{stars} star{'' if stars == 1 else 's'}: {books(count)}'" for stars, count in enumerate(ratings, start=1)),
        "heading 'Recent Finishes'", *recent])
    return "panel 'Reading insights'\n" + textwrap.indent(lines, "  ")


def finished(number, title, **fields):
    return OldBook(str(number), title, read_at=f"{YEAR}-01-01", date_added=f"{YEAR}-01-01", **fields)


class InsightsTour(TourCase):
    def test_a_library_without_books(self):
        program = self.start()
        program.resize(1180, 2600)
        self.shows(program.find("Quire", role="frame"), sidebar("Insights"), page(
            ["label 'Nothing in progress'", "label 'Mark a title as Currently Reading and it will appear here.'"],
            (0, 0, "—", 0), "Monthly pace", 0,
            ["label 'Most-read author: Not enough data'", "label 'Strongest month: No finishes yet'",
             "label 'Average book length: No page data'", "label 'Five-star reads: 0': 0 waiting to be read"],
            "All time", (0, 0, 0, 0, 0),
            ["label 'No finished titles yet'", "label 'Completed books will collect here.'"]), MENU_BAR)

    def test_a_reading_year_and_its_cards(self):
        self.home.write_settings(selectedTab="insights", automaticGoodreadsSync="0")
        self.home.write_books(
            finished(1, "The Salt Road", author="Ada Lindqvist", user_rating=5, num_pages=1320, tags=("sea", "essays")),
            finished(2, "Nine Winters", author="Ada Lindqvist", user_rating=4, num_pages=211, tags=("sea",)),
            OldBook("3", "Older", author="Runa Vik", read_at=f"{YEAR - 1}-05-05", user_rating=0.5),
            OldBook("4", "Harbour Lights", author="Runa Vik", shelf="currently-reading", num_pages=288,
                    date_added=f"{YEAR}-01-02"),
            OldBook("5", "Begun", shelf="currently-reading", date_added=f"{YEAR}-01-01"),
            OldBook("6", "Someday", shelf="to-read"),
            # What is hidden counts nowhere.
            finished(7, "Away", author="Ada Lindqvist", user_rating=5, num_pages=900, tags=("away",), hidden=1),
            OldBook("8", "Away too", shelf="currently-reading", hidden=1))
        program = self.start()
        program.resize(1180, 2600)
        frame = program.find("Quire", role="frame")
        everything = sidebar("Insights"), page(
            ["push button 'View details for Harbour Lights'", "push button 'View details for Begun'"],
            (2, "1,531", "4.5★", 1), "About one finish every 1 day", 2,
            ["label 'Most-read author: Ada Lindqvist': 2 books by Ada Lindqvist",
             "label 'Strongest month: Jan': 2 finished in Jan", "label 'Average book length: 765 pages'",
             "label 'Five-star reads: 1': 1 waiting to be read", "label 'FREQUENT TAGS'", "label 'sea 2'", "label 'essays 1'"],
            "3.2★ average", (1, 0, 0, 1, 1),
            ["push button 'View details for The Salt Road'", "push button 'View details for Nine Winters'",
             "push button 'View details for Older'"]), MENU_BAR
        self.shows(frame, *everything)
        program.resize(1180, 860)

        program.find("View details for Harbour Lights").click()
        panel = program.find("Harbour Lights", role="dialog")
        panel.find("Hide from Library").press()
        program.wait_gone("Harbour Lights", role="dialog")
        program.wait_gone("View details for Harbour Lights")
        program.find("View details for Begun").scroll(40)
        program.find("View details for Older").click()
        panel = program.find("Older", role="dialog")
        panel.find("Reading Status").press()
        program.find("Want to Read", role="menu item").click()
        panel.find("Save Changes").press()
        program.wait_gone("Older", role="dialog")
        program.wait_gone("View details for Older")
        program.resize(1180, 2600)
        self.eventually(lambda: [card.name for card in program.all(starting="View details for ")] == [
            "View details for Begun", "View details for The Salt Road", "View details for Nine Winters"])


if __name__ == "__main__":
    unittest.main()
