#include "sqlgen/runnable/writing.h"

#include <algorithm>

#include "common/text.h"
#include "sqlgen/clauses.h"

namespace quillmarden {

namespace {

/// The schema in front of all names, without quotes; "" where the script names none.
std::string schemaName(Writing& writing, std::string_view owner) {
  std::string_view name = owner;
  if (name.empty()) {
    switch (writing.dialect.kind) {
      case ScriptKind::PostgreSql:
        name = schemaOf(writing.system);
        break;
      case ScriptKind::SqlServer:
        name = trim(writing.system.tableSpace);
        break;
      case ScriptKind::Oracle:
        name = trim(writing.system.dbUser);
        break;
      default:
        return {};
    }
  }
  if (name.empty()) return {};
  // PostgreSQL keeps these for itself.
  const bool own = writing.dialect.kind == ScriptKind::PostgreSql && name.starts_with("pg_");
  const std::string free = own ? "_" + std::string(name) : std::string(name);
  return writing.schemas.use(name, free);
}

/// A schema that the script makes has its name as it stands; one that is a user has it in the server's case.
std::string quotedSchema(const Dialect& dialect, std::string_view name) {
  return dialect.kind == ScriptKind::Oracle ? serverName(dialect, name) : quotedName(dialect, name);
}

}  // namespace

TableNames namesOf(Writing& writing, const std::string& id, std::string_view name, std::string_view owner) {
  TableNames names;
  names.schema = schemaName(writing, owner);
  // A table of another System stands in another schema, and takes no name from this one.
  names.name = owner.empty() ? writing.tables.use("table " + id, name) : std::string(name);
  if (!names.schema.empty()) names.qualified = quotedSchema(writing.dialect, names.schema) + ".";
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
    if (fits(writing.dialect, NameOf::Column, name)) return name;
    scope = writing.columns.try_emplace(tableId, writing.dialect, NameOf::Column).first;
  }
  return scope->second.use(name, name);
}

void nameColumns(Writing& writing, const ScriptTable& table) {
  bool changes = false;
  std::vector<std::string> folded;
  folded.reserve(table.columns.size());
  for (const ScriptColumn& column : table.columns) {
    changes = changes || !fits(writing.dialect, NameOf::Column, column.name);
    folded.push_back(foldedName(writing.dialect, column.name));
  }
  std::sort(folded.begin(), folded.end());
  if (!changes && std::adjacent_find(folded.begin(), folded.end()) == folded.end()) return;
  NameScope& scope = writing.columns.try_emplace(table.id, writing.dialect, NameOf::Column).first->second;
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

std::string madeName(Writing& writing, NameScope& scope, std::string_view word, std::string_view rest) {
  std::string name(word);
  if (writing.dialect.bareCase == Dialect::BareCase::Lower) name = toLower(name);
  name += rest;
  return quotedName(writing.dialect, scope.useOnce(name));
}

NameScope& indexScope(Writing& writing, const ScriptTable& table) {
  if (writing.dialect.indexNamesInSchema) return writing.tables;
  return writing.indexes.try_emplace(table.id, writing.dialect, NameOf::Index).first->second;
}

bool contains(const std::vector<std::string>& names, std::string_view name) {
  return std::any_of(names.begin(), names.end(), [&](const std::string& other) { return equalsNoCase(other, name); });
}

void putRemark(ScriptText& text, std::string_view remark, std::string_view what) {
  text.print("-- ", oneLine(remark), ": ", oneLine(what));
}

}  // namespace quillmarden
