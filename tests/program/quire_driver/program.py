"""One run of the program, from its start to its exit status."""

from __future__ import annotations

import os
import re
import signal
import subprocess
import tempfile
import time
from pathlib import Path

from quire_world import Home

from .controls import Control, application
from .desktop import Desktop
from .waiting import TookTooLong, patience, wait_until
from .windows import ask_to_close, give_keys_to, windows_of

repository = Path(__file__).resolve().parents[3]

CARD = "View details for "

# What a healthy run may say on its standard error; everything else is a fault. The scene graph says how it
# draws where it was asked to; the toolkit complains where the desktop's accessibility service, which it tells of
# each key, is too busy to answer.
harmless = re.compile(
    r"^\s*$|^qt\.(scenegraph|rhi)\.general: |^  (Graphics API debug|QRhi profiling|Shader/pipeline cache)"
    r'|^QSpiApplication::keyEventError  "org\.freedesktop\.DBus\.Error\.NoReply"')

# Every pixel by the processor, without a graphics driver; or as on a reader's desktop, through OpenGL.
SOFTWARE, GRAPHICS_CARD = "software", "rhi"


def program_file() -> Path:
    """The program to drive: QUIRE_PROGRAM, else the newest build in the repository."""
    if named := os.environ.get("QUIRE_PROGRAM"):
        return Path(named).resolve()
    built = [file for preset in ("debug", "release") if (file := repository / "build" / preset / "bin" / "quire").exists()]
    if not built:
        raise FileNotFoundError("no program: set QUIRE_PROGRAM or build the preset debug or release")
    return max(built, key=lambda file: file.stat().st_mtime)


