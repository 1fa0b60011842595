#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "engine/database.h"

namespace quillmarden {

/// A shared table of another System that a System uses.
struct UsedTable {
  std::string id;
  std::string systemName;
  std::string tableName;
  std::string japaneseName;
  std::string fileType;
};

/// The live tables of other Systems that this System has picked with at least a row in DAT_TABLEREF, by System and
/// Japanese name.
std::vector<UsedTable> usedTables(Database& database, std::string_view system);

}  // namespace quillmarden
