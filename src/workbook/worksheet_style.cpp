#include <unordered_map>

#include "workbook/book_state.h"
#include "workbook/worksheet.h"

namespace quillmarden {

namespace {

using Restyle = std::function<StyleId(StyleId)>;

// A run of columns with a format this long is a default for the whole sheet; a row's cells are not made for it.
constexpr int kManyColumns = 256;

void restyleCells(StoredRow& row, const CellRange& range, const Restyle& restyle) {
  for (StoredCell& cell : row.cells)
    if (cell.column >= range.first.column && cell.column <= range.last.column) cell.style = restyle(cell.style);
}

void restyleColumns(SheetModel& sheet, const CellRange& range, const Restyle& restyle) {
  for (StoredRow& row : sheet.rows) {
    if (row.has(StoredRow::HasStyle) && range.wholeRows()) {
      row.style = restyle(row.style);
    } else if (row.has(StoredRow::HasStyle)) {
      // Where a row of its own format crosses the columns there must be cells to tell the change.
      for (int column = range.first.column; column <= range.last.column; ++column) sheet.makeCell({row.number, column});
    }
    restyleCells(row, range, restyle);
  }
  for (ColumnSpan* span : sheet.columnSpans(range.first.column, range.last.column)) span->style = restyle(span->style);
}

void restyleRow(SheetModel& sheet, int number, const CellRange& range, const Restyle& restyle) {
  if (!sheet.makeRow(number).has(StoredRow::HasStyle)) {
    for (const ColumnSpan& span : sheet.columns) {
      if (span.style == 0 || span.last - span.first >= kManyColumns) continue;
      for (int column = span.first; column <= span.last; ++column) sheet.makeCell({number, column});
    }
  }
  StoredRow& row = sheet.makeRow(number);
  restyleCells(row, range, restyle);
  row.style = restyle(row.has(StoredRow::HasStyle) ? row.style : 0);
  row.put(StoredRow::HasStyle, true);
}

void restyle(SheetModel& sheet, const CellRange& range, const Restyle& change) {
  if (range.wholeColumns()) return restyleColumns(sheet, range, change);
  for (int row = range.first.row; row <= range.last.row; ++row) {
    if (range.wholeRows()) {
      restyleRow(sheet, row, range, change);
      continue;
    }
    for (int column = range.first.column; column <= range.last.column; ++column) {
      StoredCell& cell = sheet.makeCell({row, column});
      cell.style = change(cell.style);
    }
  }
}

}  // namespace

StyleId Worksheet::styleId(CellRef cell) const {
  check(cell);
  return model().styleFor(cell);
}

CellStyle Worksheet::style(CellRef cell) const { return book_.styles().at(styleId(cell)); }

void Worksheet::setStyle(const CellRange& range, StyleId style) {
  check(range);
  restyle(edit(), range, [&](StyleId) { return style; });
}

void Worksheet::changeStyle(const CellRange& range, const std::function<void(CellStyle&)>& change) {
  check(range);
  std::unordered_map<StyleId, StyleId> changed;
  restyle(edit(), range, [&](StyleId before) {
    const auto known = changed.find(before);
    if (known != changed.end()) return known->second;
    CellStyle style = book_.styles().at(before);
    const std::string font = style.font.name;
    change(style);
    if (style.font.name != font) style.font.scheme.clear();  // the theme would win over the name
    return changed.emplace(before, book_.editStyles().add(style)).first->second;
  });
}

void Worksheet::setBorder(const CellRange& range, BorderIndex index, const BorderLine& line) {
  check(range);
  const CellRef first = range.first;
  const CellRef last = range.last;
  const auto put = [&](const CellRange& cells, BorderLine CellBorder::*side) {
    if (cells.first.row > cells.last.row || cells.first.column > cells.last.column) return;
    changeStyle(cells, [&](CellStyle& style) { style.border.*side = line; });
  };
  switch (index) {
    case BorderIndex::DiagonalDown:
    case BorderIndex::DiagonalUp:
      return changeStyle(range, [&](CellStyle& style) {
        CellBorder& border = style.border;
        (index == BorderIndex::DiagonalUp ? border.diagonalUp : border.diagonalDown) = line.kind != LineKind::None;
        // Both diagonals of a cell share one line.
        if (line.kind != LineKind::None || (!border.diagonalUp && !border.diagonalDown)) border.diagonal = line;
      });
    case BorderIndex::EdgeLeft:
      return put({first, {last.row, first.column}}, &CellBorder::left);
    case BorderIndex::EdgeRight:
      return put({{first.row, last.column}, last}, &CellBorder::right);
    case BorderIndex::EdgeTop:
      return put({first, {first.row, last.column}}, &CellBorder::top);
    case BorderIndex::EdgeBottom:
      return put({{last.row, first.column}, last}, &CellBorder::bottom);
    case BorderIndex::InsideVertical:
      put({first, {last.row, last.column - 1}}, &CellBorder::right);
      return put({{first.row, first.column + 1}, last}, &CellBorder::left);
    case BorderIndex::InsideHorizontal:
      put({first, {last.row - 1, last.column}}, &CellBorder::bottom);
      return put({{first.row + 1, first.column}, last}, &CellBorder::top);
  }
}

void Worksheet::setGrid(const CellRange& range, const BorderLine& line) {
  changeStyle(range, [&](CellStyle& style) {
    style.border.left = style.border.right = style.border.top = style.border.bottom = line;
  });
}

void Worksheet::setNamedStyle(const CellRange& range, std::string_view name) {
  changeStyle(range, [&](CellStyle& style) { style = book_.styles().basedOn(std::move(style), name); });
}

}  // namespace quillmarden
