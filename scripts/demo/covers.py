"""Draws the covers of the demo: flat colour, a few shapes, a title set with care.

Each cover follows from its title alone, so that it is the same in every run.
"""

import io
import math
import random
from collections.abc import Callable
from dataclasses import dataclass

import cairo
import gi

gi.require_version("Pango", "1.0")
gi.require_version("PangoCairo", "1.0")
from gi.repository import Pango, PangoCairo  # noqa: E402

HEIGHT = 690

Colour = tuple[float, float, float]


def colours(*hexadecimal: str) -> list[Colour]:
    return [tuple(int(code[i:i + 2], 16) / 255 for i in (0, 2, 4)) for code in hexadecimal]


# Field, ink, and three accents each.
PALETTES = [
    colours("f2e8d5", "22303c", "c8553d", "588b8b", "f28f3b"),
    colours("1d3557", "f1faee", "e63946", "a8dadc", "457b9d"),
    colours("2f3e46", "f4f1de", "84a98c", "cad2c5", "e9c46a"),
    colours("faf3dd", "3d405b", "e07a5f", "81b29a", "f2cc8f"),
    colours("283618", "fefae0", "dda15e", "bc6c25", "a3b18a"),
    colours("fbf7f0", "1b1b1e", "d72638", "3f88c5", "f49d37"),
    colours("432534", "f7ede2", "f28482", "f6bd60", "84a59d"),
    colours("e4dfda", "2a2d34", "009ddc", "6761a8", "f26430"),
    colours("0b3954", "fffbf5", "ff6663", "bfd7ea", "e0a458"),
    colours("d9e4dd", "24423a", "cd5d7d", "a7c4bc", "5e8b7e"),
    colours("f6d6c0", "3a2e39", "8f2d56", "218380", "d81159"),
    colours("17252a", "def2f1", "3aafa9", "feffff", "e8a87c"),
    colours("efe6dd", "4a2c2a", "bb4430", "7ebdc2", "f3dfa2"),
    colours("5b2333", "f7f4f3", "f24333", "ba1b1d", "e5b181"),
]

SERIFS = ["TeX Gyre Pagella", "Charis SIL", "Linux Libertine O", "Noto Serif", "Baskervald ADF Std"]
SANS = ["League Spartan", "Lato", "TeX Gyre Heros", "Inter", "Gillius ADF"]


@dataclass
class Page:
    """A cover in the making."""

    context: cairo.Context
    width: int
    height: int
    palette: list[Colour]
    random: random.Random
    title: str
    author: str

    @property
    def field(self) -> Colour:
        return self.palette[0]

    @property
    def ink(self) -> Colour:
        return self.palette[1]

    @property
    def accents(self) -> list[Colour]:
        return self.palette[2:]

    def legible_on(self, colour: Colour) -> Colour:
        """Field or ink, whichever stands out more from the colour."""
        def brightness(of: Colour) -> float:
            return 0.2126 * of[0] + 0.7152 * of[1] + 0.0722 * of[2]

        return max(self.field, self.ink, key=lambda choice: abs(brightness(choice) - brightness(colour)))

    def fill(self, colour: Colour, opacity: float = 1) -> None:
        self.context.set_source_rgba(*colour, opacity)
        self.context.fill()

    def rectangle(self, x: float, y: float, width: float, height: float, colour: Colour, opacity: float = 1) -> None:
        self.context.rectangle(x, y, width, height)
        self.fill(colour, opacity)

    def circle(self, x: float, y: float, radius: float, colour: Colour, opacity: float = 1) -> None:
        self.context.arc(x, y, radius, 0, 2 * math.pi)
        self.fill(colour, opacity)

    def text(self, text: str, font: str, size: float, colour: Colour, x: float, y: float, width: float,
             align: Pango.Alignment = Pango.Alignment.LEFT, room: float | None = None, spacing: float = 0) -> float:
        """Sets a text in a column, smaller until it fits the room; the height it took."""
        layout = PangoCairo.create_layout(self.context)
        layout.set_width(int(width * Pango.SCALE))
        layout.set_alignment(align)
        layout.set_wrap(Pango.WrapMode.WORD_CHAR)
        layout.set_line_spacing(0.95)
        if spacing:
            attributes = Pango.AttrList()
            attributes.insert(Pango.attr_letter_spacing_new(int(spacing * Pango.SCALE)))
            layout.set_attributes(attributes)
        layout.set_text(text, -1)
        while True:
            description = Pango.FontDescription(font)
            description.set_absolute_size(size * Pango.SCALE)
            layout.set_font_description(description)
            height = layout.get_pixel_size()[1]
            longest = max(text.split(), key=len)
            if (room is None or height <= room) and (size < 30 or not self._breaks(longest, description, width)):
                break
            size *= 0.94
        self.context.set_source_rgb(*colour)
        self.context.move_to(x, y)
        PangoCairo.show_layout(self.context, layout)
        return height

    def _breaks(self, word: str, font: Pango.FontDescription, width: float) -> bool:
        layout = PangoCairo.create_layout(self.context)
        layout.set_font_description(font)
        layout.set_text(word, -1)
        return layout.get_pixel_size()[0] > width


