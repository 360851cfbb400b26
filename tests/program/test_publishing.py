import unittest

from quire_driver import ProgramTestCase, Settings
from quire_world import OldBook


class Publishing(ProgramTestCase):
    def setUp(self):
        super().setUp()
        self.home.write_settings(selectedTab="books", automaticGoodreadsSync="0")
        self.home.write_books(OldBook("1", "The Salt Road", author="Ada Lindqvist"))
        self.folder = self.home.folder / "Reading lists"

    @property
    def file(self):
        return self.folder / "quire.md"

    def enter(self, program, folder=True, token=None):
        settings = Settings(program, "Publishing")
        program.screenshot("settings-publishing")
        if folder:
            settings.enter("Local Publishing Folder (Optional)", str(self.folder))
        if token:
            settings.enter("Token for the reading website", token)
        settings.save()
        program.wait_for_text("Settings saved")
        program.wait_gone("Quire Settings")

    def sync(self, program):
        program.find("Sync", role="push button").click()

    def test_the_list_is_written_into_a_folder(self):
        program = self.start()
        self.enter(program)
        self.sync(program)
        program.wait_for_text("Reading List Partially Updated", seconds=30)
        program.wait_for_text("The local file was updated.\nOnline: Netlify token not found. Add it in Settings.")
        program.screenshot("publishing-partial")
        self.assertIn("The Salt Road", self.file.read_text())

    def test_the_page_is_put_on_a_site(self):
        self.home.connect_site()
        program = self.start()
        self.sync(program)
        program.wait_for_text("Updated the reading website", seconds=30)
        program.screenshot("publishing-toast")
        self.assertIn(b"The Salt Road", self.services.netlify.page)
        settings = Settings(program, "Publishing")
        settings.window.find(f"{self.services.address}/site")
        self.assertTrue(settings.window.has("Saved; enter a new token to replace it", role="password text"))
        program.screenshot("settings-publishing-connected")

    def test_both_places_are_updated(self):
        self.home.connect_site()
        program = self.start()
        self.enter(program)
        self.sync(program)
        program.wait_for_text("Updated the local Quire file and reading website", seconds=30)
        self.assertIn("The Salt Road", self.file.read_text())
        self.assertIn(b"The Salt Road", self.services.netlify.page)

    def test_a_folder_that_cannot_be_written_leaves_the_site(self):
        self.home.connect_site()
        self.folder.write_text("in the way")
        program = self.start()
        self.enter(program)
        self.sync(program)
        program.wait_for_text("Reading List Partially Updated", seconds=30)
        self.assertTrue(program.says("The online site was updated.\nLocal: "))
        program.screenshot("publishing-folder-failed")

    def test_a_site_that_is_down_leaves_the_file(self):
        self.home.connect_site()
        self.services.netlify.broken = True
        program = self.start()
        self.enter(program)
        self.sync(program)
        program.wait_for_text("Reading List Partially Updated", seconds=60)
        program.wait_for_text("The local file was updated.\nOnline: Back soon")

    def test_nowhere_to_publish_to_is_told(self):
        program = self.start()
        self.sync(program)
        program.wait_for_text("Reading List Update Failed", seconds=30)
        program.wait_for_text("Online: Netlify token not found. Add it in Settings.")
        program.screenshot("publishing-failed")

    def test_it_is_published_by_itself_each_minute(self):
        self.home.connect_site()
        self.home.write_settings(automaticPublishing="1", publishIntervalMinutes="1")
        program = self.start()

        def runs():
            return self.home.value(
                "SELECT COUNT(*) FROM background_job_history WHERE job_kind = 'publishing' AND state = 'succeeded'")

        self.eventually(lambda: runs() == 2, seconds=150)
        self.assertIn(b"The Salt Road", self.services.netlify.page)
        self.assertFalse(program.has("OK", role="push button"))


if __name__ == "__main__":
    unittest.main()
