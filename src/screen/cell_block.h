#pragma once

namespace quillmarden {

/// The cells that are selected in a grid, both corners included. Columns and rows count from 1.
struct CellBlock {
  int firstCol = 1;
  int firstRow = 1;
  int lastCol = 1;
  int lastRow = 1;
  bool wholeRows = false;  ///< selected by the row headings
};

}  // namespace quillmarden
