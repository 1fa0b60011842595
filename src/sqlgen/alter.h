#pragma once

#include <optional>
#include <string>
#include <vector>

#include "editing/grid_operations.h"
#include "sqlgen/generation.h"

namespace quillmarden {

/// What ALTER TABLE text does with the chosen fields.
enum class AlterMode { Add, Change };

/// ALTER TABLE text for these rows of the table on show, its head in front; rows without a field name are left out, and
/// without any the head stands alone. "" for a kind that no such text can be made for.
std::string alterText(const Generation& generation, const std::vector<int>& rows, AlterMode mode);

/// The text for the selected rows of the grid. Nothing, after its message, for a kind without such text and for a
/// selection of the whole grid.
std::optional<std::string> alterTextOfRows(Session& session, Host& host, const frmTBDetail& screen,
                                           const GridSelection& selection, AlterMode mode);
/// The menu of the grid: puts that text on the clipboard. True when nothing was made.
bool mnuAlterTable_Click(Session& session, Host& host, const frmTBDetail& screen, const GridSelection& selection,
                         AlterMode mode);

}  // namespace quillmarden
