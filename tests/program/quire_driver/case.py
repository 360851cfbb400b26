"""What every test of the whole program shares."""

from __future__ import annotations

import re
import unittest

from quire_world import Home, StandIn

from .program import Program
from .waiting import wait_until


class ProgramTestCase(unittest.TestCase):
    """Each test has an empty home, a stand-in for the outside services, and the program on
    request. Whatever still runs is ended afterwards, a screenshot is kept of a failure, and a
    program that complained on its standard error has failed its test."""

    maxDiff = None

    # A run that is made to fail may say so; a test that expects it names the pattern.
    expected_complaints: str | None = None

    def setUp(self) -> None:
        self.services = StandIn()
        self.addCleanup(self.services.stop)
        self.home = self.make_home()
        self._programs: list[Program] = []

    def make_home(self) -> Home:
        """An empty home; further ones are those of further readers or computers."""
        home = Home()
        self.addCleanup(home.remove)
        home.set_endpoints(**self.services.endpoints())
        home.lend_opener()
        return home

    def start(self, home: Home | None = None, **variables: str) -> Program:
        """Starts the program, and waits until its window is there and the library is read: what is
        pressed before that is overruled by the section that the library remembers. home: another
        reader's than that of the test."""
        program = self.launch(home, **variables)
        program.find(role="push button", name="Settings", seconds=30)
        program.wait_until_idle()
        return program

    def launch(self, home: Home | None = None, **variables: str) -> Program:
        """Starts the program, and waits for nothing."""
        program = Program(home or self.home, variables)
        self._programs.append(program)
        return program

    def tearDown(self) -> None:
        failed = self._has_failed()
        complaints = []
        for number, program in enumerate(self._programs, start=1):
            if program.is_running:
                if failed:
                    program.screenshot(f"failed-{self.id()}-{number}")
                try:
                    program.quit()
                except Exception:
                    program.kill()
                    complaints.append("it did not end on SIGTERM")
            complaints += program.complaints
        if self.expected_complaints:
            complaints = [line for line in complaints if not re.search(self.expected_complaints, line)]
        if complaints:
            self.fail("the program complained:\n" + "\n".join(complaints))

    def _has_failed(self) -> bool:
        outcome = getattr(self, "_outcome", None)
        if outcome is None:
            return False
        result = getattr(outcome, "result", None)
        recorded = [*getattr(result, "failures", []), *getattr(result, "errors", []), *getattr(outcome, "errors", [])]
        return any(test is self and trouble for test, trouble in recorded)

    # Sentences that many tests need. ----------------------------------------------------

    def eventually(self, condition, message: str = "it did not happen", seconds: float = 10):
        return wait_until(condition, message, seconds)

    def assert_ended_cleanly(self, program: Program) -> None:
        self.assertEqual(program.wait(), 0, program.errors)
        self.assertTrue(self.home.session["clean"])
