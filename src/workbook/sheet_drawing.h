#pragma once

#include <string>
#include <vector>

#include "workbook/drawing.h"
#include "workbook/font_metrics.h"
#include "workbook/workbook.h"

namespace quillmarden {

/// Adds the drawing to what the sheet already shows. Column widths and row heights must be final. Throws WorkbookError
/// where a template's own drawing parts are damaged.
void addDrawing(Workbook& book, int sheet, const Drawing& drawing, FontBook& fonts);

/// A picture (.emf) of the cells with their colours, lines and texts, and of the pictures that are given in points from
/// the range's corner: what an embedded book shows until it is opened.
std::string previewOf(const Workbook& book, int sheet, const CellRange& range, FontBook& fonts,
                      const std::vector<SheetPicture>& pictures = {});

}  // namespace quillmarden
