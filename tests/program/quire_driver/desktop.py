"""One virtual screen with a session bus and an accessibility bus, shared by all
tests of a run: a process can speak to one accessibility bus only."""

import atexit
import os
import shutil
import signal
import subprocess
import tempfile
import time
import uuid
from pathlib import Path

SCREEN = os.environ.get("QUIRE_DRIVER_SCREEN", "1400x1000") + "x24"
MARK = "QUIRE_DRIVER_RUN"


class Desktop:
    """Started on first use by `Desktop.shared()` and ended with the process."""

    _shared: "Desktop | None" = None

    @classmethod
    def shared(cls) -> "Desktop":
        if cls._shared is None:
            cls._shared = cls()
            atexit.register(cls._shared.stop)
        return cls._shared

    def __init__(self) -> None:
        self._run = uuid.uuid4().hex
        self._processes: list[subprocess.Popen] = []
        self._folder = Path(tempfile.mkdtemp(prefix="quire-desktop-"))
        runtime = self._folder / "runtime"
        runtime.mkdir(mode=0o700)
        kept = ("PATH", "LD_LIBRARY_PATH", "ASAN_OPTIONS", "LSAN_OPTIONS", "UBSAN_OPTIONS", "TSAN_OPTIONS")
        self.environment = {name: os.environ[name] for name in kept if name in os.environ}
        self.environment |= {
            MARK: self._run,
            "HOME": str(self._folder),
            "XDG_RUNTIME_DIR": str(runtime),
            "XDG_CONFIG_HOME": str(self._folder / "config"),
            "XDG_CACHE_HOME": str(self._folder / "cache"),
            "XDG_DATA_HOME": str(self._folder / "data"),
            "LC_ALL": "C.UTF-8",
            "TZ": os.environ.get("TZ", "Europe/Oslo"),
        }
        try:
            self.environment["DISPLAY"] = self._start_screen()
            self.environment["DBUS_SESSION_BUS_ADDRESS"] = self._start_bus()
        except BaseException:
            self.stop()
            raise
        # Read by the accessibility library of this process on its first import.
        for name in ("DISPLAY", "DBUS_SESSION_BUS_ADDRESS", "XDG_RUNTIME_DIR"):
            os.environ[name] = self.environment[name]
        os.environ.pop("AT_SPI_BUS_ADDRESS", None)

    def _spawn(self, command: list[str], channel: int) -> subprocess.Popen:
        with open(self._folder / f"{command[0]}.log", "wb") as log:
            process = subprocess.Popen(
                command, env=self.environment, pass_fds=[channel], stdin=subprocess.DEVNULL, stdout=log, stderr=log,
                start_new_session=True)
        self._processes.append(process)
        return process

    def _announced(self, command: list[str]) -> str:
        """Starts a server that writes its address to the descriptor named by "{fd}"; the address."""
        reading, writing = os.pipe()
        self._spawn([part.replace("{fd}", str(writing)) for part in command], writing)
        os.close(writing)
        with os.fdopen(reading) as channel:
            address = channel.readline().strip()
        if not address:
            raise RuntimeError((self._folder / f"{command[0]}.log").read_text() or f"{command[0]} did not start")
        return address

    def _start_screen(self) -> str:
        # Servers that start at the same moment may take one number, and the
        # loser announces it all the same: only one that answers counts.
        for _ in range(5):
            number = self._announced(["Xvfb", "-displayfd", "{fd}", "-screen", "0", SCREEN, "-nolisten", "tcp", "-noreset"])
            if self._processes[-1].poll() is None and self._answers(number):
                return ":" + number
            time.sleep(0.5)
        raise RuntimeError("no virtual screen that answers could be started")

    def _answers(self, number: str) -> bool:
        probe = ["xdotool", "getdisplaygeometry"]
        environment = self.environment | {"DISPLAY": ":" + number}
        return subprocess.run(probe, env=environment, capture_output=True, timeout=30).returncode == 0

    def _start_bus(self) -> str:
        return self._announced(["dbus-daemon", "--session", "--nofork", "--print-address={fd}"])

    def _left_over(self) -> list[int]:
        """Processes of this run that the buses started; they carry our mark in their environment."""
        mark = f"{MARK}={self._run}".encode()
        found = []
        for entry in Path("/proc").iterdir():
            try:
                if entry.name.isdigit() and mark in (entry / "environ").read_bytes().split(b"\0"):
                    found.append(int(entry.name))
            except OSError:
                continue
        return found

    def stop(self) -> None:
        for process in reversed(self._processes):
            process.terminate()
        for process in self._processes:
            try:
                process.wait(5)
            except subprocess.TimeoutExpired:
                process.kill()
                process.wait()
        for attempt in range(50):
            remaining = [pid for pid in self._left_over() if pid != os.getpid()]
            if not remaining:
                break
            for pid in remaining:
                try:
                    os.kill(pid, signal.SIGTERM if attempt < 25 else signal.SIGKILL)
                except ProcessLookupError:
                    pass
            time.sleep(0.05)
        shutil.rmtree(self._folder, ignore_errors=True)

    def run(self, *command: str) -> str:
        """Runs a short tool on this screen; its output."""
        return subprocess.run(
            command, env=self.environment, check=True, capture_output=True, text=True, timeout=60).stdout

    def screenshot(self, file: Path) -> Path:
        file.parent.mkdir(parents=True, exist_ok=True)
        self.run("import", "-window", "root", str(file))
        return file
