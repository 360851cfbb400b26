import json
import sqlite3
import unittest
from contextlib import closing

from quire_driver import FolderPortal, ProgramTestCase, Settings
from quire_world import Answer, AudioTitle, CatalogueBook, OldBook, OwnedAudiobook, picture, write_audio_library

LONG = "The Collected Letters of a Lighthouse Keeper to the Sea, With the Replies of the Sea, Volume the Third: " \
    "Being the Winter in Which Nobody Came"

TIDEWATER = OwnedAudiobook("B1", "Tidewater", series="Coast Songs", number=2, percent=41.5, started=True)
SALT_ROAD = OwnedAudiobook("B2", "The Salt Road", percent=100, started=True, finished=True)
GLASS_ORCHARD = OwnedAudiobook("B3", "The Glass Orchard")
OWNED = [TIDEWATER, SALT_ROAD, GLASS_ORCHARD]


class Audiobooks(ProgramTestCase):
    def setUp(self):
        super().setUp()
        self.home.write_settings(
            selectedTab="audio", automaticGoodreadsSync="0", automaticAudibleSync="0")
        self.folder = self.home.folder / "Audible" / "Application Support"

    def own(self, *titles, covers=True):
        """The application has these, their covers at the stand-in."""
        for number, title in enumerate(titles):
            path = f"/covers/{title.asin}.png"
            self.services.files[path] = Answer(picture(colour=(60 + 40 * number % 190, 90, 140)), type="image/png")
            title.cover = self.services.address + path if covers else None
        write_audio_library(self.folder, titles)

    def grant(self):
        """As if the reader had granted the folder in an earlier run."""
        self.home.write_settings(audibleLibraryPath=str(self.folder))

    def run_sync(self):
        self.grant()
        program = self.start()
        program.find("Sync", role="push button").click()
        return program

    def synced(self):
        """Started, and done with a sync that a reader asked for."""
        program = self.run_sync()
        self.eventually(lambda: self.home.setting("audibleLastSync"), "nothing was synced", seconds=30)
        self.dismiss_failed_publication(program)
        program.wait_until_idle()
        return program

    def dismiss_failed_publication(self, program):
        """A sync ends with the reading list, and these readers have no site for it."""
        program.wait_for_text("Reading List Update Failed", seconds=30)
        program.find("OK", role="push button").click()
        program.wait_gone("OK", role="push button")

    def covers(self):
        """Where each title's cover came from, once each has one."""
        def known():
            try:
                rows = self.home.query("SELECT title, cover_data_source, length(cover_data) FROM audible_books ORDER BY title")
            except sqlite3.Error:
                return None  # it is just being written
            return rows if rows and all(length for *_, length in rows) else None

        return {title: source for title, source, _ in self.eventually(known, "not each title got a cover", seconds=40)}


