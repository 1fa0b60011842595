#pragma once

#include <functional>
#include <string>
#include <vector>

#include "editing/frm_tb_detail.h"
#include "editing/frm_tb_list.h"
#include "workbook/drawing.h"

namespace quillmarden {

/// A field row of a box.
struct ErField {
  std::string name;
  std::string second;  ///< the remark, for boxes of two columns
  bool key = false;
  bool foreign = false;
};

/// A table of an ER sheet.
struct ErTable {
  std::string id;
  std::string name;  ///< the logical one, the physical one for a table without
  std::vector<ErField> fields;
  std::vector<std::string> targets;  ///< IDs of the tables that its foreign keys name, each once
  bool extra = false;                ///< not chosen, but named by one that is
};

/// The tables of the rows in LstTableSel or, when that is empty, of the selected rows of LstTable, in their order,
/// and behind them those that their foreign keys name. `reduce` takes from each table what the sheet does not show.
/// Stops, with what it has, when the person asks to.
std::vector<ErTable> readErTables(Session& session, Host& host, const frmTBList& list, frmTBDetail& detail,
                                  const std::function<void(ErTable&)>& reduce, bool& stopped);

/// Where the boxes of an ER sheet stand: in a grid as wide as it is high, every second column a little lower.
/// `sizes` holds the width and height of each table's box in points, the chosen ones first; the grid is made for
/// `chosen` of them. `unit` is the measure of all gaps. Boxes never overlap.
std::vector<Box> placeErBoxes(const std::vector<Box>& sizes, std::size_t chosen, double unit);

/// The gap unit for this font, in points.
double erGapUnit(FontBook& fonts, const SizedFont& font);

}  // namespace quillmarden
