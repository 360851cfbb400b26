#!/usr/bin/python3
"""Takes a picture of every view of the program, in the sizes, scales and looks that a reader may choose.

usage: tour_pictures.py FOLDER [--program FILE] [--only PATTERN]

The looks are called by their size, scale, sidebar and accent, as 920x700-2-fjord-white; of each there is a
folder of pictures, and one of all of them together, sheet.png. PATTERN picks some of them, as 920x700-*.
"""

from __future__ import annotations

import argparse
import fnmatch
import json
import os
import shutil
import signal
import sys
import threading
import time
from collections.abc import Callable
from dataclasses import dataclass
from pathlib import Path

here = Path(__file__).resolve().parent
sys.path[:0] = [str(here), str(here.parents[1] / "scripts" / "demo")]
os.environ["QUIRE_DRIVER_SCREEN"] = "2560x1800"
os.environ.setdefault("QUIRE_DRIVER_RENDERER", "rhi")

from quire_driver import TookTooLong, wait_until  # noqa: E402
from quire_driver.desktop import Desktop  # noqa: E402
from quire_driver.program import Program  # noqa: E402
from quire_driver.windows import windows_of  # noqa: E402
from quire_world import Answer, AudioTitle, CatalogueBook, Home, OldAudiobook, StandIn, picture  # noqa: E402
from quire_world.awkward import LONG, NAMES, awkward_audiobooks, awkward_books  # noqa: E402

ACCENTS = {
    "": {},
    "white": {"usesCustomAccentColor": "1", "customAccentRed": "1", "customAccentGreen": "1", "customAccentBlue": "1"},
    "dark": {"usesCustomAccentColor": "1", "customAccentRed": "0.16", "customAccentGreen": "0.05", "customAccentBlue": "0.2"},
    "snow": {"accentColor": "snow"},
    "cabin": {"accentColor": "cabin"},
}
SIDEBARS = ("snow", "fjord", "pine", "cabin", "glass")
UNWRITTEN = "The Unwritten Book"  # known to the catalogue alone
SETTINGS_TABS = ("Appearance", "Libraries", "Goodreads", "Publishing", "Data")


@dataclass(frozen=True)
class Look:
    width: int = 1180
    height: int = 860
    scale: str = "1"
    sidebar: str = "fjord"
    accent: str = ""

    @property
    def name(self) -> str:
        return "-".join(filter(None, [f"{self.width}x{self.height}", self.scale, self.sidebar, self.accent]))

    @property
    def settings(self) -> dict[str, str]:
        return {"sidebarAppearance": self.sidebar} | ACCENTS[self.accent]


LOOKS = list(dict.fromkeys([
    *(Look(width, height, scale) for scale in ("1", "1.25", "2") for width, height in ((1180, 860), (920, 700))),
    *(Look(sidebar=sidebar, accent=accent) for sidebar in SIDEBARS for accent in ACCENTS),
]))


def furnish(home: Home, services: StandIn) -> None:
    """A library of invented books with covers, and of titles that lay a view open."""
    from demo import stored_book
    from titles import OWNED, TITLES

    services.catalogue = [CatalogueBook(f"OL{number}W", title, author=author, year=None if number % 2 else 1999)
                          for number, (title, author) in enumerate([*NAMES, (UNWRITTEN, "Ada Lindqvist")])]
    services.audio_titles = [AudioTitle(f"C{number}", title, author=author, narrator=f"{author}, " * 3, series=LONG,
                                        number=str(number)) for number, (title, author) in enumerate(NAMES)]
    home.write_settings(automaticGoodreadsSync="0", automaticAudibleSync="0", selectedTab="books")
    home.write_books(*awkward_books(), *[stored_book(number, title) for number, title in enumerate(TITLES) if title.stored])
    home.write_audiobooks(*awkward_audiobooks(), *[
        OldAudiobook(f"B{number}", recording.title, author=recording.author, narrator=recording.narrator,
                     series=recording.series or None, book_number=recording.number, runtime_minutes=recording.minutes,
                     description=recording.summary, cover_data=picture(300, 300, (60 + 30 * number % 190, 90, 140)),
                     cover_data_source="manual") for number, recording in enumerate(OWNED)])


