#!/usr/bin/env python3
"""Gives the layout command templates that are no good: each is refused with its own words, and nothing is left behind.

usage: damaged_test.py CLI SAMPLE-MAKER
"""

import io
import os
import re
import resource
import shutil
import sqlite3
import struct
import subprocess
import sys
import unittest
import zipfile

import openpyxl

sys.path.insert(0, os.path.join(os.path.dirname(__file__), os.pardir, "support"))
from repositories import CLI, RepositoryCase  # noqa: E402

SYSTEM = "販売管理_PostgreSQL"
FORM = "form.xlsx"
PLACES = ["日本語名:A1", "TABLE_NAME:B1", "システム名:C1", "作成日:D1", "開始行:3", "1ページの行数:60", "1ページ記入項目数:40",
          "項目名(日本語):A", "項目名:B", "KEY表示:C", "型:D", "桁数整数:E", "桁数少数:F"]
SHEET = "xl/worksheets/sheet1.xml"
MEGABYTE = 1 << 20


def good_book():
    book = openpyxl.Workbook()
    book.active["A2"] = "項目"
    out = io.BytesIO()
    book.save(out)
    return out.getvalue()


def rewritten(change):
    """The good book with its parts, as name -> bytes, changed by a function."""
    with zipfile.ZipFile(io.BytesIO(good_book())) as source:
        parts = {name: source.read(name) for name in source.namelist()}
    change(parts)
    out = io.BytesIO()
    with zipfile.ZipFile(out, "w", zipfile.ZIP_DEFLATED) as target:
        for name, data in parts.items():
            target.writestr(name, data)
    return out.getvalue()


def without(name):
    return rewritten(lambda parts: parts.pop(name))


def replaced(name, pattern, replacement):
    def change(parts):
        parts[name], count = re.subn(pattern, replacement, parts[name], flags=re.DOTALL)
        assert count, f"{pattern} is not in {name}"
    return rewritten(change)


def with_part(name, data):
    return rewritten(lambda parts: parts.update({name: data}))


def lying_bomb():
    """A sheet of 64 megabytes whose directory entry speaks of a hundred bytes."""
    book = bytearray(with_part(SHEET, b"<worksheet>" + b" " * (64 * MEGABYTE)))
    true_size = struct.pack("<I", 64 * MEGABYTE + 11)
    place = book.find(true_size)
    while place >= 0:
        book[place:place + 4] = struct.pack("<I", 100)
        place = book.find(true_size)
    return bytes(book)


def many_names():
    return rewritten(lambda parts: parts.update({f"xl/media/image{i}.png": b"" for i in range(30000)}))


