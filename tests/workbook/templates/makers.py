"""Templates as other programs write them. All have one form, so that one test can look at them:

sheet 様式: title A1:B1 merged, headings in row 9, field rows 10 to 49 with numbers in E, a list to choose from in F10:F49, a
condition on E10:E49, =SUM(E10:E49) in E51, A52:D52 merged, a chart of E10:E49 and (where the program can) a picture below that; print area
A1:H70, rows 1 to 9 on each page, the name 明細 for A10:H49. Sheet 集計: formulas that speak of 様式, and 手を触れない in A3.
"""

import base64
import os
import struct
import subprocess
import zlib

import openpyxl
from openpyxl.chart import BarChart, Reference
from openpyxl.comments import Comment
from openpyxl.formatting.rule import CellIsRule, ColorScaleRule
from openpyxl.styles import Border, Font, PatternFill, Side
from openpyxl.workbook.defined_name import DefinedName
from openpyxl.worksheet.datavalidation import DataValidation
from openpyxl.worksheet.table import Table

from office import convert

HEADS = ["No.", "項目名", "物理名", "型", "桁数", "分類", "備考", "日付"]
FIRST, LAST = 10, 49


def picture():
    """A small red PNG."""
    def chunk(kind, data):
        return struct.pack(">I", len(data)) + kind + data + struct.pack(">I", zlib.crc32(kind + data))

    side = 24
    lines = (b"\0" + b"\xd0\x20\x20" * side) * side
    return (b"\x89PNG\r\n\x1a\n" + chunk(b"IHDR", struct.pack(">IIBBBBB", side, side, 8, 2, 0, 0, 0))
            + chunk(b"IDAT", zlib.compress(lines)) + chunk(b"IEND", b""))


def by_openpyxl(path):
    book = openpyxl.Workbook()
    sheet, other = book.active, book.create_sheet("集計")
    sheet.title = "様式"
    sheet["A1"] = "定義書"
    sheet["A1"].font = Font(name="ＭＳ Ｐゴシック", size=16, bold=True)
    sheet.merge_cells("A1:B1")
    thin = Side(style="thin")
    for column, head in enumerate(HEADS, 1):
        sheet.cell(9, column, head).fill = PatternFill("solid", fgColor="FFDDEBF7")
        for row in range(FIRST, LAST + 1):
            sheet.cell(row, column).border = Border(thin, thin, thin, thin)
    for row in range(FIRST, LAST + 1):
        sheet.cell(row, 5, row - FIRST + 1)
        sheet.row_dimensions[row].height = 18
    sheet["E51"] = "=SUM(E10:E49)"
    sheet["A52"] = "備考欄"
    sheet.merge_cells("A52:D52")
    sheet["A53"] = "案内"
    sheet["A53"].hyperlink = "https://example.org/"
    sheet["B53"].comment = Comment("ここに承認印", "検査")
    choices = DataValidation(type="list", formula1='"マスタ,実績,その他"', allow_blank=True)
    choices.add("F10:F49")
    sheet.add_data_validation(choices)
    sheet.conditional_formatting.add("E10:E49", CellIsRule("greaterThan", ["30"], font=Font(color="FFFF0000")))
    sheet.conditional_formatting.add("A10:A49", ColorScaleRule(start_type="min", start_color="FFFFFF", end_type="max", end_color="63BE7B"))
    sheet.auto_filter.ref = "A9:H49"
    sheet.print_area = "A1:H70"
    sheet.print_title_rows = "1:9"
    sheet.page_setup.orientation = "landscape"
    sheet.oddHeader.left.text = "会社名"
    sheet.freeze_panes = "A10"
    chart = BarChart()
    chart.add_data(Reference(sheet, min_col=5, min_row=FIRST, max_row=LAST))
    sheet.add_chart(chart, "D56")
    book.defined_names.append(DefinedName("明細", attr_text="様式!$A$10:$H$49"))
    other["A1"], other["A2"], other["A3"] = "=SUM(様式!E10:E49)", "=様式!E51", "手を触れない"
    other["A5"], other["B5"], other["A6"], other["B6"] = "品", "数", "a", 1
    other.add_table(Table(displayName="表1", ref="A5:B6"))
    book.save(path)


