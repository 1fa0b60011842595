#include "common/text.h"
#include "sqlgen/clauses.h"
#include "sqlgen/runnable/literals.h"
#include "sqlgen/runnable/names.h"
#include "sqlgen/runnable/tool_text.h"
#include "sqlgen/runnable/types.h"
#include "sqlgen/runnable/values.h"

namespace quillmarden {

namespace {

ScriptType type(const TypeCell& cell) {
  ScriptType found =
      looseType(ScriptKind::Oracle, cell,
                {"number", "varchar2", "nvarchar2", "varchar", "char", "nchar", "raw", "float"}, "varchar2");
  if (found.sql == "interval") found.sql = "interval day to second";
  const bool bare = found.sql.find('(') == std::string::npos;
  if (bare && (found.base == "varchar2" || found.base == "nvarchar2" || found.base == "raw")) found.sql += "(255)";
  // A date has a time of day there.
  if (found.base == "date") found.family = TypeFamily::Moment;
  return found;
}

std::optional<std::string> constant(const ScriptType& type, std::string_view text, ConstantUse) {
  return looseConstant(ScriptKind::Oracle, type, text);
}

/// In one line: an empty one would end the statement for the command-line tool.
std::string computed(std::string_view expression, std::string_view) {
  return " GENERATED ALWAYS AS (" + oneLine(expression) + ")";
}

std::string drop(const TableNames& table) {
  return oracleIfThere("DROP TABLE " + table.qualified + " CASCADE CONSTRAINTS");
}

/// The tool has a longest line, and this statement takes no text in pieces: a block can join them.
void comment(const Dialect& dialect, const TableNames& table, std::string_view column, std::string_view text,
             std::string& script) {
  const std::size_t before = script.size();
  commentOn(dialect, table, column, text, script);
  const std::size_t end = script.find("\r\n", before);
  if (end - before <= kLongestOracleLine) return;
  const std::string statement = script.substr(before, end - before);
  script.resize(before);
  script += oracleBlock(statement);
}

}  // namespace

std::string oracleBlock(std::string_view statement) {
  return "BEGIN\r\n  EXECUTE IMMEDIATE " + textLiteral(oracleDialect(), statement) + ";\r\nEND;\r\n/\r\n";
}

std::string oracleIfThere(std::string_view statement) {
  return "BEGIN\r\n  EXECUTE IMMEDIATE " + textLiteral(oracleDialect(), statement) +
         ";\r\nEXCEPTION\r\n  WHEN OTHERS THEN\r\n    IF SQLCODE <> -942 THEN\r\n      RAISE;\r\n    END "
         "IF;\r\nEND;\r\n/\r\n";
}

const Dialect& oracleDialect() {
  static const Dialect dialect{.kind = ScriptKind::Oracle,
                               .open = "\"",
                               .close = "\"",
                               .bareCase = Dialect::BareCase::Upper,
                               .nameLimit = 128,
                               .limitInBytes = true,
                               .end = ";",
                               .tableComment = 1333,
                               .columnComment = 1333,
                               .defaultBeforeNull = true,
                               .indexNamesInSchema = true,
                               .clustered = "",
                               .knowsTypes = false,
                               .mostColumns = 1000,
                               .type = type,
                               .constant = constant,
                               .computed = computed,
                               .drop = drop,
                               .comment = comment};
  return dialect;
}

}  // namespace quillmarden
