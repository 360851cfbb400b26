#!/usr/bin/python3
"""Uses the program in its window for hours, as a restless reader does, and watches what it takes.

usage: soak.py HOURS [--titles N] [--program FILE]

Round after round of whole days of a reader: a sync against a feed that changed, every section, shelf and
sort, search letter by letter, pages to the end of the wall, settings opened and saved, a backup. After
each round the program is left alone until it rests, and its memory, files and threads are put down. Closes
with a Markdown table, and fails when memory is not flat, when files or threads pile up, when a change was
lost, or when the program complained.
"""

from __future__ import annotations

import argparse
import os
import random
import signal
import statistics
import sys
import time
import zlib
from dataclasses import dataclass
from pathlib import Path

here = Path(__file__).resolve().parent
sys.path.insert(0, str(here))

# The caches of a program fill in its first rounds; from there on it must not grow by more than this.
WARM = 0.25
GROWTH = 0.05
ALLOCATOR_MIB = 4  # what pages an allocator keeps or returns differs by so much from round to round

SORTS = ("Recent", "Title", "Rating")
SHELVES = ("Read", "Want to Read", "Reading", "All Titles")


@dataclass
class Sample:
    """What the program takes while it rests."""

    seconds: float
    resident: float  # MiB, of the process alone
    files: int
    threads: int

    @classmethod
    def of(cls, pid: int, started: float) -> Sample:
        process = Path(f"/proc/{pid}")
        rollup = dict(line.split(":") for line in (process / "smaps_rollup").read_text().splitlines()[1:])
        return cls(time.monotonic() - started, int(rollup["Pss"].split()[0]) / 1024,
                   len(list((process / "fd").iterdir())), len(list((process / "task").iterdir())))


