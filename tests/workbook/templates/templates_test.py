#!/usr/bin/env python3
"""Fills templates that other programs wrote, and proves that all but the filled cells is as before or moved as it should.

usage: templates_test.py CLI SAMPLE-MAKER FILL-TEMPLATE MAKE-XLSXWRITER
"""

import os
import posixpath
import re
import shutil
import sqlite3
import subprocess
import sys
import unittest
import xml.etree.ElementTree as ET
import zipfile

import openpyxl

HERE = os.path.dirname(os.path.abspath(__file__))
sys.path[:0] = [os.path.join(HERE, os.pardir), os.path.join(HERE, os.pardir, os.pardir, "support")]
from check_package import SHEET_DRAWING, faults  # noqa: E402
from makers import FIRST, LAST, make_all  # noqa: E402
from office import computed, convert, differences, values  # noqa: E402
from opc_package import MAIN, local  # noqa: E402
from repositories import RepositoryCase  # noqa: E402

FILL, MAKER = sys.argv[3:5]
SHEET = "様式"
REFERENCE = re.compile(r"((?:'[^']+'|[^\s'!(),:+*/=-]+)!)?(\$?[A-Z]{1,3}\$?)(\d+)(?::(\$?[A-Z]{1,3}\$?)(\d+))?(?![\w(])")


class Move:
    """What becomes of the rows of the sheet when `count` rows come before row `at` or, for a negative count, go from there."""

    def __init__(self, at, count):
        self.at, self.count = at, count

    def start(self, row):
        if row < self.at:
            return row
        return max(row + self.count, self.at)

    def end(self, row):
        if row < self.at:
            return row
        return max(row + self.count, self.at - 1 if self.count < 0 else row + self.count)

    def text(self, text, at_home):
        """A formula or a list of ranges, with the rows moved where it speaks of the sheet."""
        def moved(match):
            sheet, column, row, column2, row2 = match.groups()
            if (sheet or "").strip("'!") != SHEET and (sheet or not at_home):
                return match[0]
            first = f"{sheet or ''}{column}{self.start(int(row))}"
            return first if column2 is None else f"{first}:{column2}{self.end(int(row2))}"
        return REFERENCE.sub(moved, text or "")


def text_of(item):
    return "".join(text.text or "" for text in item.iter(MAIN + "t"))


class Book:
    """The parts of a package, and the sheet's XML with texts in place of numbers of texts."""

    def __init__(self, path):
        with zipfile.ZipFile(path) as source:
            self.parts = {name: source.read(name) for name in source.namelist()}
        # a program may keep all texts in the cells
        self.strings = [text_of(item) for part in self.targets("xl/workbook.xml", "sharedStrings") for item in self.tree(part)]

    def tree(self, part):
        return ET.fromstring(self.parts[part])

    def targets(self, part, kind):
        folder, name = posixpath.split(part)
        rels = posixpath.join(folder, "_rels", name + ".rels")
        if rels not in self.parts:
            return []
        return [posixpath.normpath(posixpath.join("/", folder, item.get("Target"))).lstrip("/")
                for item in ET.fromstring(self.parts[rels]) if item.get("Type").endswith("/" + kind)]

    def sheet_part(self, name):
        sheets = self.tree("xl/workbook.xml").find(MAIN + "sheets")
        links = {item.get("Id"): item.get("Target") for item in ET.fromstring(self.parts["xl/_rels/workbook.xml.rels"])}
        identity = next(sheet.attrib for sheet in sheets if sheet.get("name") == name)
        target = links[next(value for key, value in identity.items() if key.endswith("}id"))]
        return posixpath.normpath(posixpath.join("/xl", target)).lstrip("/")

    def names(self):
        return {(item.get("name"), item.get("localSheetId")): item.text
                for item in self.tree("xl/workbook.xml").iter(MAIN + "definedName")}

    def cells(self, part):
        """(row, column letters) -> (format, what it holds); rows -> their attributes."""
        cells, rows = {}, {}
        for row in self.tree(part).iterfind(f"{MAIN}sheetData/{MAIN}row"):
            number = int(row.get("r"))
            rows[number] = {key: row.get(key) for key in ("ht", "hidden", "s") if row.get(key) not in (None, "0", "false")}
            for cell in row:
                formula, value = cell.findtext(MAIN + "f"), cell.findtext(MAIN + "v")
                if formula is not None:
                    value = "=" + formula
                elif cell.get("t") in ("s", "inlineStr"):
                    value = self.strings[int(value)] if cell.get("t") == "s" else text_of(cell)
                cells[number, re.sub(r"\d", "", cell.get("r"))] = cell.get("s", "0"), value
        return cells, rows

    def around_cells(self, part):
        """The elements of a sheet but its cells: name -> the elements."""
        found = {}
        for element in self.tree(part):
            if local(element.tag) not in ("sheetData", "dimension"):
                found.setdefault(local(element.tag), []).append(element)
        return found


