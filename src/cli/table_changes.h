#pragma once

#include <optional>
#include <string>
#include <vector>

#include "cli/run.h"
#include "cli/settings.h"
#include "editing/frm_tb_info.h"

namespace quillmarden {

// The steps of the table command. Each gives false after a message.

/// All columns that the header screen edits.
std::vector<SettableColumn> headerColumns(Run& run, frmTBInfo& screen);

bool deleteTable(Run& run, const std::string& id);
bool lockTable(Run& run, const std::string& id, bool locked);
bool moveTable(Run& run, const std::string& id, const std::string& system);
/// Makes these fields, with commas between them, the table's partition list; "" takes it away.
bool partitionTable(Run& run, const std::string& id, const std::string& fields);
/// Copies the file beside the Repository and makes it the table's reference file; "" takes the name away.
bool setReferenceFile(Run& run, const std::string& id, const std::string& file);
/// The ID of the current System's deleted table of that テーブル名 or 日本語名.
std::optional<std::string> findDeletedTable(Run& run, const std::string& name);

}  // namespace quillmarden
