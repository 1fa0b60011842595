#include "sqlgen/sql_server_clauses.h"

#include "common/text.h"

namespace quillmarden {

std::string quotedTable(const Generation& generation) {
  const std::string table = "[" + generation.table.txtTableNameENG.text + "]";
  const std::string_view owner = trim(generation.system.tableSpace);
  return owner.empty() ? table : "[" + std::string(owner) + "]." + table;
}

std::string bracketedType(std::string_view type) {
  if (type == "@AUTO_NO") return "[int] identity(1,1)";
  const std::size_t word = toLower(type).find("identity");
  if (word == std::string::npos) return "[" + std::string(type) + "]";
  return "[" + std::string(trim(type.substr(0, word))) + "] identity(1,1)";
}

}  // namespace quillmarden
