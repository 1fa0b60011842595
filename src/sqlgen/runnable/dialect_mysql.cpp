#include "sqlgen/runnable/types.h"

namespace quillmarden {

namespace {

std::string computed(std::string_view expression, std::string_view type) {
  return " " + std::string(type) + " GENERATED ALWAYS AS (" + std::string(expression) + ") VIRTUAL";
}

std::string drop(const TableNames& table) { return "DROP TABLE IF EXISTS " + table.qualified + "\r\n;\r\n"; }

}  // namespace

const Dialect& mySqlDialect() {
  static const Dialect dialect{.kind = ScriptKind::MySql,
                               .open = "`",
                               .close = "`",
                               .bareCase = Dialect::BareCase::Kept,
                               .nameLimit = 64,
                               .limitInBytes = false,
                               .end = ";",
                               .tableComment = 2048,
                               .columnComment = 1024,
                               .defaultBeforeNull = false,
                               .indexNamesInSchema = false,
                               .clustered = "",
                               .knowsTypes = true,
                               .mostColumns = 1017,
                               .type = mySqlType,
                               .constant = mySqlConstant,
                               .computed = computed,
                               .drop = drop,
                               .comment = nullptr};
  return dialect;
}

}  // namespace quillmarden
