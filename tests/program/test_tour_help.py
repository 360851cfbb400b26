"""The tour of the help window, and of what the program asks and tells: about itself, of a newer version, of a fault."""

import json
import unittest

from quire_driver import TourCase

HELP = """
    heading 'Quire Help'
    label 'Version {version}'
    heading 'Browse your library'
    label 'Choose Books, Insights, or Audio in the sidebar. Use the status choices to narrow the library, Search to find titles and details, and View to choose the current section, shelf, and sort order.'
    heading 'Add and update titles'
    label 'Add Book searches the book catalog and also supports manual entry. Add Audiobook searches Audible and also supports manual entry. Open any cover to update its status, rating, and notes.'
    heading 'Sync'
    label 'Sync updates configured Goodreads and Audible information and then refreshes publishing. Quire remains the source of truth: imports add missing information and advance status conservatively, but never replace your existing ratings or notes.'
    heading 'Insights'
    label 'Insights summarizes current reading, yearly progress, reading rhythm, ratings, authors, tags, and recent finishes.'
    heading 'Settings and local data'
    label 'Settings controls appearance, Goodreads, Audible, publishing, backups, and the library location. Quire keeps its database and artwork locally. You may choose an accessible folder, including a folder managed by iCloud Drive, Dropbox, or another cloud service.'
    heading 'Useful shortcuts'
    label 'Command-R'
    label 'Sync'
    label 'Shift-Command-B'
    label 'Back up the Quire database'
    label 'Command-?'
    label 'Quire Help'
    push button 'Open Complete Help'
    push button 'Send Feedback…'
"""
FEEDBACK = "mailto:feedback@quire.example?subject=Quire%20Feedback"


class HelpTour(TourCase):
    def version(self, program):
        """As the program tells it in its own dialog, e.g. "0.3.0 (1)"."""
        self.choose(program, "Help", "About Quire")
        alert = program.find("Quire", role="alert")
        words = alert.find(starting="Version ", role="label").name.removeprefix("Version ")
        version, _, rest = words.partition("\n\n")
        self.assertRegex(version, r"^\d+\.\d+(\.\d+)? \(\d+\)$")
        self.assertEqual(rest, "Your personal, local-first reading library for macOS.")
        return version

    def test_about_and_help(self):
        program = self.start()
        version = self.version(program)
        alert = program.find("Quire", role="alert")
        words = f"Version {version}\n\nYour personal, local-first reading library for macOS."
        self.shows(alert, "label 'Quire'\npanel 'Message'\n" + f"  label {words!r}", "push button 'OK'\npush button 'Send Feedback…'")
        alert.find("OK").click()
        program.wait_gone("OK", role="push button")
        self.assertEqual(self.home.opened, [])

        self.choose(program, "Help", "Quick Help in Quire")
        window = program.find("Quire Help", role="frame")
        program.resize(720, 980, "Quire Help")
        self.shows(window, HELP.format(version=version))
        window.find("Send Feedback…", role="push button").click()
        window.find("Open Complete Help", role="push button").click()
        self.eventually(lambda: self.home.opened == [FEEDBACK, f"{self.services.address}/quire/help.html"])
        program.close_window()  # the help stays, and the program with it
        program.wait_gone("Quire", role="frame")
        self.shows(window, HELP.format(version=version))
        program.close_window("Quire Help")
        self.assert_ended_cleanly(program)

    def test_what_the_program_asks_and_tells(self):
        self.services.update = json.dumps(
            {"version": "99.1", "build": 1, "downloadPage": "https://127.0.0.1/quire/"}).encode()
        program = self.start()
        self.shows(program.find("Quire 99.1 is available", role="alert"), """
            label 'Quire 99.1 is available'
            panel 'Message'
              label 'Open the Quire website to get the newest version.'
            push button 'Open Website'
            push button 'Later'
        """)
        program.find("Later", role="push button").press()
        program.wait_gone("Later", role="push button")
        self.assertEqual(self.home.opened, [])

        program.find("Sync", role="push button").press()  # there is nowhere to publish to
        self.shows(program.find("Reading List Update Failed", role="alert", seconds=30), """
            label 'Reading List Update Failed'
            panel 'Message'
              label 'Online: Netlify token not found. Add it in Settings.'
            push button 'OK'
        """)
        program.find("OK", role="push button").press()
        program.wait_gone("OK", role="push button")


if __name__ == "__main__":
    unittest.main()
