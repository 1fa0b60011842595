#pragma once

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

/// The menu of the grid: puts the text for the selected rows on the clipboard. index 0 adds columns, 1 changes them.
/// True when nothing was made, after its message.
bool mnuAlterTable_Click(Session& session, Host& host, const frmTBDetail& screen, const GridSelection& selection,
                         int index);

}  // namespace quillmarden
