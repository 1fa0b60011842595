#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "cli/run.h"
#include "screen/spread.h"

namespace quillmarden {

/// The bytes of a file. False after a message.
bool readFile(Run& run, const std::string& file, std::string& text);

/// The rows of a grid file: one line a row, cells parted by tabs; a byte order mark and CR LF line ends are taken, an
/// empty line is an empty row.
struct GridText {
  std::vector<std::vector<std::string>> rows;
  std::string fault;  ///< what is wrong, with the number of the line; "" when nothing is
};

/// Takes a text apart for this grid. A line with more cells than the grid has columns, bytes that are no UTF-8, a NUL,
/// and text in a cell that holds a number are faults.
GridText parseGridText(std::string_view text, const Spread& grid);

/// The first cell that is longer than its column allows, in the words of GridText::fault; "" for none.
std::string lengthFault(const GridText& text, const Spread& grid);
/// "3行目 : 2列目[値]": where a fault is. Both numbers count from 1.
std::string cellName(std::size_t row, int col, const Spread& grid);

/// Replaces the rows of a loaded grid. A new row takes over the tag of the loaded row that it continues: the one whose
/// 表示順 it bears (unless the file's orders are of another time), else the one with its field name, else with its
/// Japanese name; each loaded row goes to one new row.
void replaceRows(Spread& grid, std::vector<std::vector<std::string>> rows);

}  // namespace quillmarden
