#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "editing/grid_backup.h"

namespace quillmarden {

/// What a copy of unsaved rows holds.
struct GridCopy {
  GridLeftOver head;      ///< without the file
  bool personal = false;  ///< the column of personal information was on show
  LoadedRows loaded;      ///< the rows as they were loaded; unknown in a copy of an older program
  std::vector<SpreadRow> rows;
};

/// The copy as text: head lines "#name<TAB>value", then one line a row, cells parted by tabs, as in grid files of the
/// command line. Tabs, line ends and backslashes inside a value stand behind a backslash.
std::string gridCopyText(const GridCopy& copy);

/// Reads such a text. Nothing when it is no such text, or not whole.
std::optional<GridCopy> parseGridCopy(std::string_view text);

}  // namespace quillmarden
