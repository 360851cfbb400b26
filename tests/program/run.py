#!/usr/bin/python3
"""Runs the tests of the whole program.

usage: run.py [--junit FILE] [--program FILE] [--renderer software|rhi] [-k PATTERN]... [MODULE...]

Runs the modules named, as "test_adding", or all of them. Every run has a screen of its
own, so that several can go side by side.

The tests draw in software, those of the tour (test_tour_*.py) through OpenGL, unless a
renderer is named for all of them.

With --junit each case is reported to FILE as it ends, so that a run that is cut
short has still told what it knew.
"""

import argparse
import os
import sys
import unittest
from pathlib import Path

here = Path(__file__).resolve().parent
sys.path[:0] = [str(here), str(here.parent / "testing")]

from junit_report import Report  # noqa: E402


def main() -> int:
    parser = argparse.ArgumentParser(description="Runs the tests of the whole program.")
    parser.add_argument("--junit", type=Path)
    parser.add_argument("--program", type=Path)
    parser.add_argument("--renderer", choices=["software", "rhi"])
    parser.add_argument("-k", dest="patterns", action="append")
    parser.add_argument("modules", nargs="*")
    options = parser.parse_args()
    Report.file, Report.suite = options.junit, "program"
    if options.program:
        os.environ["QUIRE_PROGRAM"] = str(options.program.resolve())
    if options.renderer:
        os.environ["QUIRE_DRIVER_RENDERER"] = options.renderer
    loader = unittest.TestLoader()
    if options.patterns:
        loader.testNamePatterns = [f"*{pattern}*" for pattern in options.patterns]
    suite = loader.loadTestsFromNames(options.modules) if options.modules else loader.discover(str(here), top_level_dir=str(here))
    outcome = unittest.TextTestRunner(verbosity=2, resultclass=Report).run(suite)
    return 0 if outcome.wasSuccessful() and outcome.testsRun else 1


if __name__ == "__main__":
    sys.exit(main())
