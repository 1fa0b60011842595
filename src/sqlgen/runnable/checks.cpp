#include <algorithm>
#include <array>

#include "common/numbers.h"
#include "common/text.h"
#include "sqlgen/clauses.h"
#include "sqlgen/runnable/column_parts.h"
#include "sqlgen/runnable/literals.h"
#include "sqlgen/runnable/values.h"

namespace quillmarden {

namespace {

using Constant = std::optional<std::string>;

ColumnPart noCheck(std::string_view reason) { return {{}, "値の制約を設定できません. " + std::string(reason)}; }

/// A value of the list as the column is compared with it.
Constant listed(const Dialect& dialect, const ScriptColumn& column, const std::string& value) {
  const ScriptType& type = *column.type;
  if (dialect.knowsTypes) return constantOf(dialect, type, value, ConstantUse::Compared);
  const bool texts = type.family == TypeFamily::Text || (column.list->text && !isNumber(type.family));
  return texts || !isNumeric(value) ? textLiteral(dialect, value) : value;
}

/// Numbers are cleaned as everywhere; the bounds of a date or a text are what was typed.
Constant boundOf(const Dialect& dialect, const ScriptType& type, std::string_view text) {
  if (!isNumber(type.family)) return constantOf(dialect, type, trim(text), ConstantUse::Compared);
  const std::string number = plainNumber(numberIn(text));
  return dialect.knowsTypes ? constantOf(dialect, type, number, ConstantUse::Compared) : number;
}

ColumnPart listCheck(const Dialect& dialect, const ScriptColumn& column, std::string condition) {
  if (column.list->values.empty()) return noCheck("値リストに値がありません");
  condition += " IN (";
  for (const std::string& value : column.list->values) {
    const Constant constant = listed(dialect, column, value);
    if (!constant) return noCheck("値 " + value + " が型に合いません");
    if (&value != column.list->values.data()) condition += ", ";
    condition += *constant;
  }
  return {condition + ")", {}};
}

ColumnPart rangeCheck(const Dialect& dialect, const ScriptColumn& column, std::string condition) {
  constexpr std::array<std::string_view, 6> kOperators = {">", "<", ">=", "<=", "=", "<>"};
  constexpr std::string_view kNoBound = "範囲の値が型に合いません";
  const Constant start = boundOf(dialect, *column.type, column.rangeStart);
  if (!start) return noCheck(kNoBound);
  if (column.rangeKind == "範囲") {
    const Constant end = boundOf(dialect, *column.type, column.rangeEnd);
    if (!end) return noCheck(kNoBound);
    return {condition + " BETWEEN " + *start + " AND " + *end, {}};
  }
  Field field;
  field.rangeKind = column.rangeKind;
  const std::string sign = rangeOperator(field);
  if (std::find(kOperators.begin(), kOperators.end(), sign) == kOperators.end()) return noCheck("範囲の種類が不明です");
  return {condition + " " + sign + " " + *start, {}};
}

}  // namespace

ColumnPart checkPart(const Dialect& dialect, const ScriptColumn& column, std::string_view name) {
  if (!column.checked()) return {};
  // The server looks at a row before it has given the number.
  if (dialect.kind == ScriptKind::MySql && column.type->numbersItself) return noCheck("自動採番の項目です");
  if (!column.type->keyable || (dialect.knowsTypes && column.type->family == TypeFamily::Other))
    return noCheck("型 " + column.type->sql + " の値は比較できません");
  const auto check = column.list ? listCheck : rangeCheck;
  return check(dialect, column, std::string(name));
}

}  // namespace quillmarden
