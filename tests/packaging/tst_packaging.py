#!/usr/bin/python3
"""Tests of what is installed, and of what its package says of it.

usage: tst_packaging.py --build FOLDER [--junit FILE] [-k PATTERN]...

FOLDER is a build of everything. Nothing is installed outside a temporary folder.
"""

import argparse
import configparser
import gzip
import re
import stat
import sys
import tempfile
import unittest
import xml.etree.ElementTree as ElementTree
from pathlib import Path

here = Path(__file__).resolve().parent
sys.path.insert(0, str(here.parent / "testing"))

from installed import Installed, Run, output_of, repository  # noqa: E402
from junit_report import Report  # noqa: E402

SIZES = (16, 22, 24, 32, 48, 64, 128, 256, 512)
ENTRY = "share/applications/quire.desktop"
METAINFO = "share/metainfo/example.quire.quire.metainfo.xml"
MANUAL = "share/man/man1/quire.1.gz"
DRAWING = "share/icons/hicolor/scalable/apps/quire.svg"
DOCUMENTS = ("share/doc/quire/changelog.Debian.gz", "share/doc/quire/copyright", "share/lintian/overrides/quire")


def icon(size: int) -> str:
    return f"share/icons/hicolor/{size}x{size}/apps/quire.png"


build = Path()


def sources_of_program(pattern: str) -> str:
    """All that the program is made of and whose name is like that, in one text."""
    beside = {"build", "tests", "bench", "fuzz"}
    folders = [folder for folder in repository.iterdir() if folder.is_dir() and folder.name not in beside]
    return "\n".join(file.read_text() for folder in folders for file in sorted(folder.rglob(pattern)))


class InstalledTestCase(unittest.TestCase):
    maxDiff = None
    _installed: Installed | None = None

    @property
    def installed(self) -> Installed:
        """Shared by all tests, none of which changes it."""
        if InstalledTestCase._installed is None:
            InstalledTestCase._installed = Installed(build)
            unittest.addModuleCleanup(InstalledTestCase._installed.remove)
        return InstalledTestCase._installed

    def run_program(self, **variables: str) -> Run:
        run = Run(self.installed.program, **variables)
        self.addCleanup(run.remove)
        return run

    def entry(self) -> configparser.SectionProxy:
        parser = configparser.RawConfigParser(strict=True)
        parser.optionxform = str
        parser.read(self.installed.file(ENTRY))
        return parser["Desktop Entry"]

    def metainfo(self) -> ElementTree.Element:
        return ElementTree.parse(self.installed.file(METAINFO)).getroot()

    def manual(self) -> str:
        return gzip.decompress(self.installed.file(MANUAL).read_bytes()).decode()


class Installation(InstalledTestCase):
    def test_an_installation_puts_these_files_and_no_other(self):
        files = {"bin/quire", ENTRY, METAINFO, MANUAL, DRAWING, *DOCUMENTS, *map(icon, SIZES)}
        self.assertEqual(self.installed.files(), {f"usr/{file}" for file in files})

    def test_everybody_may_read_what_is_installed_and_only_the_program_is_run(self):
        for file in self.installed.files():
            mode = stat.S_IMODE((self.installed.root / file).stat().st_mode)
            self.assertEqual(oct(mode), oct(0o755 if file == "usr/bin/quire" else 0o644), file)


class MenuEntry(InstalledTestCase):
    def test_it_is_valid(self):
        self.assertEqual(output_of("desktop-file-validate", self.installed.file(ENTRY)), "")

    def test_it_starts_the_program_and_shows_its_icon(self):
        entry = self.entry()
        self.assertEqual(self.installed.file(f"bin/{entry['Exec']}"), self.installed.program)
        self.assertEqual({f"{entry['Icon']}.svg", f"{entry['Icon']}.png"}, {Path(DRAWING).name, Path(icon(16)).name})

    def test_the_program_names_it_to_the_desktop(self):
        main = (repository / "QuireApp/QuireApp/main.cpp").read_text()
        self.assertIn(f'setDesktopFileName(QStringLiteral("{Path(ENTRY).stem}"))', main)
        self.assertIn(f'setApplicationName(QStringLiteral("{self.entry()["StartupWMClass"]}"))', main)


