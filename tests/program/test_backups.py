import hashlib
import json
import unittest

from quire_driver import ProgramTestCase, Settings
from quire_world import OldBook

DONE = "Quire Database Backed Up"


class BackingUp(ProgramTestCase):
    def setUp(self):
        super().setUp()
        self.home.write_books(OldBook("1", "The Salt Road"))
        self.home.write_settings(selectedTab="books", backupPath=str(self.home.folder / "Usual"))

    def backups(self, folder):
        return sorted(folder.glob("Quire Database *.db")) if folder.exists() else []

    def assert_good(self, backup):
        manifest = json.loads(backup.with_name(backup.name + ".manifest.json").read_text())
        self.assertEqual(manifest["databaseSHA256"], hashlib.sha256(backup.read_bytes()).hexdigest())
        self.assertFalse(backup.with_name(backup.name + ".incomplete").exists())
        self.assertEqual(self.home.query("SELECT title FROM goodreads_books", database=backup), [("The Salt Road",)])

    def test_the_menu_backs_up_into_the_usual_folder(self):
        program = self.start()
        usual = self.home.folder / "Usual"
        self.eventually(lambda: len(self.backups(usual)) == 1, "the first start makes the backup that is due")
        program.find("File", role="menu bar").click()
        program.find("Back Up Quire Database…", role="menu item").click()
        program.wait_for_text(DONE)
        self.assertEqual(len(self.backups(usual)), 2)
        newest = self.backups(usual)[-1]
        program.wait_for_text(f"The verified backup was saved to {newest}.")
        program.screenshot("backup-by-menu")
        self.assert_good(newest)

    def test_the_shortcut_backs_up_as_well(self):
        program = self.start()
        program.keys("ctrl+shift+b")
        program.wait_for_text(DONE)

    def test_the_button_backs_up_into_the_folder_in_its_field(self):
        program = self.start()
        settings = Settings(program, "Data")
        odd = self.home.folder / "Bücher & 100% “mehr” 本"
        settings.enter("Backup Folder", str(odd))
        settings.press("Back Up Database")
        program.wait_for_text(DONE)
        program.screenshot("backup-by-button")
        settings.dismiss_notice()
        [backup] = self.backups(odd)
        self.assert_good(backup)
        settings.close()
        self.assertEqual(self.home.setting("backupPath"), str(self.home.folder / "Usual"))

    def test_a_relative_folder_is_refused(self):
        program = self.start()
        settings = Settings(program, "Data")
        for typed in ("backups", ""):
            settings.enter("Backup Folder", typed)
            settings.press("Back Up Database")
            program.wait_for_text("Backup Failed")
            program.wait_for_text("Choose an absolute folder for the Quire backup.")
            settings.dismiss_notice()

    def test_a_folder_that_cannot_be_written_is_told(self):
        file = self.home.folder / "a letter"
        file.write_text("to a friend")
        program = self.start()
        settings = Settings(program, "Data")
        for folder in (file, file / "Backups"):
            settings.enter("Backup Folder", str(folder))
            settings.press("Back Up Database")
            program.wait_for_text("Backup Failed")
            program.screenshot("backup-failed")
            settings.dismiss_notice()
        self.assertEqual(file.read_text(), "to a friend")
        settings.close()
        program.wait_for_cards("The Salt Road")

    def test_only_the_newest_databases_are_kept_and_all_that_is_no_database(self):
        self.home.execute("INSERT INTO settings (key, value) VALUES ('maximumBackupFiles', '2')")
        usual = self.home.folder / "Usual"
        usual.mkdir()
        letter = usual / "Quire Database of my own.txt"
        letter.write_text("mine")
        program = self.start()
        self.eventually(lambda: len(self.backups(usual)) == 1)
        [first] = self.backups(usual)
        for _ in range(2):
            program.keys("ctrl+shift+b")
            program.wait_for_text(DONE)
            program.find("OK", role="push button").click()
            program.wait_gone("OK", role="push button")
        kept = self.backups(usual)
        self.assertEqual(len(kept), 2)
        self.assertNotIn(first, kept)
        manifests = [backup.with_name(backup.name + ".manifest.json") for backup in kept]
        self.assertEqual(sorted(usual.iterdir()), sorted([letter, *kept, *manifests]))
        self.assertEqual(letter.read_text(), "mine")


if __name__ == "__main__":
    unittest.main()
