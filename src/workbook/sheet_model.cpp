#include "workbook/sheet_model.h"

#include <algorithm>
#include <cmath>

namespace quillmarden {

namespace {

template <class Cells>
auto cellPlace(Cells& cells, int column) {
  return std::lower_bound(cells.begin(), cells.end(), column,
                          [](const StoredCell& cell, int wanted) { return cell.column < wanted; });
}

template <class Rows>
auto rowPlace(Rows& rows, int number) {
  if (!rows.empty() && rows.back().number < number) return rows.end();  // filling from top to bottom
  return std::lower_bound(rows.begin(), rows.end(), number,
                          [](const StoredRow& row, int wanted) { return row.number < wanted; });
}

}  // namespace

std::span<const std::string_view> sheetElementOrder() {
  static constexpr std::string_view kOrder[] = {
      "sheetPr",
      "dimension",
      "sheetViews",
      "sheetFormatPr",
      "cols",
      "sheetData",
      "sheetCalcPr",
      "sheetProtection",
      "protectedRanges",
      "scenarios",
      "autoFilter",
      "sortState",
      "dataConsolidate",
      "customSheetViews",
      "mergeCells",
      "phoneticPr",
      "conditionalFormatting",
      "dataValidations",
      "hyperlinks",
      "printOptions",
      "pageMargins",
      "pageSetup",
      "headerFooter",
      "rowBreaks",
      "colBreaks",
      "customProperties",
      "cellWatches",
      "ignoredErrors",
      "smartTags",
      "drawing",
      "legacyDrawing",
      "legacyDrawingHF",
      "drawingHF",
      "picture",
      "oleObjects",
      "controls",
      "webPublishItems",
      "tableParts",
      "extLst",
  };
  return kOrder;
}

StoredCell* StoredRow::find(int column) {
  const auto place = cellPlace(cells, column);
  return place != cells.end() && place->column == column ? &*place : nullptr;
}

const StoredCell* StoredRow::find(int column) const { return const_cast<StoredRow*>(this)->find(column); }

SheetModel SheetModel::empty(const CellFont& font) {
  SheetModel model;
  // In whole pixels of three quarters of a point, as programs do: 13.5 for 11 points, 18.75 for fonts with wide lines.
  const bool wideLines = font.name.starts_with("游") || font.name.starts_with("Yu ");
  model.defaultRowHeight = std::round(font.size * (wideLines ? 1.7 : 1.22) / 0.75) * 0.75;
  model.xml.head =
      "<?xml version=\"1.0\" encoding=\"UTF-8\" standalone=\"yes\"?>\n"
      "<worksheet xmlns=\"http://schemas.openxmlformats.org/spreadsheetml/2006/main\" "
      "xmlns:r=\"http://schemas.openxmlformats.org/officeDocument/2006/relationships\">";
  model.xml.tail = "</worksheet>";
  std::string height = std::to_string(model.defaultRowHeight);
  height.resize(height.find('.') + 3);
  model.xml.items.push_back({"sheetFormatPr", "<sheetFormatPr defaultRowHeight=\"" + height + "\"/>"});
  model.xml.items.push_back({"sheetData", ""});
  return model;
}

StoredRow* SheetModel::findRow(int number) {
  const auto place = rowPlace(rows, number);
  return place != rows.end() && place->number == number ? &*place : nullptr;
}

const StoredRow* SheetModel::findRow(int number) const { return const_cast<SheetModel*>(this)->findRow(number); }

StoredRow& SheetModel::makeRow(int number) {
  const auto place = rowPlace(rows, number);
  if (place != rows.end() && place->number == number) return *place;
  const std::size_t expected = rows.empty() ? 0 : rows.back().cells.size();
  const bool atEnd = place == rows.end();
  StoredRow& row = *rows.emplace(place);
  row.number = number;
  // A list's next row is as long as its last one.
  if (atEnd) row.cells.reserve(expected);
  return row;
}

StoredCell& SheetModel::makeCell(CellRef cell) {
  StoredRow& row = makeRow(cell.row);
  auto place = row.cells.end();
  if (!row.cells.empty() && row.cells.back().column >= cell.column) place = cellPlace(row.cells, cell.column);
  if (place != row.cells.end() && place->column == cell.column) return *place;
  StoredCell made;
  made.column = static_cast<std::uint16_t>(cell.column);
  if (row.has(StoredRow::HasStyle)) {
    made.style = row.style;
  } else if (const ColumnSpan* span = columnAt(cell.column)) {
    made.style = span->style;
  }
  return *row.cells.insert(place, made);
}

const StoredCell* SheetModel::findCell(CellRef cell) const {
  const StoredRow* row = findRow(cell.row);
  return row == nullptr ? nullptr : row->find(cell.column);
}

StyleId SheetModel::styleFor(CellRef cell) const {
  const StoredRow* row = findRow(cell.row);
  if (row != nullptr) {
    if (const StoredCell* stored = row->find(cell.column)) return stored->style;
    if (row->has(StoredRow::HasStyle)) return row->style;
  }
  const ColumnSpan* span = columnAt(cell.column);
  return span == nullptr ? 0 : span->style;
}

const ColumnSpan* SheetModel::columnAt(int column) const {
  for (const ColumnSpan& span : columns)
    if (column >= span.first && column <= span.last) return &span;
  return nullptr;
}

std::vector<ColumnSpan*> SheetModel::columnSpans(int first, int last) {
  std::vector<ColumnSpan> split;
  int next = first;
  const auto fill = [&](int end) {
    if (next > end) return;
    ColumnSpan gap;
    gap.first = next;
    gap.last = end;
    split.push_back(gap);
    next = end + 1;
  };
  const auto put = [&](ColumnSpan span, int from, int to) {
    if (from > to) return;
    span.first = from;
    span.last = to;
    split.push_back(std::move(span));
  };
  for (const ColumnSpan& span : columns) {
    if (span.last < first) {
      split.push_back(span);
      continue;
    }
    fill(std::min(span.first - 1, last));
    put(span, span.first, std::min(span.last, first - 1));
    put(span, std::max(span.first, first), std::min(span.last, last));
    put(span, std::max(span.first, last + 1), span.last);
    if (span.first <= last) next = std::max(next, span.last + 1);
  }
  fill(last);
  std::sort(split.begin(), split.end(), [](const ColumnSpan& a, const ColumnSpan& b) { return a.first < b.first; });
  columns = std::move(split);
  columnsChanged = true;
  std::vector<ColumnSpan*> spans;
  for (ColumnSpan& span : columns)
    if (span.first >= first && span.last <= last) spans.push_back(&span);
  return spans;
}

std::uint32_t SheetModel::addSpecial(SpecialCell special) {
  specials.push_back(std::move(special));
  return static_cast<std::uint32_t>(specials.size() - 1);
}

std::uint32_t SheetModel::errorNumber(std::string_view code) {
  auto found = std::find(errorCodes.begin(), errorCodes.end(), code);
  // There are a dozen codes; a part with more of them is not worth the search.
  if (found == errorCodes.end() && errorCodes.size() >= 64) return 0;
  if (found == errorCodes.end()) found = errorCodes.emplace(found, code);
  return static_cast<std::uint32_t>(found - errorCodes.begin());
}

}  // namespace quillmarden
