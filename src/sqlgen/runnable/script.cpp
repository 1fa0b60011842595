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

// --- views

std::string_view viewWords(ScriptKind kind) {
  if (kind == ScriptKind::SqlServer) return "CREATE OR ALTER VIEW ";
  return kind == ScriptKind::Teradata ? "REPLACE VIEW " : "CREATE OR REPLACE VIEW ";
}

void putView(Writing& writing, const ScriptView& view, const ScriptSink& sink) {
  const Dialect& dialect = writing.dialect;
  const std::vector<ScriptTable>& tables = writing.script.tables;
  const auto table = std::find_if(tables.begin(), tables.end(),
                                  [&](const ScriptTable& other) { return equalsNoCase(other.name, view.table); });
  // The server's own tables are not defined here: their names take the server's case.
  const bool defined = table != tables.end();
  const auto columnOf = [&](std::string_view name) {
    return defined ? quotedColumn(writing, table->id, name) : serverName(dialect, name);
  };
  ScriptText text;
  text.text = view.head;
  if (view.items.empty()) {
    putRemark(text, "項目がないため作成できません", view.name);
    sink(view.name, std::move(text));
    return;
  }
  text.print(viewWords(dialect.kind), namesOf(writing, "view " + view.name, view.name).qualified, " AS");
  for (const auto& [source, alias] : view.items) {
    const std::string as = alias.empty() ? "" : " AS " + quotedName(dialect, alias);
    text.print(&source == &view.items.front().first ? "SELECT\ta." : "\t,a.", columnOf(source), as);
  }
  text.print("FROM ", defined ? namesOf(writing, *table).qualified : serverName(dialect, view.table), " a");
  text.print(dialect.end);
  sink(view.name, std::move(text));
}

void putNameChanges(const Writing& writing, const ScriptSink& sink) {
  ScriptText text;
  const auto put = [&](const NameScope& scope) {
    for (const std::string& change : scope.changes()) putRemark(text, "名称を変更しました", change);
  };
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
    namesOf(writing, table);
    nameLongColumns(writing, table);
  }
  noteReferred(writing);
  putSchema(writing, sink);
  putBackups(writing, sink);
  putDrops(writing, sink);
  for (const ScriptTable& table : script.tables) putTable(writing, table, sink);
  for (const ScriptTable& table : script.tables) putIndexes(writing, table, true, sink);
  if (options.foreignKeys)
    for (const ScriptTable& table : script.tables) putForeignKeys(writing, table, sink);
  for (const ScriptTable& table : script.tables) putIndexes(writing, table, false, sink);
  if (options.comments && !writing.dialect.commentsInCreate())
    for (const ScriptTable& table : script.tables) putComments(writing, table, sink);
  for (const ScriptView& view : script.views) putView(writing, view, sink);
  putNameChanges(writing, sink);
}

}  // namespace quillmarden