LEFT, CENTRE = Pango.Alignment.LEFT, Pango.Alignment.CENTER


def sans(page: Page, weight: str = "Bold") -> str:
    return f"{page.random.choice(SANS)} {weight}"


def serif(page: Page, weight: str = "") -> str:
    return f"{page.random.choice(SERIFS)} {weight}".strip()


def headline(page: Page, colour: Colour, top: float, room: float, align: Pango.Alignment = LEFT) -> None:
    margin = page.width * 0.09
    column = page.width - 2 * margin
    font = sans(page) if page.random.random() < 0.5 else serif(page, "Bold")
    taken = page.text(page.title, font, 62, colour, margin, top, column, align, room)
    page.text(page.author, "Lato", 25, colour, margin, top + taken + 12, column, align, spacing=0.6)


# Each of these fills a page. -------------------------------------------------------


def horizon(page: Page) -> None:
    line = page.height * page.random.uniform(0.58, 0.68)
    sun, sea, _ = page.accents
    page.circle(page.width * page.random.uniform(0.3, 0.7), line, page.width * 0.27, sun)
    page.rectangle(0, line, page.width, page.height - line, sea)
    for step in range(5):
        y = line + 18 + step * (14 + 5 * step)
        inset = page.width * page.random.uniform(0.12, 0.36)
        page.rectangle(inset, y, page.width - 2 * inset, 4, page.field, 0.7)
    headline(page, page.ink, page.height * 0.07, page.height * 0.28)


def hills(page: Page) -> None:
    page.circle(page.width * 0.74, page.height * 0.36, page.width * 0.11, page.accents[0])
    for number, colour in enumerate(page.accents[1:] + [page.ink]):
        base = page.height * (0.56 + 0.13 * number)
        phase = page.random.uniform(0, 6)
        page.context.move_to(0, page.height)
        for x in range(0, page.width + 8, 8):
            swell = math.sin(x / page.width * 4 + phase) * 34 + math.sin(x / page.width * 9 + phase * 2) * 12
            page.context.line_to(x, base + swell)
        page.context.line_to(page.width, page.height)
        page.fill(colour)
    headline(page, page.ink, page.height * 0.07, page.height * 0.26)


def arches(page: Page) -> None:
    middle, foot = page.width / 2, page.height
    ring = page.width * 0.46
    shades = page.accents + [page.field]
    for number in range(6):
        radius = ring - number * ring / 6.6
        page.context.move_to(middle - radius, foot)
        page.context.line_to(middle - radius, page.height * 0.66)
        page.context.arc(middle, page.height * 0.66, radius, math.pi, 0)
        page.context.line_to(middle + radius, foot)
        page.fill(shades[number % len(shades)])
    headline(page, page.ink, page.height * 0.07, page.height * 0.2, CENTRE)


def tiles(page: Page) -> None:
    columns = 4
    side = page.width / columns
    rows = int(page.height * 0.62 / side)
    for row in range(rows):
        for column in range(columns):
            x, y = column * side, page.height - (row + 1) * side
            back, front = page.random.sample(page.accents + [page.ink, page.field], 2)
            page.rectangle(x, y, side + 1, side + 1, back)
            corner_x, corner_y = page.random.choice([(0, 0), (side, 0), (0, side), (side, side)])
            start = {(0, 0): 0, (side, 0): math.pi / 2, (side, side): math.pi, (0, side): 3 * math.pi / 2}
            page.context.move_to(x + corner_x, y + corner_y)
            angle = start[corner_x, corner_y]
            page.context.arc(x + corner_x, y + corner_y, side, angle, angle + math.pi / 2)
            page.fill(front)
    room = page.height - rows * side
    headline(page, page.ink, room * 0.14, room * 0.56)


def label(page: Page) -> None:
    page.rectangle(0, 0, page.width, page.height, page.accents[0])
    for x in range(-page.height, page.width, 26):
        page.context.move_to(x, page.height)
        page.context.line_to(x + page.height, 0)
    page.context.set_source_rgba(*page.field, 0.22)
    page.context.set_line_width(5)
    page.context.stroke()
    x, y, width, height = page.width * 0.14, page.height * 0.2, page.width * 0.72, page.height * 0.42
    page.rectangle(x, y, width, height, page.field)
    page.context.rectangle(x + 9, y + 9, width - 18, height - 18)
    page.context.set_source_rgb(*page.ink)
    page.context.set_line_width(2)
    page.context.stroke()
    taken = page.text(page.title, serif(page), 46, page.ink, x + 26, y + 40, width - 52, CENTRE, height * 0.52)
    page.text(page.author, "Lato", 19, page.ink, x + 26, max(y + 40 + taken + 14, y + height - 58), width - 52, CENTRE)


def waves(page: Page) -> None:
    for number in range(9):
        base = page.height * (0.48 + number * 0.062)
        page.context.move_to(0, base)
        for x in range(0, page.width + 6, 6):
            page.context.line_to(x, base + math.sin(x / page.width * 2 * math.pi * 1.5 + number * 0.7) * 15)
        page.context.set_source_rgb(*page.accents[number % 3])
        page.context.set_line_width(13)
        page.context.stroke()
    headline(page, page.ink, page.height * 0.08, page.height * 0.28)


