"""Waiting for what the program does in its own time."""

import os
import time
from collections.abc import Callable
from typing import TypeVar

Value = TypeVar("Value")

# A sanitized program is several times as slow; what waits for it waits longer.
patience = float(os.environ.get("QUIRE_PATIENCE", "1"))


class TookTooLong(AssertionError):
    """What was waited for did not happen in time."""


def wait_until(condition: Callable[[], Value], message: str = "it did not happen", seconds: float = 10) -> Value:
    """The first true value of the condition; TookTooLong when there is none within the seconds."""
    limit = time.monotonic() + seconds * patience
    pause = 0.01
    while True:
        value = condition()
        if value:
            return value
        if time.monotonic() > limit:
            raise TookTooLong(f"after {seconds * patience:g} s: {message}")
        time.sleep(pause)
        pause = min(pause * 1.5, 0.1)
