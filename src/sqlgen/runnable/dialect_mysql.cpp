#include "common/text.h"
#include "sqlgen/runnable/literals.h"
#include "sqlgen/runnable/names.h"

namespace quillmarden {

namespace {

std::string type(const ScriptColumn& column) {
  const std::string& lower = column.type->lower;
  const bool bare = column.wholeDigits <= 0 && column.type->text.find('(') == std::string::npos;
  // Types that cannot stand without a length or a list.
  if (bare && (lower == "varchar" || lower == "varbinary")) return column.type->text + "(255)";
  if (bare && (lower == "enum" || lower == "set")) {
    if (!column.list) return "varchar(255)";
    std::string list;
    for (const std::string& value : column.list->values)
      list.append(list.empty() ? "" : ",").append(textLiteral(mySqlDialect(), value));
    return column.type->text + "(" + list + ")";
  }
  return typeWithDigits(
      column, {"char", "varchar", "nchar", "nvarchar", "binary", "varbinary", "decimal", "dec", "numeric", "bit"});
}

std::string computed(std::string_view expression) {
  return " decimal(65,10) GENERATED ALWAYS AS (" + std::string(expression) + ") VIRTUAL";
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
                               .type = type,
                               .typeClass = commonTypeClass,
                               .computed = computed,
                               .drop = drop,
                               .comment = nullptr};
  return dialect;
}

}  // namespace quillmarden