class Granting(Audiobooks):
    def picker(self, answer):
        portal = FolderPortal()
        self.addCleanup(portal.stop)
        portal.answer = str(answer)
        return portal

    def test_a_folder_is_granted_and_what_it_holds_comes_in(self):
        self.own(*OWNED)
        portal = self.picker(self.folder)
        program = self.start()
        program.wait_for_text("No audio titles found")
        settings = Settings(program, "Libraries")
        program.wait_for_text("Audible not detected")
        program.screenshot("libraries-tab-nothing")
        settings.press("Grant Access")
        program.wait_for_text("Audible library access granted")
        self.assertEqual(portal.questions[0]["title"], "Grant Quire Access to the Audible Library")
        self.assertEqual(portal.questions[0]["accept_label"], "Grant Access")
        program.wait_for_text("Audible detected")
        program.wait_for_text("Audible is installed and its local library is available.")
        program.screenshot("libraries-tab-granted")
        self.assertEqual(self.home.setting("audibleLibraryPath"), str(self.folder))
        settings.press("Sync")
        program.wait_for_text("Audible synced: 3 added, 0 refreshed", seconds=30)
        self.dismiss_failed_publication(program)
        settings.close()
        program.wait_for_cards("The Salt Road")
        self.covers()
        program.wait_until_idle()
        program.screenshot("audio-read")
        program.find("Currently Listening", role="push button").click()
        program.wait_for_cards("Tidewater")
        self.assertEqual(
            self.home.query("SELECT title, series, book_number, listening_progress, status FROM audible_books ORDER BY asin"),
            [("Tidewater", "Coast Songs", 2, 41.5, "reading"), ("The Salt Road", None, None, 100.0, "read"),
             ("The Glass Orchard", None, None, 0.0, "to-read")])
        self.assertTrue(self.home.setting("audibleLastSync").endswith("Z"))

    def test_a_folder_of_something_else_is_refused(self):
        (self.home.folder / "Music").mkdir()
        self.picker(self.home.folder / "Music")
        program = self.start()
        settings = Settings(program, "Libraries")
        settings.press("Grant Access")
        program.wait_for_text("Wrong Audible Folder")
        program.screenshot("libraries-tab-wrong-folder")
        settings.dismiss_notice()
        self.assertTrue(program.says("Audible not detected"))
        self.assertIsNone(self.home.setting("audibleLibraryPath"))

    def test_a_section_is_hidden_and_shown_again(self):
        self.own(*OWNED)
        self.grant()
        program = self.start()
        settings = Settings(program, "Libraries")
        settings.window.find("Audio", role="check box").click()
        settings.save()
        program.wait_for_text("Settings saved")
        program.wait_gone("Quire Settings")
        self.eventually(lambda: not program.has("Audio", role="push button"))
        program.wait_for_text("Your reading activity")
        program.screenshot("audio-hidden")
        settings = Settings(program, "Libraries")
        settings.window.find("Audio", role="check box").click()
        settings.save()
        program.wait_for_text("Settings saved")
        program.open_tab("Audio")
        program.wait_for_text("No audio titles found")

    def test_it_syncs_by_itself_where_it_was_told_to(self):
        self.own(*OWNED)
        self.grant()
        program = self.start()
        settings = Settings(program, "Libraries")
        settings.window.find("Audible when Quire opens", role="check box").click()
        settings.save()
        program.wait_for_text("Settings saved")
        self.assertEqual(program.quit(), 0)
        program = self.launch()
        program.wait_for_text("Audible synced automatically: 3 titles", seconds=30)
        program.wait_for_cards("The Salt Road")


class Syncing(Audiobooks):
    def test_progress_moves_on_and_what_the_reader_wrote_stays(self):
        self.own(*OWNED)
        self.synced().quit()
        self.home.execute("UPDATE audible_books SET user_rating = 4.5, notes = 'for Ida' WHERE asin = 'B1'")
        with closing(sqlite3.connect(self.folder / "account-library.sqlite")) as library:
            library.execute("UPDATE library_item SET json_data = ? WHERE asin = 'B1'", (json.dumps({"percentComplete": 88}),))
            library.execute("UPDATE products SET title = 'Another Title' WHERE asin = 'B1'")
            library.commit()
        self.run_sync().wait_for_text("Audible synced: 0 added, 3 refreshed", seconds=30)
        self.assertEqual(
            self.home.query("SELECT title, listening_progress, user_rating, notes FROM audible_books WHERE asin = 'B1'"),
            [("Tidewater", 88.0, 4.5, "for Ida")])

    def test_the_other_application_keeps_its_file_as_it_was(self):
        self.own(*OWNED)
        file = self.folder / "account-library.sqlite"
        before = file.read_bytes()
        self.synced()
        self.assertEqual(file.read_bytes(), before)
        self.assertEqual([entry.name for entry in self.folder.iterdir()], [file.name])

    def test_what_its_log_holds_is_read_and_a_torn_end_of_it_is_not(self):
        self.own(*OWNED)
        file = self.folder / "account-library.sqlite"
        log = file.with_name(file.name + "-wal")
        with closing(sqlite3.connect(file)) as library:
            library.execute("PRAGMA journal_mode = WAL")
            library.execute("PRAGMA wal_autocheckpoint = 0")
            for title in ("Told in the log", "Torn from the log"):
                library.execute("UPDATE products SET title = ? WHERE asin = 'B2'", (title,))
                library.commit()
            whole = log.read_bytes()
            torn = file.read_bytes(), whole[:-100]
        file.write_bytes(torn[0])
        log.write_bytes(torn[1])
        program = self.synced()
        program.wait_for_cards("Told in the log")
        self.assertEqual(log.read_bytes(), torn[1])

    def test_a_file_that_is_locked_is_read_all_the_same(self):
        self.own(*OWNED)
        with closing(sqlite3.connect(self.folder / "account-library.sqlite", isolation_level=None)) as library:
            library.execute("BEGIN EXCLUSIVE")
            self.synced()


