#include <algorithm>
#include <utility>

#include "common/text.h"
#include "sqlgen/runnable/mysql_limits.h"

namespace quillmarden {

namespace {

/// A type that stands for another one: kept with the others, since a column only points at its own.
const ScriptType* keepType(ScriptType type, ScriptLookUps& lookUps) {
  const std::string key = "\n" + type.sql + "\n" + type.fault;
  return &lookUps.types.emplace(key, std::move(type)).first->second;
}

const ScriptType* largeType(const ScriptType& type, ScriptLookUps& lookUps) {
  ScriptType large;
  const bool bytes = type.family == TypeFamily::Bytes;
  large.sql = large.base = bytes ? "blob" : "text";
  large.family = type.family;
  large.charset = type.charset;
  const std::string_view charset = std::string_view(type.charset).substr(0, type.charset.find(' '));
  if (!bytes && !charset.empty()) large.sql += " character set " + std::string(charset);
  noteInstead(large, "行が長すぎる");
  return keepType(std::move(large), lookUps);
}

/// The type without its numbering.
const ScriptType* plainType(const ScriptType& type, ScriptLookUps& lookUps) {
  constexpr std::string_view kNumbering = " auto_increment";
  ScriptType plain = type;
  plain.numbersItself = false;
  const std::size_t at = toLower(plain.sql).find(kNumbering);
  if (at == std::string::npos) {
    plain.sql = "bigint unsigned";
  } else {
    plain.sql.erase(at, kNumbering.size());
  }
  noteInstead(plain, "自動採番にできない");
  return keepType(std::move(plain), lookUps);
}

}  // namespace

void fitMySqlColumns(ScriptTable& table, ScriptLookUps& lookUps) {
  bool numbered = false;
  const std::vector<std::string> key = table.keyFields();
  for (ScriptColumn& column : table.columns) {
    if (column.computed || !column.type->numbersItself) continue;
    // SERIAL brings its own key.
    const bool hasKey = toLower(column.type->sql) == "serial" || (!key.empty() && key.front() == column.name);
    if (numbered || !hasKey) {
      column.type = plainType(*column.type, lookUps);
    } else {
      numbered = true;
    }
  }
  std::vector<RowColumn> row;
  for (const ScriptColumn& column : table.columns) row.push_back({column.type, column.key});
  for (const std::size_t place : tooLargeForRow(row))
    table.columns[place].type = largeType(*table.columns[place].type, lookUps);
}

}  // namespace quillmarden
