import stat
import unittest

from quire_driver import ProgramTestCase, Settings
from quire_world import FeedBook

USER = "81234567"
KEY = "a1B2c3-the-feed-key"


class GoodreadsSettings(ProgramTestCase):
    def open_settings(self, program):
        Settings(program, "Goodreads")

    def enter(self, program, field, text):
        program.find(field).click()
        program.type(text)

    def save(self, program):
        program.find("Save", role="push button").click()
        program.wait_for_text("Settings saved")

    def test_a_new_reader_enters_a_feed_and_syncs(self):
        self.services.books = [FeedBook("1", "The Salt Road"), FeedBook("2", "Nine Winters", shelf="to-read")]
        program = self.start()
        self.open_settings(program)
        program.screenshot("settings-goodreads")
        self.enter(program, "User ID", USER)
        self.enter(program, "RSS key from Goodreads", KEY)
        self.save(program)
        program.wait_gone("Quire Settings")
        program.find("Sync", role="push button").click()
        program.wait_for_text("Synced 2 Goodreads titles", seconds=30)
        program.screenshot("sync-toast")
        program.wait_for_text("Reading List Update Failed")  # which has no site yet
        program.find("OK", role="push button").click()
        program.wait_gone("OK", role="push button")
        program.open_tab("Books")
        program.wait_for_cards("The Salt Road")
        self.assertEqual({request.path for request in self.services.feed_requests}, {f"/review/list_rss/{USER}"})
        self.assertEqual({request.query["key"] for request in self.services.feed_requests}, {KEY})

    def test_a_saved_key_is_not_shown_and_is_kept(self):
        self.home.connect_goodreads(USER, KEY)
        program = self.start()
        self.open_settings(program)
        self.assertEqual(program.find("User ID").text, USER)
        self.assertEqual(program.find("Saved; enter a new key to replace it").text, "")
        self.enter(program, "User ID", "9")
        self.save(program)
        program.quit()
        self.assertIn(KEY.encode(), self.home.credentials.read_bytes())
        self.assertEqual(
            self.home.setting("goodreadsUserId"), USER + "9")

    def test_cancel_keeps_everything_as_it_was(self):
        program = self.start()
        self.open_settings(program)
        self.enter(program, "User ID", USER)
        program.find("Cancel", role="push button").click()
        program.wait_gone("Quire Settings")
        self.open_settings(program)
        self.assertEqual(program.find("User ID").text, "")
        program.quit()
        self.assertEqual(self.home.query("SELECT value FROM settings WHERE key = 'goodreadsUserId'"), [])

    def test_the_key_is_in_the_credential_file_and_nowhere_else(self):
        program = self.start()
        self.open_settings(program)
        self.enter(program, "User ID", USER)
        self.enter(program, "RSS key from Goodreads", KEY)
        self.save(program)
        program.find("Sync", role="push button").click()
        program.wait_for_text("Synced 0 Goodreads titles", seconds=30)
        self.assertEqual(program.quit(), 0)
        self.assertEqual(stat.S_IMODE(self.home.credentials.stat().st_mode), 0o600)
        holding = [
            str(file.relative_to(self.home.folder)) for file in self.home.folder.rglob("*")
            if file.is_file() and KEY.encode() in file.read_bytes()]
        self.assertEqual(holding, [str(self.home.credentials.relative_to(self.home.folder))])

    def test_everything_can_be_entered_with_the_keyboard_alone(self):
        program = self.start()
        program.tab_to("Settings")
        program.keys("space")
        program.wait_for_text("Quire Settings")
        program.tab_to("Appearance")
        program.keys("Right", "Right")
        program.tab_to("User ID")
        program.type(USER)
        program.tab_to("RSS key from Goodreads")
        program.type(KEY)
        program.tab_to("Save")
        program.keys("Return")
        program.wait_for_text("Settings saved")
        program.keys("ctrl+r")
        program.wait_for_text("Synced 0 Goodreads titles", seconds=30)

    def test_a_damaged_credential_file_reads_as_empty(self):
        self.home.connect_goodreads(USER, KEY)
        self.home.credentials.write_bytes(b"\xff\x00 not a map" * 50)
        program = self.start()
        self.open_settings(program)
        self.assertEqual(program.find("RSS key from Goodreads").text, "")


if __name__ == "__main__":
    unittest.main()
