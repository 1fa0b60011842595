#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "cli/command.h"
#include "editing/grid_operations.h"

namespace quillmarden {

/// Rows as a command line names them, "1,3-5": each part a block of the grid. Nothing for any other text.
std::optional<GridSelection> parseRowList(std::string_view text);

/// --rows, which takes no other form.
OptionSpec& addRows(OptionSet& options, std::string& rows, std::string help);

/// The blocks of such a text on the table on show; of all its rows when it is "". Nothing, after a message, when a row
/// is not there.
std::optional<GridSelection> chosenRows(Run& run, const frmTBDetail& detail, const std::string& rows);

}  // namespace quillmarden