class BadFiles(Audiobooks):
    def refused(self, name, said):
        """Sync fails with those words, nothing comes in, and the window works on."""
        self.home.connect_site()  # or the reading list would have the last word
        program = self.run_sync()
        program.wait_for_text("Audible Sync Failed", seconds=30)
        program.wait_for_text(said)
        program.screenshot(f"audio-{name}")
        program.find("OK", role="push button").click()
        program.wait_gone("OK", role="push button")
        program.open_tab("Books")
        program.wait_for_text("0 titles")
        self.assertEqual(self.home.value("SELECT COUNT(*) FROM audible_books"), 0)
        self.assertEqual(list(self.home.folder.glob("**/Quire-Audible-*")), [])

    def write(self, data):
        self.folder.mkdir(parents=True)
        (self.folder / "account-library.sqlite").write_bytes(data)

    def test_a_file_without_the_tables(self):
        self.folder.mkdir(parents=True)
        with closing(sqlite3.connect(self.folder / "account-library.sqlite")) as library:
            library.execute("CREATE TABLE something (else_ TEXT)")
            library.commit()
        self.refused("no-tables", "no such table")

    def test_a_file_that_is_encrypted(self):
        self.write(bytes(range(1, 256)) * 800)
        self.refused("encrypted", "file is not a database")

    def test_a_file_whose_pages_are_spoilt(self):
        self.own(*[OwnedAudiobook(f"B{n}", f"Title {n}", summary="word " * 300) for n in range(60)])
        file = self.folder / "account-library.sqlite"
        data = bytearray(file.read_bytes())
        data[8192:len(data) // 2] = b"\x5a" * (len(data) // 2 - 8192)
        file.write_bytes(data)
        self.refused("spoilt", "Audible’s local library did not pass its integrity check.")

    def test_a_folder_whose_file_is_gone(self):
        self.folder.mkdir(parents=True)
        self.grant()
        program = self.start()
        settings = Settings(program, "Libraries")
        program.wait_for_text("Open it and sign in, then grant Quire access to the local library.")
        program.screenshot("libraries-tab-no-file")
        settings.press("Sync")
        self.eventually(lambda: "Sync skipped Audible because local library access is unavailable." in self.home.log)


class Covers(Audiobooks):
    def refresh(self, program):
        Settings(program, "Data").press("Refresh Audio Covers")

    def test_a_title_without_a_cover_gets_one_drawn(self):
        self.own(TIDEWATER, GLASS_ORCHARD, covers=False)
        self.synced()
        self.assertEqual(set(self.covers().values()), {"generated:placeholder"})

    def test_covers_are_refreshed_from_the_readers_books_and_the_catalogues(self):
        self.own(TIDEWATER, SALT_ROAD, GLASS_ORCHARD)
        portrait = self.services.address + "/portrait.png"
        self.services.files["/portrait.png"] = Answer(picture(200, 300, (40, 120, 90)), type="image/png")
        self.services.files["/search"] = Answer(json.dumps({"resultCount": 1, "results": [
            {"trackName": "Tidewater", "artistName": "Ada Lindqvist", "artworkUrl100": portrait}]}).encode())
        self.home.write_books(OldBook("1", "The Salt Road", author="Ada Lindqvist"))
        self.home.execute("UPDATE goodreads_books SET cover_url = ?", self.services.address + "/book.png")
        self.services.files["/book.png"] = Answer(picture(200, 300, (140, 120, 30)), type="image/png")
        program = self.synced()
        before = self.covers()
        program.wait_until_idle()
        self.refresh(program)
        program.wait_for_text("Audio Covers Refreshed", seconds=30)
        program.wait_for_text("Updated 2 of 3 covers. 1 retained their existing artwork.")
        program.screenshot("covers-refreshed")
        self.assertEqual(self.covers(), before | {
            "Tidewater": portrait, "The Salt Road": self.services.address + "/book.png"})

    def test_with_the_network_gone_each_title_still_ends_with_a_cover(self):
        self.own(TIDEWATER, SALT_ROAD, GLASS_ORCHARD)
        self.services.stop()
        program = self.synced()
        program.wait_for_cards("The Salt Road")
        self.assertEqual(set(self.covers().values()), {"generated:placeholder"})
        program.wait_until_idle()
        program.screenshot("audio-network-gone")
        program.find("Search library & Audible", role="text").click()
        program.type("salt")
        program.wait_for_text("Audible search failed: ", seconds=30)
        program.wait_for_cards("The Salt Road")
        program.screenshot("audio-search-network-gone")
        self.refresh(program)
        program.wait_for_text("Updated 0 of 3 covers. 3 retained their existing artwork.", seconds=30)


class SmallWindows(Audiobooks):
    """What is long or many, in the smallest window there is."""

    def setUp(self):
        super().setUp()
        self.services.catalogue = [
            CatalogueBook(f"OL{n}W", f"{LONG} {n}", author="Augustína " * 12, year=None if n % 2 else 1999) for n in range(12)]
        self.services.audio_titles = [
            AudioTitle(f"C{n}", f"{LONG} {n}", narrator="Piet Aalders, Runa Vik, " * 6, series=LONG, number=str(n))
            for n in range(12)]

    def assert_within(self, program, outer):
        left, top, width, height = outer.frame
        for control in outer.all():
            x, y, across, down = control.frame
            if across > 0 and down > 0:
                self.assertGreaterEqual(x, left - 4, control)
                self.assertLessEqual(x + across, left + width + 4, control)

    def test_the_panels_that_add_titles(self):
        program = self.start()
        program.resize(920, 700)
        for tab, name in (("Books", "Add Book"), ("Audio", "Add Audiobook")):
            with self.subTest(name):
                program.open_tab(tab)
                program.find(name, role="push button").click()
                panel = program.find(name, role="dialog")
                program.type("keeper" if tab == "Audio" else "letters")
                program.keys("Return")
                panel.find(f"{LONG} 0", role="list item")
                program.wait_until_idle()
                program.screenshot(f"small-{name.lower().replace(' ', '-')}")
                self.assert_within(program, panel)
                panel.find("Enter Manually", role="page tab").click()
                panel.find("Title", role="text").click()
                program.type(LONG)
                program.screenshot(f"small-{name.lower().replace(' ', '-')}-manually")
                self.assert_within(program, panel)
                program.keys("Escape")
                program.wait_gone(name, role="dialog")

    def test_the_search_of_the_audio_tab(self):
        self.own(*[OwnedAudiobook(f"B{n}", f"{LONG} ({n})", finished=True, started=True) for n in range(7)], covers=False)
        program = self.synced()
        program.resize(920, 700)
        program.find("Search library & Audible", role="text").click()
        program.type("keeper")
        program.wait_for_text("Available to Add")
        program.wait_until_idle()
        program.screenshot("small-audio-search")
        program.find(starting="View details for ").scroll(30)
        program.wait_until_idle()
        program.screenshot("small-audio-search-results")
        self.assert_within(program, program.find("Quire", role="frame"))

    def test_the_libraries_tab(self):
        self.own(*OWNED)
        self.grant()
        program = self.start()
        program.resize(920, 700)
        Settings(program, "Libraries")
        program.wait_for_text("Audible detected")
        program.wait_until_idle()
        program.screenshot("small-libraries-tab")


if __name__ == "__main__":
    unittest.main()
