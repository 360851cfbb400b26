"""Takes pictures of the program's screens, with the demo's library, on a screen of its own.

usage: pictures.py PROGRAM FOLDER

FOLDER gets books.png, audio.png, insights.png, details.png and settings.png.
"""

import os
import subprocess
import sys
import time
from pathlib import Path

from demo import furnish  # makes the driver's modules known, too

from quire_driver.desktop import Desktop  # noqa: E402
from quire_driver.program import Program  # noqa: E402
from quire_driver.settings import Settings  # noqa: E402
from quire_driver.waiting import wait_until  # noqa: E402
from quire_driver.windows import windows_of  # noqa: E402
from quire_world import Home, StandIn  # noqa: E402

DETAILS = "The Salt Road"

COVERLESS = "SELECT COUNT(*) FROM audible_books WHERE cover_data IS NULL"


class Camera:
    def __init__(self, program: Program, folder: Path) -> None:
        self._program = program
        self._folder = folder

    def take(self, name: str, title: str = "^Quire$") -> None:
        """A picture of the window of that title, at rest and without the mouse in it."""
        desktop = Desktop.shared()
        desktop.run("xdotool", "mousemove", "1399", "999")
        time.sleep(1.5)  # after which scroll bars begin to fade
        self._program.wait_until_idle()
        picture = self._folder / f"{name}.png"
        whole = self._folder / f"{name}.whole.png"
        desktop.run("import", "-window", str(windows_of(self._program.pid, title)[-1]), str(whole))
        # A page shows it, for which 256 colours and no remarks are enough.
        subprocess.run(
            ["convert", whole, "-strip", "+dither", "-colors", "256",
             "-define", "png:compression-level=9", f"PNG8:{picture}"], check=True)
        whole.unlink()
        print(f"{picture.name}: {picture.stat().st_size // 1024} KiB", flush=True)


def show(program: Program, camera: Camera, home: Home) -> None:
    program.find("Sync", role="push button", seconds=30)
    program.wait_until_idle()
    program.find("Sync", role="push button").click()
    # The demo's reader has no page on the web; a sync says so when it has brought everything.
    program.find("OK", role="push button", seconds=60).click()
    program.wait_gone("OK", role="push button")
    wait_until(lambda: not home.value(COVERLESS), "not every audiobook got its cover", 60)
    wait_until(lambda: not program.says("synced"), "the toast stays", 60)
    camera.take("books")
    program.open_tab("Audio")
    program.open_tab("All Audio")
    program.find(starting="View details for")
    camera.take("audio")
    program.open_tab("Insights")
    program.wait_for_text("This Year")
    program.find("Insights", role="heading").scroll(2)
    camera.take("insights")
    program.open_tab("Books")
    program.find(f"View details for {DETAILS}").click()
    program.find(DETAILS, role="dialog")
    camera.take("details")
    program.keys("Escape")
    program.wait_gone(DETAILS, role="dialog")
    Settings(program, "Publishing")
    camera.take("settings", "Settings")


def main() -> int:
    if len(sys.argv) != 3:
        print(__doc__, file=sys.stderr)
        return 2
    os.environ["QUIRE_PROGRAM"] = sys.argv[1]
    folder = Path(sys.argv[2]).resolve()
    folder.mkdir(parents=True, exist_ok=True)
    home, services = Home(), StandIn()
    program = None
    try:
        furnish(home, services)
        home.lend_opener()
        program = Program(home)
        show(program, Camera(program, folder), home)
        return program.quit()
    finally:
        if program and program.is_running:
            program.kill()
        services.stop()
        home.remove()


if __name__ == "__main__":
    sys.exit(main())
