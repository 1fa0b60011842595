"""What a reader of workbooks insists on: the order of elements, the attributes that must be there, the types of parts.

The order tables hold, for an element, its children in the order in which they have to come, by local names. Elements that
may come in any order or that we never write are not listed. `REPEATED` names the children that may come more than once.
"""

MAIN = "http://schemas.openxmlformats.org/spreadsheetml/2006/main"
DRAWING = "http://schemas.openxmlformats.org/drawingml/2006/main"
SHEET_DRAWING = "http://schemas.openxmlformats.org/drawingml/2006/spreadsheetDrawing"
LINKS = "http://schemas.openxmlformats.org/officeDocument/2006/relationships"
PACKAGE_LINKS = "http://schemas.openxmlformats.org/package/2006/relationships"
PACKAGE_TYPES = "http://schemas.openxmlformats.org/package/2006/content-types"
COMPATIBILITY = "http://schemas.openxmlformats.org/markup-compatibility/2006"


def _table(namespace, text):
    orders = {}
    for line in text.strip().splitlines():
        parent, children = line.split(":")
        for name in parent.split():
            orders[f"{{{namespace}}}{name}"] = children.split()
    return orders


ORDERS = {
    **_table(MAIN, """
worksheet: sheetPr dimension sheetViews sheetFormatPr cols sheetData sheetCalcPr sheetProtection protectedRanges scenarios autoFilter sortState dataConsolidate customSheetViews mergeCells phoneticPr conditionalFormatting* dataValidations hyperlinks printOptions pageMargins pageSetup headerFooter rowBreaks colBreaks customProperties cellWatches ignoredErrors smartTags drawing legacyDrawing legacyDrawingHF drawingHF picture oleObjects controls webPublishItems tableParts extLst
chartsheet: sheetPr sheetViews sheetProtection customSheetViews pageMargins pageSetup headerFooter drawing legacyDrawing legacyDrawingHF drawingHF picture webPublishItems extLst
workbook: fileVersion fileSharing workbookPr workbookProtection bookViews sheets functionGroups externalReferences definedNames calcPr oleSize customWorkbookViews pivotCaches smartTagPr smartTagTypes webPublishing fileRecoveryPr* webPublishObjects extLst
styleSheet: numFmts fonts fills borders cellStyleXfs cellXfs cellStyles dxfs tableStyles colors extLst
sst: si* extLst
table: autoFilter sortState tableColumns tableStyleInfo extLst
comments: authors commentList extLst
comment: text commentPr
sheetPr: tabColor outlinePr pageSetUpPr
sheetView: pane selection* pivotSelection* extLst
sheetData: row*
row: c* extLst
c: f v is extLst
si is: t r* rPh* phoneticPr
r: rPr t
cols: col*
mergeCells: mergeCell*
conditionalFormatting: cfRule* extLst
cfRule: formula* colorScale dataBar iconSet extLst
dataValidations: dataValidation*
dataValidation: formula1 formula2
hyperlinks: hyperlink*
headerFooter: oddHeader oddFooter evenHeader evenFooter firstHeader firstFooter
rowBreaks colBreaks: brk*
oleObjects: oleObject*
oleObject: objectPr
tableParts: tablePart* extLst
fonts: font* extLst
fills: fill* extLst
patternFill: fgColor bgColor
gradientFill: stop*
borders: border* extLst
border: start end left right top bottom diagonal vertical horizontal
cellStyleXfs cellXfs: xf* extLst
xf: alignment protection extLst
cellStyles: cellStyle* extLst
dxfs: dxf*
dxf: font numFmt fill alignment border protection extLst
colors: indexedColors mruColors
bookViews: workbookView* extLst
sheets: sheet*
definedNames: definedName*
"""),
    **_table(SHEET_DRAWING, """
wsDr: twoCellAnchor* oneCellAnchor* absoluteAnchor*
twoCellAnchor: from to sp grpSp graphicFrame cxnSp pic contentPart clientData
oneCellAnchor: from ext sp grpSp graphicFrame cxnSp pic contentPart clientData
absoluteAnchor: pos ext sp grpSp graphicFrame cxnSp pic contentPart clientData
from to: col colOff row rowOff
sp: nvSpPr spPr style txBody
cxnSp: nvCxnSpPr spPr style
pic: nvPicPr blipFill spPr style
graphicFrame: nvGraphicFramePr xfrm graphic
nvSpPr: cNvPr cNvSpPr
nvCxnSpPr: cNvPr cNvCxnSpPr
nvPicPr: cNvPr cNvPicPr
blipFill: blip srcRect tile stretch
txBody: bodyPr lstStyle p*
spPr: xfrm custGeom prstGeom noFill solidFill gradFill blipFill pattFill grpFill ln effectLst effectDag scene3d sp3d extLst
style: lnRef fillRef effectRef fontRef
cNvCxnSpPr: cxnSpLocks stCxn endCxn extLst
"""),
    **_table(DRAWING, """
xfrm: off ext chOff chExt
ln: noFill solidFill gradFill pattFill prstDash custDash round bevel miter headEnd tailEnd extLst
p: pPr r* br* fld* endParaRPr
r: rPr t
rPr endParaRPr defRPr: ln noFill solidFill gradFill blipFill pattFill grpFill effectLst effectDag highlight uLnTx uLn uFillTx uFill latin ea cs sym hlinkClick hlinkMouseOver rtl extLst
effectLst: blur fillOverlay glow innerShdw outerShdw prstShdw reflection softEdge
prstGeom: avLst
bodyPr: prstTxWarp noAutofit normAutofit spAutoFit scene3d sp3d flatTx extLst
"""),
}
# Choices: their children mix as they like.
MIXED = {f"{{{DRAWING}}}p", f"{{{SHEET_DRAWING}}}wsDr"}