class Metainfo(InstalledTestCase):
    def test_it_is_valid(self):
        output_of("appstreamcli", "validate", "--no-net", self.installed.file(METAINFO))

    def test_its_newest_release_is_this_version(self):
        release = self.metainfo().find("releases/release")
        self.assertEqual(release.get("version"), self.installed.package("CPACK_PACKAGE_VERSION"))

    def test_it_belongs_to_the_menu_entry_and_the_program(self):
        metainfo = self.metainfo()
        self.assertEqual(metainfo.findtext("launchable"), Path(ENTRY).name)
        self.assertEqual(metainfo.findtext("provides/binary"), self.installed.program.name)
        self.assertEqual(metainfo.findtext("icon"), self.entry()["Icon"])
        self.assertEqual(metainfo.findtext("name"), self.entry()["Name"])
        self.assertEqual(metainfo.findtext("summary"), self.entry()["Comment"])


class Icon(InstalledTestCase):
    def test_the_drawing_is_square(self):
        drawing = ElementTree.parse(self.installed.file(DRAWING)).getroot()
        self.assertEqual(drawing.get("width"), drawing.get("height"))
        left, top, width, height = map(float, drawing.get("viewBox").split())
        self.assertEqual((left, top, width), (0, 0, height))

    def test_it_is_drawn_at_every_size(self):
        for size in SIZES:
            picture = self.installed.file(icon(size))
            kind, width, height, colours = output_of("identify", "-format", "%m %w %h %k", picture).split()
            self.assertEqual((kind, width, height), ("PNG", str(size), str(size)))
            self.assertGreater(int(colours), 40, f"{size} pixels: hardly anything is drawn")
            filled, corner = output_of(
                "convert", picture, "-alpha", "extract", "-format", "%[fx:mean] %[fx:p{0,0}]", "info:").split()
            self.assertGreater(float(filled), 0.8, f"{size} pixels: it does not fill its place")
            self.assertEqual(float(corner), 0, f"{size} pixels: its corners are not round")


class Manual(InstalledTestCase):
    def test_it_is_clean(self):
        page = Path(self.enterContext(tempfile.TemporaryDirectory())) / "quire.1"
        page.write_text(self.manual())
        self.assertEqual(output_of("mandoc", "-T", "lint", "-W", "style", page), "")

    def test_it_names_every_file_that_a_run_leaves(self):
        run = self.run_program()
        run.wait_for(".local/share/Quire/quire.db")
        self.assertEqual(run.terminate(), (0, ""))
        left = {file for file in run.left_files() if file.startswith((".local/share/", ".config/"))}
        self.assertGreater(len(left), 3)
        named = re.findall(r"^\.It Pa ~/(\S.*)$", self.manual(), re.MULTILINE)
        unnamed = {file for file in left if not any(
            file == path or path.endswith("/") and file.startswith(path) for path in named)}
        self.assertEqual(unnamed, set())

    def test_it_names_every_variable_that_the_program_reads(self):
        # What injects failures is for tests alone.
        for_tests = {"QUIRE_ENABLE_FAILURE_TESTS", "QUIRE_FAILURE_POINT"}
        sources = sources_of_program("*.cpp")
        read = set(re.findall(r'(?:qgetenv|qEnvironmentVariable\w*)\("(\w+)"', sources)) - for_tests
        self.assertIn("QUIRE_LOG_PATH", read)
        named = set(re.findall(r"^\.It Ev (\w+)$", self.manual(), re.MULTILINE))
        self.assertEqual(read - named, set())


