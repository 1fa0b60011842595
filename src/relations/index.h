#pragma once

#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "engine/database.h"

namespace quillmarden {

/// A secondary index of a table with its fields in order.
struct TableIndex {
  struct Field {
    long rowNo = 0;
    std::string name;  ///< 項目名
  };
  std::string name;
  std::string remark;
  long uniqueFlag = 0;  ///< bolUNIQUE as stored: 1 or -1 for a unique index
  bool brin = false;
  std::vector<Field> fields;

  bool unique() const { return uniqueFlag != 0; }
  std::vector<std::string> fieldNames() const;
};

/// The indexes of a table, ordered by name, fields by their place. Rows whose field is gone are left out.
std::vector<TableIndex> gGetIndexList(Database& database, std::string_view tableId);

/// The same for all tables of a System, by their ID.
std::unordered_map<std::string, std::vector<TableIndex>> indexesOfSystem(Database& database, std::string_view system);

/// Whether the table has any index row.
bool hasIndexes(Database& database, std::string_view tableId);

/// The names of the table's indexes, each once.
std::vector<std::string> indexNames(Database& database, std::string_view tableId);

}  // namespace quillmarden
