#include "workbook/sheet_measure.h"

#include <algorithm>
#include <cmath>

#include "workbook/units.h"

namespace quillmarden {
namespace {

constexpr double kPadding = 5 / kPixelsPerPoint;  // blank at both sides of a cell together
constexpr double kIndent = 9;                     // points a step

SizedFont sizedFont(const CellStyle& style) { return {style.font.name, style.font.size, style.font.bold}; }

}  // namespace

SheetMeasure::SheetMeasure(const Workbook& book, int sheet, FontBook& fonts)
    : sheet_(book.sheet(sheet)), fonts_(fonts), digitWidth_(maxDigitWidth(fonts, sizedFont(book.styleAt(0)))) {}

double SheetMeasure::columnWidth(int column) const {
  const auto known = widths_.find(column);
  if (known != widths_.end()) return known->second;
  // A width is stored in digits, to the 256th, and shown in whole pixels.
  const double digits = sheet_.columnWidth(column);
  const double pixels = std::floor((256 * digits + std::floor(128.0 / digitWidth_)) / 256 * digitWidth_);
  return widths_.emplace(column, pixels / kPixelsPerPoint).first->second;
}

double SheetMeasure::rangeWidth(int firstColumn, int lastColumn) const {
  double width = 0;
  for (int column = firstColumn; column <= lastColumn; ++column) width += columnWidth(column);
  return width;
}

double SheetMeasure::rangeHeight(int firstRow, int lastRow) const {
  double height = 0;
  for (int row = firstRow; row <= lastRow; ++row) height += rowHeight(row);
  return height;
}

double SheetMeasure::neededHeight(int row, int firstColumn, int lastColumn) {
  double needed = 0;
  for (int column = firstColumn; column <= lastColumn; ++column) {
    const CellRef cell{row, column};
    const std::string text = sheet_.text(cell);
    if (text.empty()) continue;
    const TextFormat& shown = format(sheet_.styleId(cell), cell);
    if (!shown.counts) continue;
    int lines = 1;
    if (shown.wrap) {
      const CellRange merged = sheet_.mergedRange(cell);
      if (merged.rows() > 1) continue;
      const double width = rangeWidth(merged.first.column, merged.last.column) - kPadding - shown.indent;
      // No character is wider than an em, so most texts need no measuring.
      const bool fits = static_cast<double>(text.size()) * shown.font.size <= width;
      if (!fits || text.find('\n') != std::string::npos) lines = wrappedLines(fonts_, shown.font, text, width);
    }
    needed = std::max(needed, lines * shown.lineHeight);
  }
  return needed;
}

const SheetMeasure::TextFormat& SheetMeasure::format(StyleId id, CellRef cell) {
  const auto known = formats_.find(id);
  if (known != formats_.end()) return known->second;
  const CellStyle style = sheet_.style(cell);
  const SizedFont font = sizedFont(style);
  TextFormat made{font, linesHeight(fonts_, font, 1), style.alignment.wrap, style.alignment.rotation == 0,
                  style.alignment.indent * kIndent};
  return formats_.emplace(id, std::move(made)).first->second;
}

SheetGeometry geometryOf(const SheetMeasure& measure) {
  return {[&measure](int column) { return measure.columnWidth(column); },
          [&measure](int row) { return measure.rowHeight(row); }};
}

}  // namespace quillmarden
