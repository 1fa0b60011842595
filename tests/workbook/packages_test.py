#!/usr/bin/env python3
"""Makes every kind of workbook over the sample and real definitions, and has each looked over and read by other programs.

usage: packages_test.py CLI SAMPLE-MAKER REAL-REPOSITORY
"""

import os
import re
import shutil
import sqlite3
import sys
import unittest
import zipfile

import openpyxl

sys.path.insert(0, os.path.join(os.path.dirname(__file__), os.pardir, "support"))
from check_package import faults  # noqa: E402
from office import convert, differences, values  # noqa: E402
from repositories import RepositoryCase  # noqa: E402

REAL = sys.argv[3]
ER_MODES = {"all": [], "keys": ["--mode", "1"], "titles": ["--mode", "2"], "two": ["--mode", "3"], "foreign": ["--fk-only"]}

# What an output says that has nothing to show.
NOTHING_THERE = ("存在しません", "ありません", "選択されていません")

SHEET, STYLES, BOOK = "xl/worksheets/sheet1.xml", "xl/styles.xml", "xl/workbook.xml"
# Each spoils a layout in one place; what the look-over must say to it.
SPOILT = [
    (SHEET, r"(<sheetViews.*</sheetViews>)(.*)(<mergeCells)", r"\2\1\3", "sheetViews behind"),
    (SHEET, r'<mergeCell ref="A1:B1"/>', '<mergeCell ref="A1:C1"/>', "merged ranges overlap"),
    (SHEET, r'<c r="B10"', '<c r="B9"', "out of place"),
    (SHEET, r'<c r="A1" s="\d+"', '<c r="A1" s="9999"', "no format 9999"),
    (SHEET, r't="s"><v>\d+<', 't="s"><v>99999<', "no value '99999'"),
    (SHEET, r"<cols>", '<cols><col min="1" max="3" width="8"/>', "overlap"),
    (SHEET, r"</sheetData>", "</sheetData><drawing/>", "drawing without id"),
    (SHEET, r"</worksheet>", '<legacyDrawing r:id="rId99"/></worksheet>', "rId99, which is not there"),
    (STYLES, r'<fonts count="\d+"', '<fonts count="1"', "fonts: count"),
    (STYLES, r'(<cellXfs.*?)fontId="0"', r'\1fontId="77"', "no fontId 77"),
    (BOOK, r'sheetId="1"', "", "without sheetId"),
    (BOOK, r"</definedNames>", '<definedName name="a" localSheetId="5">1</definedName></definedNames>', "of no sheet"),
    ("xl/sharedStrings.xml", r'uniqueCount="\d+"', 'uniqueCount="1"', "uniqueCount is 1"),
    ("[Content_Types].xml", r'<Override PartName="/xl/styles.xml"[^>]*>', "", "is application/xml"),
    ("_rels/.rels", r"</Relationships>", '<Relationship Id="x" Type="a/b" Target="none.xml"/></Relationships>', "none.xml, which is not there"),
    ("xl/_rels/workbook.xml.rels", r'<Relationship [^>]*styles.xml"[^>]*>', "", "no relationship leads here"),
]