def moons(page: Page) -> None:
    radius = page.width * 0.085
    for row in range(3):
        for column in range(4):
            x = page.width * (0.185 + column * 0.21)
            y = page.height * (0.57 + row * 0.15)
            page.circle(x, y, radius, page.accents[row])
            shift = (column - 1.5) * radius * 0.8
            page.context.save()
            page.context.arc(x, y, radius, 0, 2 * math.pi)
            page.context.clip()
            page.circle(x + shift, y, radius, page.field, 0.85)
            page.context.restore()
    headline(page, page.ink, page.height * 0.08, page.height * 0.3)


def leaves(page: Page) -> None:
    page.context.set_line_width(4)
    for stem in range(3):
        x = page.width * (0.22 + stem * 0.28)
        top = page.height * page.random.uniform(0.5, 0.6)
        page.context.move_to(x, page.height)
        page.context.line_to(x, top)
        page.context.set_source_rgb(*page.ink)
        page.context.stroke()
        for number in range(7):
            y = top + number * 44
            for side in (-1, 1):
                page.context.move_to(x, y + 30)
                page.context.curve_to(x + side * 12, y, x + side * 40, y - 4, x + side * 52, y - 22)
                page.context.curve_to(x + side * 54, y + 10, x + side * 34, y + 34, x, y + 30)
                page.fill(page.accents[(stem + number) % 3])
    headline(page, page.ink, page.height * 0.08, page.height * 0.3, CENTRE)


def initial(page: Page) -> None:
    colour = page.accents[page.random.randrange(3)]
    page.rectangle(0, 0, page.width, page.height * 0.64, colour)
    letter = next((character for character in page.title.removeprefix("The ") if character.isalpha()), "Q")
    page.text(letter, sans(page), page.width * 0.92, page.field, 0, page.height * -0.02, page.width, CENTRE,
              page.height * 0.68)
    headline(page, page.ink, page.height * 0.68, page.height * 0.2)


def bands(page: Page) -> None:
    y = page.height * 0.46
    while y < page.height:
        height = page.random.choice([10, 18, 30, 46, 64])
        page.rectangle(0, y, page.width, height, page.random.choice(page.accents + [page.ink]))
        y += height + page.random.choice([6, 10, 16])
    headline(page, page.ink, page.height * 0.08, page.height * 0.28)


def orbit(page: Page) -> None:
    middle_x, middle_y = page.width / 2, page.height * 0.69
    page.context.set_line_width(2.5)
    for number in range(5):
        radius = page.width * (0.12 + number * 0.085)
        page.context.arc(middle_x, middle_y, radius, 0, 2 * math.pi)
        page.context.set_source_rgba(*page.ink, 0.55)
        page.context.stroke()
        angle = page.random.uniform(0, 2 * math.pi)
        page.circle(middle_x + math.cos(angle) * radius, middle_y + math.sin(angle) * radius,
                    page.random.uniform(9, 20), page.accents[number % 3])
    page.circle(middle_x, middle_y, page.width * 0.07, page.accents[0])
    headline(page, page.ink, page.height * 0.07, page.height * 0.25, CENTRE)


def doorway(page: Page) -> None:
    page.rectangle(0, 0, page.width, page.height, page.accents[1])
    page.rectangle(0, page.height * 0.83, page.width, page.height * 0.17, page.ink)
    x, width = page.width * 0.31, page.width * 0.38
    page.rectangle(x, page.height * 0.48, width, page.height * 0.35, page.field)
    page.context.move_to(x, page.height * 0.83)
    page.context.line_to(x + width, page.height * 0.83)
    page.context.line_to(page.width * 0.97, page.height)
    page.context.line_to(page.width * 0.03, page.height)
    page.fill(page.field, 0.35)
    page.circle(x + width * 0.5, page.height * 0.6, width * 0.2, page.accents[0])
    headline(page, page.legible_on(page.accents[1]), page.height * 0.07, page.height * 0.26, CENTRE)


DRAWINGS: list[Callable[[Page], None]] = [
    horizon, hills, arches, tiles, label, waves, moons, leaves, initial, bands, orbit, doorway]


def draw_cover(title: str, author: str, number: int) -> bytes:
    """A cover as PNG. Neighbouring numbers get different drawings and colours."""
    chance = random.Random(title)
    width = chance.choice([440, 450, 460, 480, 520])
    surface = cairo.ImageSurface(cairo.FORMAT_RGB24, width, HEIGHT)
    page = Page(cairo.Context(surface), width, HEIGHT, PALETTES[(number * 5 + 3) % len(PALETTES)], chance, title, author)
    page.rectangle(0, 0, width, HEIGHT, page.field)
    DRAWINGS[number * 7 % len(DRAWINGS)](page)
    file = io.BytesIO()
    surface.write_to_png(file)
    return file.getvalue()
