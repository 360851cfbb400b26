"""Counts the cases of a test run and prints "N passed, N failed" as the last line.

usage: count_tests.py FOLDER

FOLDER holds ctest.junit, what ctest says of each program, and for each program
that could report them its cases in <program>.xml. A program that failed without
a failed case (it crashed, hung, or a sanitizer spoke at its end) is one failure.
The exit status is 1 when anything failed or nothing ran.
"""

import re
import sys
import xml.etree.ElementTree as ElementTree
from dataclasses import dataclass
from pathlib import Path


@dataclass
class Count:
    passed: int = 0
    failed: int = 0
    skipped: int = 0

    def add(self, other: "Count") -> None:
        self.passed += other.passed
        self.failed += other.failed
        self.skipped += other.skipped


def is_skipped(case: ElementTree.Element) -> bool:
    return case.find("skipped") is not None or case.get("status") == "notrun"


def count_cases(report: Path) -> Count:
    """The cases of one program; none when the report is missing or was cut short."""
    count = Count()
    try:
        root = ElementTree.parse(report).getroot()
    except (OSError, ElementTree.ParseError):
        return count
    for case in root.iter("testcase"):
        if case.find("failure") is not None or case.find("error") is not None:
            count.failed += 1
        elif is_skipped(case):
            count.skipped += 1
        else:
            count.passed += 1
    return count


def count_run(folder: Path) -> tuple[Count, list[str]]:
    """The cases of a whole run, and what went wrong beside them."""
    total = Count()
    remarks = []
    for program in ElementTree.parse(folder / "ctest.junit").getroot().iter("testcase"):
        name = program.get("name", "")
        cases = count_cases(folder / f"{re.sub('[^A-Za-z0-9_]', '_', name)}.xml")
        succeeded = program.get("status") == "run"
        if not succeeded and cases.failed == 0:
            cases.failed = 1
            remarks.append(f"{name}: failed outside its cases")
        elif succeeded and cases == Count():
            cases.passed = 1
        total.add(cases)
    return total, remarks


def main() -> int:
    try:
        total, remarks = count_run(Path(sys.argv[1]))
    except (OSError, ElementTree.ParseError) as failure:
        total, remarks = Count(failed=1), [f"no result of the run: {failure}"]
    for remark in remarks:
        print(remark)
    if total.skipped:
        print(f"{total.skipped} skipped")
    print(f"{total.passed} passed, {total.failed} failed")
    return 1 if total.failed or not total.passed else 0


if __name__ == "__main__":
    sys.exit(main())
