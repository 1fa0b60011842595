#pragma once

#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "common/script_file.h"
#include "sqlgen/generation.h"
#include "sqlgen/runnable/model.h"

namespace quillmarden {

// The second form of a script: one that a server takes as it stands. A run collects its tables first, since what
// refers to a table can only be written when all tables are there.

/// The kind of a table's script, nothing for a kind that no script can be made for.
std::optional<ScriptKind> scriptKindOf(std::string_view fileType);

/// What a run writes beside the tables themselves.
struct RunnableOptions {
  bool drops = false;
  bool foreignKeys = true;
  bool comments = true;
  bool checks = true;
  bool defaults = true;
  bool storage = true;
  std::string backup;  ///< of Oracle: behind the names of copies that are made first, "" for none
};

/// The tables of a run that are of one kind, and its views.
struct RunnableScript {
  ScriptKind kind{};
  std::vector<ScriptTable> tables;
  std::vector<ScriptView> views;
  ScriptLookUps lookUps;
};

/// Takes each piece of the script with the name of its table.
using ScriptSink = std::function<void(const std::string& table, ScriptText text)>;

/// Writes drops, tables, unique indexes, keys between tables, other indexes, comments and views, in this order.
void putRunnableScript(const RunnableScript& script, const SystemRecord& system, Database& database,
                       const RunnableOptions& options, const ScriptSink& target);

}  // namespace quillmarden
