"""What a place on the screen is painted with."""

from __future__ import annotations

import re
from collections import Counter

from .controls import Control
from .desktop import Desktop

_PIXEL = re.compile(r"#([0-9A-F]{6})")


def colours(left: int, top: int, width: int, height: int) -> Counter[str]:
    """The colours of that part of the screen, as "426F83", each with its number of pixels."""
    text = Desktop.shared().run("import", "-window", "root", "-crop", f"{width}x{height}+{left}+{top}", "-depth", "8", "txt:-")
    return Counter(_PIXEL.findall(text))


def colour_at(x: int, y: int) -> str:
    return next(iter(colours(x, y, 1, 1)))


def colours_of(control: Control) -> Counter[str]:
    return colours(*control.frame)


def fill_of(control: Control) -> str:
    """The colour that most of the control is painted with."""
    return colours_of(control).most_common(1)[0][0]


def _luminance(colour: str) -> float:
    def linear(share: float) -> float:
        return share / 12.92 if share <= 0.04045 else ((share + 0.055) / 1.055) ** 2.4

    red, green, blue = (linear(int(colour[i:i + 2], 16) / 255) for i in (0, 2, 4))
    return 0.2126 * red + 0.7152 * green + 0.0722 * blue


def contrast(control: Control) -> float:
    """How far the words of a control stand out from its fill, from 1 (not at all) to 21 (black on white)."""
    left, top, width, height = control.frame
    inside = colours(left + 8, top + 5, width - 16, height - 10)
    fill = _luminance(inside.most_common(1)[0][0])
    return max((max(fill, other) + 0.05) / (min(fill, other) + 0.05) for other in map(_luminance, inside))
