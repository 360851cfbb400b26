import unittest

from quire_driver import ProgramTestCase
from quire_world import ALL_SHELVES, Answer, FeedBook, feed, page, redirect

SALT_ROAD = FeedBook("1", "The Salt Road (Coast Songs, #2)", rating=3, read_at="Sun, 01 Feb 2026 00:00:00 +0000")
NINE_WINTERS = FeedBook("2", "Nine Winters", author="Piet Aalders", shelf="to-read")


class Sync(ProgramTestCase):
    def setUp(self):
        super().setUp()
        self.home.connect_goodreads()
        self.services.books = [SALT_ROAD, NINE_WINTERS]
        self.services.netlify.pause = 2

    def press_sync(self, program):
        program.find("Sync", role="push button").click()

    def synced(self, count=2):
        program = self.start()
        self.press_sync(program)
        program.wait_for_text(f"Synced {count} Goodreads titles", seconds=30)
        return program

    def history(self):
        return self.home.query(
            "SELECT state, attempt FROM background_job_history WHERE job_kind = 'goodreadsSync' ORDER BY id")

    def test_a_sync_asks_for_every_shelf_and_keeps_what_it_was_told(self):
        program = self.synced()
        self.assertEqual(
            self.services.asked_shelves, [ALL_SHELVES, "currently-reading", "read", "to-read", "did-not-finish"])
        self.assertIn("shelf=%23ALL%23", self.services.feed_requests[0].raw)
        self.assertEqual(program.quit(), 0)
        self.assertEqual(
            self.home.query("SELECT title, shelf, user_rating FROM goodreads_books ORDER BY goodreads_id"),
            [("The Salt Road", "read", 3.0), ("Nine Winters", "to-read", 0.0)])
        self.assertEqual(self.history(), [("running", 1), ("succeeded", 1)])
        self.assertTrue(self.home.setting("goodreadsLastSync").endswith("Z"))

    def test_a_second_sync_changes_nothing_of_the_readers(self):
        self.synced().quit()
        self.home.execute(
            "UPDATE goodreads_books SET user_rating = 5, notes = 'lent to Ida', hidden = 1, shelf = 'did-not-finish' "
            "WHERE goodreads_id = '1'")
        self.home.execute("INSERT INTO book_tags (book_id, tag) SELECT id, 'sea' FROM goodreads_books WHERE goodreads_id = '1'")
        self.services.books = [
            FeedBook("1", "Another Title", author="Somebody Else", shelf="to-read", rating=1),
            FeedBook("2", "Nine Winters", author="Piet Aalders", shelf="currently-reading", rating=4),
            FeedBook("3", "The Glass Orchard")]
        self.synced(3).quit()
        self.assertEqual(
            self.home.query("SELECT title, user_rating, notes, hidden, shelf FROM goodreads_books WHERE goodreads_id = '1'"),
            [("The Salt Road", 5.0, "lent to Ida", 1, "did-not-finish")])
        self.assertEqual(self.home.query("SELECT tag FROM book_tags"), [("sea",)])
        self.assertEqual(
            self.home.query("SELECT shelf, user_rating FROM goodreads_books WHERE goodreads_id = '2'"),
            [("currently-reading", 4.0)])
        self.assertEqual(self.home.value("SELECT COUNT(*) FROM goodreads_books"), 3)

    def test_a_configured_feed_is_synced_at_the_start(self):
        self.home.connect_goodreads(automatic=True)
        program = self.start()
        program.wait_for_text("Goodreads synced automatically: 2 titles", seconds=30)

    def test_an_automatic_failure_is_a_toast_and_never_a_notice(self):
        self.home.connect_goodreads(automatic=True)
        self.services.answer_every_shelf(page())
        program = self.start()
        program.wait_for_text(
            "Automatic Goodreads sync failed: currently-reading: feed body was not RSS", seconds=30)
        self.assertFalse(program.has("OK", role="push button"))

    def test_pages_that_are_no_feed_give_the_notice(self):
        self.services.answer_every_shelf(page())
        program = self.start()
        self.press_sync(program)
        program.wait_for_text("Goodreads Sync Failed", seconds=30)
        program.wait_for_text("currently-reading: feed body was not RSS")
        program.screenshot("sync-notice")
        program.find("OK", role="push button").click()
        program.wait_gone("OK", role="push button")
        self.assertIn("Goodreads sync failed: currently-reading: feed body was not RSS", self.home.log)

    def test_a_notice_is_dismissed_with_the_keyboard(self):
        self.services.answer_every_shelf(page())
        program = self.start()
        program.keys("ctrl+r")
        program.wait_for_text("Goodreads Sync Failed", seconds=30)
        program.keys("Return")
        program.wait_gone("OK", role="push button")

    def test_the_words_of_a_failing_server_reach_the_reader(self):
        self.services.answer_every_shelf(Answer(b"Back at noon", status=503, type="text/plain"))
        program = self.start()
        self.press_sync(program)
        program.wait_for_text("All shelves: Back at noon", seconds=30)
        program.quit()
        self.assertEqual(self.history(), [("running", 1), ("succeeded", 1)])
        self.assertEqual(self.home.value("SELECT COUNT(*) FROM goodreads_books"), 0)

    def test_a_refusing_server_leaves_the_library_as_it_was(self):
        program = self.synced()
        self.eventually(lambda: not self.home.value("SELECT COUNT(*) FROM goodreads_books WHERE cover_data IS NULL"))
        program.quit()
        before = self.home.query("SELECT * FROM goodreads_books")
        self.services.answer_every_shelf(Answer(refuse=True))
        program = self.start()
        self.press_sync(program)
        program.wait_for_text("Goodreads Sync Failed", seconds=30)
        program.quit()
        self.assertEqual(self.home.query("SELECT * FROM goodreads_books"), before)

    def test_a_redirect_to_a_file_is_not_followed(self):
        secret = self.home.folder / "feed.xml"
        secret.write_bytes(b"<rss><channel><item><book_id>9</book_id><title>Stolen</title></item></channel></rss>")
        self.services.answer_every_shelf(redirect(secret.as_uri()))
        program = self.start()
        self.press_sync(program)
        program.wait_for_text("All shelves: The service URL could not be created.", seconds=30)
        program.quit()
        self.assertEqual(self.home.value("SELECT COUNT(*) FROM goodreads_books"), 0)

    def test_one_failing_shelf_costs_that_shelf_only(self):
        self.services.answer_shelf("to-read", Answer(b"", status=500))
        program = self.synced()
        self.eventually(lambda: "Goodreads sync warnings: to-read: The service returned HTTP 500." in self.home.log)
        program.quit()
        self.assertEqual(self.home.value("SELECT COUNT(*) FROM goodreads_books"), 2)

    def test_what_stood_before_a_cut_stays(self):
        whole = feed([SALT_ROAD, NINE_WINTERS])
        cut = whole.index(b"<title>Nine Winters")
        self.services.books = []
        self.services.answer_shelf(ALL_SHELVES, Answer(whole[:cut]))
        program = self.synced(1)
        program.quit()
        self.assertEqual(self.home.query("SELECT title FROM goodreads_books"), [("The Salt Road",)])

    def test_a_dripping_server_is_left_after_twenty_seconds(self):
        self.services.answer_shelf(ALL_SHELVES, Answer(b" " * 1000, drip=1))
        program = self.start()
        self.press_sync(program)
        program.wait_for_text("Synced 2 Goodreads titles", seconds=40)
        self.eventually(lambda: "Goodreads sync warnings: All shelves: " in self.home.log)

    def test_sync_without_a_feed_is_a_silent_skip(self):
        self.home.write_settings(goodreadsUserId="")
        program = self.start()
        self.press_sync(program)
        self.eventually(
            lambda: "Sync skipped Goodreads because credentials are not configured." in self.home.log)
        self.assertEqual(self.services.asked_shelves, [])
        self.assertFalse(program.has("OK", role="push button"))


if __name__ == "__main__":
    unittest.main()
