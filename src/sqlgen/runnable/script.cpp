#include "sqlgen/runnable/script.h"

#include <algorithm>
#include <unordered_set>
#include <utility>

#include "common/text.h"
#include "sqlgen/runnable/tool_text.h"
#include "sqlgen/runnable/writing.h"

namespace quillmarden {

namespace {

// --- drops

/// Tables in an order in which what refers comes before what is referred to; circles are broken anywhere.
std::vector<const ScriptTable*> dropOrder(const Writing& writing) {
  std::vector<const ScriptTable*> parentsFirst;
  std::unordered_set<std::string> seen;
  struct Step {
    const ScriptTable* table;
    std::size_t next;
  };
  for (const ScriptTable& start : writing.script.tables) {
    std::vector<Step> path;
    if (seen.insert(start.id).second) path.push_back({&start, 0});
    while (!path.empty()) {
      Step& step = path.back();
      if (step.next == step.table->foreigns.size()) {
        parentsFirst.push_back(step.table);
        path.pop_back();
        continue;
      }
      const auto parent = writing.byId.find(step.table->foreigns[step.next++].referredId);
      if (parent != writing.byId.end() && seen.insert(parent->first).second) path.push_back({parent->second, 0});
    }
  }
  std::reverse(parentsFirst.begin(), parentsFirst.end());
  return parentsFirst;
}

// --- schemas

/// The schema of the tables, where the kind can make one. What the server has by itself needs no making.
void putSchema(Writing& writing, const ScriptSink& sink) {
  if (writing.script.tables.empty()) return;
  const TableNames& names = namesOf(writing, writing.script.tables.front());
  if (names.schema.empty()) return;
  ScriptText text;
  if (writing.dialect.createSchema) {
    text.text = writing.dialect.createSchema(names.schema);
  } else {
    putRemark(text, "スキーマは作成されている必要があります", names.schema);
  }
  if (!text.text.empty()) sink("", std::move(text));
}

/// The server names the sequence of a column that numbers itself: no table or index may have that name.
void reserveSequences(Writing& writing, const ScriptTable& table, const std::string& name) {
  for (const ScriptColumn& column : table.columns)
    if (!column.computed && column.type->numbersItself)
      writing.tables.reserve(name + "_" + std::string(columnName(writing, table.id, column.name)) + "_seq");
}

/// Copies of the tables as they are now, where they are there.
void putBackups(Writing& writing, const ScriptSink& sink) {
  if (writing.options.backup.empty() || writing.dialect.kind != ScriptKind::Oracle) return;
  ScriptText text;
  for (const ScriptTable& table : writing.script.tables) {
    if (table.temporary) continue;
    const TableNames copy = namesOf(writing, "copy " + table.id, table.name + "_BK" + writing.options.backup);
    text.text +=
        oracleIfThere("CREATE TABLE " + copy.qualified + " AS SELECT * FROM " + namesOf(writing, table).qualified);
  }
  if (!text.text.empty()) sink("", std::move(text));
}

void putDrops(Writing& writing, const ScriptSink& sink) {
  if (!writing.options.drops || writing.script.tables.empty()) return;
  const bool mySql = writing.dialect.kind == ScriptKind::MySql;
  ScriptText text;
  // Tables outside this run may refer to the ones that go.
  if (mySql) text.text += "SET FOREIGN_KEY_CHECKS = 0\r\n;\r\n";
  for (const ScriptTable* table : dropOrder(writing)) text.text += writing.dialect.drop(namesOf(writing, *table));
  if (mySql) text.text += "SET FOREIGN_KEY_CHECKS = 1\r\n;\r\n";
  text.print();
  sink("", std::move(text));
}

void putNameChanges(const Writing& writing, const ScriptSink& sink) {
  ScriptText text;
  const auto put = [&](const NameScope& scope) {
    for (const std::string& change : scope.changes()) putRemark(text, "名称を変更しました", change);
  };
  put(writing.schemas);
  put(writing.tables);
  put(writing.constraints);
  for (const auto& [id, scope] : writing.indexes) put(scope);
  for (const auto& [id, scope] : writing.columns) put(scope);
  if (!text.text.empty()) sink("", std::move(text));
}

}  // namespace

std::optional<ScriptKind> scriptKindOf(std::string_view fileType) {
  const std::string kind = toLower(trim(fileType));
  if (kind == "oracle" || kind == "red brick") return ScriptKind::Oracle;
  if (kind == "sql server") return ScriptKind::SqlServer;
  if (kind == "teradatabase") return ScriptKind::Teradata;
  if (kind == "postgresql") return ScriptKind::PostgreSql;
  if (kind == "mysql") return ScriptKind::MySql;
  return std::nullopt;
}

void putRunnableScript(const RunnableScript& script, const SystemRecord& system, Database& database,
                       const RunnableOptions& options, const ScriptSink& target) {
  const ScriptSink sink = [&](const std::string& table, ScriptText text) {
    text.text = toolText(script.kind, std::move(text.text));
    target(table, std::move(text));
  };
  Writing writing{script, system, database, options, dialectOf(script.kind)};
  for (const ScriptTable& table : script.tables) writing.byId.emplace(table.id, &table);
  for (const ScriptTable& table : script.tables) {  // tables choose before what hangs on them
    const TableNames& names = namesOf(writing, table);
    nameColumns(writing, table);
    if (script.kind == ScriptKind::PostgreSql) reserveSequences(writing, table, names.name);
  }
  noteReferred(writing);
  putSchema(writing, sink);
  putBackups(writing, sink);
  putDrops(writing, sink);
  for (const ScriptTable& table : script.tables) putTable(writing, table, sink);
  putIndexSpace(writing, true, sink);
  for (const ScriptTable& table : script.tables) putIndexes(writing, table, true, sink);
  if (options.foreignKeys)
    for (const ScriptTable& table : script.tables) putForeignKeys(writing, table, sink);
  for (const ScriptTable& table : script.tables) putIndexes(writing, table, false, sink);
  putIndexSpace(writing, false, sink);
  if (options.comments && !writing.dialect.commentsInCreate())
    for (const ScriptTable& table : script.tables) putComments(writing, table, sink);
  putViews(writing, sink);
  putNameChanges(writing, sink);
}

}  // namespace quillmarden
