#include "sqlgen/runnable/names.h"
#include "sqlgen/runnable/types.h"

namespace quillmarden {

namespace {

std::string computed(std::string_view expression, std::string_view type) {
  return " " + std::string(type) + " GENERATED ALWAYS AS (" + std::string(expression) + ") STORED";
}

std::string drop(const TableNames& table) { return "DROP TABLE IF EXISTS " + table.qualified + " CASCADE\r\n;\r\n"; }

std::string createSchema(std::string_view schema) {
  if (schema == "public") return {};
  return "CREATE SCHEMA IF NOT EXISTS " + quotedName(postgreSqlDialect(), schema) + "\r\n;\r\n";
}

}  // namespace

const Dialect& postgreSqlDialect() {
  static const Dialect dialect{.kind = ScriptKind::PostgreSql,
                               .open = "\"",
                               .close = "\"",
                               .bareCase = Dialect::BareCase::Lower,
                               .nameLimit = 63,
                               .limitInBytes = true,
                               .end = ";",
                               .tableComment = 0,
                               .columnComment = 0,
                               .defaultBeforeNull = true,
                               .indexNamesInSchema = true,
                               .clustered = "",
                               .knowsTypes = true,
                               .mostColumns = 1600,
                               .type = postgreSqlType,
                               .constant = postgreSqlConstant,
                               .computed = computed,
                               .drop = drop,
                               .comment = commentOn,
                               .createSchema = createSchema};
  return dialect;
}

}  // namespace quillmarden
