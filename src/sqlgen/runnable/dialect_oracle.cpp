#include "common/text.h"
#include "sqlgen/runnable/literals.h"
#include "sqlgen/runnable/names.h"

namespace quillmarden {

namespace {

std::string type(const ScriptColumn& column) {
  const std::string lower = lowerType(column);
  if (lower == "interval") return "interval day to second";
  if (column.wholeDigits <= 0 && column.type.find('(') == std::string::npos &&
      (lower == "varchar2" || lower == "nvarchar2" || lower == "raw"))
    return std::string(trim(column.type)) + "(255)";
  return typeWithDigits(column, {"number", "varchar2", "nvarchar2", "varchar", "char", "nchar", "raw", "float"});
}

std::string computed(std::string_view expression) { return " GENERATED ALWAYS AS (" + std::string(expression) + ")"; }

std::string drop(const TableNames& table) {
  return oracleIfThere("DROP TABLE " + table.qualified + " CASCADE CONSTRAINTS");
}

}  // namespace

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
                               .type = type,
                               .typeClass = commonTypeClass,
                               .computed = computed,
                               .drop = drop,
                               .comment = commentOn};
  return dialect;
}

}  // namespace quillmarden
