import json
import unittest
from pathlib import Path

from quire_driver import ProgramTestCase, Settings
from quire_world import OldBook, write_older_library

POWER_CUT = 86


class MovingTheLibrary(ProgramTestCase):
    def setUp(self):
        super().setUp()
        self.home.write_settings(selectedTab="books")
        self.home.write_books(OldBook("1", "The Salt Road"), OldBook("2", "Nine Winters"))

    def titles(self, database: Path):
        return self.home.query("SELECT title FROM goodreads_books ORDER BY id", database=database)

    def move(self, program, folder: str, toast: str):
        settings = Settings(program, "Data")
        settings.enter("Library Folder", folder)
        settings.save()
        program.wait_for_text(toast, seconds=30)
        program.wait_gone("Quire Settings")

    def test_the_library_moves_to_an_odd_folder_and_back(self):
        odd = self.home.folder / "Cloud's “Bücher” & 100% 本棚 #1?"
        program = self.start()
        program.wait_for_cards("Nine Winters", "The Salt Road")
        self.move(program, str(odd), "Settings saved and Quire library moved")
        program.screenshot("library-moved")
        program.wait_for_cards("Nine Winters", "The Salt Road")
        self.assertEqual(self.home.remembered_folder, str(odd))
        self.assertTrue(self.home.database.exists(), "the library before the move is never deleted")
        settings = Settings(program, "Data")
        self.assertEqual(settings.field("Library Folder").text, str(odd))
        settings.press("Open Data Folder")
        self.eventually(lambda: self.home.opened == [str(odd)], str(self.home.opened))
        settings.close()
        self.assertEqual(program.quit(), 0)
        self.assertEqual(self.titles(odd / "quire.db"), [("The Salt Road",), ("Nine Winters",)])
        self.assertEqual(self.home.value("PRAGMA journal_mode", database=odd / "quire.db"), "delete")

        self.home.execute("UPDATE goodreads_books SET title = 'Ten Winters' WHERE id = 2", database=odd / "quire.db")
        program = self.start()
        program.wait_for_cards("Ten Winters", "The Salt Road")
        # The first folder still holds a library, which is taken as it is.
        self.move(program, str(self.home.support), "Settings saved")
        program.wait_for_cards("Nine Winters", "The Salt Road")
        self.assertEqual(self.home.remembered_folder, str(self.home.support))
        self.assertEqual(program.quit(), 0)
        self.assertEqual(self.titles(odd / "quire.db"), [("The Salt Road",), ("Ten Winters",)])
        program = self.start()
        program.wait_for_cards("Nine Winters", "The Salt Road")

    def test_a_folder_that_cannot_be_made_moves_nothing(self):
        file = self.home.folder / "a letter"
        file.write_text("to a friend")
        program = self.start()
        settings = Settings(program, "Data")
        settings.enter("Library Folder", str(file / "Library"))
        settings.save()
        program.wait_for_text("Settings Could Not Be Saved")
        program.wait_for_text(f"Could not create the folder “{file / 'Library'}”: Not a directory")
        program.screenshot("library-not-moved")
        settings.dismiss_notice()
        settings.close()
        program.wait_for_cards("Nine Winters", "The Salt Road")
        self.assertIsNone(self.home.remembered_folder)

    def test_a_damaged_library_in_the_new_folder_is_not_taken(self):
        other = self.home.folder / "Other"
        other.mkdir()
        (other / "quire.db").write_bytes(b"a letter to a friend\n" * 500)
        program = self.start()
        settings = Settings(program, "Data")
        settings.enter("Library Folder", str(other))
        settings.save()
        program.wait_for_text("Settings Could Not Be Saved")
        program.wait_for_text("file is not a database")
        settings.dismiss_notice()
        settings.close()
        program.wait_for_cards("Nine Winters", "The Salt Road")
        self.assertEqual(program.quit(), 0)
        self.assertEqual((other / "quire.db").read_bytes(), b"a letter to a friend\n" * 500)
        self.assertIsNone(self.home.remembered_folder)

    def test_a_library_in_the_new_folder_is_taken_as_it_is(self):
        other = self.home.folder / "Other"
        other.mkdir()
        write_older_library(other / "quire.db", [OldBook("7", "Their Own")], {"selectedTab": "books"})
        program = self.start()
        program.wait_for_cards("Nine Winters", "The Salt Road")
        self.move(program, str(other), "Settings saved")
        program.wait_for_cards("Their Own")
        program.screenshot("library-adopted")
        self.assertFalse(program.says("Settings saved and Quire library moved"))
        self.assertEqual(program.quit(), 0)
        self.assertEqual(self.titles(other / "quire.db"), [("Their Own",)])
        self.assertEqual(self.titles(self.home.database), [("The Salt Road",), ("Nine Winters",)])
        self.start().wait_for_cards("Their Own")

    def test_a_link_to_the_present_folder_is_no_move(self):
        link = self.home.folder / "link"
        link.symlink_to(self.home.support)
        program = self.start()
        self.move(program, str(link), "Settings saved")
        self.assertIsNone(self.home.remembered_folder)
        self.assertEqual(Settings(program, "Data").field("Library Folder").text, str(self.home.support))

    def test_a_crash_in_the_middle_of_a_move_leaves_the_library_where_it_was(self):
        other = self.home.folder / "Other"
        program = self.start(QUIRE_ENABLE_FAILURE_TESTS="1", QUIRE_FAILURE_POINT="relocation-after-copy")
        settings = Settings(program, "Data")
        settings.enter("Library Folder", str(other))
        settings.save()
        self.assertEqual(program.wait(30), POWER_CUT)
        self.assertIsNone(self.home.remembered_folder)
        self.assertFalse((other / "quire.db").exists())

        program = self.start()
        program.wait_for_cards("Nine Winters", "The Salt Road")
        self.move(program, str(other), "Settings saved and Quire library moved")
        program.wait_for_cards("Nine Winters", "The Salt Road")
        self.assertEqual(self.home.remembered_folder, str(other))
        self.assertEqual([file.name for file in other.glob("*.db")], ["quire.db"])

    def test_a_library_that_another_computer_has_open_is_not_taken(self):
        other = self.home.folder / "Other"
        lock = other / ".Quire Locks" / "Quire Library.lock"
        lock.mkdir(parents=True)
        (lock / "Owner.json").write_text(json.dumps({
            "token": "5c1d2f0e-0000-4000-8000-000000000001", "processID": 4242, "hostName": "attic.example",
            "hostID": "platform:elsewhere", "createdAt": 800000000.0}))
        program = self.start()
        settings = Settings(program, "Data")
        settings.enter("Library Folder", str(other))
        settings.save()
        program.wait_for_text("Settings Could Not Be Saved")
        program.wait_for_text("It is currently open on attic.example.")
        settings.dismiss_notice()
        settings.close()
        self.assertFalse((other / "quire.db").exists())
        self.assertTrue((lock / "Owner.json").exists())


if __name__ == "__main__":
    unittest.main()