def flipped():
    """A byte of a packed part turned over: only the check sum tells."""
    book = bytearray(good_book())
    with zipfile.ZipFile(io.BytesIO(book)) as source:
        info = source.getinfo(SHEET)
    book[info.header_offset + 30 + len(SHEET) + info.compress_size // 2] ^= 0xFF
    return bytes(book)


DAMAGED = {
    "cut in the middle": good_book()[:2000],
    "cut at the end": good_book()[:-30],
    "a byte turned over": flipped(),
    "a sheet that is no XML": replaced(SHEET, b"</sheetData>", b"</sheetDat>"),
    "a sheet cut short": replaced(SHEET, b"</sheetData>.*", b""),
    "a sheet of something else": with_part(SHEET, b"<html/>"),
    "styles that are no XML": with_part("xl/styles.xml", b"\0\1\2 no styles"),
    "a book that is no XML": with_part("xl/workbook.xml", b"<workbook><sheets></workbook>"),
    "relationships that are no XML": with_part("xl/_rels/workbook.xml.rels", b"<Relationships"),
    "no book": without("xl/workbook.xml"),
    "no sheet": without(SHEET),
    "no content types": without("[Content_Types].xml"),
    "no relationships": without("xl/_rels/workbook.xml.rels"),
    "no first relationships": without("_rels/.rels"),
    "a cell outside the sheet": replaced(SHEET, b'r="A2"', b'r="ZZZZ99999999"'),
    "entities": replaced(SHEET, b"<worksheet", b'<!DOCTYPE w [<!ENTITY a "aaaaaaaaaa">]><worksheet'),
    "a bomb": with_part(SHEET, b"<worksheet>" + b" " * (128 * MEGABYTE)),
    "a bomb that lies": lying_bomb(),
    "a bomb that nothing speaks of": with_part("xl/media/image1.bin", bytes(1500 * MEGABYTE // 4)),
    "very many parts": many_names(),
    "a name above the package": with_part("../../evil.xml", b"<a/>"),
    "a name of the whole machine": with_part("/tmp/evil.xml", b"<a/>"),
    "a text": "日本語名,項目名\r\n".encode("cp932") * 50,
    "no byte": b"",
    "a picture": b"\x89PNG\r\n\x1a\n" + bytes(500),
    "an old book's head alone": bytes.fromhex("d0cf11e0a1b11ae1") + bytes(504),
    "a document of another kind": rewritten(lambda parts: parts.update({"[Content_Types].xml": parts["[Content_Types].xml"].replace(
        b"spreadsheetml.sheet.main", b"wordprocessingml.document.main")})),
}


class DamagedTest(RepositoryCase):
    @classmethod
    def setUpClass(cls):
        super().setUpClass()
        cls.programs = os.path.join(cls.folder, "programs")
        cls.data, cls.temp, cls.out = (os.path.join(cls.folder, name) for name in ("data", "temp", "out"))
        for folder in (cls.programs, cls.data, cls.temp, cls.out):
            os.makedirs(folder)
        cls.blank = os.path.join(os.path.dirname(CLI), "assets", "t白紙.xls")
        cls.repository = shutil.copy(cls.sample, os.path.join(cls.folder, "form.mdb"))
        with sqlite3.connect(cls.repository) as db:
            db.execute("update MAS_SYSTEM set 書式ファイル名 = ? where システム名 = ?", (FORM, SYSTEM))
        db.close()
        # With the first command the folders of the user's data come to be.
        done = cls.command("format-file", cls.repository, FORM)
        with open(done.stdout.decode().strip(), "wb") as file:
            file.write("".join(f"KEY_{line}\r\n" for line in PLACES).encode("cp932"))

    @classmethod
    def command(cls, name, repository, *options, path=None):
        environment = dict(os.environ, **({"PATH": path} if path is not None else {}))
        return subprocess.run([CLI, name, "--repository", repository, "--data-folder", cls.data, "--temp-folder", cls.temp,
                               "--program-folder", cls.programs, *options], stdin=subprocess.DEVNULL, capture_output=True,
                              env=environment, timeout=120)

    def layout(self, repository=None, path=None):
        return self.command("layout", repository or self.repository, "--system", SYSTEM, "--table", "受注", "--output-folder",
                            self.out, path=path)

    def files(self):
        """All files but the log."""
        return sorted(os.path.join(folder, name) for folder, _, names in os.walk(self.folder) for name in names
                      if not name.endswith(".log"))

    def put(self, name, data):
        with open(os.path.join(self.programs, name), "wb") as file:
            file.write(data)

    def assert_refused(self, done, before):
        words = done.stderr.decode()
        self.assertEqual(done.returncode, 1, words)
        self.assertRegex(words, r"Excel作成中にエラーが発生しました\.\n +\S+")
        self.assertNotRegex(words, r"std::|basic_string|bad_alloc|terminate|runtime error")
        self.assertNotIn("プリンタ", words)
        self.assertEqual(done.stdout, b"")
        self.assertEqual(self.files(), before)
        return words

    def test_a_good_template_is_filled(self):
        self.put(FORM, good_book())
        done = self.layout()
        self.assertEqual(done.returncode, 0, done.stderr.decode())
        made = done.stdout.decode().strip()
        with open(made, "rb") as file:  # its name ends in .xls, which openpyxl does not care for
            sheet = openpyxl.load_workbook(io.BytesIO(file.read())).active
        os.remove(made)
        self.assertEqual((sheet["A1"].value, sheet["C1"].value, sheet["A2"].value), ("受注", SYSTEM, "項目"))

    def test_damaged_templates(self):
        messages = {}
        for name, data in DAMAGED.items():
            with self.subTest(name):
                self.put(FORM, data)
                messages[name] = self.assert_refused(self.layout(), self.files())
        self.assertLess(resource.getrusage(resource.RUSAGE_CHILDREN).ru_maxrss, 700 * 1024, "kilobytes of memory")
        for name, words in messages.items():
            named = [part for part in (FORM, "xl/", "LibreOffice") if part in words]
            self.assertTrue(named, f"{name}: neither the template nor its part is named: {words}")

    def test_an_old_book_without_the_converter(self):
        self.put(FORM, DAMAGED["an old book's head alone"])
        nowhere = os.path.join(self.folder, "nowhere")
        words = self.assert_refused(self.layout(path=nowhere), self.files())
        self.assertIn("LibreOffice", words)

    def test_a_damaged_blank_book(self):
        shutil.copy(self.blank, os.path.join(self.programs, "t白紙.xls"))
        with open(os.path.join(self.programs, "t白紙.xls"), "r+b") as file:
            file.truncate(3000)
        self.assert_refused(self.layout(self.sample), self.files())


if __name__ == "__main__":
    unittest.main(argv=sys.argv[:1], verbosity=2)