REQUIRED = {
    **{f"{{{MAIN}}}{name}": attributes.split() for name, attributes in {
        "sheet": f"name sheetId {{{LINKS}}}id", "definedName": "name", "numFmt": "numFmtId formatCode", "cellStyle": "xfId",
        "sheetView": "workbookViewId", "col": "min max", "mergeCell": "ref", "dimension": "ref", "cfRule": "type priority",
        "conditionalFormatting": "sqref", "dataValidation": "sqref", "hyperlink": "ref", "tablePart": f"{{{LINKS}}}id",
        "pageMargins": "left right top bottom header footer", "drawing": f"{{{LINKS}}}id", "oleObject": "progId shapeId",
        "legacyDrawing": f"{{{LINKS}}}id", "table": "id displayName ref", "tableColumn": "id name", "row": "r", "c": "r",
        "comment": "ref authorId", "sheetFormatPr": "defaultRowHeight", "brk": "id", "autoFilter": "ref"}.items()},
    f"{{{SHEET_DRAWING}}}cNvPr": ["id", "name"], f"{{{DRAWING}}}prstGeom": ["prst"], f"{{{DRAWING}}}off": ["x", "y"],
    f"{{{DRAWING}}}ext": ["cx", "cy"], f"{{{DRAWING}}}stCxn": ["id", "idx"], f"{{{DRAWING}}}endCxn": ["id", "idx"],
    f"{{{DRAWING}}}srgbClr": ["val"], f"{{{SHEET_DRAWING}}}ext": ["cx", "cy"],
}

_SHEET = "application/vnd.openxmlformats-officedocument.spreadsheetml."
# By the last word of a relationship's type: what the part at its end may be.
LINK_TYPES = {
    "officeDocument": (_SHEET + "sheet.main+xml", _SHEET + "template.main+xml",
                       "application/vnd.ms-excel.sheet.macroEnabled.main+xml"),
    "worksheet": (_SHEET + "worksheet+xml",), "chartsheet": (_SHEET + "chartsheet+xml",),
    "styles": (_SHEET + "styles+xml",), "sharedStrings": (_SHEET + "sharedStrings+xml",),
    "theme": ("application/vnd.openxmlformats-officedocument.theme+xml",),
    "drawing": ("application/vnd.openxmlformats-officedocument.drawing+xml",),
    "chart": ("application/vnd.openxmlformats-officedocument.drawingml.chart+xml",),
    "vmlDrawing": ("application/vnd.openxmlformats-officedocument.vmlDrawing",),
    "comments": (_SHEET + "comments+xml",), "table": (_SHEET + "table+xml",),
    "package": (_SHEET + "sheet", "application/vnd.ms-excel.sheet.macroEnabled.12"),
    "core-properties": ("application/vnd.openxmlformats-package.core-properties+xml",),
    "extended-properties": ("application/vnd.openxmlformats-officedocument.extended-properties+xml",),
    "image": ("image/png", "image/jpeg", "image/bmp", "image/gif", "image/x-emf", "image/emf", "image/x-wmf", "image/svg+xml"),
    "vbaProject": ("application/vnd.ms-office.vbaProject",),
}
ERROR_CODES = {"#NULL!", "#DIV/0!", "#VALUE!", "#REF!", "#NAME?", "#NUM!", "#N/A", "#GETTING_DATA"}
MAGIC = {".png": b"\x89PNG", ".jpg": b"\xff\xd8", ".jpeg": b"\xff\xd8", ".bmp": b"BM", ".gif": b"GIF8", ".emf": b"\x01\0\0\0"}
