#pragma once

#include <string>
#include <string_view>
#include <unordered_map>
#include <utility>
#include <vector>

#include "relations/index.h"
#include "sqlgen/generation.h"
#include "sqlgen/runnable/dialect.h"

namespace quillmarden {

/// A column as the definition has it, free of any dialect.
struct ScriptColumn {
  std::string name;
  std::string type;  ///< as stored
  double wholeDigits = 0;
  double fractionDigits = 0;
  bool key = false;
  bool notNull = false;
  bool computed = false;  ///< the remark is the expression
  std::string defaultText;
  std::string remark;
  std::vector<std::string> values;  ///< of its value list
  bool valuesAreText = false;
  std::string rangeKind;
  std::string rangeStart;
  std::string rangeEnd;
};

/// The fields of one table that refer to one other table, in the order of the referred fields.
struct ScriptForeign {
  std::string referredId;
  std::string referredTable;
  std::string referredShortName;
  std::string referredOwner;  ///< schema of another System, "" for the own
  std::vector<std::string> own;
  std::vector<std::string> referred;
};

/// A table with all that its statements need.
struct ScriptTable {
  std::string id;
  std::string name;
  std::string shortName;  ///< 略名 or, where it has none, the ID
  std::string memo;
  std::string head;  ///< the comment block in front of its CREATE
  std::vector<ScriptColumn> columns;
  std::vector<TableIndex> indexes;
  std::vector<ScriptForeign> foreigns;
  std::string partition;  ///< fields of PARTITION BY RANGE
  bool brin = false;
  bool temporary = false;
  bool isSet = false;   ///< of Teradata: takes no row twice
  std::string storage;  ///< of Oracle: clauses behind the closing bracket

  const ScriptColumn* column(std::string_view name) const;
  std::vector<std::string> keyFields() const;
};

/// A view over one table.
struct ScriptView {
  std::string name;  ///< of the view
  std::string table;
  std::string head;
  std::vector<std::pair<std::string, std::string>> items;  ///< source column and name in the view, "" for its own
};

/// What a run looks up beside the grid, each once.
struct ScriptLookUps {
  struct ValueList {
    std::vector<std::string> values;
    bool text = false;
  };
  std::unordered_map<std::string, ValueList> lists;  ///< by name
  /// Set for a run over many tables: keys and indexes of the whole System are then read in one go.
  bool manyTables = false;
  bool foreignsRead = false;
  bool indexesRead = false;
  std::unordered_map<std::string, std::vector<ScriptForeign>> foreigns;  ///< by the ID of the table that refers
  std::unordered_map<std::string, std::vector<TableIndex>> indexes;      ///< by the table's ID
};

/// Reads the table on show and what belongs to it.
ScriptTable readScriptTable(const Generation& generation, ScriptKind kind, ScriptLookUps& lookUps);

/// Reads the table on show as a view: a name with "V_" is the view's own, any other that of its table.
ScriptView readScriptView(const Generation& generation);

/// The key and unique columns of a table that is not in the run: each a list of field names.
std::vector<std::vector<std::string>> uniqueFieldLists(Database& database, std::string_view tableId);

}  // namespace quillmarden
