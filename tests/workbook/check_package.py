#!/usr/bin/env python3
"""Looks workbooks over for what makes a spreadsheet program offer a repair, or lose what they hold.

usage: check_package.py BOOK...   prints each fault and ends with 1 when there are any
"""
import posixpath
import re
import sys
from collections import Counter

import ooxml_rules as rules
from opc_package import LINKS, MAIN, Package, local

SHEET_DRAWING = f"{{{rules.SHEET_DRAWING}}}"
CELL = re.compile(r"\$?([A-Z]{1,3})\$?([1-9][0-9]{0,6})$")
OFFICE = "{urn:schemas-microsoft-com:office:office}"
LAST_ROW, LAST_COLUMN = 1048576, 16384


def column_number(letters):
    number = 0
    for letter in letters:
        number = number * 26 + ord(letter) - 64
    return number


def cell_at(text):
    """(row, column), or nothing for what is no cell of a sheet."""
    match = CELL.match(text or "")
    if not match:
        return None
    row, column = int(match[2]), column_number(match[1])
    return (row, column) if row <= LAST_ROW and column <= LAST_COLUMN else None


def range_at(text):
    """((row, column), (row, column)), or nothing."""
    first, _, last = (text or "").partition(":")
    corners = cell_at(first), cell_at(last or first)
    if None in corners or corners[0][0] > corners[1][0] or corners[0][1] > corners[1][1]:
        return None
    return corners


def units(text):
    return len(text.encode("utf-16-le")) // 2


