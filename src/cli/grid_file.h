#pragma once

#include <functional>
#include <optional>
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

/// Takes a text apart for this grid. A line with more cells than the grid has columns, bytes that are no UTF-8, and a
/// NUL are faults.
GridText parseGridText(std::string_view text, const Spread& grid);

/// What a loaded grid has for a cell of the file, as it is stored, when the file's cell shows just that. Rows count
/// from 0, columns from 1.
using LoadedCell = std::function<std::optional<std::string>(std::size_t row, int col, std::string_view cell)>;
/// Row by row: `continued` has for each row of the file the loaded one, 0 for a new row. The grid outlives it.
LoadedCell loadedByRow(const Spread& grid, std::vector<int> continued);
/// Wherever in the column the text stands, for grids whose rows have no identity.
LoadedCell loadedByColumn(const Spread& grid);

/// Gives each cell its column's own form, as typing it would. A cell that shows what is loaded takes the stored text,
/// with its line ends, even where the column would not take it any more. What does not fit is a fault: one line a cell,
/// at most ten; "" for none. Static columns take everything here.
std::string takeCells(GridText& text, const Spread& grid, const LoadedCell& loaded);
/// "3行目 : 2列目[値]": where a fault is. Both numbers count from 1.
std::string cellName(std::size_t row, int col, const Spread& grid);

/// For each row the loaded row that it continues: the one whose 表示順 it bears, else the one with its field name, else
/// with its Japanese name; each loaded row is continued by one row. 0 for a new row.
std::vector<int> continuedRows(const Spread& grid, const std::vector<std::vector<std::string>>& rows);
/// Replaces the rows of a loaded grid. A row takes over the tag of the loaded row that it continues.
void replaceRows(Spread& grid, std::vector<std::vector<std::string>> rows, const std::vector<int>& continued);

}  // namespace quillmarden
