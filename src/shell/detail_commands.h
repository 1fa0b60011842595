#pragma once

#include <string_view>

#include "shell/application.h"

namespace quillmarden {

// What a detail screen does beyond its own record. `screen` is its name.

/// The list of value lists for the active row; the one that is chosen there goes into the row.
void openDivisionRef(Application& app, std::string_view screen);
/// The sort window for this grid, and its OK, which closes it.
void openSort(Application& app, std::string_view screen);
void sortGrid(Application& app);
/// The memo of the table.
void openMemo(Application& app, std::string_view screen);
/// The header of the table.
void openHeader(Application& app, std::string_view screen);
/// A drawing of this table and of those that its foreign keys name.
void CmdER_Click(Application& app, std::string_view screen);
/// The update button; the list follows what was saved.
void updateDetail(Application& app, std::string_view screen);

}  // namespace quillmarden
