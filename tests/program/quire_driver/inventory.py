"""What a window shows, as a list that a test can hold against the one it expects: every control in the order
of the tree, with what it is, what it is called and what state it is in. One that is missing, doubled, nameless,
or there when it should not be, makes another list.

    push button 'Books' (selected)
    text 'Search library' = 'salt'
    combo box 'Sort library': Recent
    panel 'My Rating': 3 stars
      push button 'Set rating to 0.5'
"""

from __future__ import annotations

import difflib
import textwrap
from collections.abc import Iterator

from gi.repository import GLib

from .controls import Control
from .waiting import TookTooLong, wait_until

# They come and go with what the fonts of the day leave over, or frame what is named itself.
PASSED_OVER = {"scroll bar", "filler"}

# What is pressed or typed into: one must not lie over another.
TOUCHED = {"push button", "combo box", "text", "password text", "check box", "radio button", "link", "menu item", "page tab"}


def entries(control: Control, depth: int = 0) -> Iterator[tuple[int, Control]]:
    """What is shown below a control, each with its depth. What a hidden control holds is hidden too."""
    for child in control.children:
        try:
            if not child.is_shown:
                continue
            role = child.role
            nameless_frame = role == "dialog" and not child.name
        except GLib.Error:
            continue
        if role in PASSED_OVER:
            continue
        if not nameless_frame:
            yield depth, child
        yield from entries(child, depth if nameless_frame else depth + 1)


def line(control: Control) -> str:
    """One control in words."""
    role, name, description = control.role, control.name, control.description
    words = f"{role} {name!r}"
    if description and description != name:
        words += f": {description}"
    if role in {"text", "password text"} and (text := control.text):
        words += f" = {text!r}"
    return words + (f" ({', '.join(control.states)})" if control.states else "")


def inventory(control: Control) -> str:
    """All that is shown below a control, a line each, the children of one set in below it."""
    lines = []
    for depth, entry in entries(control):
        try:
            lines.append("  " * depth + line(entry))
        except GLib.Error:
            continue  # it has just gone
    return "\n".join(lines)


def expect_inventory(control: Control, *expected: str, seconds: float = 30) -> None:
    """Waits until those, and nothing else, are shown below a control, one after the other."""
    wanted = "\n".join(textwrap.dedent(part).strip("\n").rstrip() for part in expected if part.strip())
    shown = ""

    def is_shown() -> bool:
        nonlocal shown
        shown = inventory(control)
        return shown == wanted

    try:
        wait_until(is_shown, seconds=seconds)
    except TookTooLong:
        difference = "\n".join(difflib.unified_diff(
            wanted.splitlines(), shown.splitlines(), "expected", "shown", lineterm="", n=2))
        raise TookTooLong(f"within {control!r}:\n{difference}") from None


def misplaced(control: Control) -> list[str]:
    """What is shown below a control and yet cannot be seen or reached: without a size, beside the control in
    the breadth, or under another that is pressed."""
    left, _, width, _ = control.frame
    faults = []
    touched: list[tuple[tuple[int, int, int, int], str]] = []
    for _, entry in entries(control):
        x, y, across, down = entry.frame
        name = line(entry)
        if across <= 0 or down <= 0:
            faults.append(f"{name} has no size")
        if x < left or x + across > left + width:
            faults.append(f"{name} lies from {x} to {x + across} of {left} to {left + width}")
        if entry.role in TOUCHED:
            faults += [f"{name} lies over {other}" for place, other in touched if _overlap((x, y, across, down), place)]
            touched.append(((x, y, across, down), name))
    return faults


def _overlap(one: tuple[int, int, int, int], other: tuple[int, int, int, int]) -> bool:
    return (one[0] < other[0] + other[2] and other[0] < one[0] + one[2]
            and one[1] < other[1] + other[3] and other[1] < one[1] + one[3])
