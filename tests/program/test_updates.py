import json
import unittest

from quire_driver import ProgramTestCase
from quire_world.stand_in import Answer

PAGE = "https://127.0.0.1/quire/"


class Updates(ProgramTestCase):
    def tell(self, version):
        self.services.update = json.dumps({"version": version, "build": 1, "downloadPage": PAGE}).encode()

    def asked(self):
        return len([request for request in self.services.requests if request.path == "/quire/version.json"])

    def check(self, program):
        program.find("Quire", role="menu bar").click()
        program.find("Check for Updates…", role="menu item").click()

    def test_a_newer_version_is_offered_at_the_start_and_its_page_opened(self):
        self.tell("99.1")
        program = self.start()
        program.wait_for_text("Quire 99.1 is available")
        program.wait_for_text("Open the Quire website to get the newest version.")
        program.screenshot("update-available")
        program.find("Open Website", role="push button").click()
        self.eventually(lambda: self.home.opened == [PAGE])
        program.wait_gone("Open Website", role="push button")

    def test_later_opens_nothing_and_the_next_start_of_that_day_does_not_ask(self):
        self.tell("99.1")
        program = self.start()
        program.find("Later", role="push button")
        program.keys("Escape")
        program.wait_gone("Later", role="push button")
        self.assertEqual(program.quit(), 0)
        again = self.start()
        self.assertFalse(again.has("Later", role="push button"))
        self.assertEqual(self.asked(), 1)
        self.assertEqual(self.home.opened, [])

    def test_a_reader_who_asks_is_told_that_it_is_the_newest(self):
        self.tell("0.0.1")
        program = self.start()
        self.assertFalse(program.says("Quire is up to date"))  # nobody had asked
        self.check(program)
        program.wait_for_text("Quire is up to date")
        program.wait_for_text("You’re using the newest available version of Quire.")
        program.screenshot("update-none")
        program.find("OK", role="push button").click()
        program.wait_gone("OK", role="push button")

    def test_a_host_that_is_down_is_told_to_a_reader_who_asks_and_to_no_other(self):
        self.services.files["/quire/version.json"] = Answer(status=503)
        program = self.start()
        self.eventually(lambda: self.asked() == 1)
        program.wait_until_idle()
        self.assertFalse(program.has("OK", role="push button"))
        self.check(program)
        program.wait_for_text("Couldn’t check for updates")
        program.wait_for_text("The update server is unavailable.")
        program.screenshot("update-failed")


if __name__ == "__main__":
    unittest.main()
