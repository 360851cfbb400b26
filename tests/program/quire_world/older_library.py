"""Library files as an earlier version of the program left them: the base tables,
no version number, secrets in the settings table if one likes."""

from __future__ import annotations

import sqlite3
from collections.abc import Iterable, Mapping
from contextlib import closing
from dataclasses import dataclass
from pathlib import Path

BASE_TABLES = """
CREATE TABLE IF NOT EXISTS settings (key TEXT PRIMARY KEY, value TEXT);
CREATE TABLE IF NOT EXISTS goodreads_books (
  id INTEGER PRIMARY KEY AUTOINCREMENT,
  goodreads_id TEXT UNIQUE NOT NULL,
  title TEXT NOT NULL,
  author TEXT,
  isbn TEXT,
  shelf TEXT,
  user_rating REAL DEFAULT 0,
  average_rating REAL,
  num_pages INTEGER,
  description TEXT,
  goodreads_url TEXT,
  published_year INTEGER,
  cover_url TEXT,
  goodreads_image_url TEXT,
  cover_data BLOB,
  cover_data_source TEXT,
  read_at TEXT,
  date_added TEXT,
  date_synced TEXT DEFAULT (datetime('now')),
  date_modified TEXT DEFAULT (datetime('now')),
  notes TEXT,
  hidden INTEGER DEFAULT 0
);
CREATE TABLE IF NOT EXISTS book_tags (
  id INTEGER PRIMARY KEY AUTOINCREMENT,
  book_id INTEGER NOT NULL,
  tag TEXT NOT NULL,
  created_at TEXT DEFAULT (datetime('now')),
  FOREIGN KEY (book_id) REFERENCES goodreads_books(id) ON DELETE CASCADE,
  UNIQUE(book_id, tag)
);
CREATE TABLE IF NOT EXISTS audible_books (
  id INTEGER PRIMARY KEY AUTOINCREMENT,
  asin TEXT UNIQUE NOT NULL,
  title TEXT,
  author TEXT,
  narrator TEXT,
  series TEXT,
  book_number INTEGER,
  cover_url TEXT,
  cover_data BLOB,
  cover_data_source TEXT,
  audible_url TEXT,
  date_added TEXT,
  date_synced TEXT DEFAULT (datetime('now')),
  notes TEXT,
  user_rating REAL,
  finished_at TEXT,
  description TEXT,
  status TEXT DEFAULT 'read',
  runtime_minutes INTEGER,
  release_date TEXT,
  purchase_date TEXT,
  average_rating REAL,
  performance_rating REAL,
  story_rating REAL,
  review_count INTEGER,
  listening_progress REAL,
  audible_owned INTEGER DEFAULT 0,
  last_audible_sync TEXT
);
"""


@dataclass
class OldBook:
    """One row of the books table."""

    goodreads_id: str
    title: str
    author: str = ""
    shelf: str = "read"
    user_rating: float = 0
    average_rating: float | None = None
    num_pages: int | None = None
    description: str | None = None
    published_year: int | None = None
    cover_data: bytes | None = None
    cover_data_source: str | None = None
    read_at: str | None = None
    date_added: str | None = None
    notes: str = ""
    hidden: int = 0
    tags: tuple[str, ...] = ()
    goodreads_url: str | None = None


@dataclass
class OldAudiobook:
    """One row of the audiobooks table."""

    asin: str
    title: str
    author: str | None = None
    narrator: str | None = None
    series: str | None = None
    book_number: int | None = None
    status: str = "read"
    user_rating: float | None = None
    average_rating: float | None = None
    runtime_minutes: int | None = None
    listening_progress: float | None = None
    description: str | None = None
    audible_url: str | None = None
    cover_data: bytes | None = None
    cover_data_source: str | None = None
    finished_at: str | None = None
    date_added: str | None = None
    notes: str | None = None


def write_older_library(file: Path, books: Iterable[OldBook] = (), settings: Mapping[str, str] | None = None,
                        audiobooks: Iterable[OldAudiobook] = ()) -> None:
    file.parent.mkdir(parents=True, exist_ok=True)
    with closing(sqlite3.connect(file)) as library:
        library.executescript(BASE_TABLES)
        library.executemany("INSERT OR REPLACE INTO settings (key, value) VALUES (?, ?)", (settings or {}).items())
        for book in books:
            columns = {name: value for name, value in vars(book).items() if name != "tags"}
            row = library.execute(
                f"INSERT INTO goodreads_books ({', '.join(columns)}) VALUES ({', '.join('?' * len(columns))})",
                tuple(columns.values())).lastrowid
            library.executemany("INSERT INTO book_tags (book_id, tag) VALUES (?, ?)", [(row, tag) for tag in book.tags])
        for audiobook in audiobooks:
            columns = vars(audiobook)
            library.execute(
                f"INSERT INTO audible_books ({', '.join(columns)}) VALUES ({', '.join('?' * len(columns))})",
                tuple(columns.values()))
        library.commit()


def _cbor_text(text: str) -> bytes:
    data = text.encode()
    if len(data) < 24:
        return bytes([0x60 + len(data)]) + data
    return b"\x79" + len(data).to_bytes(2, "big") + data


def write_credentials(file: Path, secrets: Mapping[str, str]) -> None:
    """The credential file: a CBOR map of texts that only its owner may read."""
    file.parent.mkdir(parents=True, exist_ok=True)
    file.touch(mode=0o600)
    file.write_bytes(
        bytes([0xA0 + len(secrets)]) + b"".join(_cbor_text(key) + _cbor_text(value) for key, value in secrets.items()))