class Program:
    """The running program. Made by `ProgramTestCase.start`."""

    def __init__(self, home: Home, variables: dict[str, str] | None = None) -> None:
        self.home = home
        self._errors = tempfile.TemporaryFile()
        environment = Desktop.shared().environment | home.environment() | {
            "QT_LINUX_ACCESSIBILITY_ALWAYS_ON": "1",
            "QT_QPA_PLATFORM": "xcb",
            "QT_QUICK_BACKEND": os.environ.get("QUIRE_DRIVER_RENDERER", SOFTWARE),
            "QT_SCALE_FACTOR": "1",
        } | (variables or {})
        if environment["QT_QUICK_BACKEND"] != SOFTWARE:
            environment["QSG_INFO"] = "1"
            # The graphics driver is unloaded before leaks are sought, and cannot be told from us then.
            environment["LSAN_OPTIONS"] = environment.get("LSAN_OPTIONS", "") + ":detect_leaks=0"
        self._process = subprocess.Popen(
            [program_file()], env=environment, cwd=home.folder, stdin=subprocess.DEVNULL, stdout=self._errors,
            stderr=self._errors)

    # Its controls. --------------------------------------------------------

    @property
    def pid(self) -> int:
        return self._process.pid

    @property
    def root(self) -> Control:
        """The top of the accessibility tree; its children are the windows."""
        return wait_until(self._look_for_root, "the program does not show itself to screen readers", 30)

    def _look_for_root(self) -> Control | None:
        if self._process.poll() is not None:
            raise AssertionError(f"the program ended with status {self._process.returncode}: {self.errors}")
        return application(self.pid)

    def find(self, name: str | None = None, role: str | None = None, starting: str | None = None,
             seconds: float = 10) -> Control:
        return self.root.find(name, role, starting, seconds)

    def all(self, name: str | None = None, role: str | None = None, starting: str | None = None) -> list[Control]:
        return self.root.all(name, role, starting)

    def has(self, name: str | None = None, role: str | None = None, starting: str | None = None) -> bool:
        return self.root.has(name, role, starting)

    def wait_gone(self, name: str | None = None, role: str | None = None, starting: str | None = None,
                  seconds: float = 10) -> None:
        self.root.wait_gone(name, role, starting, seconds)

    # The library, in the words of a reader. ------------------------------------

    def cards(self) -> list[str]:
        """The titles of the covers on the screen, row by row."""
        found = [(card.frame, card.name.removeprefix(CARD)) for card in self.all(starting=CARD)]
        rows: list[list[tuple[int, str]]] = []
        first = None
        for (left, top, *_), title in sorted(found, key=lambda item: item[0][1]):
            # The card under the mouse stands a little higher than its row.
            if first is None or top - first > 30:
                rows.append([])
                first = top
            rows[-1].append((left, title))
        return [title for row in rows for _, title in sorted(row)]

    def says(self, text: str) -> bool:
        """Whether a label, a toast or an alert on the screen holds the text."""
        return any(text in control.name for control in self.root.walk_shown(last_first=True))

    def wait_for_text(self, text: str, seconds: float = 10) -> None:
        try:
            wait_until(lambda: self.says(text), seconds=seconds)
        except TookTooLong:
            raise TookTooLong(f"the program never said {text!r}; it shows\n{self.root.tree()}") from None

    def wait_for_cards(self, *titles: str) -> None:
        try:
            wait_until(lambda: self.cards() == list(titles))
        except TookTooLong:
            raise TookTooLong(f"wanted {list(titles)}, the program shows {self.cards()}") from None

    def open_tab(self, name: str) -> None:
        self.find(name, role="push button").click()

    def focused(self) -> Control | None:
        """The control that has the keyboard."""
        focused = [control for control in self.root.walk() if control.is_focused and control.is_shown]
        return focused[-1] if focused else None

    # Keyboard, screen. --------------------------------------------------------

    def keys(self, *chords: str) -> None:
        """Presses keys one after the other: "Tab", "Return", "ctrl+r"."""
        self._take_keyboard()
        Desktop.shared().run("xdotool", "key", "--delay", "30", *chords)

    def type(self, text: str) -> None:
        """Types a text, letter by letter."""
        self._take_keyboard()
        if give_keys_to(text):
            time.sleep(0.5)  # the program hears of new keys by an event that nothing else shows
        Desktop.shared().run("xdotool", "type", "--delay", "25", "--", text)

    def tab_to(self, name: str, limit: int = 60) -> Control:
        """Presses Tab until the control of that name has the keyboard."""
        for _ in range(limit):
            self.keys("Tab")
            focused = self.focused()
            if focused and focused.name == name:
                return focused
        raise TookTooLong(f"{limit} times Tab did not reach {name!r}; the keyboard is at {self.focused()}")

    def _take_keyboard(self) -> None:
        """Without a window manager nobody hands the keyboard to a window; the newest one gets it."""
        windows = windows_of(self.pid)
        focus = Desktop.shared().run("xdotool", "getwindowfocus", "-f").strip()
        if windows and (not focus or int(focus) not in windows):
            Desktop.shared().run("xdotool", "windowfocus", "--sync", str(windows[-1]))

    def resize(self, width: int, height: int, title: str = "Quire") -> None:
        """Gives a window that size, the main one unless told otherwise, as pulling at its corner does."""
        window = wait_until(lambda: windows_of(self.pid, f"^{title}$"), f"no window {title}")[-1]
        Desktop.shared().run("xdotool", "windowsize", "--sync", str(window), str(width), str(height))
        wait_until(lambda: self.root.find(title, role="frame").frame[2:] == (width, height), "it kept its size")

    def screenshot(self, name: str) -> Path:
        folder = Path(os.environ.get("QUIRE_SCREENSHOTS", repository / "build" / "screenshots"))
        return Desktop.shared().screenshot(folder / f"{name}.png")

    def wait_until_idle(self, seconds: float = 45) -> None:
        """Waits until it has had nothing to do for a third of a second; what turns for ever is not idle."""
        calm_since = time.monotonic()

        def idle() -> bool:
            nonlocal calm_since
            if self._is_busy():
                calm_since = time.monotonic()
            return time.monotonic() - calm_since > 0.33

        wait_until(idle, "it is busy all the time", seconds)

    def _is_busy(self) -> bool:
        states = []
        for thread in Path(f"/proc/{self.pid}/task").glob("*/stat"):
            try:
                states.append(thread.read_text().rpartition(")")[2].split()[0])
            except OSError:
                continue
        return any(state != "S" for state in states)

    # Its end. ---------------------------------------------------------------------

    @property
    def is_running(self) -> bool:
        return self._process.poll() is None

    def wait(self, seconds: float = 20) -> int:
        """The exit status, once it has ended by itself; negative for a signal."""
        return self._process.wait(seconds * patience)

    def close_window(self, title: str = "^Quire$") -> None:
        """Closes a window as its title bar would."""
        windows = wait_until(lambda: windows_of(self.pid, title), f"no window {title}")
        ask_to_close(windows[-1])

    def send(self, number: signal.Signals) -> None:
        self._process.send_signal(number)

    def quit(self) -> int:
        """Ends it as the end of a desktop session does; the exit status."""
        self.send(signal.SIGTERM)
        return self.wait()

    def kill(self) -> None:
        """Ends it as a power cut would."""
        self._process.kill()
        self._process.wait()

    @property
    def errors(self) -> str:
        """What it said on its standard output and error so far."""
        self._errors.seek(0)
        return self._errors.read().decode(errors="replace")

    @property
    def graphics(self) -> str | None:
        """The OpenGL that its scene graph draws through, in the driver's words; nothing where it draws by itself."""
        if "Using QRhi with backend OpenGL" not in self.errors:
            return None
        found = re.search(r"OpenGL VENDOR: (.+ VERSION: .+)", self.errors)
        return found[1] if found else None

    @property
    def complaints(self) -> list[str]:
        """Lines that a healthy run does not have: QML warnings, sanitizer reports."""
        return [line for line in self.errors.splitlines() if not harmless.match(line)]
