"""The tour of the settings window, tab by tab."""

import unittest

from quire_driver import Settings, TourCase
from quire_world import write_audio_library

TABS = ("Appearance", "Libraries", "Goodreads", "Publishing", "Data")

NOT_PUBLISHED = "Not published from Quire yet"
MINUTES = "Choose a whole number from 1 to 10,080 minutes."


def window(tab, *content, updated=NOT_PUBLISHED):
    """The window at one of its tabs as an inventory has it."""
    return "\n".join([
        "heading 'Quire Settings'", "label 'Appearance, syncing, publishing, and local data.'",
        "page tab list 'Settings section'", *(f"  page tab '{name}'" + (" (selected)" if name == tab else "") for name in TABS),
        *content, f"label '{updated}'", "push button 'Cancel'", "push button 'Save'"])


def boxes(**checked):
    names = {"books": "Books", "audio": "Audio", "goodreads": "Goodreads when Quire opens", "audible": "Audible when Quire opens"}
    lines = {key: f"check box '{name}'" + (" (checked)" if checked.get(key, True) else "") for key, name in names.items()}
    return ["label 'Visible Sections'", lines["books"], lines["audio"], "label 'Automatic Sync'", lines["goodreads"],
            lines["audible"]]


APPEARANCE_NOTE = (
    "label 'Quire uses the Nordic Snow, Fjord, Pine, and Cabin palette for both accents and sidebars; Glass remains available "
    "for the sidebar. The color wheel accepts any custom accent.'")
LIBRARIES_NOTE = (
    "label 'Audible syncing requires the Audible app from the Mac App Store. Quire reads only audiobook information from its "
    "local library. Goodreads and Audible may add titles, fill empty details, or advance status; they never remove data or "
    "replace your Quire ratings, notes, or other existing values.'")
PERMISSION = (
    "label 'macOS may ask before Quire reads Audible data. Choose Allow. If macOS reports Quire was blocked, enable Quire in "
    "System Settings › Privacy & Security (usually Full Disk Access), then quit and reopen Quire.'")
GOODREADS_NOTE = (
    "label 'Automatic and manual sync controls are in Libraries. Goodreads data complements Quire and never replaces your "
    "existing values.'")
PUBLISHING_NOTE = (
    "label 'The local folder is optional. Leave it blank to publish only to Netlify. Automatic publishing is off by default; "
    "manual updates remain available in the sidebar.'")
LIBRARY_NOTE = (
    "label 'Quire keeps the database in Application Support by default. A locally synchronized Dropbox, iCloud Drive, Google "
    "Drive, or other cloud folder can be shared between Macs. Use Quire on only one Mac at a time, close it, and let the "
    "service finish syncing before opening it elsewhere.'")
BACKUP_NOTE = (
    "label 'Backup timing is independent from publishing. Sync-related safety backups respect this interval, and Quire keeps "
    "only the newest number of files you choose.'")


