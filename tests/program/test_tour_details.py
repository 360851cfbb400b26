"""The tour of the two detail views: what they show of a title, and what each of their controls does to it."""

import unittest

from quire_driver import TourCase
from quire_driver.tour import stars
from quire_world import Answer, OldAudiobook, OldBook


def panel(title, kind, facts, pills, rating, choice, state, actions, summary="No summary available."):
    """A detail view as an inventory has it; of the actions, one that is not to be had begins with a dash."""
    lines = [f"image 'Cover for {title}'", f"heading '{title}'", *(f"label '{fact}'" for fact in facts)]
    if pills:
        lines += ["list 'Facts'", *(f"  label '{pill}'" for pill in pills)]
    lines += ["heading 'SUMMARY'", "panel 'Summary'", f"  label '{summary}'", stars(rating),
              f"combo box '{choice}'" + (f": {state}" if state else ""), "text 'Notes'"]
    lines += [f"push button '{action.removeprefix('-')}'" + (" (disabled)" if action.startswith("-") else "")
              for action in [*actions, "Close"]]
    return "\n".join([*lines, f"heading '{title}'", f"label '{kind}'"])


def states(under_way):
    """The list of the states of a title that was read."""
    return "\n".join(f"menu item '{state}'" + (" (checked)" if state == "Read" else "")
                     for state in (under_way, "Read", "Want to Read", "Did Not Finish"))


class BookDetailTour(TourCase):
    def setUp(self):
        super().setUp()
        self.home.write_settings(selectedTab="books")
        self.home.write_books(
            OldBook("1", "The Salt Road", author="Ada Lindqvist", user_rating=3, average_rating=3.925, num_pages=320,
                    published_year=2019, read_at="2026-03-11", description="A road, and salt.", tags=("essays", "sea"),
                    goodreads_url="https://127.0.0.1/book/1"),
            OldBook("2", "Bare"),
            OldBook("3", "Odd", shelf="abandoned"))

    def open(self, program, title):
        program.find(f"View details for {title}").click()
        return program.find(title, role="dialog")

    def close(self, program, title):
        program.find(title, role="dialog").find("Close", role="push button").click()
        program.wait_gone(title, role="dialog")

    def stored(self, title):
        return self.home.query("SELECT user_rating, shelf, notes FROM goodreads_books WHERE title = ?", title)[0]

    def test_a_book_with_every_fact_and_one_with_none(self):
        program = self.start()
        program.wait_for_cards("The Salt Road", "Bare")
        details = self.open(program, "The Salt Road")
        facts = ["Ada Lindqvist", "11 Mar 2026 · 320 pages · 2019"], ["Goodreads: 3.925/5", "essays", "sea"]
        actions = ["Save Changes", "Goodreads", "Hide from Library"]
        self.shows(details, panel("The Salt Road", "Book", *facts, 3, "Reading Status", "Read", actions, "A road, and salt."))
        self.assertTrue(program.has("Close details", role="push button"))

        # The right half of the third star is its three stars: a second click takes them back.
        details.find("Set rating to 3").click()
        self.shows(details, panel("The Salt Road", "Book", *facts, 0, "Reading Status", "Read", actions, "A road, and salt."))
        details.find("Set rating to 2.5").click()
        details.find("Clear rating").click()
        details.find("Unrated")
        details.find("Set rating to 1").click()
        details.find("1 star")
        details.find("Set rating to 1.5").click()
        details.find("1.5 stars")
        details.find("Set rating to 5").hover()
        self.stays(program, details, panel(
            "The Salt Road", "Book", *facts, 1.5, "Reading Status", "Read", actions, "A road, and salt."))

        details.find("Goodreads", role="push button").click()
        self.eventually(lambda: self.home.opened == ["https://127.0.0.1/book/1"])
        details.find("Reading Status").click()
        self.shows(program.find(role="popup menu"), states("Currently Reading"))
        program.find("Currently Reading", role="menu item").click()
        program.find("Close details", role="push button").press()
        program.wait_gone("The Salt Road", role="dialog")
        self.assertEqual(self.stored("The Salt Road"), (3, "read", ""))

        details = self.open(program, "Bare")
        actions = ["Save Changes", "-Goodreads", "Hide from Library"]
        self.shows(details, panel("Bare", "Book", [], [], 0, "Reading Status", "Read", actions))
        details.find("Goodreads", role="push button").click()  # there is no page
        program.wait_until_idle()
        self.assertEqual(len(self.home.opened), 1)
        self.close(program, "Bare")

    def test_a_state_that_is_none_of_the_choices_is_kept(self):
        program = self.start()
        program.find("All Titles", role="push button").click()
        details = self.open(program, "Odd")
        actions = ["Save Changes", "-Goodreads", "Hide from Library"]
        self.shows(details, panel("Odd", "Book", [], [], 0, "Reading Status", "", actions))
        details.find("Notes", role="text").click()
        program.type("left on a train")
        details.find("Set rating to 2").click()
        details.find("Save Changes").click()
        program.wait_for_text("Title updated")
        self.assertEqual(self.stored("Odd"), (2, "abandoned", "left on a train"))

    def test_nothing_is_saved_or_hidden_while_a_job_runs(self):
        self.home.connect_goodreads()
        self.services.answer_every_shelf(Answer(delay=120))
        program = self.start()
        details = self.open(program, "Bare")
        details.find("Set rating to 2").click()
        program.keys("ctrl+r")
        self.eventually(lambda: self.services.feed_requests)
        actions = ["-Save Changes", "-Goodreads", "-Hide from Library"]
        self.shows(details, panel("Bare", "Book", [], [], 2, "Reading Status", "Read", actions))
        for action in ("Save Changes", "Hide from Library"):
            details.find(action, role="push button").click()
        self.shows(details, panel("Bare", "Book", [], [], 2, "Reading Status", "Read", actions))
        self.assertEqual(self.stored("Bare"), (0, "read", ""))


