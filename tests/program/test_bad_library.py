import hashlib
import os
import unittest

from quire_driver import ProgramTestCase
from quire_world import OldBook


class BadLibrary(ProgramTestCase):
    def assert_cannot_open(self, message):
        program = self.start()
        program.wait_for_text("Quire Could Not Open")
        program.wait_for_text(message)
        program.screenshot(self.id().rsplit(".", 1)[-1])
        self.eventually(lambda: "Startup failed: " in self.home.log)
        program.find("OK", role="push button").click()
        program.wait_gone("OK", role="push button")
        self.assertTrue(program.is_running)
        program.close_window()
        self.assert_ended_cleanly(program)

    def test_a_directory_in_place_of_the_library(self):
        self.home.database.mkdir(parents=True)
        self.assert_cannot_open("Could not open the Quire database: ")
        self.assertTrue(self.home.database.is_dir())

    def test_a_library_of_a_newer_version_is_left_alone(self):
        self.home.write_books(OldBook("1", "The Salt Road"))
        self.home.execute("PRAGMA user_version = 3")
        before = hashlib.sha256(self.home.database.read_bytes()).hexdigest()
        self.assert_cannot_open("This library was created by a newer version of Quire (schema 3).")
        self.assertEqual(hashlib.sha256(self.home.database.read_bytes()).hexdigest(), before)

    def test_a_file_that_is_no_library(self):
        self.home.support.mkdir(parents=True)
        self.home.database.write_bytes(b"a letter to a friend\n" * 500)
        self.assert_cannot_open("file is not a database")
        self.assertEqual(self.home.database.read_bytes(), b"a letter to a friend\n" * 500)

    @unittest.skipIf(os.geteuid() == 0, "root may write everything")
    def test_a_library_that_may_not_be_written(self):
        self.home.write_books(OldBook("1", "The Salt Road"))
        self.home.database.chmod(0o400)
        self.assert_cannot_open("Could not")

    def test_a_failed_start_is_no_crash_of_the_next(self):
        self.home.database.mkdir(parents=True)
        self.assert_cannot_open("Could not open the Quire database: ")
        self.home.database.rmdir()
        program = self.start()
        program.open_tab("Books")
        program.wait_for_text("No titles found")


if __name__ == "__main__":
    unittest.main()
