"""Titles that lay a view open: too long, without a blank, from right to left, in every script, and with covers of
every shape or none."""

from __future__ import annotations

from .older_library import OldAudiobook, OldBook
from .pictures import picture

LONG = ("The Collected Letters of a Lighthouse Keeper to the Sea, With the Replies of the Sea, Volume the Third: Being the "
        "Winter in Which Nobody Came, and What Was Said of It Afterwards by Those Who Had Stayed at Home")
UNBROKEN = "Donaudampfschifffahrtselektrizitätenhauptbetriebswerkbauunterbeamtengesellschaft" * 2

NAMES = [
    (LONG, "Augustína Þorgerður Ragnheiðardóttir and Bartholomäus von und zu Hohenstein-Wildenfels"),
    (UNBROKEN, "Llanfairpwllgwyngyllgogerychwyrndrobwllllantysiliogogogoch"),
    ("الطريق الطويل إلى البحر في آخر أيام الشتاء", "ليلى منصور"),
    ("הדרך הארוכה אל הים", "נועה בן־דוד"),
    ("夜行列車の栞と、海辺の町で過ごした長い冬の日々の記録", "峰瀬 春人"),
    ("겨울 바다에서 온 편지", "한서윤"),
    ("รถไฟกลางคืน", "ศิริพร"),
    ("🌊 Tide & <b>Time</b>", "A. & B."),
    ("I", ""),
    ("The Sea, ים ו بحر, and 海", "Noa · ليلى · 春人"),
]
COVERS = [None, (200, 300), (300, 300), (600, 200), (90, 400), b"no picture"]


def _cover(number: int) -> bytes | None:
    shape = COVERS[number % len(COVERS)]
    if shape is None or isinstance(shape, bytes):
        return shape
    return picture(*shape, colour=(40 + 47 * number % 200, 60 + 31 * number % 150, 70 + 59 * number % 180))


def awkward_books() -> list[OldBook]:
    return [OldBook(
        f"awkward-{number}", title, author=author, shelf=("read", "currently-reading", "read")[number % 3],
        user_rating=number % 11 / 2, average_rating=3.925, num_pages=(10**6 if number == 0 else 300), published_year=1987,
        read_at=f"2026-02-{20 - number:02d}", date_added="2026-01-01", description=f"{title}. " * 30,
        notes=f"{title}\n" * 4, tags=tuple(f"{tag} {author}"[:60] for tag in range(8)), cover_data=_cover(number),
        cover_data_source="manual" if _cover(number) else None, goodreads_url="https://127.0.0.1/book")
        for number, (title, author) in enumerate(NAMES)]


def awkward_audiobooks() -> list[OldAudiobook]:
    return [OldAudiobook(
        f"awkward-{number}", title, author=author, narrator=f"{author}, " * 4, series=title, book_number=10**6 + number,
        user_rating=number % 11 / 2, average_rating=4.5, runtime_minutes=6000 + number, listening_progress=41.5,
        description=f"{title}. " * 30, notes=title, cover_data=_cover(number + 2), finished_at=f"2026-02-{20 - number:02d}",
        cover_data_source="manual" if _cover(number + 2) else None, audible_url="https://127.0.0.1/pd")
        for number, (title, author) in enumerate(NAMES)]
