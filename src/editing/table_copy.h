#pragma once

#include <string>
#include <string_view>

#include "editing/frm_tb_info.h"

namespace quillmarden {

/// Fills the header screen for a copy of a table, in the current System: a new table with the header of that one under
/// names that are free. Its first save takes fields, indexes and memo lines along. True when there is no such table,
/// after its message.
bool frmTBInfo_LoadCopy(Session& session, Host& host, frmTBInfo& screen, std::string_view tableId);

/// Gives the new table `tableId` what hangs on the one that the screen is a copy of. References of the table to itself
/// point at the copy, those to others stay; indexes get names that no other index of the System has. Throws
/// EngineError.
void copyTableContents(Session& session, Host& host, const frmTBInfo& screen, const std::string& tableId);

}  // namespace quillmarden
