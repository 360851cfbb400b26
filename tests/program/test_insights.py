import datetime
import unittest

from quire_driver import ProgramTestCase
from quire_driver.desktop import Desktop
from quire_driver.windows import windows_of
from quire_world import OldBook

YEAR = datetime.date.today().year


def finished(number, title, month, **fields):
    return OldBook(str(number), title, read_at=f"{YEAR}-{month:02}-11", date_added=f"{YEAR}-01-01", **fields)


class Insights(ProgramTestCase):
    def write_reading_year(self):
        self.home.write_books(
            finished(1, "The Salt Road", 1, author="Ada Lindqvist", user_rating=5, num_pages=320, tags=("sea", "essays")),
            finished(2, "Nine Winters", 1, author="Ada Lindqvist", user_rating=4, num_pages=211, tags=("sea",)),
            finished(3, "Mother of Pearl", 1, author="Piet Aalders", user_rating=4.5, num_pages=1412),
            finished(4, "A Long Title That Goes on for Longer Than Any Card of This Page Is Wide, with a Subtitle", 1,
                     author="An Author with a Name as Long as the Title of the Book Itself", user_rating=2),
            finished(5, "Tidewater", 1, author="Runa Vik", user_rating=3),
            finished(6, "The Glass Orchard", 1, author="Runa Vik"),
            OldBook("7", "Harbour Lights", author="Runa Vik", shelf="currently-reading", num_pages=288),
            OldBook("8", "Someday", shelf="to-read"))

    def scroll(self, program, button):
        Desktop.shared().run("xdotool", "mousemove", "600", "450", "click", "--repeat", "40", "--delay", "20", str(button))
        program.wait_until_idle()

    def test_the_numbers_of_a_reading_year(self):
        self.home.write_settings(selectedTab="insights", automaticGoodreadsSync="0")
        self.write_reading_year()
        program = self.start()
        program.wait_for_text("This Year")
        program.wait_for_text("Books Finished: 6")
        program.wait_for_text("Pages Read: 1,943")
        program.wait_for_text("Active Months: 1 of 12")
        program.wait_for_text("About one finish every 1 day")
        chart = program.find("Books finished by month", role="chart")
        self.assertEqual(chart.find("Jan: 6 books").role, "label")
        program.screenshot("insights")
        self.scroll(program, 5)
        self.assertEqual(program.find("Rating distribution", role="chart").find("5 stars: 2 books").role, "label")
        program.wait_for_text("Most-read author: Ada Lindqvist")
        program.screenshot("insights-below")
        window = str(windows_of(program.pid, "^Quire$")[-1])
        Desktop.shared().run("xdotool", "windowsize", "--sync", window, "920", "700")
        program.wait_until_idle()
        program.screenshot("insights-smallest-below")
        self.scroll(program, 4)
        program.screenshot("insights-smallest")

    def test_a_library_without_read_books(self):
        self.home.write_settings(selectedTab="insights", automaticGoodreadsSync="0")
        self.home.write_books(OldBook("8", "Someday", shelf="to-read"))
        program = self.start()
        program.wait_for_text("Nothing in progress")
        program.wait_for_text("Books Finished: 0")
        program.screenshot("insights-empty")
        self.scroll(program, 5)
        program.wait_for_text("No finished titles yet")
        program.screenshot("insights-empty-below")


if __name__ == "__main__":
    unittest.main()
