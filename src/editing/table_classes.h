#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "engine/database.h"

namespace quillmarden {

/// The classes of a table, 分類, with a blank one first.
std::vector<std::string> tableClasses();

/// A blank row, then the non-blank values of a query's first column.
std::vector<std::string> blankAndValues(Database& database, const std::string& sql);

/// The values in use of データ分類 and データ分類2 in the System's live tables, a blank one first.
std::vector<std::string> dataClassesInUse(Database& database, std::string_view system);

}  // namespace quillmarden
