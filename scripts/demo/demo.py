"""Runs the program in a throw-away world: a library of invented books with drawn covers,
and stand-ins for the outside services, among them the feed that "Sync" reads.

usage: demo.py PROGRAM

Nothing of the reader's own is read or written; everything is removed at the end.
"""

import os
import signal
import subprocess
import sys
from datetime import datetime, timedelta
from pathlib import Path

sys.path.insert(0, str(Path(__file__).resolve().parents[2] / "tests" / "program"))

from covers import draw_cover  # noqa: E402
from quire_world import FeedBook, Home, OldBook, StandIn, write_credentials, write_older_library  # noqa: E402
from titles import READ, TITLES, Title  # noqa: E402

USER, KEY = "4120077", "demo-feed-key"

FEED_DATE = "%a, %d %b %Y %H:%M:%S +0000"


def days_ago(days: int) -> str:
    return (datetime.now() - timedelta(days=days)).strftime(FEED_DATE)


def finished(number: int, title: Title) -> str:
    """About one book in two and a half weeks, with an idle spell now and then."""
    return days_ago(6 + number * 17 + (number // 9) * 23) if title.shelf == READ else ""


def stored_book(number: int, title: Title) -> OldBook:
    cover = draw_cover(title.title, title.author, number) if title.covered else None
    return OldBook(
        goodreads_id=str(7000 + number), title=title.title, author=title.author, shelf=title.shelf,
        user_rating=title.rating, average_rating=title.average, num_pages=title.pages, description=title.summary or None,
        published_year=title.year, cover_data=cover, cover_data_source="manual" if cover else None,
        read_at=finished(number, title) or None, date_added=days_ago(30 + number * 19), notes=title.notes, tags=title.tags)


def feed_book(number: int, title: Title) -> FeedBook:
    name = f"{title.title} ({title.series})" if title.series else title.title
    return FeedBook(
        id=str(7000 + number), title=name, author=title.author, shelf=title.shelf, rating=title.rating,
        average=f"{title.average:.2f}", pages=title.pages, description=title.summary, published=str(title.year),
        read_at=finished(number, title), added=days_ago(30 + number * 19))


def furnish(home: Home, services: StandIn) -> None:
    services.books = [feed_book(number, title) for number, title in enumerate(TITLES)]
    home.set_endpoints(**services.endpoints())
    write_older_library(
        home.database,
        [stored_book(number, title) for number, title in enumerate(TITLES) if title.stored],
        {"goodreadsUserId": USER, "automaticGoodreadsSync": "0", "selectedTab": "books"})
    write_credentials(home.credentials, {"goodreadsRssKey": KEY})


def run(program: Path, home: Home) -> int:
    # The desktop's own folders stay where they are: the display and its sockets live there.
    kept = {"XDG_RUNTIME_DIR": os.environ["XDG_RUNTIME_DIR"]} if "XDG_RUNTIME_DIR" in os.environ else {}
    process = subprocess.Popen([program], env=os.environ | home.environment() | kept, cwd=home.folder)
    for number in (signal.SIGTERM, signal.SIGHUP):
        signal.signal(number, lambda *_: process.terminate())
    signal.signal(signal.SIGINT, signal.SIG_IGN)  # the program hears it too, and ends
    return process.wait()


def main() -> int:
    if len(sys.argv) != 2:
        print(__doc__, file=sys.stderr)
        return 2
    program = Path(sys.argv[1]).resolve()
    home, services = Home(), StandIn()
    try:
        print(f"Drawing covers and setting up a library in {home.folder}", flush=True)
        furnish(home, services)
        arriving = sum(not title.stored for title in TITLES)
        print(f"{len(TITLES) - arriving} titles are on the shelves; press Sync, and {arriving} more arrive.", flush=True)
        return run(program, home)
    finally:
        services.stop()
        home.remove()
        print("The demo's library is removed.", flush=True)


if __name__ == "__main__":
    sys.exit(main())
