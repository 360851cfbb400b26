import unittest

from quire_driver import FolderPortal, ProgramTestCase, Settings

ABSOLUTE = "Choose an absolute folder path."
DAYS = "Choose a whole number from 1 to 365 days."
FILES = "Choose to keep between 1 and 200 backup files."


class DataSettings(ProgramTestCase):
    def test_the_fields_hold_what_is_in_force(self):
        kept = str(self.home.folder / "Kept")
        self.home.write_settings(backupIntervalDays="3", maximumBackupFiles="7", backupPath=kept)
        program = self.start()
        settings = Settings(program, "Data")
        self.assertEqual(settings.field("Library Folder").text, str(self.home.support))
        self.assertEqual(settings.field("Backup Folder").text, kept)
        self.assertEqual(settings.field("Days").text, "3")
        self.assertEqual(settings.field("Files").text, "7")
        program.screenshot("settings-data")
        settings.press("Default", beside="Backup Folder")
        self.eventually(lambda: settings.field("Backup Folder").text == str(self.home.support / "Database Backups"))

    def test_the_rhythm_of_backups_is_stored(self):
        program = self.start()
        settings = Settings(program, "Data")
        settings.enter("Days", "14")
        settings.enter("Files", "200")
        settings.enter("Backup Folder", str(self.home.folder / "Backups"))
        settings.save()
        program.wait_for_text("Settings saved")
        program.wait_gone("Quire Settings")
        self.assertEqual(self.home.setting("backupIntervalDays"), "14")
        self.assertEqual(self.home.setting("maximumBackupFiles"), "200")
        self.assertEqual(self.home.setting("backupPath"), str(self.home.folder / "Backups"))

    def test_the_keyboard_alone_sets_the_rhythm(self):
        program = self.start()
        Settings(program, "Data")
        program.tab_to("Days")
        program.keys("Up", "Up")
        program.tab_to("Files")
        program.type("9")
        program.keys("Return")
        program.wait_for_text("Settings saved")
        self.assertEqual(self.home.setting("backupIntervalDays"), "3")
        self.assertEqual(self.home.setting("maximumBackupFiles"), "9")

    def test_what_cannot_be_saved_is_told_and_writes_nothing(self):
        program = self.start()
        settings = Settings(program, "Data")
        refused = [
            ("Days", "0", "Invalid Backup Interval", DAYS), ("Days", "366", "Invalid Backup Interval", DAYS),
            ("Days", "", "Invalid Backup Interval", DAYS), ("Files", "201", "Invalid Backup Limit", FILES),
            ("Files", "0", "Invalid Backup Limit", FILES), ("Backup Folder", "backups", "Invalid Backup Folder", ABSOLUTE),
            ("Backup Folder", "", "Invalid Backup Folder", ABSOLUTE),
            ("Library Folder", "Quire/Library", "Invalid Library Folder", ABSOLUTE),
        ]
        for field, typed, title, message in refused:
            with self.subTest(field=field, typed=typed):
                before = settings.field(field).text
                settings.enter(field, typed)
                settings.refuses(title, message)
                settings.enter(field, before)
        settings.enter("Days", "0")
        settings.enter("Files", "0")
        settings.save()
        program.wait_for_text("Invalid Backup Interval")  # the first of two
        program.screenshot("settings-data-refused")
        settings.dismiss_notice()
        self.assertEqual(program.quit(), 0)
        for key in ("backupPath", "backupIntervalDays", "maximumBackupFiles"):
            self.assertIsNone(self.home.setting(key), key)

    def test_what_is_refused_is_shown_though_another_tab_was(self):
        program = self.start()
        settings = Settings(program, "Data")
        settings.enter("Days", "0")
        settings.show("Appearance")
        program.wait_gone("Days")
        settings.save()
        program.wait_for_text("Invalid Backup Interval")
        settings.dismiss_notice()
        self.assertEqual(settings.field("Days").text, "0")
        self.eventually(lambda: program.focused().name == "Days", "the keyboard is not where the mistake is")

    def test_a_home_folder_may_be_written_with_a_tilde(self):
        program = self.start()
        settings = Settings(program, "Data")
        settings.enter("Backup Folder", "~/Backups")
        settings.save()
        program.wait_for_text("Settings saved")
        settings = Settings(program, "Data")
        settings.press("Open Backups")
        self.eventually(lambda: self.home.opened == [str(self.home.folder / "Backups")], str(self.home.opened))

    def test_the_desktop_shows_what_is_on_disk(self):
        program = self.start()
        settings = Settings(program, "Data")
        odd = self.home.folder / "Bücher & 100% “mehr”"
        settings.enter("Backup Folder", str(odd))
        settings.press("Open Backups")
        self.eventually(lambda: self.home.opened == [str(odd)], str(self.home.opened))
        self.assertTrue(odd.is_dir())
        settings.press("Open Data Folder")
        self.eventually(lambda: self.home.opened[1:] == [str(self.home.support)], str(self.home.opened))
        settings.press("Open Logs")
        self.eventually(lambda: self.home.opened[2:] == [str(self.home.support / "quire.log")], str(self.home.opened))
        self.assertTrue((self.home.support / "quire.log").exists())

    def test_the_menu_shows_the_data_folder_and_the_log(self):
        program = self.start()
        for item, path in (("Open Data Folder", self.home.support), ("Open Logs", self.home.support / "quire.log")):
            program.find("Quire", role="menu bar").click()
            program.find(item, role="menu item").click()
            self.eventually(lambda: self.home.opened[-1:] == [str(path)], str(self.home.opened))


