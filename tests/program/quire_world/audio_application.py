"""The library of the audiobook application, as that application keeps it."""

from __future__ import annotations

import json
import sqlite3
from collections.abc import Iterable
from contextlib import closing
from dataclasses import dataclass
from pathlib import Path

TABLES = """
CREATE TABLE library_item (asin TEXT PRIMARY KEY, purchaseDate TEXT, json_data TEXT);
CREATE TABLE products (
  asin TEXT PRIMARY KEY, title TEXT, contentType TEXT, authors TEXT, narrators TEXT, relationships TEXT,
  productImages TEXT, publisherSummary TEXT, runtimeLength INTEGER, releaseDate TEXT, rating TEXT
);
CREATE TABLE user_products (
  asin TEXT PRIMARY KEY, isStarted INTEGER, isFinished INTEGER, customerEntitlements_consumableIndefinitely INTEGER
);
"""


@dataclass
class OwnedAudiobook:
    """A title that the listener has in that application."""

    asin: str
    title: str
    author: str = "Ada Lindqvist"
    narrator: str = "Piet Aalders"
    series: str | None = None
    number: int | None = None
    minutes: int = 600
    percent: float = 0
    started: bool = False
    finished: bool = False
    cover: str | None = None
    summary: str = ""


def write_audio_library(folder: Path, titles: Iterable[OwnedAudiobook]) -> Path:
    """Makes the application's folder with its database; the folder, which is what access is granted to."""
    folder.mkdir(parents=True, exist_ok=True)
    with closing(sqlite3.connect(folder / "account-library.sqlite")) as library:
        library.executescript(TABLES)
        for title in titles:
            relationships = [{"relationshipType": "series", "title": title.series, "sort": title.number}] \
                if title.series else []
            library.execute(
                "INSERT INTO products VALUES (?, ?, 'Product', ?, ?, ?, ?, ?, ?, '2019-05-07', ?)",
                (title.asin, title.title, json.dumps([{"name": title.author}]), json.dumps([{"name": title.narrator}]),
                 json.dumps(relationships), json.dumps({"500": title.cover} if title.cover else {}), title.summary,
                 title.minutes, json.dumps({"overall": {"averageRating": 4.5}})))
            library.execute(
                "INSERT INTO library_item VALUES (?, '2024-02-01T10:00:00Z', ?)",
                (title.asin, json.dumps({"percentComplete": title.percent, "isArchived": 0})))
            library.execute(
                "INSERT INTO user_products VALUES (?, ?, ?, 1)", (title.asin, title.started, title.finished))
        library.commit()
    return folder