def by_xlsxwriter(path, picture_file, maker, macros=None):
    subprocess.run([maker, path, picture_file, *([macros] if macros else [])], check=True)


def _office_rows():
    def cell(text="", more=""):
        return f'<table:table-cell table:style-name="ce1" {more}>{f"<text:p>{text}</text:p>" if text else ""}</table:table-cell>'

    def number(value, more=""):
        return cell(str(value), f'office:value-type="float" office:value="{value}" {more}')

    yield ('<table:table-row><table:table-cell table:style-name="ce1" table:number-columns-spanned="2"'
           ' table:number-rows-spanned="1" office:value-type="string"><text:p>定義書</text:p></table:table-cell><table:covered-table-cell/>'
           "</table:table-row>")
    yield '<table:table-row table:number-rows-repeated="7"><table:table-cell/></table:table-row>'
    yield "<table:table-row>" + "".join(cell(head, 'office:value-type="string"') for head in HEADS) + "</table:table-row>"
    for row in range(FIRST, LAST + 1):
        cells = "".join(number(row - FIRST + 1) if column == 5 else
                        cell("", 'table:content-validation-name="val1"' if column == 6 else "") for column in range(1, 9))
        yield f"<table:table-row>{cells}</table:table-row>"
    yield "<table:table-row><table:table-cell/></table:table-row>"
    yield ('<table:table-row><table:table-cell table:number-columns-repeated="4"/><table:table-cell table:formula="of:=SUM([.E10:.E49])"'
           ' office:value-type="float" office:value="820"><text:p>820</text:p></table:table-cell></table:table-row>')
    yield ('<table:table-row><table:table-cell table:number-columns-spanned="4" table:number-rows-spanned="1" office:value-type="string">'
           '<text:p>備考欄</text:p></table:table-cell><table:covered-table-cell table:number-columns-repeated="3"/></table:table-row>')
    yield ('<table:table-row><table:table-cell office:value-type="string"><text:p><text:a xlink:href="https://example.org/">案内</text:a></text:p>'
           '</table:table-cell><table:table-cell><office:annotation><text:p>ここに承認印</text:p></office:annotation></table:table-cell></table:table-row>')


def _office_chart():
    return ('<draw:frame svg:width="9cm" svg:height="6cm" svg:x="6cm" svg:y="31cm" table:end-cell-address="様式.H68"><draw:object draw:notify-on-update-of-ranges="様式.E10:様式.E49">'
            '<office:document office:version="1.2" office:mimetype="application/vnd.oasis.opendocument.chart"><office:body><office:chart>'
            '<chart:chart chart:class="chart:bar" svg:width="9cm" svg:height="6cm"><chart:plot-area table:cell-range-address="様式.E10:様式.E49">'
            '<chart:axis chart:dimension="x"/><chart:axis chart:dimension="y"/><chart:series chart:values-cell-range-address="様式.E10:様式.E49">'
            '<chart:data-point chart:repeated="40"/></chart:series></chart:plot-area></chart:chart></office:chart></office:body></office:document>'
            "</draw:object></draw:frame>")


