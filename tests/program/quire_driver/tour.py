"""What the visits to each view of the program share."""

from __future__ import annotations

import os

from quire_world import Home

from .case import ProgramTestCase
from .controls import Control
from .inventory import expect_inventory, misplaced
from .program import GRAPHICS_CARD, SOFTWARE, Program


MENU_BAR = """
    menu bar ''
      menu bar 'Quire'
      menu bar 'File'
      menu bar 'View'
      menu bar 'Library'
      menu bar 'Help'
"""


def sidebar(tab: str, shelf: str = "Read", search: str = "", tabs: tuple[str, ...] = ("Books", "Insights", "Audio"),
            sync: str = "") -> str:
    """The left column as an inventory has it; sync: what is said of the button beside its name."""
    audio = tab == "Audio"
    lines = ["label 'Quire'", "text 'Search library & Audible'" if audio else "text 'Search library'"]
    if search:
        lines[-1] += f" = '{search}'"
        lines.append("push button 'Clear search'")
    lines.append("label 'LIBRARY'")
    lines += [f"push button '{name}'" + (" (selected)" if name == tab else "") for name in tabs]
    if tab != "Insights":
        shelves = ["All Audio", "Currently Listening"] if audio else ["All Titles", "Currently Reading"]
        shelves += ["Want to Read", "Read", "Did Not Finish"] + ([] if audio else ["Hidden"])
        lines.append("label 'STATUS'")
        lines += [f"push button '{name}'" + (" (selected)" if name == shelf else "") for name in shelves]
    return "\n".join([*lines, f"push button 'Sync'{sync}", "push button 'Settings'"])


def stars(rated: float = 0, title: str = "My Rating") -> str:
    """The control of five stars with halves, rated so, as an inventory has it."""
    words = "Unrated" if rated == 0 else f"{rated:g} star" + ("" if rated == 1 else "s")
    lines = [f"panel '{title}': {words}"]
    for half in range(1, 11):
        chosen = ": Selected (checked)" if rated == half / 2 else ""
        lines.append(f"  radio button 'Set rating to {half / 2:g}'{chosen}")
    lines.append(f"label '{words}'")
    if rated:
        lines.append("push button 'Clear rating'")
    return "\n".join(lines)


class TourCase(ProgramTestCase):
    """A visit to one view after the other, in which all that is shown is held against a list. It draws as on a
    reader's desktop, unless QUIRE_DRIVER_RENDERER says otherwise."""

    def start(self, home: Home | None = None, **variables: str) -> Program:
        renderer = os.environ.get("QUIRE_DRIVER_RENDERER", GRAPHICS_CARD)
        program = super().start(home, **{"QT_QUICK_BACKEND": renderer} | variables)
        if renderer != SOFTWARE:
            self.assertIsNotNone(program.graphics, f"it drew by itself: {program.errors}")
        return program

    def shows(self, control: Control, *expected: str) -> None:
        """That, and nothing else, is shown below a control, each thing in a place of its own. Parts of the list
        follow one another."""
        expect_inventory(control, *expected)
        self.assertEqual(misplaced(control), [])

    def stays(self, program: Program, control: Control, *expected: str) -> None:
        """What was done changed nothing."""
        program.wait_until_idle()
        expect_inventory(control, *expected, seconds=0)

    # The menu bar. ------------------------------------------------------------------

    def open_menu(self, program: Program, title: str) -> Control:
        """A menu of the menu bar, by the letter that opens it."""
        program.keys(f"alt+{title[0].lower()}")
        return program.find(role="popup menu")

    def open_submenu(self, program: Program, title: str, submenu: str, first: str) -> Control:
        """The list that an entry of a menu opens beside it; first: its first entry."""
        self.open_menu(program, title)
        program.find(submenu, role="menu item").click()
        program.find(first, role="menu item")
        return program.all(role="popup menu")[-1]

    def choose(self, program: Program, *path: str) -> None:
        """An entry of a menu, each word of the way to it clicked on."""
        self.open_menu(program, path[0])
        for item in path[1:]:
            program.find(item, role="menu item").click()
        program.wait_gone(role="popup menu")

    def close_menus(self, program: Program) -> None:
        while open_ones := len(program.all(role="popup menu")):
            program.keys("Escape")
            self.eventually(lambda: len(program.all(role="popup menu")) < open_ones, "a menu stays open")
