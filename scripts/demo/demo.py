"""Runs the program in a throw-away world: a library of invented books with drawn covers, the
library of an audiobook application, and stand-ins for the outside services: the feed that
"Sync" reads, the catalogues that are searched, and their covers.

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
from quire_world import (  # noqa: E402
    Answer, AudioTitle, CatalogueBook, FeedBook, Home, OldBook, OwnedAudiobook, StandIn, write_audio_library,
    write_credentials, write_older_library)
from titles import CATALOGUED, OWNED, READ, RECORDED, TITLES, Recording, Title  # noqa: E402

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


def serve_cover(services: StandIn, path: str, title: str, author: str, number: int) -> str:
    """The address at which that drawn cover is found."""
    services.files[path] = Answer(draw_cover(title, author, number), type="image/png")
    return services.address + path


def owned(number: int, recording: Recording, services: StandIn) -> OwnedAudiobook:
    return OwnedAudiobook(
        asin=f"B{number:04d}", title=recording.title, author=recording.author, narrator=recording.narrator,
        series=recording.series or None, number=recording.number, minutes=recording.minutes, percent=recording.percent,
        started=recording.percent > 0, finished=recording.finished, summary=recording.summary,
        cover=serve_cover(services, f"/audio/{number}.png", recording.title, recording.author, number + 3))


def catalogue_book(number: int, title: Title, services: StandIn) -> CatalogueBook:
    if title.covered:
        serve_cover(services, f"/b/id/{number}-L.jpg", title.title, title.author, number + 5)
    return CatalogueBook(
        work=f"OL{number}W", title=title.title, author=title.author, isbn=f"97800000{number:05d}", pages=title.pages,
        year=title.year, cover=number if title.covered else None)


def audio_title(number: int, recording: Recording, services: StandIn) -> AudioTitle:
    return AudioTitle(
        asin=f"C{number:04d}", title=recording.title, author=recording.author, narrator=recording.narrator,
        series=recording.series or None, number=str(recording.number) if recording.number else None,
        released=f"{recording.year}-03-01",
        cover=serve_cover(services, f"/catalogue/{number}.png", recording.title, recording.author, number + 8))


def furnish(home: Home, services: StandIn) -> None:
    services.books = [feed_book(number, title) for number, title in enumerate(TITLES)]
    services.catalogue = [catalogue_book(number, title, services) for number, title in enumerate(CATALOGUED, start=1)]
    services.audio_titles = [audio_title(number, recording, services) for number, recording in enumerate(RECORDED)]
    audio_library = write_audio_library(
        home.folder / "Audible", [owned(number, recording, services) for number, recording in enumerate(OWNED)])
    home.set_endpoints(**services.endpoints())
    write_older_library(
        home.database,
        [stored_book(number, title) for number, title in enumerate(TITLES) if title.stored],
        {"goodreadsUserId": USER, "automaticGoodreadsSync": "0", "automaticAudibleSync": "0", "selectedTab": "books",
         "audibleLibraryPath": str(audio_library)})
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
        print(f"{len(TITLES) - arriving} titles are on the shelves; press Sync, and {arriving} more arrive, "
              f"with {len(OWNED)} audiobooks.", flush=True)
        return run(program, home)
    finally:
        services.stop()
        home.remove()
        print("The demo's library is removed.", flush=True)


if __name__ == "__main__":
    sys.exit(main())
