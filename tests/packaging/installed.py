"""An installed Quire in a folder of its own, and what is known of its package."""

from __future__ import annotations

import os
import re
import shutil
import signal
import subprocess
import tempfile
import time
from pathlib import Path

repository = Path(__file__).resolve().parents[2]


def output_of(*command: str | Path) -> str:
    """What a tool says, on both its outputs; it must succeed."""
    done = subprocess.run(command, text=True, stdout=subprocess.PIPE, stderr=subprocess.STDOUT, timeout=120)
    if done.returncode != 0:
        raise AssertionError(f"{command[0]} ended with status {done.returncode}: {done.stdout}")
    return done.stdout.strip()


class Installed:
    """The files that installing `build` puts below a root, which is a temporary folder."""

    def __init__(self, build: Path) -> None:
        self.build = build
        self._folder = tempfile.TemporaryDirectory(prefix="quire-installed-")
        self.root = Path(self._folder.name)
        done = subprocess.run(
            ["cmake", "--install", build, "--prefix", "/usr"], env=os.environ | {"DESTDIR": str(self.root)},
            capture_output=True, text=True, timeout=120)
        if done.returncode != 0:
            raise AssertionError(done.stdout + done.stderr)
        self.program = self.root / "usr/bin/quire"

    def remove(self) -> None:
        self._folder.cleanup()

    def files(self) -> set[str]:
        return {str(file.relative_to(self.root)) for file in self.root.rglob("*") if not file.is_dir()}

    def file(self, path: str) -> Path:
        return self.root / "usr" / path

    def package(self, variable: str) -> str:
        """What CPack was told, e.g. of CPACK_DEBIAN_PACKAGE_DEPENDS."""
        told = (self.build / "CPackConfig.cmake").read_text()
        return re.search(rf'set\({variable} "([^"]*)"\)', told)[1]

    def package_names(self, variable: str) -> set[str]:
        return {name.strip() for name in self.package(variable).split(",")}


class Run:
    """One run of an installed program without a screen, in a home that nobody has used."""

    def __init__(self, program: Path, **variables: str) -> None:
        self.home = Path(tempfile.mkdtemp(prefix="quire-home-"))
        runtime = self.home / "runtime"
        runtime.mkdir(mode=0o700)
        kept = {name: value for name, value in os.environ.items() if not name.startswith("XDG_")}
        self._process = subprocess.Popen(
            [program], stdin=subprocess.DEVNULL, stdout=subprocess.PIPE, stderr=subprocess.STDOUT, text=True,
            env=kept | {"HOME": str(self.home), "XDG_RUNTIME_DIR": str(runtime), "QT_QPA_PLATFORM": "offscreen",
                        "QT_QUICK_BACKEND": "software"} | variables)

    def wait_for(self, path: str, seconds: float = 60) -> Path:
        """A file below its home, waited for."""
        limit = time.monotonic() + seconds
        while not (self.home / path).exists():
            if self._process.poll() is not None or time.monotonic() > limit:
                self._process.kill()
                raise AssertionError(f"it never made {path}: {self._process.communicate()[0]}")
            time.sleep(0.05)
        return self.home / path

    def terminate(self) -> tuple[int, str]:
        """Ends it as a desktop session does; see end."""
        self._process.send_signal(signal.SIGTERM)
        return self.end()

    def end(self, seconds: float = 60) -> tuple[int, str]:
        """Its exit status and what it said, once it has ended by itself."""
        try:
            said = self._process.communicate(timeout=seconds)[0]
        except subprocess.TimeoutExpired:
            self._process.kill()
            raise AssertionError(f"it did not end: {self._process.communicate()[0]}") from None
        return self._process.returncode, said

    def left_files(self) -> set[str]:
        return {str(file.relative_to(self.home)) for file in self.home.rglob("*") if not file.is_dir()}

    def remove(self) -> None:
        if self._process.poll() is None:
            self._process.kill()
            self._process.communicate()
        shutil.rmtree(self.home, ignore_errors=True)