class Book(Package):
    """A workbook; `faults` holds a line for each thing that is wrong."""

    def check_book(self):
        self.book = next((target for kind, target in self.links[""].values() if kind == "officeDocument"), None)
        if self.book not in self.names:
            self.fault("", "no book in the package")
            return
        links = self.links[self.book]
        ends = {}
        for kind, target in links.values():
            ends.setdefault(kind, target)
        self.strings = self.used_strings = 0
        self.formats = self.differences = 1
        if "sharedStrings" in ends:
            self.strings = len(self.tree(ends["sharedStrings"]).findall(MAIN + "si"))
        if "styles" in ends:
            self.check_styles(ends["styles"], self.tree(ends["styles"]))
        else:
            self.fault(self.book, "no styles")
        self.check_sheets(links)
        if "sharedStrings" in ends:
            root = self.tree(ends["sharedStrings"])
            for attribute, number in (("uniqueCount", self.strings), ("count", self.used_strings)):
                if root.get(attribute) not in (None, str(number)):
                    self.fault(ends["sharedStrings"], f"{attribute} is {root.get(attribute)}, but there are {number}")

    def check_styles(self, part, root):
        sizes = {local(items.tag): len(items) for items in root}
        for items in root:
            if items.get("count") not in (None, str(len(items))):
                self.fault(part, f"{local(items.tag)}: count is {items.get('count')}, but there are {len(items)}")
        numbers = {int(item.get("numFmtId", 0)) for item in root.iter(MAIN + "numFmt")}
        for items in ("fonts", "fills", "borders", "cellStyleXfs", "cellXfs", "cellStyles"):
            if not sizes.get(items):
                self.fault(part, f"no {items}")
        for items in ("cellStyleXfs", "cellXfs"):
            for place, item in enumerate(root.findall(f"{MAIN}{items}/{MAIN}xf")):
                ends = [("fontId", "fonts"), ("fillId", "fills"), ("borderId", "borders")]
                for attribute, target in ends + ([("xfId", "cellStyleXfs")] if items == "cellXfs" else []):
                    if int(item.get(attribute, 0)) >= sizes.get(target, 0):
                        self.fault(part, f"{items} {place}: no {attribute} {item.get(attribute)}")
                number = int(item.get("numFmtId", 0))
                if number >= 164 and number not in numbers:
                    self.fault(part, f"{items} {place}: no number format {number}")
        names = Counter(item.get("name") for item in root.iter(MAIN + "cellStyle"))
        for item in root.iter(MAIN + "cellStyle"):
            if int(item.get("xfId", 0)) >= sizes.get("cellStyleXfs", 0) or names[item.get("name")] > 1:
                self.fault(part, f"the style {item.get('name')} is twice there or without a format")
        patterns = [fill.find(MAIN + "patternFill") for fill in root.findall(f"{MAIN}fills/{MAIN}fill")[:2]]
        if [pattern.get("patternType", "none") if pattern is not None else None for pattern in patterns] != ["none", "gray125"]:
            self.fault(part, "the first two fills are not those that readers take for granted")
        self.formats, self.differences = sizes.get("cellXfs", 0), sizes.get("dxfs", 0)

    def check_sheets(self, links):
        root = self.tree(self.book)
        sheets = root.findall(f"{MAIN}sheets/{MAIN}sheet")
        for what, keys in (("name", [sheet.get("name", "").lower() for sheet in sheets]),
                           ("sheetId", [sheet.get("sheetId") for sheet in sheets]),
                           ("relationship", [sheet.get(LINKS + "id") for sheet in sheets])):
            if len(set(keys)) != len(keys):
                self.fault(self.book, f"two sheets of one {what}")
        for sheet in sheets:
            name = sheet.get("name", "")
            if not 1 <= units(name) <= 31 or re.search(r"[:\\/?*\[\]]|^'|'$", name):
                self.fault(self.book, f"{name!r} is no sheet's name")
        if not sheets or all(sheet.get("state", "visible") != "visible" for sheet in sheets):
            self.fault(self.book, "no sheet to see")
        for view in root.iter(MAIN + "workbookView"):
            if int(view.get("activeTab", 0)) >= len(sheets) or int(view.get("firstSheet", 0)) >= len(sheets):
                self.fault(self.book, "no such sheet in view")
        keys = [(name.get("name", "").lower(), name.get("localSheetId")) for name in root.iter(MAIN + "definedName")]
        for name, key in zip(root.iter(MAIN + "definedName"), keys):
            if keys.count(key) > 1 or int(key[1] or 0) >= len(sheets) or not (name.text or "").strip():
                self.fault(self.book, f"the name {key} is twice there, empty, or of no sheet")
        selected = 0
        for sheet in sheets:
            kind, part = links.get(sheet.get(LINKS + "id"), (None, None))
            if kind == "worksheet" and part in self.names:
                self.check_sheet(part, self.tree(part))
                selected += sum(view.get("tabSelected") in ("1", "true") for view in self.tree(part).iter(MAIN + "sheetView"))
        if selected > 1:
            self.fault(self.book, "several sheets are selected: what a person types goes to all of them")

    # --- a sheet

    def check_sheet(self, part, root):
        self.check_columns(part, root)
        self.check_cells(part, root)
        merges = [(item.get("ref"), range_at(item.get("ref"))) for item in root.iter(MAIN + "mergeCell")]
        for text, merge in merges:
            if merge is None or merge[0] == merge[1]:
                self.fault(part, f"{text} is no merged range")
        good = sorted(merge for _, merge in merges if merge)
        for place, one in enumerate(good):
            for other in good[place + 1:]:
                if other[0][0] > one[1][0]:
                    break
                if one[0][1] <= other[1][1] and other[0][1] <= one[1][1]:
                    self.fault(part, f"merged ranges overlap: {one} {other}")
        for items in ("mergeCells", "dataValidations", "cols", "hyperlinks", "oleObjects", "tableParts", "rowBreaks"):
            for element in root.findall(MAIN + items):
                if not len(element) or element.get("count") not in (None, str(len(element))):
                    self.fault(part, f"{items} is empty or counts wrongly")
        for element in root.iter():
            for reference in (element.get("sqref") or "").split():
                if range_at(reference) is None:
                    self.fault(part, f"{local(element.tag)}: {reference} is no range")
            if int(element.get("dxfId", 0)) >= max(self.differences, 1) or ("dxfId" in element.attrib and not self.differences):
                self.fault(part, f"no difference {element.get('dxfId')}")
        dimension = root.find(MAIN + "dimension")
        if dimension is not None and range_at(dimension.get("ref")) is None:
            self.fault(part, "the dimension is no range")
        for element in root.findall(f"{MAIN}headerFooter/*"):
            if units(element.text or "") > 255:
                self.fault(part, f"{local(element.tag)} is longer than 255 characters")
        for rule in root.iter(MAIN + "formula1"):
            if (rule.text or "").startswith('"') and units(rule.text) > 257:
                self.fault(part, "a validation's list is longer than 255 characters")
        self.check_drawings(part, root)

    def check_columns(self, part, root):
        last = 0
        for column in root.iter(MAIN + "col"):
            first, end = int(column.get("min", 0)), int(column.get("max", 0))
            if not last < first <= end <= LAST_COLUMN or not 0 <= float(column.get("width", 8)) <= 255:
                self.fault(part, f"the columns {first} to {end} overlap, or are too wide")
            if int(column.get("style", 0)) >= self.formats:
                self.fault(part, f"column {first}: no format {column.get('style')}")
            last = end

    def check_cells(self, part, root):
        last_row = 0
        for row in root.iterfind(f"{MAIN}sheetData/{MAIN}row"):
            number = int(row.get("r", 0))
            if not last_row < number <= LAST_ROW:
                self.fault(part, f"row {number} behind row {last_row}")
            if int(row.get("s", 0)) >= self.formats or float(row.get("ht", 0)) > 409.5:
                self.fault(part, f"row {number}: no such format, or too high")
            last_row, last_column = number, 0
            for cell in row.iterfind(MAIN + "c"):
                at = cell_at(cell.get("r"))
                if at is None or at[0] != number or at[1] <= last_column:
                    self.fault(part, f"the cell {cell.get('r')} is out of place")
                    continue
                last_column = at[1]
                self.check_cell(part, cell)

    def check_cell(self, part, cell):
        where, kind, value = cell.get("r"), cell.get("t", "n"), cell.findtext(MAIN + "v")
        if int(cell.get("s", 0)) >= self.formats:
            self.fault(part, f"{where}: no format {cell.get('s')}")
        try:
            if kind == "s":
                self.used_strings += 1
                good = 0 <= int(value) < self.strings
            elif kind == "b":
                good = value in ("0", "1")
            elif kind == "e":
                good = value in rules.ERROR_CODES
            elif kind == "n":
                good = value is None or float(value) is not None
            else:
                good = kind in ("str", "inlineStr", "d")
        except (TypeError, ValueError):
            good = False
        if not good:
            self.fault(part, f"{where}: no value {value!r} of the type {kind}")
        formula = cell.find(MAIN + "f")
        if formula is not None and (formula.text or "").startswith("="):
            self.fault(part, f"{where}: a formula with two equal signs")

    def check_drawings(self, part, root):
        links = self.links.get(part, {})
        kinds = Counter(kind for kind, _ in links.values())
        for kind in ("drawing", "comments"):
            if kinds[kind] > 1:
                self.fault(part, f"{kinds[kind]} relationships of the kind {kind}")
        drawing = root.find(MAIN + "drawing")
        if drawing is not None:
            self.check_drawing(links.get(drawing.get(LINKS + "id"), (None, None))[1])
        legacy = root.find(MAIN + "legacyDrawing")
        shapes = Counter()
        if legacy is not None:
            target = links.get(legacy.get(LINKS + "id"), (None, None))[1]
            if target in self.names:
                shapes = self.legacy_shapes(target)
        for identity, count in shapes.items():
            if count > 1:
                self.fault(part, f"the legacy drawing has {count} shapes {identity}")
        objects = {item.get("shapeId") for item in root.iter(MAIN + "oleObject")}
        for identity in objects:
            if f"_x0000_s{identity}" not in shapes:
                self.fault(part, f"the object {identity} has no shape in the legacy drawing")
        if "comments" in kinds and legacy is None:
            self.fault(part, "comments without their boxes")

    def legacy_shapes(self, part):
        """How often each shape number stands in a legacy drawing."""
        tree = self.tree(part)
        clusters = {number for item in tree.iter(OFFICE + "idmap") for number in item.get("data", "").split(",")}
        shapes = Counter()
        for item in tree.iter("{urn:schemas-microsoft-com:vml}shape"):
            identity = item.get(OFFICE + "spid") or item.get("id", "")
            shapes[identity] += 1
            number = re.match(r"_x0000_s(\d+)$", identity)
            if number is None or str(int(number[1]) // 1024) not in clusters:
                self.fault(part, f"the shape {identity} lies outside the numbers of its drawing")
        return shapes

    def check_drawing(self, part):
        if part not in self.names:
            return
        root = self.tree(part)
        shapes = Counter(item.get("id") for item in root.iter(SHEET_DRAWING + "cNvPr"))
        for identity, count in shapes.items():
            if count > 1:
                self.fault(part, f"{count} shapes of the id {identity}")
        for end in root.iter():
            if local(end.tag) in ("stCxn", "endCxn") and end.get("id") not in shapes:
                self.fault(part, f"a connector ends at {end.get('id')}, which is not there")
        for anchor in root.iter(SHEET_DRAWING + "twoCellAnchor"):
            corners = [[int(anchor.findtext(f"{SHEET_DRAWING}{corner}/{SHEET_DRAWING}{axis}", "-1")) for axis in ("row", "col")]
                       for corner in ("from", "to")]
            if min(map(min, corners)) < 0 or corners[0][0] > corners[1][0] or corners[0][1] > corners[1][1]:
                self.fault(part, f"an anchor from {corners[0]} to {corners[1]}")


def faults(path):
    """What is wrong with the book in the file: a line each, none for a good one."""
    with open(path, "rb") as file:
        return Book(file.read(), posixpath.basename(path)).faults


if __name__ == "__main__":
    found = [line for path in sys.argv[1:] for line in faults(path)]
    print("\n".join(found))
    sys.exit(1 if found else 0)