class Visit:
    """One run of the program in one look."""

    def __init__(self, look: Look, library: Path, services: StandIn, folder: Path) -> None:
        self.look = look
        self.services = services
        self.folder = folder / look.name
        self.home = Home()
        shutil.copytree(library, self.home.support)
        self.home.set_endpoints(**services.endpoints())
        self.home.lend_opener()
        self.home.write_settings(**look.settings)
        shutil.rmtree(self.folder, ignore_errors=True)
        self.folder.mkdir(parents=True)
        self.program = Program(self.home, {"QT_SCALE_FACTOR": look.scale})

    def take(self, name: str, window: str = "Quire") -> None:
        """A picture of a window, when nothing moves in it any more but a cursor that blinks."""
        try:
            self.program.wait_until_idle(8)
        except TookTooLong:
            pass  # to draw a large window without a graphics card takes longer than a cursor rests
        self.take_at_once(name, window)

    def take_at_once(self, name: str, window: str = "Quire") -> None:
        number = len(list(self.folder.glob("*.png"))) + 1
        [*_, found] = windows_of(self.program.pid, f"^{window}$")
        Desktop.shared().run("import", "-window", str(found), str(self.folder / f"{number:02d}-{name}.png"))

    def press(self, name: str, role: str = "push button") -> None:
        self.program.find(name, role=role, seconds=30).press()

    def begin(self) -> None:
        program = self.program
        program.find("Settings", role="push button", seconds=60)
        scale = float(self.look.scale)
        window = wait_until(lambda: windows_of(program.pid, "^Quire$"), "no window")[-1]
        size = [str(round(side * scale)) for side in (self.look.width, self.look.height)]
        Desktop.shared().run("xdotool", "mousemove", "2559", "1799", "windowsize", "--sync", str(window), *size)

    def search(self, text: str) -> None:
        self.program.find(starting="Search library", role="text").take_keyboard()
        self.program.type(text)

    def walls(self) -> None:
        program = self.program
        self.take("books")
        program.keys("alt+v")
        self.take("menu")
        program.keys("Escape")
        self.press("Sort library", role="combo box")
        self.take("sort")
        program.keys("Escape")
        self.press("Did Not Finish")
        self.search("qqq")
        self.take("books-nothing-found")
        self.press("Clear search")
        self.press("Audio")
        self.take("audio")
        self.search("the")
        program.find("In Your Library", role="heading", seconds=30)
        self.take("audio-search")
        self.press("Insights")
        self.take("insights")
        Desktop.shared().run("xdotool", "mousemove", "700", "500", "click", "--repeat", "60", "--delay", "10", "5")
        self.take("insights-below")
        Desktop.shared().run("xdotool", "mousemove", "2559", "1799")

    def details(self) -> None:
        program = self.program
        self.press("Books")
        for name, title in (("book", "The Salt Road"), ("book-long", LONG), ("book-arabic", NAMES[2][0])):
            self.press("All Titles")
            self.search(title[:14] if title.isascii() else "البحر")
            self.press(f"View details for {title}")
            self.take(name)
            program.keys("Escape")
            program.wait_gone(title, role="dialog")
            self.press("Clear search")
        self.press("Audio")
        self.press(f"View details for {LONG}")
        self.take("audiobook")
        program.keys("Escape")

    def adding(self) -> None:
        program = self.program
        for tab, button in (("Books", "Add Book"), ("Audio", "Add Audiobook")):
            self.press(tab)
            self.press(button)
            program.type("the")
            program.keys("Return")
            program.find(LONG, role="list item", seconds=30)
            self.take(f"{button.lower().replace(' ', '-')}-results")
            program.keys("ctrl+a")
            program.type("qqq")
            program.keys("Return")
            program.wait_for_text("No matching titles were found.", seconds=30)
            self.take(f"{button.lower().replace(' ', '-')}-nothing")
            self.press("Enter Manually", role="page tab")
            self.take(f"{button.lower().replace(' ', '-')}-manually")
            program.keys("Escape")
            program.wait_gone(button, role="dialog")

    def settings_window(self) -> None:
        program = self.program
        self.press("Settings")
        window = program.find("Quire Settings", role="frame")
        for tab in SETTINGS_TABS:
            for button in window.all(tab)[:1]:
                button.press()
                self.take(f"settings-{tab.lower()}", "Quire Settings")
        window.all("Folder")[0].press()
        program.find("Folder path", role="text")
        self.take("folder-picker", "Quire Settings")
        program.keys("Escape")
        program.wait_gone("Folder path")
        self.press("Cancel")
        program.wait_gone("Quire Settings", role="frame")

    def reports(self) -> None:
        program = self.program
        program.keys("alt+h", "Down", "Down", "Down", "Down")
        program.keys("Return")
        program.find("Quire", role="alert")
        self.take("about")
        program.keys("Escape")
        program.wait_gone("OK", role="push button")
        program.keys("alt+h", "Down", "Down", "Return")
        program.find("Quire Help", role="frame")
        self.take("help", "Quire Help")
        program.keys("Escape")
        program.wait_gone("Quire Help", role="frame")
        self.press("Sync")
        program.find("OK", role="push button", seconds=60)
        self.take("notice")
        program.keys("Escape")
        self.press("Books")
        self.press("Add Book")
        program.type("the")
        program.keys("Return")
        row = program.find(UNWRITTEN, role="list item", seconds=30)
        seen = threading.Event()
        self.services.files["/search.json"] = Answer(b"{}", until=seen)  # the look for a cover takes its time
        asked = len(self.services.requests)
        row.find("Want to Read").press()
        # Not looked for in the window: on a busy machine that takes longer than a cover is waited for.
        wait_until(lambda: len(self.services.requests) > asked, "no cover was asked for", 60)
        time.sleep(0.4)  # it fades in
        self.take_at_once("working")
        seen.set()
        program.wait_for_text("Book added", seconds=60)
        self.take_at_once("toast")
        del self.services.files["/search.json"]

    def all(self) -> None:
        self.begin()
        for part in (self.walls, self.details, self.adding, self.settings_window, self.reports):
            part()

    def end(self) -> list[str]:
        if self.program.is_running:
            self.program.quit()
        self.home.remove()
        return self.program.complaints