def canonical(element):
    return ET.canonicalize(ET.tostring(element, encoding="unicode"), strip_text=True)


class TemplatesTest(RepositoryCase):
    @classmethod
    def setUpClass(cls):
        super().setUpClass()
        cls.templates = make_all(cls.folder, MAKER)
        cls.packages = {name: path for name, path in cls.templates.items() if name != "old"}

    def fill(self, name, *lines):
        result = os.path.join(self.folder, f"{self._testMethodName}_{os.path.basename(self.packages[name])}")
        done = subprocess.run([FILL, self.packages[name], result], input="\n".join(["sheet\t" + SHEET, *lines]), text=True,
                              capture_output=True)
        self.assertEqual(done.returncode, 0, done.stderr)
        # what another program left open to doubt may stay so
        known = {fault.split(": ", 1)[1] for fault in faults(self.packages[name])}
        self.assertEqual([fault for fault in faults(result) if fault.split(": ", 1)[1] not in known], [])
        openpyxl.load_workbook(result)
        return Book(self.packages[name]), Book(result), result

    def assert_parts_kept(self, before, after, changed):
        added = set(after.parts) - set(before.parts)
        if added:  # a first list of texts, and what speaks of it
            self.assertEqual(added, set(after.targets("xl/workbook.xml", "sharedStrings")))
            changed = {*changed, "[Content_Types].xml", "xl/_rels/workbook.xml.rels"}
        kept = [name for name in before.parts if name not in changed]
        self.assertGreater(len(kept), 3)
        self.assertEqual([name for name in kept if after.parts.get(name) != before.parts[name]], [])

    def assert_cells(self, before, after, part, move, filled):
        """All cells of the old sheet stand where the move puts them, with what they held and how they looked."""
        old, old_rows = before.cells(part)
        new, new_rows = after.cells(part)
        at_home = part == before.sheet_part(SHEET)
        gone = range(move.at, move.at - move.count) if at_home else ()
        shift = move.start if at_home else lambda row: row
        expected = {(shift(row), column): (style, move.text(held, at_home) if (held or "").startswith("=") else held)
                    for (row, column), (style, held) in old.items() if row not in gone}
        for cell, held in filled.items():
            expected[cell] = (expected.get(cell, new.get(cell))[0], held)
        for cell in [cell for cell in new if cell not in expected and move.at <= cell[0] < move.at + move.count]:
            del new[cell]  # the new rows
        self.assertEqual({cell: (expected.get(cell), new.get(cell)) for cell in {*expected, *new}
                          if expected.get(cell) != new.get(cell)}, {})
        self.assertEqual({shift(row): look for row, look in old_rows.items() if row not in gone and look},
                         {row: look for row, look in new_rows.items() if look and not (at_home and move.at <= row < move.at + move.count)})

    def assert_elements(self, before, after, part, move):
        old, new = before.around_cells(part), after.around_cells(part)
        self.assertEqual(list(new), list(old))
        at_home = part == before.sheet_part(SHEET)
        for name, elements in old.items():
            for element in elements:
                for item in element.iter():
                    for key in ("ref", "sqref", "activeCell"):
                        if key in item.attrib:
                            item.set(key, move.text(item.get(key), at_home))
                    if local(item.tag) in ("formula", "formula1", "formula2", "f"):
                        item.text = move.text(item.text, at_home)
                    elif local(item.tag) == "sqref":
                        item.text = move.text(item.text, at_home)
            self.assertEqual([canonical(element) for element in new[name]], [canonical(element) for element in elements], name)

    def anchors(self, book):
        """The rows of each anchor's corners in the sheet's drawing, from 0, behind what the anchor is tied to."""
        drawing, = book.targets(book.sheet_part(SHEET), "drawing")
        return [(anchor.get("editAs", "cells"), *(int(corner.findtext(SHEET_DRAWING + "row")) for corner in anchor if local(corner.tag) in ("from", "to")))
                for anchor in book.tree(drawing)]

    def chart_formulas(self, book):
        return {part: [item.text for item in book.tree(part).iter() if local(item.tag) == "f"] for part in sorted(book.parts)
                if re.match(r"xl/charts/chart\d+\.xml$", part)}

    def assert_moved(self, before, after, move, filled):
        sheet, other = before.sheet_part(SHEET), before.sheet_part("集計")
        drawing, = before.targets(sheet, "drawing")
        moving = {sheet, other, drawing, "xl/workbook.xml", "xl/sharedStrings.xml", "xl/styles.xml", *self.chart_formulas(before),
                  *before.targets(sheet, "comments"), *before.targets(sheet, "vmlDrawing")}
        self.assert_parts_kept(before, after, moving)
        for part in (sheet, other):
            self.assert_cells(before, after, part, move, filled if part == sheet else {})
            self.assert_elements(before, after, part, move)
        self.assertEqual(after.names(), {key: move.text(text, False) for key, text in before.names().items()})
        anchors = self.anchors(before)
        self.assertTrue(anchors)
        self.assertEqual(self.anchors(after), [
            (tied, *(row if tied == "absolute" else move.start(row + 1) - 1 for row in rows)) for tied, *rows in anchors])
        formulas = self.chart_formulas(before)
        self.assertTrue(any(any(texts) for texts in formulas.values()))
        self.assertEqual(self.chart_formulas(after), {part: [move.text(text, False) for text in texts] for part, texts in formulas.items()})
        for comments in before.targets(sheet, "comments"):
            self.assertEqual([move.text(item.get("ref"), True) for item in before.tree(comments).iter(MAIN + "comment")],
                             [item.get("ref") for item in after.tree(comments).iter(MAIN + "comment")])

    def assert_office_agrees(self, results, cell, total):
        """LibreOffice opens and prints the books, loses no value, and works out the sum in the cell."""
        paths = [shutil.copy(path, os.path.join(self.folder, f"result{place}{os.path.splitext(path)[1]}"))
                 for place, path in enumerate(results)]
        for path in convert("pdf", os.path.join(self.folder, self._testMethodName + "_pages"), *paths):
            self.assertGreater(os.path.getsize(path), 1000)
        for path, copy in zip(paths, convert("xlsx", os.path.join(self.folder, self._testMethodName + "_again"), *paths)):
            before = {sheet: {cell: value for cell, value in cells.items() if not value.startswith("=")}
                      for sheet, cells in values(path).items()}
            after = {sheet: {cell: value for cell, value in cells.items() if not value.startswith("=")}
                     for sheet, cells in values(copy).items()}
            self.assertEqual(differences(before, after), [], path)
            self.assertEqual(computed(copy, SHEET, cell), total, path)

    @staticmethod
    def without_calculation(book):
        """The book's own part but for what says when formulas are worked out: their old results don't count any more."""
        root = book.tree("xl/workbook.xml")
        for element in root.findall(MAIN + "calcPr"):
            root.remove(element)
        return canonical(root)

    def test_filling_changes_nothing_else(self):
        results = []
        for name in self.packages:
            with self.subTest(name):
                before, after, path = self.fill(name, "text\tB10\t顧客ID", "text\tC10\tcustomer_id", "number\tE11\t100", "text\tA1\t顧客")
                part = before.sheet_part(SHEET)
                self.assert_parts_kept(before, after, {part, "xl/sharedStrings.xml", "xl/workbook.xml"})
                self.assertEqual(self.without_calculation(after), self.without_calculation(before))
                still = Move(10 ** 7, 0)
                self.assert_cells(before, after, part, still,
                                  {(10, "B"): "顧客ID", (10, "C"): "customer_id", (11, "E"): "100", (1, "A"): "顧客"})
                self.assert_elements(before, after, part, still)
                results.append(path)
        self.assert_office_agrees(results, "E51", 820 + 98)

    def test_inserted_rows_move_what_hangs_on_rows(self):
        results = []
        for name in self.packages:
            with self.subTest(name):
                before, after, path = self.fill(name, "insert\t12\t5", *(f"copy\t11\t{row}" for row in range(12, 17)), "text\tB10\t顧客ID")
                self.assert_moved(before, after, Move(12, 5), {(10, "B"): "顧客ID"})
                cells, rows = after.cells(after.sheet_part(SHEET))
                for row in range(12, 17):
                    self.assertEqual([cells[row, column] for column in "ABCDEFGH"], [cells[11, column] for column in "ABCDEFGH"])
                    self.assertEqual(rows[row], rows[11])
                results.append(path)
        self.assert_office_agrees(results, "E56", 820 + 5 * 2)

    def test_deleted_rows_take_along_what_hangs_on_them_alone(self):
        for name in self.packages:
            with self.subTest(name):
                before, after, _ = self.fill(name, "delete\t20\t29")
                self.assert_moved(before, after, Move(20, -10), {})

    def test_rows_at_the_edges(self):
        """Rows before the first field row push all ranges down whole; rows behind the last one leave them as they are."""
        for name in self.packages:
            with self.subTest(name):
                before, after, _ = self.fill(name, f"insert\t{FIRST}\t3")
                self.assert_moved(before, after, Move(FIRST, 3), {})
                before, after, _ = self.fill(name, f"insert\t{LAST + 1}\t3")
                self.assert_moved(before, after, Move(LAST + 1, 3), {})

    def test_a_new_name_is_known_everywhere(self):
        for name in self.packages:
            with self.subTest(name):
                before, after, path = self.fill(name, "rename\t受注 '22")
                self.assertFalse([part for part, data in after.parts.items() if part.endswith(".xml") and f"{SHEET}!".encode() in data])
                quoted = "'受注 ''22'!"
                self.assertEqual(after.names(), {key: text.replace(f"'{SHEET}'!", f"{SHEET}!").replace(f"{SHEET}!", quoted)
                                                 for key, text in before.names().items()})
                self.assertEqual(openpyxl.load_workbook(path)["集計"]["A2"].value.replace("$", ""), f"={quoted}E51")

    def test_the_layout_command_fills_them(self):
        programs, out = (os.path.join(self.folder, name) for name in ("programs", "out"))
        for folder in (programs, out):
            os.makedirs(folder)
        repository = shutil.copy(self.sample, os.path.join(self.folder, "form.mdb"))
        system = "販売管理_PostgreSQL"
        fields = self.long_table(repository, system)
        for name, template in self.templates.items():
            with self.subTest(name):
                form = os.path.basename(shutil.copy(template, os.path.join(programs, name + os.path.splitext(template)[1])))
                with sqlite3.connect(repository) as db:
                    db.execute("update MAS_SYSTEM set 書式ファイル名 = ? where システム名 = ?", (form, system))
                db.close()
                done = self.run_command("format-file", repository, form)
                with open(done.stdout.decode().strip(), "wb") as file:
                    file.write("".join(f"KEY_{line}\r\n" for line in (
                        "日本語名:C1", "TABLE_NAME:E1", "システム名:G1", "作成日:H1", f"開始行:{FIRST}", "1ページの行数:60",
                        f"1ページ記入項目数:{LAST - FIRST + 1}", "項目名(日本語):B", "項目名:C", "KEY表示:A", "型:D", "桁数整数:G",
                        "桁数少数:H", "備考:F")).encode("cp932"))
                done = self.run_command("layout", repository, "--program-folder", programs, "--system", system,
                                        "--table", "長い表", "--output-folder", out)
                self.assertEqual(done.returncode, 0, done.stderr.decode())
                made = shutil.copy(done.stdout.decode().strip(), os.path.join(out, name + ".xlsx"))
                sheet = openpyxl.load_workbook(made)["長い表"]
                self.assertEqual((sheet["C1"].value, sheet["E1"].value, sheet["G1"].value), ("長い表", "long_table", system))
                self.assertEqual([(sheet.cell(row, 2).value, sheet.cell(row, 4).value) for row in range(FIRST, FIRST + fields)],
                                 [(f"項目{i}", "varchar") for i in range(1, fields + 1)])
                moved = fields - (LAST - FIRST + 1)
                self.assertEqual(sheet.cell(52 + moved, 1).value, "備考欄")
                self.assertEqual(sheet.cell(51 + moved, 5).value, f"=SUM(E{FIRST}:E{LAST + moved})")
                self.assertIn(f"A{52 + moved}:D{52 + moved}", [str(merge) for merge in sheet.merged_cells.ranges])
                self.assertEqual(str(sheet.data_validations.dataValidation[0].sqref), f"F{FIRST}:F{LAST + moved}")
                if name != "old":
                    known = {fault.split(": ", 1)[1] for fault in faults(template)}
                    self.assertEqual([fault for fault in faults(made) if fault.split(": ", 1)[1] not in known], [])

    @staticmethod
    def long_table(repository, system):
        """A table of more fields than the form has rows."""
        fields = 45
        with sqlite3.connect(repository) as db:
            identity = db.execute("select max(ID) + 1 from MAS_TABLEINFO").fetchone()[0]
            db.execute("insert into MAS_TABLEINFO(ID, システム名, テーブル名, 日本語名, 分類, ファイル種別, 削除フラグ, 修正許可, 全システム共通)"
                       " values(?, ?, 'long_table', '長い表', 'マスタ', 'PostgreSQL', 0, -1, 0)", (identity, system))
            db.executemany("insert into MAS_TABLEDETAILES(ID, ROWNO, 表示順, 日本語名, 項目名, KEY, 型, 整数桁数, Null値)"
                           " values(?, ?, ?, ?, ?, 0, 'varchar', 10, 'NULL')",
                           [(identity, i, i, f"項目{i}", f"f{i}") for i in range(1, fields + 1)])
        db.close()
        return fields


if __name__ == "__main__":
    unittest.main(argv=sys.argv[:1], verbosity=2)
