#pragma once

#include <string_view>
#include <unordered_map>

#include "workbook/drawing.h"
#include "workbook/font_metrics.h"
#include "workbook/workbook.h"

namespace quillmarden {

/// Measures a sheet as spreadsheet programs lay it out, with the fonts that stand in for those it names. It keeps what
/// it has looked up about formats and column widths, so one serves all rows of a sheet; formats may be added
/// meanwhile, widths must stay. The book and the fonts must outlive it.
class SheetMeasure {
 public:
  SheetMeasure(const Workbook& book, int sheet, FontBook& fonts);

  /// Points.
  double columnWidth(int column) const;
  double rowHeight(int row) const { return sheet_.rowHeight(row); }
  double rangeWidth(int firstColumn, int lastColumn) const;
  double rangeHeight(int firstRow, int lastRow) const;

  /// The height in points that the row's texts need between the two columns: wrapped ones as many lines as their cell
  /// or merged cells break them into, others one. Cells merged over several rows and turned ones don't count. 0 for a
  /// row without text.
  double neededHeight(int row, int firstColumn, int lastColumn);

 private:
  struct TextFormat {
    SizedFont font;
    double lineHeight;
    bool wrap;
    bool counts;
    double indent;
  };

  const TextFormat& format(StyleId id, CellRef cell);

  const Worksheet& sheet_;
  FontBook& fonts_;
  int digitWidth_;
  std::unordered_map<StyleId, TextFormat> formats_;
  mutable std::unordered_map<int, double> widths_;
};

/// The measures for a drawing on the sheet. `measure` must outlive the result.
SheetGeometry geometryOf(const SheetMeasure& measure);

}  // namespace quillmarden
