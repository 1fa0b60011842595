#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "common/outcome.h"
#include "repository/session.h"
#include "screen/host.h"

namespace quillmarden {

/// A table that was deleted and is kept, hidden from every list.
struct DeletedTable {
  std::string id;
  std::string tableName;
  std::string japaneseName;
  std::string updatedAt;  ///< of the last save, as stored
  std::string updatedBy;
};

/// The deleted tables of a System by name, the latest of equal names first.
std::vector<DeletedTable> deletedTables(Database& database, std::string_view system);

/// Brings a deleted table back, after a question, with its fields and indexes as they were. Refused where a live table
/// of its System has taken one of its names meanwhile.
Outcome restoreTable(Session& session, Host& host, std::string_view tableId);

}  // namespace quillmarden
