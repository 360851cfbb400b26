"""The files of one reader: a home folder with nothing in it but what a test puts there."""

from __future__ import annotations

import json
import shutil
import sqlite3
import tempfile
from contextlib import closing
from pathlib import Path
from typing import Any

from .older_library import OldBook, write_credentials, write_older_library


class Home:
    """Everything that the program reads and writes lies below `folder`."""

    def __init__(self) -> None:
        self.folder = Path(tempfile.mkdtemp(prefix="quire-home-"))
        self.data = self.folder / "data"
        self.config = self.folder / "config"
        self.runtime = self.folder / "runtime"
        self.runtime.mkdir(mode=0o700)

    @property
    def support(self) -> Path:
        return self.data / "Quire"

    @property
    def database(self) -> Path:
        return self.support / "quire.db"

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
        }

    def set_endpoints(self, **addresses: str) -> None:
        """Where the outside services are to be looked for, e.g. goodreads="http://127.0.0.1:4000"."""
        file = self.config / "Quire" / "Quire.conf"
        file.parent.mkdir(parents=True, exist_ok=True)
        lines = ["[endpoints]"] + [f"{name}={address}" for name, address in addresses.items()]
        file.write_text("\n".join(lines) + "\n")

    def connect_goodreads(self, user: str = "81234567", key: str = "feed-key-of-the-tests",
                          automatic: bool = False) -> None:
        """As if the reader had entered their feed in an earlier run; automatic: it syncs at each start."""
        self.write_settings(goodreadsUserId=user, automaticGoodreadsSync="1" if automatic else "0")
        write_credentials(self.credentials, {"goodreadsRssKey": key})

    def write_settings(self, **settings: str) -> None:
        write_older_library(self.database, settings=settings)

    def write_books(self, *books: OldBook) -> None:
        """Puts books into a library that the program has not yet seen."""
        write_older_library(self.database, books)

    def query(self, statement: str, *values: Any) -> list[tuple]:
        """Rows of the library, read from a copy of its files, so that no lock is ever held that the
        program would wait for. The copy of a library that is just being written may be torn."""
        with tempfile.TemporaryDirectory(prefix="quire-copy-") as folder:
            for suffix in ("", "-wal"):
                file = self.database.with_name(self.database.name + suffix)
                if file.exists():
                    shutil.copyfile(file, Path(folder) / file.name)
            with closing(sqlite3.connect(Path(folder) / self.database.name)) as copy:
                return copy.execute(statement, values).fetchall()

    def value(self, statement: str, *values: Any) -> Any:
        rows = self.query(statement, *values)
        return rows[0][0] if rows else None

    def setting(self, key: str) -> str | None:
        """A stored setting; nothing while the library is not there yet or is just being written."""
        try:
            return self.value("SELECT value FROM settings WHERE key = ?", key)
        except sqlite3.Error:
            return None

    def execute(self, statement: str, *values: Any) -> None:
        """Changes the library while the program is not running."""
        with closing(sqlite3.connect(self.database)) as library:
            library.execute(statement, values)
            library.commit()

    def remove(self) -> None:
        shutil.rmtree(self.folder, ignore_errors=True)