class ChoosingAFolder(ProgramTestCase):
    def lend_portal(self, **options) -> FolderPortal:
        portal = FolderPortal(**options)
        self.addCleanup(portal.stop)
        return portal

    def test_the_desktop_s_own_picker_is_taken_where_there_is_one(self):
        portal = self.lend_portal()
        program = self.start()
        settings = Settings(program, "Data")
        portal.answer = str(self.home.folder / "Bücher 100%")
        settings.press("Folder", beside="Library Folder")
        self.eventually(lambda: settings.field("Library Folder").text == portal.answer)
        asked = portal.questions[0]
        self.assertEqual(asked["title"], "Choose the Quire library folder")
        self.assertEqual(asked["accept_label"], "Choose")
        self.assertTrue(asked["directory"])
        self.assertTrue(asked["modal"])
        self.assertEqual(bytes(asked["current_folder"]), bytes(self.home.support) + b"\0")
        self.assertRegex(asked["window"], "^x11:[0-9a-f]+$")
        self.assertFalse(program.has("Folder path"))

        portal.answer = None
        settings.press("Folder", beside="Backup Folder")
        self.eventually(lambda: len(portal.questions) == 2)
        self.assertEqual(portal.questions[1]["title"], "Choose the Quire backup folder")
        self.assertNotIn("accept_label", portal.questions[1])
        self.assertEqual(settings.field("Backup Folder").text, str(self.home.support / "Database Backups"))

    def test_a_picker_that_knows_no_folders_is_not_taken(self):
        portal = self.lend_portal(version=2)
        program = self.start()
        Settings(program, "Data").press("Folder", beside="Library Folder")
        program.find("Folder path", role="text")
        self.assertEqual(portal.questions, [])

    def test_quire_lends_its_own_where_there_is_none(self):
        (self.home.support / "Shelf 10").mkdir(parents=True)
        (self.home.support / "shelf 9").mkdir()
        program = self.start()
        settings = Settings(program, "Data")
        settings.press("Folder", beside="Library Folder")
        program.wait_for_text("Choose the Quire library folder")
        program.wait_for_text("Quire stores quire.db in this folder.")
        self.eventually(lambda: program.find("Folder path", role="text").text == str(self.home.support))
        names = [item.name for item in program.find("Folders", role="list").all(role="list item")]
        self.assertEqual([name for name in names if "helf" in name], ["shelf 9", "Shelf 10"])
        program.find("shelf 9", role="list item").double_click()
        self.eventually(lambda: program.find("Folder path", role="text").text == str(self.home.support / "shelf 9"))
        program.find("Up", role="push button").click()
        program.find("Shelf 10", role="list item").click()
        self.eventually(lambda: program.find("Folder path", role="text").text == str(self.home.support / "Shelf 10"))
        program.screenshot("folder-picker")
        program.find("New Folder", role="push button").click()
        program.type("本棚 100%")
        program.screenshot("folder-picker-new")
        program.keys("Return")
        made = self.home.support / "本棚 100%"  # beside, not within, the folder last clicked
        self.eventually(lambda: program.find("Folder path", role="text").text == str(made))
        self.assertTrue(made.is_dir())
        program.find("Choose", role="push button").click()
        program.wait_gone("Folder path")
        self.eventually(lambda: settings.field("Library Folder").text == str(made))
        self.assertIsNone(self.home.remembered_folder)  # nothing moves before Save

    def test_a_folder_that_is_not_there_cannot_be_chosen(self):
        program = self.start()
        settings = Settings(program, "Data")
        settings.press("Folder", beside="Backup Folder")
        program.wait_for_text("Choose the Quire backup folder")
        program.wait_for_text("Verified database backups will be saved in this folder.")
        program.find("Folder path", role="text").click()
        program.keys("ctrl+a")
        program.type("/no/such/folder")
        program.find("Choose", role="push button").click()
        program.wait_for_text("There is no folder “/no/such/folder”.")
        program.screenshot("folder-picker-trouble")
        program.keys("Escape")
        program.wait_gone("Folder path")
        self.assertTrue(program.has("Quire Settings"))
        self.assertEqual(settings.field("Backup Folder").text, str(self.home.support / "Database Backups"))


if __name__ == "__main__":
    unittest.main()
