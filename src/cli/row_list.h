#pragma once

#include <optional>
#include <string_view>

#include "cli/run.h"
#include "editing/grid_operations.h"

namespace quillmarden {

/// Rows as a command line names them, "1,3-5": each part a block of the grid. Nothing for any other text.
std::optional<GridSelection> parseRowList(std::string_view text);

/// The blocks of --rows on the table on show; of all its rows when none are named. Nothing, after a message, when a row
/// is not there.
std::optional<GridSelection> chosenRows(Run& run, const frmTBDetail& detail);

/// Has what a menu puts on the clipboard printed instead, with LF.
void printClipboard(Run& run);

}  // namespace quillmarden