class SettingsTour(TourCase):
    def saved(self, program, settings):
        settings.save()
        program.wait_for_text("Settings saved")
        program.wait_gone("Quire Settings", role="frame")

    def folder_row(self, name, path="", prompt="", reset="Default"):
        return [f"label '{name}'", f"text '{name}'" + (f": {prompt}" if prompt else "") + (f" = '{path}'" if path else ""),
                f"push button 'Folder': {name}", f"push button '{reset}': {name}"]

    def test_appearance(self):
        program = self.start()
        settings = Settings(program, "Appearance")

        def appearance(sidebar, accent):
            swatches = ("Snow", "Fjord", "Pine", "Cabin", "Custom Color")
            return window(
                "Appearance", "heading 'Appearance'", "label 'Sidebar'", f"combo box 'Sidebar': {sidebar}", "label 'App Font'",
                "combo box 'App Font': Avenir Next", "label 'Accent Color'", "panel 'Accent Color'",
                *(f"  radio button '{name}': " + ("Selected (checked)" if name == accent else "Not selected") for name in swatches),
                APPEARANCE_NOTE)

        self.shows(settings.window, appearance("Snow", "Fjord"))
        settings.window.find("Sidebar", role="combo box").press()
        self.shows(program.find(role="popup menu"), """
            menu item 'Snow' (checked)
            menu item 'Fjord'
            menu item 'Pine'
            menu item 'Cabin'
            menu item 'Glass'
        """)
        program.find("Glass", role="menu item").click()
        settings.window.find("Cabin", role="radio button").press()
        self.shows(settings.window, appearance("Glass", "Cabin"))
        settings.close()  # both are kept all the same
        self.eventually(lambda: (self.home.setting("sidebarAppearance"), self.home.setting("accentColor")) == ("glass", "cabin"))

    def test_libraries(self):
        program = self.start()
        settings = Settings(program, "Libraries")
        self.shows(settings.window, window(
            "Libraries", "heading 'Libraries & Syncing'", "label 'Audible not detected'", LIBRARIES_NOTE, *boxes(),
            "push button 'Grant Access'", "push button 'Sync'"))
        for box in ("Goodreads when Quire opens", "Audible when Quire opens", "Audio"):
            settings.window.find(box, role="check box").click()
        settings.close()  # drops what was not saved
        settings = Settings(program, "Libraries")
        settings.window.find("Goodreads when Quire opens", role="check box").click()
        settings.window.find("Audio", role="check box").press()
        self.saved(program, settings)
        self.assertEqual([self.home.setting(key) for key in (
            "showBooksSection", "showAudioSection", "automaticGoodreadsSync", "automaticAudibleSync")], ["1", "0", "0", "1"])
        self.assertEqual(program.quit(), 0)

        folder = write_audio_library(self.home.folder / "Audible", [])
        self.home.write_settings(audibleLibraryPath=str(folder))
        program = self.start()
        settings = Settings(program, "Libraries")
        self.shows(settings.window, window(
            "Libraries", "heading 'Libraries & Syncing'", "label 'Audible detected'",
            "label 'Audible is installed and its local library is available.'", PERMISSION, LIBRARIES_NOTE,
            *boxes(goodreads=False, audio=False), "push button 'Grant Access'", "push button 'Sync'"))

    def test_goodreads_and_publishing(self):
        self.home.connect_goodreads()
        self.home.write_settings(publishIntervalMinutes="30", netlifySiteURL="https://127.0.0.1/list",
                                 publishLastRun="2026-03-11T10:00:00.000Z")
        updated = "Last update: 11 Mar 2026, 11:00:00"
        help_page = f"{self.services.address}/quire/help.html"
        program = self.start()
        settings = Settings(program, "Goodreads")
        goodreads = window(
            "Goodreads", "heading 'Goodreads'", "label 'Goodreads User ID'", "text 'User ID' = '81234567'",
            "label 'Goodreads RSS Key'", "password text 'Saved; enter a new key to replace it'",
            "link 'How to find your Goodreads User ID'", "link 'How to obtain the RSS key'", GOODREADS_NOTE,
            updated=updated)
        self.shows(settings.window, goodreads)
        settings.window.find("How to find your Goodreads User ID").click()
        settings.window.find("How to obtain the RSS key").click()
        self.eventually(lambda: self.home.opened == [f"{help_page}#goodreads-setup", f"{help_page}#rss-setup"])

        settings.show("Publishing")
        folder = "Local Publishing Folder (Optional)"
        no_folder = self.folder_row(folder, prompt="No local copy", reset="Clear")

        def publishing(folder_row, minutes, automatic):
            return window(
                "Publishing", "heading 'Publishing'", "label 'Published Page'", "link 'https://127.0.0.1/list'",
                "label 'Netlify Token'", "password text 'Saved; enter a new token to replace it'",
                "link 'Netlify setup and token instructions'", *folder_row, "label 'Minutes Between Updates'",
                f"text 'Minutes' = '{minutes}'",
                "check box 'Publish automatically while Quire is open'" + (" (checked)" if automatic else ""),
                PUBLISHING_NOTE, updated=updated)

        self.shows(settings.window, publishing(no_folder, 30, False))
        settings.window.find("https://127.0.0.1/list").click()
        settings.window.find("Netlify setup and token instructions").click()
        self.eventually(lambda: self.home.opened[2:] == ["https://127.0.0.1/list", f"{help_page}#netlify-setup"])
        lists = str(self.home.folder / "Lists")
        settings.enter(folder, lists)
        settings.enter("Minutes", "45")
        settings.window.find("Publish automatically while Quire is open", role="check box").click()
        self.shows(settings.window, publishing(
            self.folder_row(folder, lists, "No local copy", "Clear"), 45, True))
        settings.show("Goodreads")  # and back: what is typed on one tab waits while another is shown
        self.shows(settings.window, goodreads)
        settings.show("Publishing")
        self.saved(program, settings)
        self.assertEqual([self.home.setting(key) for key in (
            "localPublishPath", "publishIntervalMinutes", "automaticPublishing")], [lists, "45", "1"])

        settings = Settings(program, "Publishing")
        settings.press("Clear")
        settings.enter("Minutes", "0")
        settings.refuses("Invalid Publishing Interval", MINUTES)
        settings.enter("Minutes", "45")
        self.shows(settings.window, publishing(no_folder, 45, True))
        self.saved(program, settings)
        self.assertFalse(self.home.setting("localPublishPath"))

    def test_data(self):
        program = self.start()
        settings = Settings(program, "Data")
        library, backups = str(self.home.support), str(self.home.support / "Database Backups")

        def data(library, backups, days=1, unit="day", files=20):
            return window(
                "Data", "heading 'Data & Backups'", *self.folder_row("Library Folder", library), LIBRARY_NOTE,
                *self.folder_row("Backup Folder", backups), "label 'Automatic Backups'", "label 'Every'",
                f"text 'Days' = '{days}'", f"label '{unit}'", "label 'Keep'", f"text 'Files' = '{files}'", "label 'files'",
                BACKUP_NOTE, "push button 'Back Up Database'", "push button 'Refresh Audio Covers'",
                "push button 'Open Backups'", "push button 'Open Data Folder'", "push button 'Open Logs'")

        self.shows(settings.window, data(library, backups))
        settings.enter("Days", "2")
        settings.enter("Library Folder", "/somewhere")
        settings.enter("Backup Folder", "/else")
        self.shows(settings.window, data("/somewhere", "/else", 2, "days"))
        settings.press("Default", beside="Library Folder")
        settings.press("Default", beside="Backup Folder")
        self.shows(settings.window, data(library, backups, 2, "days"))

        self.eventually(lambda: (self.home.support / "Database Backups").is_dir(), "the first backup was not made")
        settings.press("Folder", beside="Backup Folder")
        picker = program.find("Choose the Quire backup folder", role="dialog")

        def empty_folder(*foot):
            return "\n".join([
                "heading 'Choose the Quire backup folder'",
                "label 'Verified database backups will be saved in this folder.'", f"text 'Folder path' = '{backups}'",
                "push button 'Up'", "label 'No folders in here'", "list 'Folders'", *foot, "push button 'Cancel'",
                "push button 'Choose'"])

        self.shows(picker, empty_folder("push button 'New Folder'"))
        picker.find("New Folder").click()
        self.shows(picker, empty_folder("text 'Name of the new folder'", "push button 'Create' (disabled)"))
        picker.find("Cancel").click()
        program.wait_gone("Folder path")
        self.shows(settings.window, data(library, backups, 2, "days"))

        settings.show("Publishing")
        settings.press("Folder")
        picker = program.find("Choose the local reading website folder", role="dialog")
        picker.find("Quire writes the reading-list Markdown file to this folder.")
        self.assertFalse(picker.has("New Folder"))
        program.keys("Escape")
        program.wait_gone("Folder path")
        self.assertTrue(program.has("Quire Settings", role="frame"))


if __name__ == "__main__":
    unittest.main()