def sheet(folder: Path) -> None:
    pictures = sorted(str(file) for file in folder.glob("[0-9]*.png"))
    Desktop.shared().run("montage", *pictures, "-label", "%t", "-geometry", "590x430+8+8", "-tile", "4x", "-background", "#888",
                         str(folder / "sheet.png"))


def prepare(services: StandIn) -> Home:
    """The furnished library, once the program has drawn the covers that are missing."""
    home = Home()
    home.set_endpoints(**services.endpoints())
    furnish(home, services)
    program = Program(home)
    program.find("Settings", role="push button", seconds=60)
    wait_until(lambda: not home.value("SELECT COUNT(*) FROM goodreads_books WHERE cover_data IS NULL"), "no covers", 120)
    program.quit()
    return home


def main() -> int:
    parser = argparse.ArgumentParser(description="Takes a picture of every view of the program, in every look.")
    parser.add_argument("folder", type=Path)
    parser.add_argument("--program", type=Path)
    parser.add_argument("--only", default="*")
    options = parser.parse_args()
    if options.program:
        os.environ["QUIRE_PROGRAM"] = str(options.program.resolve())

    signal.signal(signal.SIGTERM, lambda *_: sys.exit(143))  # or the program would be left running
    complaints: dict[str, list[str]] = {}
    services = StandIn()
    library = prepare(services)
    try:
        for look in fnmatch.filter([look.name for look in LOOKS], options.only):
            visit = Visit(next(each for each in LOOKS if each.name == look), library.support, services, options.folder.resolve())
            failed = True
            try:
                visit.all()
                failed = False
            finally:
                if failed:
                    visit.take_at_once("failed")
                said = visit.end()
            sheet(visit.folder)
            if said:
                complaints[look] = said
            print(visit.folder, flush=True)
    finally:
        services.stop()
        library.remove()
    if complaints:
        print(json.dumps(complaints, indent=1))
    return 1 if complaints else 0


if __name__ == "__main__":
    sys.exit(main())
