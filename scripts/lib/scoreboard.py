"""Prints the scoreboard of a run of scripts/torture.sh as a Markdown table.

Each test of faults prints lines "scoreboard | id | what | rounds | findings |
seed"; this adds up those of one kind. Controls, broken twins that must be caught,
are no part of it. A round whose program died before it printed its line shows in
the exit status of the run, not here.

Usage: scoreboard.py FOLDER COMMIT PRESET SECONDS
"""

import re
import sys
from pathlib import Path

line_form = re.compile(r"scoreboard \| (R\d+) \| (.+?) \| (\d+) \| (\d+) \| (\d+)\s*$")


def main() -> None:
    folder, commit, preset, seconds = sys.argv[1:5]
    rows: dict[tuple[str, str], list[int]] = {}
    for log in sorted(Path(folder).glob("round-*.log")):
        for line in log.read_text(errors="replace").splitlines():
            if found := line_form.search(line):
                identifier, what, rounds, findings, _ = found.groups()
                if what.startswith("control"):
                    continue
                row = rows.setdefault((identifier, what), [0, 0])
                row[0] += int(rounds)
                row[1] += int(findings)

    rounds_begun = len(list(Path(folder).glob("round-*.log")))
    print(f"Commit {commit}, preset {preset}, {int(seconds) / 3600:.2f} hours, {rounds_begun} times all tests.\n")
    print("| id | what | rounds | findings |")
    print("| --- | --- | ---: | ---: |")
    for (identifier, what), (rounds, findings) in sorted(rows.items()):
        print(f"| {identifier} | {what} | {rounds:,} | {findings:,} |")


if __name__ == "__main__":
    main()
