#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "relations/index.h"
#include "sqlgen/runnable/model.h"
#include "sqlgen/runnable/writing.h"

namespace quillmarden {

/// The primary key or an index of a table, as the server can have it.
struct PlannedKey {
  const TableIndex* index = nullptr;  ///< nullptr for the primary key
  std::string name;                   ///< of an index
  std::vector<std::string> fields;
  std::vector<std::string>
      lengths;  ///< of MySQL: "(255)" behind a field of which only the beginning is covered, else ""
  bool unique = false;
  bool brin = false;
  std::string fault;  ///< why there can be none

  bool partial() const;  ///< covers only the beginnings of some fields
};

/// All keys and indexes of a table, the primary key first where it has one. The same for each call.
std::vector<PlannedKey> plannedKeys(const Writing& writing, const ScriptTable& table);

/// The indexes that a server of MySQL has for a table, those that came by themselves included.
std::size_t countOfIndexes(const ScriptTable& table, const std::vector<PlannedKey>& keys);
constexpr std::size_t kMostMySqlIndexes = 64;

/// The fields of PARTITION BY that the table has, and that a server can part it by.
std::vector<std::string> partitionFields(const ScriptTable& table);

/// Fields of a key or index, quoted, with the lengths that stand behind them.
std::string keyList(Writing& writing, const ScriptTable& table, const PlannedKey& key);

}  // namespace quillmarden
