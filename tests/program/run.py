#!/usr/bin/python3
"""Runs the tests of the whole program.

usage: run.py [--junit FILE] [--program FILE] [-k PATTERN]...

With --junit each case is reported to FILE as it ends, so that a run that is cut
short has still told what it knew.
"""

import argparse
import os
import sys
import time
import unittest
import xml.etree.ElementTree as ElementTree
from pathlib import Path

here = Path(__file__).resolve().parent
sys.path.insert(0, str(here))


class Report(unittest.TextTestResult):
    """Keeps the cases as JUnit beside what it prints."""

    file: Path | None = None

    def __init__(self, *arguments, **options):
        super().__init__(*arguments, **options)
        self._suite = ElementTree.Element("testsuite", name="program")
        self._trouble: list[str] = []
        self._skipped = False

    def startTest(self, test):
        super().startTest(test)
        self._trouble = []
        self._skipped = False
        self._started = time.monotonic()

    def addError(self, test, err):
        super().addError(test, err)
        self._note(err)

    def addFailure(self, test, err):
        super().addFailure(test, err)
        self._note(err)

    def addSubTest(self, test, subtest, err):
        super().addSubTest(test, subtest, err)
        if err:
            self._note(err)

    def addSkip(self, test, reason):
        super().addSkip(test, reason)
        self._skipped = True

    def _note(self, err):
        self._trouble.append(f"{err[0].__name__}: {err[1]}")
        if not hasattr(self, "_started"):  # a fixture of a class or module, outside any case
            self._write(str(err[0].__name__), 0)

    def stopTest(self, test):
        super().stopTest(test)
        self._write(test.id(), time.monotonic() - self._started)
        del self._started

    def _write(self, name, seconds):
        case = ElementTree.SubElement(self._suite, "testcase", name=name, time=f"{seconds:.3f}")
        for trouble in self._trouble:
            ElementTree.SubElement(case, "failure", message="".join(c for c in trouble if c.isprintable() or c == "\n"))
        if self._skipped:
            ElementTree.SubElement(case, "skipped")
        if self.file:
            self.file.parent.mkdir(parents=True, exist_ok=True)
            ElementTree.ElementTree(self._suite).write(self.file, encoding="utf-8", xml_declaration=True)


def main() -> int:
    parser = argparse.ArgumentParser(description="Runs the tests of the whole program.")
    parser.add_argument("--junit", type=Path)
    parser.add_argument("--program", type=Path)
    parser.add_argument("-k", dest="patterns", action="append")
    options = parser.parse_args()
    Report.file = options.junit
    if options.program:
        os.environ["QUIRE_PROGRAM"] = str(options.program.resolve())
    loader = unittest.TestLoader()
    if options.patterns:
        loader.testNamePatterns = [f"*{pattern}*" for pattern in options.patterns]
    suite = loader.discover(str(here), top_level_dir=str(here))
    outcome = unittest.TextTestRunner(verbosity=2, resultclass=Report).run(suite)
    return 0 if outcome.wasSuccessful() and outcome.testsRun else 1


if __name__ == "__main__":
    sys.exit(main())
