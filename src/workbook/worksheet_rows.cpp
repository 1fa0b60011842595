#include <fmt/format.h>

#include <algorithm>
#include <cmath>

#include "workbook/book_state.h"
#include "workbook/row_change.h"
#include "workbook/section_editor.h"
#include "workbook/worksheet.h"

namespace quillmarden {

namespace {

constexpr double kMaxRowHeight = 409.5;
constexpr double kMaxColumnWidth = 255;

/// The pixels of a digit in the book's default font, by which widths are counted.
double digitWidth(const CellFont& font) {
  const bool japanese = std::any_of(font.name.begin(), font.name.end(), [](char c) { return c < 0; });
  return japanese && font.size >= 11 ? 8 : 7;
}

}  // namespace

double Worksheet::rowHeight(int row) const {
  check(CellRef{row, 1});
  const StoredRow* stored = model().findRow(row);
  if (stored == nullptr) return model().defaultRowHeight;
  if (stored->has(StoredRow::Hidden)) return 0;
  return stored->has(StoredRow::HasHeight) ? stored->height : model().defaultRowHeight;
}

bool Worksheet::hasRowHeight(int row) const {
  check(CellRef{row, 1});
  const StoredRow* stored = model().findRow(row);
  return stored != nullptr && stored->has(StoredRow::HasHeight) && stored->has(StoredRow::CustomHeight);
}

void Worksheet::setRowHeight(int row, double points) {
  check(CellRef{row, 1});
  if (!(points >= 0)) throw WorkbookError(WorkbookFault::BadValue, "", "行の高さが正しくありません.");
  StoredRow& stored = edit().makeRow(row);
  stored.height = std::min(points, kMaxRowHeight);
  stored.put(StoredRow::HasHeight, true);
  stored.put(StoredRow::CustomHeight, true);
}

void Worksheet::setRowHidden(int row, bool hidden) {
  check(CellRef{row, 1});
  edit().makeRow(row).put(StoredRow::Hidden, hidden);
}

double Worksheet::defaultRowHeight() const { return model().defaultRowHeight; }

void Worksheet::setDefaultRowHeight(double points) {
  if (!(points >= 0)) throw WorkbookError(WorkbookFault::BadValue, "", "行の高さが正しくありません.");
  SectionEditor format(edit(), "sheetFormatPr", book_.slots[index_].part);
  setAttribute(format.root(), "defaultRowHeight", fmt::format("{}", points));
  setAttribute(format.root(), "customHeight", "1");
  format.put();
  edit().defaultRowHeight = points;
}

double Worksheet::columnWidth(int column) const {
  check(CellRef{1, column});
  const ColumnSpan* span = model().columnAt(column);
  if (span == nullptr) return model().defaultColumnWidth;
  if (span->hidden) return 0;
  return span->width >= 0 ? span->width : model().defaultColumnWidth;
}

void Worksheet::setColumnWidth(int first, int last, double characters) {
  check({{1, first}, {1, last}});
  if (!(characters >= 0 && characters <= kMaxColumnWidth))
    throw WorkbookError(WorkbookFault::BadValue, "", "列の幅が正しくありません.");
  // The file counts five pixels of padding as well, in 256ths of a digit; below one digit the padding shrinks along.
  const double digit = digitWidth(book_.styles().at(0).font);
  const double padding = std::min(1.0, characters) * 5;
  const double width = std::floor((characters * digit + padding) / digit * 256) / 256;
  for (ColumnSpan* span : edit().columnSpans(first, last)) {
    span->width = width;
    span->customWidth = true;
  }
}

void Worksheet::setColumnHidden(int first, int last, bool hidden) {
  check({{1, first}, {1, last}});
  for (ColumnSpan* span : edit().columnSpans(first, last)) span->hidden = hidden;
}

void Worksheet::insertRows(int before, int count) {
  check(CellRef{before, 1});
  if (count < 1) return;
  check(CellRef{count, 1});
  changeRows(book_, index_, {before, count, true});
}

void Worksheet::deleteRows(int first, int last) {
  if (last < first) return;
  check({{first, 1}, {last, 1}});
  changeRows(book_, index_, {first, last - first + 1, false});
}

void Worksheet::copyRow(int from, int to) {
  check(CellRef{from, 1});
  check(CellRef{to, 1});
  if (from == to) return;
  SheetModel& sheet = edit();
  const StoredRow* source = sheet.findRow(from);
  StoredRow copy = source == nullptr ? StoredRow{} : *source;
  copy.number = to;
  for (StoredCell& cell : copy.cells) {
    if (cell.kind != StoredKind::Special) continue;
    SpecialCell special = sheet.specials[cell.index()];
    if (special.form == SpecialCell::Form::Array || special.form == SpecialCell::Form::DataTable) {
      special.ref.first.row += to - from;
      special.ref.last.row += to - from;
    }
    special.formula = offsetFormula(special.formula, to - from, 0);
    cell.set(StoredKind::Special, sheet.addSpecial(std::move(special)));
  }
  sheet.makeRow(to) = std::move(copy);
  unmerge({{to, 1}, {to, kMaxSheetColumn}});
  const std::vector<CellRange> merges = sheet.merges;
  for (const CellRange& range : merges) {
    if (range.first.row != from || range.last.row != from) continue;
    sheet.merges.push_back({{to, range.first.column}, {to, range.last.column}});
    sheet.mergesChanged = true;
  }
  extendRules(sheet, from, to, book_.slots[index_].part);
}

}  // namespace quillmarden
