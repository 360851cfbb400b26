import hashlib
import shutil
import unittest

from quire_driver import ProgramTestCase
from quire_world import Answer, FeedBook, OldBook

ROLLED_BACK = (
    "This cloud library is older than the copy previously opened on this Mac. Quire preserved it for recovery and will "
    "not overwrite it. Allow the cloud service to finish syncing, then reopen Quire.")
DIVERGED = (
    "This cloud library has diverged from the copy previously opened on this Mac. Quire preserved it for recovery and "
    "will not overwrite either history.")


class Recovery(ProgramTestCase):
    def setUp(self):
        super().setUp()
        self.home.write_settings(selectedTab="books")
        self.home.write_books(OldBook("1", "The Salt Road"))

    def digest(self, file):
        return hashlib.sha256(file.read_bytes()).hexdigest()

    def preserved(self, reason):
        return list((self.home.support / "Recovery").glob(f"Quire {reason} *.db"))

    def run_once(self, home=None):
        program = self.start(home)
        self.assertFalse(program.says("Quire Could Not Open"))
        self.assertEqual(program.quit(), 0)

    def assert_refused(self, *messages):
        """The program says so, twice in a row, and touches nothing."""
        before = self.digest(self.home.database)
        for number in range(2):
            program = self.start()
            program.wait_for_text("Quire Could Not Open")
            for message in messages:
                program.wait_for_text(message)
            if number == 0:
                program.screenshot(self.id().rsplit(".", 1)[-1])
            self.assertEqual(program.quit(), 0)
            self.assertEqual(self.digest(self.home.database), before)

    def test_an_old_backup_in_place_of_the_library_is_preserved_and_refused(self):
        self.run_once()
        old = self.home.folder / "old.db"
        shutil.copyfile(self.home.database, old)
        self.home.execute("UPDATE goodreads_books SET notes = 'by the sea'")
        self.run_once()
        shutil.copyfile(old, self.home.database)
        self.assert_refused(ROLLED_BACK)
        copies = self.preserved("Cloud Rollback")
        self.assertEqual(len(copies), 2)
        self.assertEqual(self.home.query("SELECT title, notes FROM goodreads_books", database=copies[0]),
                         [("The Salt Road", "")])

    def test_another_history_of_the_same_length_is_preserved_and_refused(self):
        self.run_once()
        other = self.home.folder / "other.db"
        shutil.copyfile(self.home.database, other)
        for file, notes in ((self.home.database, "here"), (other, "there")):
            self.home.execute("UPDATE goodreads_books SET notes = ?", notes, database=file)
        self.run_once()
        shutil.copyfile(other, self.home.database)
        self.assert_refused(DIVERGED)
        [first, _] = self.preserved("Cloud Divergence")
        self.assertEqual(self.home.query("SELECT notes FROM goodreads_books", database=first), [("there",)])

    def test_another_library_at_the_same_place_is_preserved_and_refused(self):
        self.run_once()
        stranger = self.make_home()
        stranger.write_books(OldBook("9", "A Stranger's Book"))
        self.run_once(stranger)
        shutil.copyfile(stranger.database, self.home.database)
        self.assert_refused(DIVERGED)
        self.assertEqual(len(self.preserved("Library Identity Conflict")), 2)

    def test_an_empty_file_in_place_of_the_library_is_refused(self):
        self.run_once()
        self.home.database.write_bytes(b"")
        self.assert_refused(ROLLED_BACK)
        self.assertEqual(self.home.database.stat().st_size, 0)

    def test_a_conflict_copy_beside_the_library_stops_the_opening(self):
        self.run_once()
        copy = self.home.support / "quire (Reader's conflicted copy 2026-11-01).db"
        shutil.copyfile(self.home.database, copy)
        self.assert_refused(
            f"The cloud service created a conflicting Quire database named “{copy.name}”.",
            "Quire will not write until the conflicting copies are reviewed.")
        self.assertEqual(len(self.preserved("Cloud Conflict")), 4)  # the current one as well
        self.assertEqual(len(self.preserved("Cloud Conflict Current")), 2)
        copy.unlink()
        program = self.start()
        program.wait_for_cards("The Salt Road")

    def test_a_start_after_a_kill_checks_the_library_and_closes_what_was_open(self):
        self.home.connect_goodreads()
        self.services.books = [FeedBook("2", "Nine Winters")]
        self.services.answer_shelf("did-not-finish", Answer(delay=20))
        program = self.start()
        program.find("Sync", role="push button").click()
        self.eventually(lambda: "did-not-finish" in self.services.asked_shelves)
        program.kill()
        self.assertFalse(self.home.session["clean"])

        program = self.start()
        program.wait_for_cards("The Salt Road")
        program.screenshot("start-after-kill")
        self.assertEqual(program.quit(), 0)
        history = self.home.query(
            "SELECT job_kind, state, attempt, message FROM background_job_history"
            " WHERE job_kind IN ('goodreadsSync', 'maintenance') ORDER BY id")
        self.assertEqual(history, [
            ("goodreadsSync", "running", 1, None),
            ("goodreadsSync", "interrupted", 1, "The previous Quire session ended before this operation completed."),
            ("maintenance", "succeeded", 1, "Post-crash recovery checks completed")])

        self.run_once()  # nothing is left to be interrupted
        self.assertEqual(self.home.value("SELECT COUNT(*) FROM background_job_history WHERE state = 'interrupted'"), 1)


if __name__ == "__main__":
    unittest.main()
