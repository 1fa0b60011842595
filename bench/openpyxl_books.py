#!/usr/bin/env python3
"""Writes the cells and styles of a workbook again with openpyxl, from nothing, and prints what a book costs the processor
in milliseconds.

usage: openpyxl_books.py PATTERN FOLDER BOOKS
"""
import copy
import os
import sys
import time

import openpyxl


def take_apart(path):
    sheet = openpyxl.load_workbook(path).worksheets[0]
    styles, cells = {}, []
    for row in sheet.iter_rows():
        for cell in row:
            key = tuple(cell._style)
            if key not in styles:
                styles[key] = [copy.copy(part) for part in (cell.font, cell.fill, cell.border, cell.alignment)]
            if type(cell).__name__ != "MergedCell" or cell.has_style:
                cells.append((cell.row, cell.column, getattr(cell, "value", None), key))
    return {"styles": styles, "cells": cells, "merges": [str(merge) for merge in sheet.merged_cells.ranges],
            "heights": {row: d.height for row, d in sheet.row_dimensions.items() if d.height},
            "widths": {letter: d.width for letter, d in sheet.column_dimensions.items()}, "title": sheet.title}


def write(pattern, path):
    book = openpyxl.Workbook()
    sheet = book.active
    sheet.title = pattern["title"]
    for row, column, value, key in pattern["cells"]:
        cell = sheet.cell(row, column, value)
        cell.font, cell.fill, cell.border, cell.alignment = pattern["styles"][key]
    for row, height in pattern["heights"].items():
        sheet.row_dimensions[row].height = height
    for letter, width in pattern["widths"].items():
        sheet.column_dimensions[letter].width = width
    for merge in pattern["merges"]:
        sheet.merge_cells(merge)
    sheet.page_setup.orientation = "landscape"
    sheet.print_title_rows = "1:9"
    book.save(path)


def main(source, folder, books):
    pattern = take_apart(source)
    start = time.process_time()
    for number in range(books):
        write(pattern, os.path.join(folder, f"openpyxl{number}.xlsx"))
    print((time.process_time() - start) * 1000 / books)


if __name__ == "__main__":
    main(sys.argv[1], sys.argv[2], int(sys.argv[3]))
