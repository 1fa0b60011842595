#include "sqlgen/oracle_clauses.h"

#include <fmt/format.h>

#include "common/numbers.h"
#include "common/text.h"
#include "sqlgen/check_list.h"
#include "sqlgen/clauses.h"
#include "sqlgen/fk_clause.h"

namespace quillmarden {

namespace {

void putKey(const Generation& generation, const std::vector<Field>& fields, ScriptText& script) {
  const std::string keys = keyList(fields);
  if (keys.empty()) return;
  std::string space;
  if (storageDue(generation) && !trim(generation.system.indexSpace).empty())
    space = "\r\n\t\t USING INDEX TABLESPACE " + generation.system.indexSpace;
  script.print("\t,CONSTRAINT PK_", generation.table.txtTableNameENG.text, " PRIMARY KEY(", keys, ") ", space);
}

void putValueChecks(const Generation& generation, const std::vector<Field>& fields, ScriptText& script) {
  if (!generation.due(generation.session.settings.createSql2CheckIsPut)) return;
  const std::string_view ryaku = trim(generation.table.lblRyaku.caption);
  const std::string_view owner = ryaku.empty() ? std::string_view(generation.table.lblID.caption) : ryaku;
  int longNames = 0;
  for (const Field& field : fields) {
    if (field.valueList.empty()) continue;
    const std::string& check = pGetCheckList(generation, field.valueList);
    if (check.empty()) continue;
    // The server takes 30 bytes: long field names give way to a number.
    std::string tail = toUpper(field.name);
    if (gLenB(tail) > 14) tail = fmt::format("{:04}", ++longNames);
    script.print("\t,CONSTRAINT CHK_", owner, "_", tail, " CHECK (", field.name, check, ") ");
  }
}

void putRangeChecks(const std::vector<Field>& fields, ScriptText& script) {
  for (const Field& field : fields) {
    if (!field.hasRange()) continue;
    const std::string start = plainNumber(numberIn(field.rangeStart));
    if (field.rangeKind == "範囲") {
      script.print("\t,CONSTRAINT CK_", field.name, " CHECK (", field.name, "  BETWEEN ", start, " AND ",
                   plainNumber(numberIn(field.rangeEnd)), " ) ");
    } else {
      script.print("\t,CONSTRAINT CK_", field.name, " CHECK (", field.name, " ", rangeOperator(field), " ", start,
                   " ) ");
    }
  }
}

}  // namespace

bool storageDue(const Generation& generation) {
  return generation.due(generation.session.settings.createSql2StrageIsPut);
}

std::string bracketedDigits(const Field& field) { return "(" + digitsText(field) + ") "; }

std::string defaultAndNull(const Field& field) {
  std::string text;
  if (!field.defaultText.empty()) {
    const std::string type = toLower(field.type);
    // A text with a quote is an expression of the user's own.
    const bool quoted =
        (type == "char" || type == "varchar2") && field.defaultText.find('\'') == std::string_view::npos;
    text.append(quoted ? " DEFAULT '" : " DEFAULT ").append(field.defaultText).append(quoted ? "' " : "");
  }
  return text.append(" ").append(cellNull(field));
}

void putConstraintsAndEnd(const Generation& generation, const std::vector<Field>& fields, ScriptText& script) {
  putKey(generation, fields, script);
  putValueChecks(generation, fields, script);
  putRangeChecks(fields, script);
  if (generation.due(generation.session.settings.createSql2FkIsPut) && hasForeignKeys(fields))
    script.print(pGetFkClause(generation));
  script.print(") ");
}

std::string pGetStorageClause(const Generation& generation) {
  const auto figure = [&](std::size_t element) { return trim(generation.table.lblNum[element].caption); };
  std::string text;
  const auto percentage = [&](std::string_view word, std::string_view value) {
    if (numberIn(value) != 0) text.append(word).append(value).append("\r\n");
  };
  percentage(" PCTFREE ", figure(5));
  percentage(" PCTUSED ", figure(6));

  std::string_view space = trim(generation.table.lblTbSpace.caption);
  if (space.empty()) space = trim(generation.system.tableSpace);
  if (!space.empty()) text.append(" TABLESPACE ").append(space).append("\r\n");

  std::string inner;
  const auto extent = [&](std::string_view word, std::string_view value, bool withUnit) {
    if (numberIn(value) == 0) return;
    inner.append("\t").append(word).append(plainNumber(numberIn(value)));
    if (withUnit) inner.append(value.find('M') != std::string_view::npos ? "M" : "K");
    inner.append("\r\n");
  };
  extent(" INITIAL ", figure(0), true);
  extent(" NEXT ", figure(1), true);
  extent(" MINEXTENTS ", figure(2), false);
  extent(" MAXEXTENTS ", figure(3), false);
  extent(" PCTINCREASE ", figure(4), false);
  if (!inner.empty()) text.append(" STORAGE (\r\n").append(inner).append("\t ) ");
  return text;
}

void putComments(const Generation& generation, const std::vector<Field>& fields, std::string_view terminator,
                 ScriptText& script) {
  const std::string& table = generation.table.txtTableNameENG.text;
  const std::string memo = memoText(generation.table);
  if (!memo.empty()) {
    script.print(" COMMENT ON TABLE ", table, " IS '", gReplaceAll(memo, "'", "\""), "'");
    script.print(terminator);
  }
  if (!generation.due(generation.session.settings.createSql2CommentIsPut)) return;
  for (const Field& field : fields) {
    if (field.remark.empty()) continue;
    script.print(" COMMENT ON  COLUMN ", table, ".", field.name, " IS '",
                 gReplaceAll(cleanComment(field.remark), "'", "\""), "'");
    script.print(terminator);
  }
}

}  // namespace quillmarden
