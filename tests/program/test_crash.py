import time
import unittest

from quire_driver import ProgramTestCase
from quire_world import Answer, FeedBook, OldBook

POWER_CUT = 86


class Crash(ProgramTestCase):
    def titles(self):
        return self.home.query("SELECT title FROM goodreads_books ORDER BY id")

    def syncs(self):
        return self.home.value(
            "SELECT COUNT(*) FROM background_job_history WHERE job_kind = 'goodreadsSync' AND state = 'succeeded'")

    def opens(self):
        """A further start shows the library, and ends cleanly."""
        program = self.start()
        program.open_tab("Books")
        program.find("Sort library")
        self.assertFalse(program.says("Quire Could Not Open"))
        self.assertEqual(program.quit(), 0)
        self.assertEqual(self.home.value("PRAGMA integrity_check"), "ok")

    def test_a_crash_after_staging_leaves_the_library_as_before(self):
        self.home.connect_goodreads()
        self.home.write_books(OldBook("1", "The Salt Road"))
        self.services.books = [FeedBook("1", "Other"), FeedBook("2", "Nine Winters")]
        program = self.start(QUIRE_ENABLE_FAILURE_TESTS="1", QUIRE_FAILURE_POINT="goodreads-after-staging")
        program.find("Sync", role="push button").click()
        self.assertEqual(program.wait(30), POWER_CUT)
        self.opens()
        self.assertEqual(self.titles(), [("The Salt Road",)])

    def test_a_crash_in_a_migration_leaves_the_version_before_it(self):
        self.home.write_books(OldBook("1", "The Salt Road"))
        program = self.launch(QUIRE_ENABLE_FAILURE_TESTS="1", QUIRE_FAILURE_POINT="migration-before-commit")
        self.assertEqual(program.wait(30), POWER_CUT)
        self.assertEqual(self.home.value("PRAGMA user_version"), 0)
        self.opens()
        self.assertEqual(self.home.value("PRAGMA user_version"), 2)
        self.assertEqual(self.titles(), [("The Salt Road",)])

    def test_failure_points_stand_still_unless_they_are_enabled(self):
        self.home.connect_goodreads()
        self.services.books = [FeedBook("1", "The Salt Road")]
        for runs, enabling in enumerate(("", "true", "2"), start=1):
            with self.subTest(enabling):
                program = self.start(QUIRE_ENABLE_FAILURE_TESTS=enabling, QUIRE_FAILURE_POINT="goodreads-after-staging")
                program.find("Sync", role="push button").click()
                self.eventually(lambda: self.syncs() == runs, seconds=30)
                self.assertEqual(program.quit(), 0)
                self.assertEqual(self.titles(), [("The Salt Road",)])

    def test_a_kill_while_the_feed_is_awaited_changes_nothing(self):
        self.home.connect_goodreads()
        self.home.write_books(OldBook("1", "The Salt Road"))
        self.services.books = [FeedBook("2", "Nine Winters")]
        self.services.answer_shelf("did-not-finish", Answer(delay=20))
        program = self.start()
        program.find("Sync", role="push button").click()
        self.eventually(lambda: "did-not-finish" in self.services.asked_shelves)
        program.kill()
        self.opens()
        self.assertEqual(self.titles(), [("The Salt Road",)])

    def test_a_kill_around_the_merge_leaves_before_or_after(self):
        self.home.connect_goodreads()
        size = 200
        for round_number, pause in enumerate((0, 0.01, 0.03, 0.06, 0.1, 0.2)):
            with self.subTest(pause=pause):
                before = len(self.titles()) if round_number else 0
                self.services.books = [FeedBook(f"{round_number}-{n}", f"Title {n}") for n in range(size)]
                asked = len(self.services.asked_shelves)
                program = self.start()
                program.find("Sync", role="push button").click()
                self.eventually(lambda: len(self.services.asked_shelves) == asked + 5)
                time.sleep(pause)
                program.kill()
                self.opens()
                self.assertIn(len(self.titles()), (before, before + size))


if __name__ == "__main__":
    unittest.main()
