#pragma once

#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <unordered_map>
#include <utility>
#include <vector>

#include "relations/index.h"
#include "sqlgen/generation.h"
#include "sqlgen/runnable/dialect.h"
#include "sqlgen/runnable/types.h"

namespace quillmarden {

/// The values of a list, blank ones left out.
struct ScriptValues {
  std::vector<std::string> values;
  bool text = false;  ///< by the list's 型
};

/// A column as the definition has it, free of any dialect. Its texts lie with its table: a run holds a great many.
struct ScriptColumn {
  std::string_view name;
  const ScriptType* type = nullptr;
  bool key = false;
  bool notNull = false;
  bool computed = false;  ///< the remark is the expression
  std::string_view defaultText;
  std::string_view remark;
  const ScriptValues* list = nullptr;  ///< nullptr without a value list
  std::string_view rangeKind;
  std::string_view rangeStart;
  std::string_view rangeEnd;

  bool checked() const { return list || !rangeKind.empty(); }
};

/// The fields of one table that refer to one other table, in the order of the referred fields. They may be more keys
/// than one.
struct ScriptForeign {
  struct Pair {
    std::string own;
    std::string referred;
  };
  std::string referredId;
  std::string referredTable;
  std::string referredShortName;
  std::string referredOwner;  ///< schema of another System, "" for the own
  std::vector<Pair> pairs;
};

/// A table with all that its statements need.
struct ScriptTable {
  std::string id;
  std::string name;
  std::string shortName;  ///< 略名 or, where it has none, the ID
  std::string memo;
  std::string head;  ///< the comment block in front of its CREATE
  std::vector<ScriptColumn> columns;
  std::unique_ptr<char[]> columnTexts;  ///< what the columns' texts are parts of
  std::vector<TableIndex> indexes;
  std::vector<ScriptForeign> foreigns;
  std::string partition;  ///< fields of PARTITION BY RANGE
  bool brin = false;
  bool temporary = false;
  bool isSet = false;                                             ///< of Teradata: takes no row twice
  std::string storage;                                            ///< of Oracle: clauses behind the closing bracket
  std::vector<std::pair<std::string_view, std::string>> remarks;  ///< what was left out already, and of what

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
  /// Finds by parts of texts, without a copy.
  struct TextHash {
    using is_transparent = void;
    std::size_t operator()(std::string_view text) const { return std::hash<std::string_view>()(text); }
  };
  template <typename Value>
  using ByText = std::unordered_map<std::string, Value, TextHash, std::equal_to<>>;

  ByText<ScriptValues> lists;  ///< by name
  ByText<ScriptType> types;    ///< by their text as stored, with digits and list
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

/// A table that the run does not hold, as keys that refer to it need it: columns, key, unique indexes. Nothing for one
/// that a script of the kind would not make either.
std::optional<ScriptTable> readReferredTable(Database& database, ScriptKind kind, std::string_view tableId,
                                             ScriptLookUps& lookUps);

/// The type of a cell, each read once.
const ScriptType& typeOf(ScriptKind kind, const TypeCell& cell, ScriptLookUps& lookUps);

}  // namespace quillmarden