class AudiobookDetailTour(TourCase):
    def setUp(self):
        super().setUp()
        self.home.write_settings(selectedTab="audio")
        self.home.write_audiobooks(
            OldAudiobook("B1", "Tidewater", author="Runa Vik", narrator="Piet Aalders", series="Coast Songs", book_number=2,
                         runtime_minutes=61, average_rating=4.5, listening_progress=99.6, description="Of the coast.",
                         audible_url="https://127.0.0.1/pd/B1", finished_at="2026-02-03", notes="lent by Ida"),
            OldAudiobook("B2", "Plain", status="read", finished_at="2026-02-02"),
            OldAudiobook("B3", "Whole", series="Coast Songs", runtime_minutes=60, listening_progress=100,
                         finished_at="2026-02-01"),
            OldAudiobook("B4", "Begun", runtime_minutes=59, listening_progress=0, finished_at="2026-01-31"))

    def open(self, program, title):
        program.find(f"View details for {title}").click()
        return program.find(title, role="dialog")

    def stored(self, title):
        return self.home.query(
            "SELECT user_rating, status, notes, finished_at, listening_progress FROM audible_books WHERE title = ?", title)[0]

    def expect(self, title, facts=(), pills=(), rating=0, state="Read", notes="", summary="No summary available."):
        actions = ["Save Changes", "Audible" if title == "Tidewater" else "-Audible"]
        words = panel(title, "Audiobook", facts, pills, rating, "Listening Status", state, actions, summary)
        return words.replace("text 'Notes'", f"text 'Notes' = '{notes}'") if notes else words

    def test_what_is_known_of_each_audiobook(self):
        program = self.start()
        program.wait_for_cards("Tidewater", "Plain", "Whole", "Begun")
        for title, facts in {
            "Plain": ((), ()),
            "Whole": (("Coast Songs",), ("1 hr",)),
            "Begun": ((), ("59 min",)),
        }.items():
            with self.subTest(title):
                details = self.open(program, title)
                self.shows(details, self.expect(title, *facts))
                details.find("Audible", role="push button").click()  # there is no page
                program.keys("Escape")
                program.wait_gone(title, role="dialog")
        self.assertEqual(self.home.opened, [])

    def test_each_field_of_an_audiobook_is_changed_and_stored(self):
        program = self.start()
        before = None
        facts = (["Runa Vik", "Narrated by Piet Aalders", "Coast Songs #2"],
                 ["1 hr 1 min", "Audible: 4.5/5", "100% listened"])
        for way in ("Close", "Close details", "Escape"):  # what is not saved is as it was
            details = self.open(program, "Tidewater")
            self.shows(details, self.expect("Tidewater", *facts, notes="lent by Ida", summary="Of the coast."))
            before = before or self.stored("Tidewater")
            details.find("Set rating to 4.5").click()
            details.find("4.5 stars")
            if way == "Escape":
                program.keys(way)
            else:
                program.find(way, role="push button").press()
            program.wait_gone("Tidewater", role="dialog")
        self.assertEqual(self.stored("Tidewater"), before)

        details = self.open(program, "Tidewater")
        details.find("Audible", role="push button").click()
        self.eventually(lambda: self.home.opened == ["https://127.0.0.1/pd/B1"])
        details.find("Set rating to 3.5").click()
        details.find("Notes", role="text").click()
        program.keys("ctrl+a")
        program.type("heard twice")
        details.find("Listening Status").click()
        self.shows(program.find(role="popup menu"), states("Currently Listening"))
        program.find("Currently Listening", role="menu item").click()
        self.shows(details, self.expect(
            "Tidewater", *facts, 3.5, "Currently Listening", "heard twice", "Of the coast."))
        details.find("Save Changes").click()
        program.wait_for_text("Audio title updated")
        program.wait_gone("Tidewater", role="dialog")
        self.assertEqual(self.stored("Tidewater"), (3.5, "reading", "heard twice", "2026-02-03", 99.6))
        program.wait_for_cards("Plain", "Whole", "Begun")

        program.find("Currently Listening", role="push button").click()
        program.wait_for_cards("Tidewater")
        details = self.open(program, "Tidewater")
        details.find("Clear rating").click()
        details.find("Notes", role="text").click()
        program.keys("ctrl+a", "Delete")
        for status, stored in (("Did Not Finish", "did-not-finish"), ("Want to Read", "to-read"), ("Read", "read")):
            details.find("Listening Status").click()
            program.find(status, role="menu item").click()
            details.find("Save Changes").click()
            program.wait_gone("Tidewater", role="dialog")
            self.assertEqual(self.stored("Tidewater")[:3], (0, stored, ""))
            program.find("Read" if status == "Read" else status, role="push button").click()
            details = self.open(program, "Tidewater")

    def test_an_audiobook_that_cannot_be_saved_is_told_and_stays(self):
        program = self.start()
        details = self.open(program, "Plain")
        details.find("Set rating to 1").click()
        self.home.execute("CREATE TRIGGER full BEFORE UPDATE ON audible_books BEGIN SELECT RAISE(ABORT, 'no room'); END")
        details.find("Save Changes").click()
        alert = program.find("Audio Title Could Not Be Updated", role="alert")
        self.shows(alert, """
            label 'Audio Title Could Not Be Updated'
            panel 'Message'
              label 'Could not read or change the Quire database: no room'
            push button 'OK'
        """)
        alert.find("OK").click()
        program.wait_gone("OK", role="push button")
        self.shows(details, self.expect("Plain", rating=1))


if __name__ == "__main__":
    unittest.main()
