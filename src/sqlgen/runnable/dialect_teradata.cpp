#include "common/text.h"
#include "sqlgen/runnable/literals.h"
#include "sqlgen/runnable/names.h"
#include "sqlgen/runnable/types.h"
#include "sqlgen/runnable/values.h"

namespace quillmarden {

namespace {

ScriptType type(const TypeCell& cell) {
  TypeCell sized = cell;
  if (toLower(trim(cell.text)) == "varchar" && cell.wholeDigits <= 0) sized.wholeDigits = 255;
  ScriptType found =
      looseType(ScriptKind::Teradata, sized, {"char", "varchar", "decimal", "numeric", "byte", "varbyte"}, "varchar");
  if (found.base == "timestamp") found.sql = "timestamp(0)";
  if (found.base == "char" || found.base == "varchar") found.sql += " CHARACTER SET UNICODE NOT CASESPECIFIC";
  return found;
}

std::optional<std::string> constant(const ScriptType& type, std::string_view text, ConstantUse) {
  return looseConstant(ScriptKind::Teradata, type, text);
}

std::string computed(std::string_view, std::string_view) { return {}; }

/// The tool's own way to say "if it is there": error 3807 is no fault for the length of this statement.
/// What refers to the table loses its key with it.
std::string drop(const TableNames& table) {
  return ".SET ERRORLEVEL 3807 SEVERITY 0\r\nDROP TABLE " + table.qualified +
         " ALL\r\n;\r\n.SET ERRORLEVEL 3807 SEVERITY 8\r\n";
}

}  // namespace

const Dialect& teradataDialect() {
  static const Dialect dialect{.kind = ScriptKind::Teradata,
                               .open = "\"",
                               .close = "\"",
                               .bareCase = Dialect::BareCase::Kept,
                               .nameLimit = 128,
                               .limitInBytes = false,
                               .end = ";",
                               .tableComment = 255,
                               .columnComment = 255,
                               .defaultBeforeNull = true,
                               .indexNamesInSchema = false,
                               .clustered = "",
                               .knowsTypes = false,
                               .mostColumns = 2048,
                               .type = type,
                               .constant = constant,
                               .computed = computed,
                               .drop = drop,
                               .comment = commentOn};
  return dialect;
}

}  // namespace quillmarden
