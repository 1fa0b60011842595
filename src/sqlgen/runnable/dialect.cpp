#include "sqlgen/runnable/dialect.h"

#include <algorithm>
#include <array>
#include <utility>

#include "common/numbers.h"
#include "common/text.h"
#include "sqlgen/runnable/literals.h"
#include "sqlgen/runnable/model.h"
#include "sqlgen/runnable/names.h"

namespace quillmarden {

namespace {

constexpr std::array<std::pair<std::string_view, TypeClass>, 62> kWords = {{
    {"tinyint", TypeClass::Number},
    {"smallint", TypeClass::Number},
    {"mediumint", TypeClass::Number},
    {"int", TypeClass::Number},
    {"integer", TypeClass::Number},
    {"bigint", TypeClass::Number},
    {"int2", TypeClass::Number},
    {"int4", TypeClass::Number},
    {"int8", TypeClass::Number},
    {"byteint", TypeClass::Number},
    {"serial", TypeClass::Number},
    {"bigserial", TypeClass::Number},
    {"smallserial", TypeClass::Number},
    {"numeric", TypeClass::Number},
    {"decimal", TypeClass::Number},
    {"number", TypeClass::Number},
    {"float", TypeClass::Number},
    {"float4", TypeClass::Number},
    {"float8", TypeClass::Number},
    {"double", TypeClass::Number},
    {"real", TypeClass::Number},
    {"binary_float", TypeClass::Number},
    {"binary_double", TypeClass::Number},
    {"money", TypeClass::Number},
    {"smallmoney", TypeClass::Number},
    {"year", TypeClass::Number},
    {"char", TypeClass::Text},
    {"character", TypeClass::Text},
    {"varchar", TypeClass::Text},
    {"varchar2", TypeClass::Text},
    {"nvarchar", TypeClass::Text},
    {"nvarchar2", TypeClass::Text},
    {"nchar", TypeClass::Text},
    {"bpchar", TypeClass::Text},
    {"text", TypeClass::Text},
    {"ntext", TypeClass::Text},
    {"tinytext", TypeClass::Text},
    {"mediumtext", TypeClass::Text},
    {"longtext", TypeClass::Text},
    {"clob", TypeClass::Text},
    {"nclob", TypeClass::Text},
    {"enum", TypeClass::Text},
    {"set", TypeClass::Text},
    {"citext", TypeClass::Text},
    {"name", TypeClass::Text},
    {"date", TypeClass::Date},
    {"datetime", TypeClass::Date},
    {"datetime2", TypeClass::Date},
    {"smalldatetime", TypeClass::Date},
    {"timestamp", TypeClass::Date},
    {"timestamptz", TypeClass::Date},
    {"time", TypeClass::Date},
    {"timetz", TypeClass::Date},
    {"boolean", TypeClass::Boolean},
    {"bool", TypeClass::Boolean},
    {"blob", TypeClass::Binary},
    {"tinyblob", TypeClass::Binary},
    {"mediumblob", TypeClass::Binary},
    {"longblob", TypeClass::Binary},
    {"bytea", TypeClass::Binary},
    {"binary", TypeClass::Binary},
    {"varbinary", TypeClass::Binary},
}};

std::string_view firstWord(std::string_view text) { return text.substr(0, text.find_first_of(" (")); }

}  // namespace

TypeClass commonTypeClass(std::string_view lowerType) {
  if (lowerType.ends_with("[]")) return TypeClass::Other;
  const std::string_view word = firstWord(lowerType);
  const auto found = std::find_if(kWords.begin(), kWords.end(), [&](const auto& entry) { return entry.first == word; });
  return found == kWords.end() ? TypeClass::Other : found->second;
}

std::string typeWithDigits(const ScriptColumn& column, std::initializer_list<std::string_view> takesDigits) {
  const std::string& type = column.type->text;
  if (column.wholeDigits + column.fractionDigits <= 0 || type.find('(') != std::string::npos) return type;
  const std::string& lower = column.type->lower;
  // The longest name wins: "character varying" before "character".
  std::string_view taken;
  for (const std::string_view name : takesDigits)
    if (name.size() > taken.size() && lower.starts_with(name) &&
        (lower.size() == name.size() || lower[name.size()] == ' '))
      taken = name;
  if (taken.empty()) return type;
  std::string sized = type.substr(0, taken.size()) + "(";
  sized += plainNumber(column.wholeDigits + std::max(column.fractionDigits, 0.0));
  if (column.fractionDigits > 0) sized.append(",").append(plainNumber(column.fractionDigits));
  return sized.append(")").append(type, taken.size());
}

void commentOn(const Dialect& dialect, const TableNames& table, std::string_view column, std::string_view text,
               std::string& script) {
  script.append(column.empty() ? "COMMENT ON TABLE " : "COMMENT ON COLUMN ").append(table.qualified);
  if (!column.empty()) {
    script += '.';
    appendName(dialect, column, script);
  }
  script += " IS ";
  appendTextLiteral(dialect, text, script);
  script += "\r\n;\r\n";
}

const Dialect& dialectOf(ScriptKind kind) {
  switch (kind) {
    case ScriptKind::Oracle:
      return oracleDialect();
    case ScriptKind::Teradata:
      return teradataDialect();
    case ScriptKind::SqlServer:
      return sqlServerDialect();
    case ScriptKind::MySql:
      return mySqlDialect();
    case ScriptKind::PostgreSql:
      break;
  }
  return postgreSqlDialect();
}

}  // namespace quillmarden