class Package(InstalledTestCase):
    def test_it_depends_on_every_module_that_the_views_import(self):
        modules = set(re.findall(r"^import (Qt\S+)", sources_of_program("*.qml"), re.MULTILINE))
        self.assertIn("QtQuick.Templates", modules)
        folder = Path(output_of("qtpaths6", "--query", "QT_INSTALL_QML"))
        waiting, needed = list(modules), set()
        while waiting:
            module = waiting.pop()
            if module in needed:
                continue
            needed.add(module)
            description = (folder / module.replace(".", "/") / "qmldir").read_text()
            waiting += re.findall(r"^(?:depends|import) (Qt\S+)", description, re.MULTILINE)
        packages = {
            output_of("dpkg-query", "--search", folder / module.replace(".", "/") / "qmldir").split(":")[0]
            for module in needed}
        self.assertEqual(packages - self.installed.package_names("CPACK_DEBIAN_PACKAGE_DEPENDS"), set())

    def test_a_checkout_runs_with_what_the_package_depends_on_and_the_same_fonts(self):
        lists = dict(re.findall(r"^packages_(\w+)=\(([^)]*)\)", (repository / "scripts/lib/dependencies.sh").read_text(),
                                re.MULTILINE))
        self.assertEqual(set(lists["run"].split()), self.installed.package_names("CPACK_DEBIAN_PACKAGE_DEPENDS"))
        recommended = self.installed.package_names("CPACK_DEBIAN_PACKAGE_RECOMMENDS")
        self.assertEqual(set(lists["fonts"].split()), {name for name in recommended if name.startswith("fonts-")})

    def test_its_changelog_begins_with_this_version_and_build(self):
        changelog = gzip.decompress(self.installed.file(DOCUMENTS[0]).read_bytes()).decode()
        version, number = map(self.installed.package, ("CPACK_PACKAGE_VERSION", "CPACK_DEBIAN_PACKAGE_RELEASE"))
        self.assertTrue(changelog.startswith(f"quire ({version}-{number}) "), changelog.splitlines()[0])

    def test_its_licences_name_the_drawings_that_are_embedded(self):
        terms = self.installed.file(DOCUMENTS[1]).read_text()
        self.assertIn("bootstrap-icons", terms)
        granted = Path("/usr/share/doc/bootstrap-icons/copyright").read_text()
        holder = re.search(r"^Copyright: \S+ (.+)$", granted, re.MULTILINE)[1]
        self.assertIn(holder, terms)
        words = " ".join(granted[granted.index("Permission is hereby"):].replace(" .\n", "").split())
        self.assertIn(words, " ".join(terms.replace(" .\n", "").split()))


class Start(InstalledTestCase):
    def test_a_toolkit_without_its_modules_ends_the_program_with_a_message(self):
        beside = self.installed.program.with_name("qt.conf")
        plugins = output_of("qtpaths6", "--query", "QT_INSTALL_PLUGINS")
        beside.write_text(f"[Paths]\nPlugins={plugins}\nQmlImports={self.installed.root}/nothing\n")
        self.addCleanup(beside.unlink)
        status, said = self.run_program().end()
        self.assertEqual(status, 1, said)
        self.assertRegex(said, r"^Quire cannot show its window: a part of Qt is missing or does not fit\.\n")
        self.assertRegex(said, r'module "Qt[A-Za-z.]+" is not installed\n$')


def main() -> int:
    global build
    parser = argparse.ArgumentParser(description="Tests what is installed, and what its package says of it.")
    parser.add_argument("--build", type=Path, required=True)
    parser.add_argument("--junit", type=Path)
    parser.add_argument("-k", dest="patterns", action="append")
    options = parser.parse_args()
    build = options.build.resolve()
    Report.file, Report.suite = options.junit, "packaging"
    loader = unittest.TestLoader()
    if options.patterns:
        loader.testNamePatterns = [f"*{pattern}*" for pattern in options.patterns]
    suite = loader.loadTestsFromModule(sys.modules[__name__])
    outcome = unittest.TextTestRunner(verbosity=2, resultclass=Report).run(suite)
    return 0 if outcome.wasSuccessful() and outcome.testsRun else 1


if __name__ == "__main__":
    sys.exit(main())
