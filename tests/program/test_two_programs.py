import socket
import unittest

from quire_driver import ProgramTestCase
from quire_world import OldBook

IN_USE = "This Quire library is already in use."
ADVICE = "Close Quire on the other Mac, allow the cloud service to finish syncing, and then open Quire again."


class TwoPrograms(ProgramTestCase):
    def setUp(self):
        super().setUp()
        self.home.write_settings(selectedTab="books")
        self.home.write_books(OldBook("1", "The Salt Road"))

    def neighbour(self):
        """Another reader of this computer, with the same library folder."""
        home = self.make_home()
        home.use_library_in(self.home.support)
        return home

    def assert_refused(self, program):
        program.wait_for_text("Quire Could Not Open")
        program.wait_for_text(f"{IN_USE} It is currently open on {socket.gethostname()}.")
        program.wait_for_text(ADVICE)

    def test_the_second_of_two_is_told_where_the_library_is_open(self):
        first = self.start()
        first.wait_for_cards("The Salt Road")
        second = self.start(self.neighbour())
        self.assert_refused(second)
        second.screenshot("two-programs")
        second.find("OK", role="push button").click()
        second.wait_gone("OK", role="push button")
        self.assertEqual(second.quit(), 0)
        first.open_tab("Insights")
        first.open_tab("Books")
        first.wait_for_cards("The Salt Road")
        self.assertEqual(first.quit(), 0)

    def test_the_same_reader_may_not_open_it_twice_either(self):
        first = self.start()
        first.wait_for_cards("The Salt Road")
        second = self.start()
        self.assert_refused(second)
        self.assertEqual(second.quit(), 0)
        self.assertEqual(first.quit(), 0)

    def test_it_is_free_when_the_first_has_quit(self):
        neighbour = self.neighbour()
        self.assertEqual(self.start().quit(), 0)
        self.assertEqual([entry.name for entry in (self.home.support / ".Quire Locks").iterdir()], [])
        second = self.start(neighbour)
        second.open_tab("Books")
        second.wait_for_cards("The Salt Road")
        self.assertEqual(second.quit(), 0)

    def test_it_is_free_at_once_when_the_first_was_killed(self):
        neighbour = self.neighbour()
        first = self.start()
        first.wait_for_cards("The Salt Road")
        first.kill()
        self.assertTrue((self.home.support / ".Quire Locks" / "Quire Library.lock" / "Owner.json").exists())
        second = self.start(neighbour)
        second.open_tab("Books")
        second.wait_for_cards("The Salt Road")
        self.assertEqual(second.quit(), 0)

    def test_a_failed_second_start_is_no_crash_of_its_next(self):
        neighbour = self.neighbour()
        first = self.start()
        second = self.start(neighbour)
        self.assert_refused(second)
        self.assertEqual(second.quit(), 0)
        self.assertTrue(neighbour.session["clean"])
        self.assertEqual(first.quit(), 0)


if __name__ == "__main__":
    unittest.main()
