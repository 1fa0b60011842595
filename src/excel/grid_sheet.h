#pragma once

#include <array>
#include <functional>
#include <string>
#include <string_view>
#include <vector>

#include "excel/book_run.h"
#include "workbook/workbook.h"

namespace quillmarden {

/// The line between cells, and the look of the row of titles.
BorderLine gridRule();
void styleTitles(Worksheet& sheet, const CellRange& titles);
/// Prints on A4 across, as many pages as it takes, with the titles on each, and keeps them in sight on the screen.
void setUpGridPage(Worksheet& sheet, int titleRow, int frozenColumns = 0);

/// The grid of a screen as a sheet is to show it.
struct SheetGrid {
  std::vector<std::string> titles;
  int rows = 0;
  /// The text of a cell, columns and rows counting from 1; it stands until the next call.
  std::function<std::string_view(int column, int row)> text;
  bool numbers = true;  ///< texts that are numbers become numbers; false leaves all as texts
};

/// A book of one sheet: the heading's lines in columns A and B, below an empty row the titles, and under them the
/// rows, framed and in columns as wide as their texts. It prints on A4 with the titles on every page. Texts that were
/// cut are noted in the run. Throws WorkbookError.
Workbook gridBook(BookRun& run, const std::vector<std::array<std::string, 2>>& heading, const SheetGrid& grid);

}  // namespace quillmarden