def by_office(path, folder):
    """A flat document, written by hand, that LibreOffice saves as a workbook."""
    names = " ".join(f'xmlns:{prefix}="urn:oasis:names:tc:opendocument:xmlns:{name}:1.0"' for prefix, name in {
        "office": "office", "table": "table", "text": "text", "style": "style", "draw": "drawing", "chart": "chart",
        "svg": "svg-compatible", "fo": "xsl-fo-compatible"}.items())
    image = base64.b64encode(picture()).decode()
    source = os.path.join(folder, "office.fods")
    with open(source, "w", encoding="utf-8") as file:
        file.write(f'''<?xml version="1.0" encoding="UTF-8"?>
<office:document {names} xmlns:xlink="http://www.w3.org/1999/xlink" xmlns:of="urn:oasis:names:tc:opendocument:xmlns:of:1.2"
 xmlns:calcext="urn:org:documentfoundation:names:experimental:calc:xmlns:calcext:1.0" office:version="1.2"
 office:mimetype="application/vnd.oasis.opendocument.spreadsheet">
<office:styles><style:style style:name="Bad" style:family="table-cell"><style:text-properties fo:color="#ff0000"/></style:style></office:styles>
<office:automatic-styles><style:style style:name="ce1" style:family="table-cell"><style:table-cell-properties fo:border="0.5pt solid #000000"/>
</style:style></office:automatic-styles>
<office:body><office:spreadsheet><table:content-validations><table:content-validation table:name="val1"
 table:condition='of:cell-content-is-in-list("マスタ";"実績";"その他")' table:base-cell-address="様式.F10"/></table:content-validations>
<table:table table:name="様式" table:print-ranges="様式.A1:様式.H70">
<table:shapes><draw:frame svg:width="1cm" svg:height="1cm" svg:x="2cm" svg:y="28cm"><draw:image><office:binary-data>{image}</office:binary-data>
</draw:image></draw:frame>{_office_chart()}</table:shapes>
<table:table-column table:number-columns-repeated="8"/>
<table:table-header-rows>{"".join(list(_office_rows())[:3])}</table:table-header-rows>{"".join(list(_office_rows())[3:])}
<calcext:conditional-formats><calcext:conditional-format calcext:target-range-address="様式.E10:様式.E49"><calcext:condition
 calcext:apply-style-name="Bad" calcext:value="&gt;30" calcext:base-cell-address="様式.E10"/></calcext:conditional-format>
</calcext:conditional-formats></table:table>
<table:table table:name="集計"><table:table-row><table:table-cell table:formula="of:=SUM([様式.E10:.E49])" office:value-type="float"
 office:value="820"/></table:table-row><table:table-row><table:table-cell table:formula="of:=[様式.E51]" office:value-type="float"
 office:value="820"/></table:table-row><table:table-row><table:table-cell office:value-type="string"><text:p>手を触れない</text:p>
</table:table-cell></table:table-row></table:table>
<table:named-expressions><table:named-range table:name="明細" table:base-cell-address="$様式.$A$10" table:cell-range-address="$様式.$A$10:.$H$49"/>
</table:named-expressions></office:spreadsheet></office:body></office:document>''')
    os.replace(convert("xlsx:Calc MS Excel 2007 XML", folder, source)[0], path)


def make_all(folder, maker):
    """All templates: name -> path."""
    picture_file, macros = os.path.join(folder, "picture.png"), os.path.join(folder, "vbaProject.bin")
    with open(picture_file, "wb") as file:
        file.write(picture())
    with open(macros, "wb") as file:
        file.write(bytes.fromhex("d0cf11e0a1b11ae1") + bytes(range(256)) * 16)
    made = {name: os.path.join(folder, name + (".xlsm" if name == "macros" else ".xlsx"))
            for name in ("office", "openpyxl", "resaved", "xlsxwriter", "macros")}
    by_office(made["office"], folder)
    by_openpyxl(made["openpyxl"])
    by_xlsxwriter(made["xlsxwriter"], picture_file, maker)
    by_xlsxwriter(made["macros"], picture_file, maker, macros)
    resaved = os.path.join(folder, "resaved")
    os.replace(convert("xlsx:Calc MS Excel 2007 XML", resaved, made["openpyxl"])[0], made["resaved"])
    old = convert("xls:MS Excel 97", os.path.join(folder, "old"), made["openpyxl"])[0]
    return {**made, "old": old}
