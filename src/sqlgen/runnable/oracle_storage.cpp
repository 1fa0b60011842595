#include "sqlgen/runnable/oracle_storage.h"

#include "common/numbers.h"
#include "common/text.h"
#include "sqlgen/clauses.h"
#include "sqlgen/runnable/names.h"

namespace quillmarden {

std::string oracleStorage(const Generation& generation) {
  const auto& figures = generation.table.lblNum;
  std::string text;
  const auto add = [&](std::string& clause, std::string_view words, std::size_t place, bool sized) {
    const std::string& figure = figures[place].caption;
    if (numberIn(figure) == 0) return;
    clause.append(words).append(plainNumber(numberIn(figure)));
    if (sized) clause.append(figure.find('M') != std::string::npos ? "M" : "K");
    clause.append("\r\n");
  };
  add(text, " PCTFREE ", 5, false);
  add(text, " PCTUSED ", 6, false);
  std::string_view space = trim(generation.table.lblTbSpace.caption);
  if (space.empty()) space = trim(generation.system.tableSpace);
  if (!space.empty()) text.append(" TABLESPACE ").append(serverName(oracleDialect(), space)).append("\r\n");
  std::string inner;
  add(inner, "\t INITIAL ", 0, true);
  add(inner, "\t NEXT ", 1, true);
  add(inner, "\t MINEXTENTS ", 2, false);
  add(inner, "\t MAXEXTENTS ", 3, false);
  add(inner, "\t PCTINCREASE ", 4, false);
  if (!inner.empty()) text.append(" STORAGE (\r\n").append(inner).append("\t ) ");
  return text;
}

}  // namespace quillmarden
