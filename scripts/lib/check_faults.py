"""Runs clang-tidy over every source of the build, and remembers what was fine.

A file takes some ten seconds, most of it in the headers of others. What was
found faultless is not read again until the file as the compiler sees it, the
checks or their program have changed. Faults are never remembered.

usage: check_faults.py BUILD
"""

import concurrent.futures
import hashlib
import json
import os
import shlex
import subprocess
import sys
from pathlib import Path

TIDY = "clang-tidy-16"
ROOT = Path(__file__).resolve().parents[2]
BUILD = ROOT / sys.argv[1]
REMEMBERED = Path(os.environ.get("XDG_CACHE_HOME") or Path.home() / ".cache") / "quire" / "faultless"


def output(*command: str, folder: Path = ROOT) -> bytes:
    return subprocess.run(command, cwd=folder, stdout=subprocess.PIPE, stderr=subprocess.DEVNULL, check=True).stdout


def rules() -> bytes:
    return (ROOT / ".clang-tidy").read_bytes() + output(TIDY, "--version")


def as_compiled(entry: dict) -> bytes:
    """The file with all that it includes and with its comments, which may hold exceptions to the checks."""
    words = shlex.split(entry["command"])
    start = next(number for number, word in enumerate(words) if "clang++" in word)
    end = words.index("-o")
    text = output(*words[start:end], "-E", "-C", "-P", entry["file"], folder=Path(entry["directory"]))
    return " ".join(words[start:end]).encode() + text


def check(entry: dict, rules: bytes) -> tuple[bool, str]:
    file = entry["file"]
    try:
        seen = (rules + as_compiled(entry)).replace(str(ROOT).encode(), b"")
    except subprocess.CalledProcessError:
        return False, f"{file}: cannot be read by the compiler\n"
    mark = REMEMBERED / hashlib.sha256(seen).hexdigest()
    if mark.exists():
        return True, ""
    run = subprocess.run([TIDY, "-quiet", "-p", str(BUILD), file], cwd=ROOT, text=True,
                         stdout=subprocess.PIPE, stderr=subprocess.PIPE)
    if run.returncode == 0 and not run.stdout.strip():
        mark.touch()
        return True, ""
    return False, run.stdout or run.stderr


def is_ours(entry: dict) -> bool:
    """Generated sources (moc, resources) are part of a build and not of the code."""
    file = Path(entry["file"])
    return file.suffix == ".cpp" and file.is_relative_to(ROOT) and not file.is_relative_to(ROOT / "build")


def main() -> int:
    REMEMBERED.mkdir(parents=True, exist_ok=True)
    compiled = json.loads((BUILD / "compile_commands.json").read_text())
    # What several programs are built of is checked in one of them.
    entries = list({entry["file"]: entry for entry in reversed(compiled) if is_ours(entry)}.values())
    if not entries:
        print("there is nothing to check")
        return 1
    known = rules()
    faults = 0
    with concurrent.futures.ThreadPoolExecutor(os.cpu_count()) as pool:
        for fine, told in pool.map(lambda entry: check(entry, known), entries):
            print(told, end="")
            faults += not fine
    print(f"{len(entries)} files, {faults} with faults")
    return 1 if faults else 0


if __name__ == "__main__":
    sys.exit(main())
