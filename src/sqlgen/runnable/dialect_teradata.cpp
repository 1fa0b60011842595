#include "common/text.h"
#include "sqlgen/runnable/literals.h"
#include "sqlgen/runnable/names.h"

namespace quillmarden {

namespace {

std::string type(const ScriptColumn& column) {
  const std::string& lower = column.type->lower;
  if (lower == "timestamp") return "timestamp(0)";
  ScriptColumn sized = column;
  if (lower == "varchar" && column.wholeDigits <= 0) sized.wholeDigits = 255;
  const std::string text = typeWithDigits(sized, {"char", "varchar", "decimal", "numeric", "byte", "varbyte"});
  const bool character = lower == "char" || lower == "varchar";
  return character ? text + " CHARACTER SET UNICODE NOT CASESPECIFIC" : text;
}

std::string computed(std::string_view) { return {}; }

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
                               .type = type,
                               .typeClass = commonTypeClass,
                               .computed = computed,
                               .drop = drop,
                               .comment = commentOn};
  return dialect;
}

}  // namespace quillmarden