class PackagesTest(RepositoryCase):
    def setUp(self):
        self.books = []
        self.out = os.path.join(self.folder, self._testMethodName)
        os.makedirs(self.out)

    def make(self, command, repository, system, *options):
        """Runs a command and keeps what it printed as books. A System may have nothing to make: it says so."""
        done = self.run_command(command, repository, "--system", system, *options)
        paths = done.stdout.decode().split("\n")[:-1]
        if done.returncode == 1 and not paths:
            words = done.stderr.decode()
            self.assertTrue(any(word in words for word in NOTHING_THERE), f"{command} {system} {options}\n{words}")
            return []
        self.assertEqual(done.returncode, 0, f"{command} {system} {options}\n{done.stderr.decode()}")
        self.books += paths
        return paths

    def make_all(self, repository, number, system):
        def place(name):
            return ["--output", os.path.join(self.out, f"{number}_{name}.xlsx")]

        folder = os.path.join(self.out, str(number))
        os.makedirs(folder)
        made = {"layout": self.make("layout", repository, system, "--output-folder", folder),
                "list": self.make("list", repository, system, *place("list")),
                "fields": self.make("list", repository, system, "--fields", *place("fields"))}
        for name, options in ER_MODES.items():
            made["er " + name] = self.make("er", repository, system, *options, *place("er_" + name))
        return made

    def systems(self, repository):
        done = self.run_command("systems", repository)
        self.assertEqual(done.returncode, 0, done.stderr.decode())
        return [line.split("\t")[0] for line in done.stdout.decode().splitlines()]

    def check_books(self):
        found = [fault for path in self.books for fault in faults(path)]
        self.assertEqual(found, [], "\n".join(found[:50]))
        for path in self.books:
            openpyxl.load_workbook(path).close()

    def read_by_office(self, paths):
        """A document program prints them all, and writes them again without losing a value."""
        pages = os.path.join(self.out, "pages")
        again = os.path.join(self.out, "again")
        for path in convert("pdf", pages, *paths):
            self.assertGreater(os.path.getsize(path), 1000, path)
        for path, copy in zip(paths, convert("xlsx", again, *paths)):
            self.assertEqual(differences(values(path), values(copy)), [], path)

    def test_sample(self):
        chosen = []
        kinds = set()
        for number, system in enumerate(self.systems(self.sample)):
            made = self.make_all(self.sample, number, system)
            kinds.update(kind for kind, paths in made.items() if paths)
            if "PostgreSQL" in system or "PG管理" in system:
                chosen += [paths[0] for paths in made.values() if paths]
            members = self.make("members", self.sample, system, "--output", os.path.join(self.out, f"{number}_members.xlsx"))
            chosen += members
            kinds.update(["members"] if members else [])
        reports = list(self.reports("販売管理_PostgreSQL"))
        self.assertGreater(len(reports), 2)
        self.assertEqual(kinds, {"layout", "list", "fields", "members", *("er " + name for name in ER_MODES)})
        self.check_books()
        self.read_by_office(self.unique(chosen + reports[:2]))

    def unique(self, paths):
        """Copies under names that don't meet in one folder."""
        folder = os.path.join(self.out, "chosen")
        os.makedirs(folder)
        return [shutil.copy(path, os.path.join(folder, f"{place}.xlsx")) for place, path in enumerate(paths)]

    def reports(self, system):
        """Every stored query that is meant for reports, with as many parameters as it declares."""
        db = sqlite3.connect(self.sample)
        queries = db.execute("select Name, SQL from MSysQueryDefs where Name like '出力!_%' escape '!'").fetchall()
        db.close()
        self.assertTrue(queries)
        for number, (name, sql) in enumerate(queries):
            declared = re.match(r"\s*PARAMETERS\s([^;]*);", sql, re.IGNORECASE)
            parameters = ["--parameter", system] * (declared[1].count(",") + 1 if declared else 0)
            path = os.path.join(self.out, f"report{number}.xlsx")
            yield from self.make("report", self.sample, system, "--query", name, *parameters, "--output", path)

    def test_the_look_over_sees_faults(self):
        book = self.make("layout", self.sample, "販売管理_PostgreSQL", "--table", "受注", "--output-folder", self.out)[0]
        with zipfile.ZipFile(book) as source:
            parts = {name: source.read(name).decode() for name in source.namelist()}
        spoilt = os.path.join(self.out, "spoilt.xlsx")
        for part, pattern, replacement, words in SPOILT:
            with self.subTest(words):
                text, count = re.subn(pattern, replacement, parts[part], count=1, flags=re.DOTALL)
                self.assertTrue(count, f"{pattern} is not in {part}")
                with zipfile.ZipFile(spoilt, "w") as target:
                    for name in parts:
                        target.writestr(name, text if name == part else parts[name])
                self.assertTrue(any(words in fault for fault in faults(spoilt)), faults(spoilt))

    def test_real(self):
        real = shutil.copy(REAL, os.path.join(self.folder, "real.mdb"))
        for number, system in enumerate(self.systems(real)):
            made = self.make_all(real, number, system)
            self.assertTrue(all(made.values()), f"{system}: {[kind for kind, paths in made.items() if not paths]}")
        self.check_books()


if __name__ == "__main__":
    unittest.main(argv=sys.argv[:1], verbosity=2)
