"""Drives the built program as a reader does: on a screen of its own, with real keys
and a real mouse, through the accessibility tree, on files of its own.

    from quire_driver import ProgramTestCase

    class Shelves(ProgramTestCase):
        def test_a_shelf_can_be_chosen(self):
            program = self.start()
            program.find("Books", role="push button").click()
            self.assertEqual(program.find("Sort library").value, "Recent")

Run one file alone with the program of any build:

    QUIRE_PROGRAM=build/release/bin/quire python3 -m unittest discover tests/program -p 'test_search.py'
"""

from .case import ProgramTestCase
from .controls import Control, NotFound
from .feed import FeedBook, feed
from .home import Home
from .older_library import OldBook
from .program import Program
from .stand_in import ALL_SHELVES, Answer, StandIn, page, redirect
from .waiting import TookTooLong, wait_until

__all__ = [
    "ALL_SHELVES", "Answer", "Control", "FeedBook", "Home", "NotFound", "OldBook", "Program", "ProgramTestCase",
    "StandIn", "TookTooLong", "feed", "page", "redirect", "wait_until",
]
