import signal
import unittest

from quire_driver import ProgramTestCase, Settings
from quire_world import Answer, FeedBook, OldBook


class Quit(ProgramTestCase):
    def test_closing_the_window_ends_the_program_cleanly(self):
        program = self.start()
        self.eventually(lambda: self.home.database.exists())
        program.close_window()
        self.assert_ended_cleanly(program)

    def test_each_ending_signal_takes_the_quit_road(self):
        for number in (signal.SIGTERM, signal.SIGINT, signal.SIGHUP):
            with self.subTest(number.name):
                program = self.start()
                program.send(number)
                self.assert_ended_cleanly(program)

    def test_the_settings_do_not_outlive_the_main_window(self):
        program = self.start()
        program.find("Settings", role="push button").click()
        program.wait_for_text("Quire Settings")
        program.close_window("^Quire$")
        self.assert_ended_cleanly(program)

    def test_the_colour_panel_does_not_outlive_the_main_window(self):
        program = self.start()
        Settings(program, "Appearance")
        program.find("Custom Color", role="radio button").click()
        program.find("Custom Color", role="frame")
        program.close_window("^Quire$")
        self.assert_ended_cleanly(program)

    def test_help_outlives_the_main_window_and_ends_the_program_when_it_closes(self):
        program = self.start()
        program.find("Help", role="menu bar").click()
        program.find("Quick Help in Quire", role="menu item").click()
        program.find("Quire Help", role="frame")
        program.close_window("^Quire$")
        program.wait_gone("Quire", role="frame")
        program.wait_until_idle()
        self.assertTrue(program.is_running)
        self.assertTrue(program.has("Quire Help", role="frame"))
        program.close_window("^Quire Help$")
        self.assert_ended_cleanly(program)

    def test_a_running_session_is_not_clean(self):
        program = self.start()
        self.eventually(lambda: self.home.database.exists())
        self.assertFalse(self.home.session["clean"])
        program.kill()
        self.assertFalse(self.home.session["clean"])
        again = self.start()
        again.open_tab("Books")
        again.wait_for_text("No titles found")
        again.close_window()
        self.assert_ended_cleanly(again)

    def test_quitting_during_a_sync_leaves_the_library_whole(self):
        self.home.connect_goodreads()
        self.home.write_books(OldBook("1", "The Salt Road"))
        self.services.books = [FeedBook("2", "Nine Winters")]
        self.services.answer_shelf("read", Answer(delay=8))
        program = self.start()
        program.find("Sync", role="push button").click()
        self.eventually(lambda: "read" in self.services.asked_shelves, "the sync never reached the shelf")
        self.assertEqual(program.quit(), 0)
        self.assertTrue(self.home.session["clean"])
        self.assertEqual(self.home.value("PRAGMA integrity_check"), "ok")
        self.assertEqual(self.home.query("SELECT title FROM goodreads_books"), [("The Salt Road",)])


if __name__ == "__main__":
    unittest.main()