def png(number: int, width: int = 300, height: int = 450) -> bytes:
    """A cover that packs badly, as photographs do."""
    noise = random.Random(number)
    rows = b"".join(b"\0" + noise.randbytes(width * 3 // 8).ljust(width * 3, bytes([number % 256])) for _ in range(height))

    def chunk(kind: bytes, data: bytes) -> bytes:
        body = kind + data
        return len(data).to_bytes(4, "big") + body + zlib.crc32(body).to_bytes(4, "big")

    header = width.to_bytes(4, "big") + height.to_bytes(4, "big") + bytes([8, 2, 0, 0, 0])
    return b"\x89PNG\r\n\x1a\n" + chunk(b"IHDR", header) + chunk(b"IDAT", zlib.compress(rows, 1)) + chunk(b"IEND", b"")


class Reader:
    """One reader with their library, their feed, and the window in front of them."""

    def __init__(self, titles: int) -> None:
        from quire_world import FeedBook, Home, OldBook, StandIn

        self.random = random.Random(20_261_121)
        self.services = StandIn()
        self.home = Home()
        self.home.set_endpoints(**self.services.endpoints())
        self.home.lend_opener()
        self.home.connect_goodreads()
        self.home.write_settings(selectedTab="books", maximumBackupFiles="2")
        self.home.write_books(*[
            OldBook(str(n), f"Title {n:04d}", author=f"Author {n % 97}", shelf=("read", "to-read", "currently-reading")[n % 3],
                    cover_data=png(n), cover_data_source="drawn", read_at=f"20{10 + n % 16}-{1 + n % 12:02d}-03")
            for n in range(titles)])
        self.feed_book = FeedBook
        self.program = None
        self.titles = titles
        self.new_titles = 0

    def start(self) -> None:
        from quire_driver.program import Program

        self.program = Program(self.home)
        self.program.find(role="frame", name="Quire", seconds=60)
        self.program.wait_until_idle(60)

    def live_a_day(self) -> None:
        self.sync()
        self.walk_the_wall()
        self.search()
        self.visit_the_sections()
        self.change_a_setting()
        self.back_up()
        self.program.wait_until_idle(60)

    def sync(self) -> None:
        """The feed always tells as many titles, of which some are new to the library until all are there."""
        from quire_driver.waiting import wait_until

        self.new_titles = min(self.new_titles + 5, 50)
        self.services.books = [
            self.feed_book(str(900_000 + n), f"New Title {n}", rating=self.random.randint(0, 5),
                           description="A story of the sea. " * self.random.randint(1, 60))
            for n in range(self.new_titles)]
        before = self.home.setting("goodreadsLastSync")  # its toast may be gone before it is seen
        self.program.find("Sync", role="push button", seconds=60).click()
        wait_until(lambda: self.home.setting("goodreadsLastSync") != before, "it did not sync", 120)

    def walk_the_wall(self) -> None:
        self.program.open_tab("Books")
        self.program.find(starting="View details for ", seconds=30)
        for _ in range(4):
            self.program.find(starting="View details for ").scroll(40)
            self.program.wait_until_idle(30)
            following = self.program.all("Next", role="push button")
            if not following:
                break
            following[0].press()
            self.program.wait_until_idle(30)

    def search(self) -> None:
        self.program.find("Search library").click()
        self.program.type(self.random.choice(("title 0", "author 9", "zzz", "new")))
        self.program.wait_until_idle(30)
        self.program.keys("ctrl+a", "Delete")
        self.program.wait_until_idle(30)

    def visit_the_sections(self) -> None:
        for _ in range(10):
            for tab in ("Insights", "Audio", "Books"):
                self.program.find(tab, role="push button").press()
                time.sleep(0.05)
        for shelf in SHELVES:
            for button in self.program.all(shelf, role="push button")[:1]:
                button.press()
                self.program.wait_until_idle(30)
        self.program.find("Sort library").click()
        sort = self.random.choice(SORTS)
        self.program.find(sort, role="menu item").click()
        self.program.wait_until_idle(30)

    def change_a_setting(self) -> None:
        from quire_driver import Settings

        settings = Settings(self.program, "Data")
        settings.show("Goodreads")
        settings.save()
        self.program.wait_gone("Quire Settings", seconds=30)

    def back_up(self) -> None:
        self.program.keys("ctrl+shift+b")
        self.program.wait_for_text("Quire Database Backed Up", seconds=120)
        self.program.find("OK", role="push button").click()
        self.program.wait_gone("OK", role="push button")

    def end(self) -> list[str]:
        """Ends the program; what was wrong with its end."""
        wrong = []
        if self.program.quit() != 0:
            wrong.append("it ended with a status of its own")
        wrong += [f"it complained: {line}" for line in self.program.complaints]
        stored = self.home.value("SELECT COUNT(*) FROM goodreads_books")
        if stored != self.titles + self.new_titles:
            wrong.append(f"{stored} titles are stored of {self.titles + self.new_titles}")
        if self.home.value("PRAGMA integrity_check") != "ok":
            wrong.append("the library is damaged")
        return wrong

    def leave(self) -> None:
        if self.program and self.program.is_running:
            self.program.kill()
        self.services.stop()
        self.home.remove()


def judge(samples: list[Sample]) -> tuple[list[str], list[str]]:
    """The table of a soak, and what was wrong in it."""
    warm = samples[int(len(samples) * WARM):]
    half = len(warm) // 2
    if half < 2:
        return [], ["too few rounds to judge"]
    early, late = warm[:half], warm[half:]
    rows = ["| what | first rounds | after warming | in the end | most |", "| --- | ---: | ---: | ---: | ---: |"]
    wrong = []
    for name, value, slack in (("memory, MiB", lambda s: s.resident, None), ("open files", lambda s: s.files, 2),
                               ("threads", lambda s: s.threads, 4)):
        first, before, after = (statistics.median(map(value, part)) for part in (samples[:3], early, late))
        rows.append(f"| {name} | {first:.0f} | {before:.0f} | {after:.0f} | {max(map(value, samples)):.0f} |")
        allowed = before * GROWTH + ALLOCATOR_MIB if slack is None else slack
        if after - before > allowed:
            wrong.append(f"{name} grew from {before:.0f} to {after:.0f}")
    return rows, wrong


def main() -> int:
    parser = argparse.ArgumentParser(description="Uses the program for hours and watches what it takes.")
    parser.add_argument("hours", type=float)
    parser.add_argument("--titles", type=int, default=500)
    parser.add_argument("--program", type=Path)
    options = parser.parse_args()
    if options.program:
        os.environ["QUIRE_PROGRAM"] = str(options.program.resolve())

    signal.signal(signal.SIGTERM, lambda *_: sys.exit(143))  # or the program would be left running
    reader = Reader(options.titles)
    samples: list[Sample] = []
    try:
        reader.start()
        started = time.monotonic()
        while time.monotonic() - started < options.hours * 3600:
            reader.live_a_day()
            samples.append(Sample.of(reader.program.pid, started))
            newest = samples[-1]
            print(f"round {len(samples)}: {newest.seconds:.0f} s, {newest.resident:.1f} MiB, {newest.files} files, "
                  f"{newest.threads} threads", flush=True)
        rows, wrong = judge(samples)
        wrong += reader.end()
    finally:
        reader.leave()
    print(f"\n{len(samples)} rounds in {samples[-1].seconds / 3600:.2f} hours, {options.titles} titles with covers\n")
    print("\n".join(rows))
    for line in wrong:
        print(f"WRONG: {line}")
    return 1 if wrong else 0


if __name__ == "__main__":
    sys.exit(main())
