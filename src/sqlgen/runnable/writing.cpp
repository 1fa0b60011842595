#include "sqlgen/runnable/writing.h"

#include <algorithm>

#include "common/text.h"
#include "sqlgen/clauses.h"
#include "sqlgen/runnable/mysql_keys.h"

namespace quillmarden {

namespace {

std::string schemaName(const Writing& writing) {
  switch (writing.dialect.kind) {
    case ScriptKind::PostgreSql:
      return std::string(schemaOf(writing.system));
    case ScriptKind::SqlServer:
      return std::string(trim(writing.system.tableSpace));
    case ScriptKind::Oracle:
      return std::string(trim(writing.system.dbUser));
    default:
      return {};
  }
}

}  // namespace

TableNames namesOf(Writing& writing, const std::string& id, std::string_view name, std::string_view owner) {
  TableNames names;
  names.schema = owner.empty() ? schemaName(writing) : std::string(owner);
  // A table of another System stands in another schema, and takes no name from this one.
  names.name = owner.empty() ? writing.tables.use("table " + id, name) : std::string(name);
  if (!names.schema.empty()) names.qualified = quotedName(writing.dialect, names.schema) + ".";
  names.qualified += quotedName(writing.dialect, names.name);
  return names;
}

const TableNames& namesOf(Writing& writing, const ScriptTable& table) {
  const auto known = writing.names.find(&table);
  if (known != writing.names.end()) return known->second;
  return writing.names.emplace(&table, namesOf(writing, table.id, table.name)).first->second;
}

std::string_view columnName(Writing& writing, const std::string& tableId, std::string_view name) {
  auto scope = writing.columns.find(tableId);
  if (scope == writing.columns.end()) {
    if (fits(writing.dialect, name)) return name;
    scope = writing.columns.try_emplace(tableId, writing.dialect).first;
  }
  return scope->second.use(name, name);
}

void nameLongColumns(Writing& writing, const ScriptTable& table) {
  const auto tooLong = [&](const ScriptColumn& column) { return !fits(writing.dialect, column.name); };
  if (std::none_of(table.columns.begin(), table.columns.end(), tooLong)) return;
  NameScope& scope = writing.columns.try_emplace(table.id, writing.dialect).first->second;
  for (const ScriptColumn& column : table.columns) scope.use(column.name, column.name);
}

std::string quotedColumn(Writing& writing, const std::string& tableId, std::string_view name) {
  return quotedName(writing.dialect, columnName(writing, tableId, name));
}

std::string columnList(Writing& writing, const std::string& tableId, const std::vector<std::string>& names) {
  std::string list;
  for (const std::string& name : names)
    list.append(list.empty() ? "" : ", ").append(quotedColumn(writing, tableId, name));
  return list;
}

std::string keyList(Writing& writing, const ScriptTable& table, const std::vector<std::string>& names) {
  if (writing.dialect.kind != ScriptKind::MySql) return columnList(writing, table.id, names);
  std::string list;
  const std::vector<std::string> lengths = mySqlKeyLengths(table, names);
  for (std::size_t i = 0; i < names.size(); ++i)
    list.append(list.empty() ? "" : ", ").append(quotedColumn(writing, table.id, names[i])).append(lengths[i]);
  return list;
}

std::string madeName(Writing& writing, NameScope& scope, std::string_view word, std::string_view rest) {
  std::string name(word);
  if (writing.dialect.bareCase == Dialect::BareCase::Lower) name = toLower(name);
  name += rest;
  return quotedName(writing.dialect, scope.use(name + " " + std::to_string(scope.uses()), name));
}

bool contains(const std::vector<std::string>& names, std::string_view name) {
  return std::any_of(names.begin(), names.end(), [&](const std::string& other) { return equalsNoCase(other, name); });
}

std::vector<std::string> partitionFields(const ScriptTable& table) {
  std::vector<std::string> fields;
  std::string_view list = table.partition;
  while (!list.empty()) {
    const std::size_t comma = std::min(list.find(','), list.size());
    const std::string_view wanted = trim(list.substr(0, comma));
    for (const ScriptColumn& column : table.columns)
      if (equalsNoCase(column.name, wanted)) fields.emplace_back(column.name);
    list.remove_prefix(std::min(comma + 1, list.size()));
  }
  return fields;
}

bool keepsPartition(const Writing& writing, const ScriptTable& table, const std::vector<std::string>& key) {
  if (writing.dialect.kind != ScriptKind::PostgreSql) return true;
  const std::vector<std::string> fields = partitionFields(table);
  return std::all_of(fields.begin(), fields.end(), [&](const std::string& field) { return contains(key, field); });
}

void putRemark(ScriptText& text, std::string_view remark, std::string_view what) {
  text.print("-- ", remark, ": ", oneLine(what));
}

}  // namespace quillmarden
