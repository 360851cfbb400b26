"""The files of one reader: a home folder with nothing in it but what a test puts there."""

from __future__ import annotations

import json
import os
import shutil
import sqlite3
import tempfile
from contextlib import closing
from pathlib import Path
from typing import Any
from urllib.parse import unquote

from .netlify import TOKEN
from .older_library import OldAudiobook, OldBook, write_credentials, write_older_library


class Home:
    """Everything that the program reads and writes lies below `folder`."""

    def __init__(self) -> None:
        self.folder = Path(tempfile.mkdtemp(prefix="quire-home-"))
        self.data = self.folder / "data"
        self.config = self.folder / "config"
        self.runtime = self.folder / "runtime"
        self.runtime.mkdir(mode=0o700)
        self._variables: dict[str, str] = {}

    def lend_opener(self) -> None:
        """A desktop's way to open files and pages, which opens nothing and notes what it was asked."""
        opener = self.folder / "bin" / "xdg-open"
        opener.parent.mkdir()
        opener.write_text(f"#!/bin/sh\nprintf '%s\\n' \"$1\" >> '{self.folder}/opened'\n")
        opener.chmod(0o755)
        self._variables["PATH"] = f"{opener.parent}:{os.environ['PATH']}"

    @property
    def opened(self) -> list[str]:
        """What the desktop was asked to open: pages by their address, files and folders by their path."""
        file = self.folder / "opened"
        asked = file.read_text().splitlines() if file.exists() else []
        return [unquote(line.removeprefix("file://")) if line.startswith("file://") else line for line in asked]

    @property
    def support(self) -> Path:
        return self.data / "Quire"

    @property
    def database(self) -> Path:
        return self.support / "quire.db"

    @property
    def remembered_folder(self) -> str | None:
        """The library's folder as the program remembers it; nothing while it is where it was made."""
        file = self.support / "Library Location.json"
        return json.loads(file.read_text())["path"] if file.exists() else None

    @property
    def credentials(self) -> Path:
        return self.support / "Credentials.plist"

    @property
    def log(self) -> str:
        file = self.support / "quire.log"
        return file.read_text() if file.exists() else ""

    @property
    def session(self) -> dict[str, Any]:
        """The record of the last run, which says whether it ended cleanly."""
        return json.loads((self.support / "Session State.json").read_text())

    def environment(self) -> dict[str, str]:
        return {
            "HOME": str(self.folder),
            "XDG_DATA_HOME": str(self.data),
            "XDG_CONFIG_HOME": str(self.config),
            "XDG_CACHE_HOME": str(self.folder / "cache"),
            "XDG_STATE_HOME": str(self.folder / "state"),
            "XDG_RUNTIME_DIR": str(self.runtime),
        } | self._variables

    def set_endpoints(self, **addresses: str) -> None:
        """Where the outside services are to be looked for, e.g. goodreads="http://127.0.0.1:4000"."""
        file = self.config / "Quire" / "Quire.conf"
        file.parent.mkdir(parents=True, exist_ok=True)
        lines = ["[endpoints]"] + [f"{name}={address}" for name, address in addresses.items()]
        file.write_text("\n".join(lines) + "\n")

    def use_library_in(self, folder: Path) -> None:
        """As if the reader had chosen the library's folder in an earlier run."""
        self.support.mkdir(parents=True, exist_ok=True)
        (self.support / "Library Location.json").write_text(json.dumps({"path": str(folder)}))

    def connect_goodreads(self, user: str = "81234567", key: str = "feed-key-of-the-tests",
                          automatic: bool = False) -> None:
        """As if the reader had entered their feed, and their token for the reading website, in an earlier run;
        automatic: it syncs at each start."""
        self.write_settings(goodreadsUserId=user, automaticGoodreadsSync="1" if automatic else "0")
        write_credentials(self.credentials, {"goodreadsRssKey": key, "netlifyToken": TOKEN})

    def connect_site(self) -> None:
        """As if the reader had entered their token for the reading website, and nothing else."""
        write_credentials(self.credentials, {"netlifyToken": TOKEN})

    def write_settings(self, **settings: str) -> None:
        write_older_library(self.database, settings=settings)

    def write_books(self, *books: OldBook) -> None:
        """Puts books into a library that the program has not yet seen."""
        write_older_library(self.database, books)

    def write_audiobooks(self, *audiobooks: OldAudiobook) -> None:
        """Puts audiobooks into a library that the program has not yet seen."""
        write_older_library(self.database, audiobooks=audiobooks)

    def query(self, statement: str, *values: Any, database: Path | None = None) -> list[tuple]:
        """Rows of the library, or of another file like it, read from a copy of its files, so that no lock
        is ever held that the program would wait for. The copy of a library that is just being written may
        be torn."""
        source = database or self.database
        with tempfile.TemporaryDirectory(prefix="quire-copy-") as folder:
            for suffix in ("", "-wal"):
                file = source.with_name(source.name + suffix)
                if file.exists():
                    shutil.copyfile(file, Path(folder) / file.name)
            with closing(sqlite3.connect(Path(folder) / source.name)) as copy:
                return copy.execute(statement, values).fetchall()

    def value(self, statement: str, *values: Any, database: Path | None = None) -> Any:
        rows = self.query(statement, *values, database=database)
        return rows[0][0] if rows else None

    def setting(self, key: str) -> str | None:
        """A stored setting; nothing while the library is not there yet or is just being written."""
        try:
            return self.value("SELECT value FROM settings WHERE key = ?", key)
        except sqlite3.Error:
            return None

    def execute(self, statement: str, *values: Any, database: Path | None = None) -> None:
        """Changes the library, or another file like it, while the program is not running."""
        with closing(sqlite3.connect(database or self.database)) as library:
            library.execute(statement, values)
            library.commit()

    def remove(self) -> None:
        shutil.rmtree(self.folder, ignore_errors=True)
