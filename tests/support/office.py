"""LibreOffice without a window, with a profile of its own, so that it runs beside another one."""

import os
import pathlib
import shutil
import subprocess
import tempfile

import openpyxl


def convert(kind, folder, *files):
    """Converts files to the kind ("pdf", "xlsx", "xlsx:Calc MS Excel 2007 XML") into the folder; gives the new paths.
    One run for all: the start costs more than the work."""
    profile = tempfile.mkdtemp(prefix="qm_office_")
    try:
        subprocess.run(["soffice", f"-env:UserInstallation={pathlib.Path(profile).as_uri()}", "--headless", "--convert-to", kind,
                        "--outdir", folder, *files], check=True, capture_output=True, timeout=300)
    finally:
        shutil.rmtree(profile, ignore_errors=True)
    extension = kind.split(":")[0]
    made = [os.path.join(folder, pathlib.Path(file).stem + "." + extension) for file in files]
    missing = [path for path in made if not os.path.exists(path)]
    if missing:
        raise AssertionError(f"LibreOffice gave no {missing}")
    return made


def values(path):
    """What each sheet's cells hold, as text; an empty cell is none."""
    book = openpyxl.load_workbook(path)
    return {sheet.title: {cell.coordinate: str(cell.value) for row in sheet.iter_rows() for cell in row
                          if cell.value not in (None, "")} for sheet in book.worksheets}


def differences(before, after):
    """The cells that don't hold the same, with both values."""
    places = sorted({(sheet, cell) for book in (before, after) for sheet, cells in book.items() for cell in cells})
    held = [(*place, *(book.get(place[0], {}).get(place[1]) for book in (before, after))) for place in places]
    return [difference for difference in held if difference[2] != difference[3]]


def computed(path, sheet, cell):
    """What the program that wrote the book worked out for a cell."""
    return openpyxl.load_workbook(path, data_only=True)[sheet][cell].value
