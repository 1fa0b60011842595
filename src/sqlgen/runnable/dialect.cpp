#include "sqlgen/runnable/dialect.h"

#include "sqlgen/runnable/literals.h"
#include "sqlgen/runnable/names.h"

namespace quillmarden {

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
