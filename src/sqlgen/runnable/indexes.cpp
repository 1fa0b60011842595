#include <utility>

#include "common/text.h"
#include "sqlgen/runnable/key_plan.h"
#include "sqlgen/runnable/literals.h"
#include "sqlgen/runnable/writing.h"

namespace quillmarden {

namespace {

std::string indexStatement(Writing& writing, const ScriptTable& table, const PlannedKey& key) {
  const Dialect& dialect = writing.dialect;
  const std::string name =
      quotedName(dialect, indexScope(writing, table).use("index " + table.id + " " + key.name, key.name));
  const std::string& qualified = namesOf(writing, table).qualified;
  const std::string fields = " (" + keyList(writing, table, key) + ")";
  const std::string_view space =
      writing.options.storage && !table.temporary ? trim(writing.system.indexSpace) : std::string_view();
  if (key.unique && writing.referred.contains(referredKey(table.id, key.fields))) {
    const std::string constraint = "ALTER TABLE " + qualified + " ADD CONSTRAINT " + name + " UNIQUE" + fields;
    return space.empty() ? constraint : constraint + " USING INDEX TABLESPACE " + serverName(dialect, space);
  }
  std::string statement = key.unique ? "CREATE UNIQUE " : "CREATE ";
  if (dialect.kind == ScriptKind::SqlServer) statement += "NONCLUSTERED ";
  statement += "INDEX " + name;
  // Teradata names the fields in front of the table.
  if (dialect.kind == ScriptKind::Teradata) return statement + fields + " ON " + qualified;
  statement += " ON " + qualified + (key.brin ? " USING brin" : "") + fields;
  if (space.empty()) return statement;
  if (dialect.kind == ScriptKind::SqlServer) return statement + " ON " + quotedName(dialect, space);
  return dialect.kind == ScriptKind::Oracle ? statement + " TABLESPACE " + serverName(dialect, space) : statement;
}

/// Keys between tables may refer to the fields of these, which therefore come first.
bool comesBeforeKeys(const Dialect& dialect, const PlannedKey& key) {
  return dialect.kind == ScriptKind::MySql || key.unique;
}

}  // namespace

void putIndexSpace(Writing& writing, bool begins, const ScriptSink& sink) {
  const std::string_view space = trim(writing.system.indexSpace);
  if (writing.dialect.kind != ScriptKind::PostgreSql || !writing.options.storage || space.empty()) return;
  ScriptText text;
  if (begins) {
    // Indexes are worth more than their place: where the server has none of this name, they stand with their tables.
    putRemark(text, "テーブルスペースがないときは、既定の場所に作成します", space);
    const std::string look =
        "BEGIN PERFORM set_config('default_tablespace', spcname, false) "
        "FROM pg_catalog.pg_tablespace WHERE spcname = " +
        textLiteral(writing.dialect, space) + "; END";
    text.print("DO ", textLiteral(writing.dialect, look));
  } else {
    text.print("SET default_tablespace = ''");
  }
  text.print(writing.dialect.end);
  sink("", std::move(text));
}

void putIndexes(Writing& writing, const ScriptTable& table, bool beforeKeys, const ScriptSink& sink) {
  if (writing.unmade.contains(&table)) return;
  ScriptText text;
  for (const PlannedKey& key : plannedKeys(writing, table)) {
    if (!key.index || comesBeforeKeys(writing.dialect, key) != beforeKeys) continue;
    const std::string what = table.name + "." + key.name;
    if (!key.fault.empty()) {
      putRemark(text, "インデックスを作成できません. " + key.fault, what);
      continue;
    }
    if (key.partial())
      putRemark(text,
                key.unique ? "インデックスは項目の先頭だけで一意になります" : "インデックスは項目の先頭だけになります",
                what);
    text.print(indexStatement(writing, table, key));
    text.print(writing.dialect.end);
  }
  if (!text.text.empty()) sink(table.name, std::move(text));
}

}  // namespace quillmarden
