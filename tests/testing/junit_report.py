"""The report of a Python test program, for scripts/lib/count_tests.py to count."""

import time
import unittest
import xml.etree.ElementTree as ElementTree
from pathlib import Path


class Report(unittest.TextTestResult):
    """Keeps the cases as JUnit in `file` beside what it prints; set `file` and `suite` before a run."""

    file: Path | None = None
    suite = ""

    def __init__(self, *arguments, **options):
        super().__init__(*arguments, **options)
        self._suite = ElementTree.Element("testsuite", name=self.suite)
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
