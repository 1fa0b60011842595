#pragma once

#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <unordered_map>
#include <unordered_set>
#include <vector>

#include "common/script_file.h"
#include "engine/database.h"
#include "repository/system_record.h"
#include "sqlgen/runnable/dialect.h"
#include "sqlgen/runnable/model.h"
#include "sqlgen/runnable/names.h"
#include "sqlgen/runnable/script.h"

namespace quillmarden {

// What the parts of a script share, and the parts themselves in the order in which they are written.

/// What all statements of one script share, the names that have been given among it.
struct Writing {
  const RunnableScript& script;
  const SystemRecord& system;
  Database& database;
  const RunnableOptions& options;
  const Dialect& dialect;
  ScriptLookUps lookUps{};  ///< of tables that the run does not hold
  /// With the indexes of the kinds where they share a schema's names.
  NameScope tables{dialect, NameOf::Table};
  NameScope constraints{dialect, NameOf::Constraint};
  NameScope schemas{dialect, NameOf::Constraint};
  std::map<std::string, NameScope> indexes{};  ///< by table ID, of the other kinds
  std::map<std::string, NameScope> columns{};  ///< by table ID
  std::unordered_map<std::string, const ScriptTable*> byId{};
  std::unordered_map<const ScriptTable*, TableNames> names{};             ///< of the run's own tables
  std::unordered_map<std::string, std::optional<ScriptTable>> outside{};  ///< tables that the run does not hold, by ID
  std::unordered_set<std::string> referred{};             ///< of Oracle: what keys refer to, as referredKey() has it
  std::unordered_set<const ScriptTable*> unmade{};        ///< tables without a column
  std::unordered_set<const ScriptColumn*> leftOut{};      ///< columns that a server cannot have
  std::unordered_set<const ScriptColumn*> uncountable{};  ///< computed columns of anything but numbers
};

/// The names of a table: with an owner, of one in another schema, which takes no name from this script.
TableNames namesOf(Writing& writing, const std::string& id, std::string_view name, std::string_view owner = "");
const TableNames& namesOf(Writing& writing, const ScriptTable& table);

/// The name a column has been given. Names that fit keep what they have and are not even looked up, unless another of
/// the table had to change.
std::string_view columnName(Writing& writing, const std::string& tableId, std::string_view name);
/// Where a name of a table does not fit, or is another's to the server, the names of all its columns are given in their
/// order.
void nameColumns(Writing& writing, const ScriptTable& table);
std::string quotedColumn(Writing& writing, const std::string& tableId, std::string_view name);
/// Quoted columns joined by ", ".
std::string columnList(Writing& writing, const std::string& tableId, const std::vector<std::string>& names);
/// A new quoted name of the scope, made of a word such as "PK_" and what it is for.
std::string madeName(Writing& writing, NameScope& scope, std::string_view word, std::string_view rest);
/// The scope of the table's index names.
NameScope& indexScope(Writing& writing, const ScriptTable& table);

bool contains(const std::vector<std::string>& names, std::string_view name);

/// A comment line of the script about something that could not be had as defined.
void putRemark(ScriptText& text, std::string_view remark, std::string_view what);

// --- tables
void putTable(Writing& writing, const ScriptTable& table, const ScriptSink& sink);
void putComments(Writing& writing, const ScriptTable& table, const ScriptSink& sink);

// --- keys between tables, and indexes
/// Notes which unique indexes have to be constraints. Comes before the first index.
void noteReferred(Writing& writing);
void putForeignKeys(Writing& writing, const ScriptTable& table, const ScriptSink& sink);
/// Those that keys may refer to, or the others.
void putIndexes(Writing& writing, const ScriptTable& table, bool beforeKeys, const ScriptSink& sink);
/// What stands around the indexes: where the server is to keep them.
void putIndexSpace(Writing& writing, bool begins, const ScriptSink& sink);

// --- views
void putViews(Writing& writing, const ScriptSink& sink);

/// A list of fields as the set of referred ones holds it.
std::string referredKey(const std::string& tableId, const std::vector<std::string>& fields);

}  // namespace quillmarden
