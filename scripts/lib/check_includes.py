"""Tells which files include a folder that their own library does not link.

The include root is the repository, so the compiler would let any folder see any
other. What a folder may see is what its CMakeLists.txt says in USES, with all
that those use in turn; tests, benchmarks and the program may see everything.
"""

import re
import subprocess
import sys
from pathlib import Path

root = Path(__file__).resolve().parents[2]

library_call = re.compile(r"quire_add_library\(\s*(\w+)(.*?)\n?\s*\)", re.DOTALL)
used_library = re.compile(r"(?:Quire::|quire_)(\w+)")
include_line = re.compile(r'^\s*#\s*include\s+"([^"]+)/[^"/]+"')


def tracked(pattern: str) -> list[Path]:
    listing = subprocess.run(["git", "ls-files", pattern], cwd=root, capture_output=True, text=True, check=True)
    return [Path(line) for line in listing.stdout.splitlines()]


def read_libraries() -> tuple[dict[Path, str], dict[str, set[str]]]:
    """The library of each folder, and what each library names in USES."""
    folders, uses = {}, {}
    for listing in tracked("*CMakeLists.txt"):
        for name, arguments in library_call.findall((root / listing).read_text()):
            folders[listing.parent] = name
            uses[name] = set(used_library.findall(arguments))
    return folders, uses


def reachable(name: str, uses: dict[str, set[str]]) -> set[str]:
    seen, waiting = set(), [name]
    while waiting:
        library = waiting.pop()
        if library not in seen:
            seen.add(library)
            waiting.extend(uses.get(library, ()))
    return seen


def library_of(folder: Path, folders: dict[Path, str]) -> str | None:
    """The library of the nearest folder that has one."""
    for candidate in [folder, *folder.parents]:
        if candidate in folders:
            return folders[candidate]
    return None


def main() -> int:
    folders, uses = read_libraries()
    if not folders:
        print("no libraries found", file=sys.stderr)
        return 1
    wrong = 0
    for source in tracked("*.cpp") + tracked("*.h"):
        own = library_of(source.parent, folders)
        if own is None:
            continue
        allowed = reachable(own, uses)
        for number, line in enumerate((root / source).read_text().splitlines(), start=1):
            match = include_line.match(line)
            included = library_of(Path(match[1]), folders) if match else None
            if included is not None and included not in allowed:
                print(f"{source}:{number}: {own} does not use {included}")
                wrong += 1
    return 1 if wrong else 0


if __name__ == "__main__":
    sys.exit(main())
