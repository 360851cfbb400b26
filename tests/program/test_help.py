import unittest

from quire_driver import ProgramTestCase


class Help(ProgramTestCase):
    def choose(self, program, item):
        program.find("Help", role="menu bar").click()
        program.find(item, role="menu item").click()

    def test_quick_help_is_a_window_of_its_own(self):
        program = self.start()
        self.choose(program, "Quick Help in Quire")
        window = program.find("Quire Help", role="frame")
        for heading in ("Browse your library", "Add and update titles", "Sync", "Insights", "Settings and local data",
                        "Useful shortcuts"):
            window.find(heading, role="heading")
        program.wait_until_idle()
        program.screenshot("help")
        program.tab_to("Open Complete Help")
        program.screenshot("help-end")
        program.keys("Return")
        self.eventually(lambda: self.home.opened == [f"{self.services.address}/quire/help.html"])
        program.keys("Escape")
        program.wait_gone("Quire Help", role="frame")

    def test_the_complete_help_is_a_page(self):
        program = self.start()
        program.keys("ctrl+question")
        self.eventually(lambda: self.home.opened == [f"{self.services.address}/quire/help.html"])

    def test_the_about_dialog_tells_the_version_and_writes_to_the_maker(self):
        program = self.start()
        self.choose(program, "About Quire")
        program.wait_for_text("Your personal, local-first reading library for macOS.")
        program.screenshot("about")
        program.find("Send Feedback…", role="push button").click()
        self.eventually(lambda: self.home.opened == ["mailto:feedback@quire.example?subject=Quire%20Feedback"])


if __name__ == "__main__":
    unittest.main()
