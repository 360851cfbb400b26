"""Drives the built program as a reader does: on a screen of its own, with real keys
and a real mouse, through the accessibility tree, on files of its own.
What it reads and whom it asks is the world of `quire_world`.

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
from .colours import colour_at, colours, colours_of, contrast, fill_of
from .controls import Control, NotFound
from .desktop import Desktop
from .portal import FolderPortal
from .program import GRAPHICS_CARD, SOFTWARE, Program
from .settings import Settings
from .tour import TourCase
from .waiting import TookTooLong, wait_until

__all__ = [
    "Control", "Desktop", "FolderPortal", "GRAPHICS_CARD", "NotFound", "Program", "ProgramTestCase", "SOFTWARE", "Settings",
    "TookTooLong", "TourCase", "colour_at", "colours", "colours_of", "contrast", "fill_of", "wait_until",
]
