#include <algorithm>
#include <iterator>

#include "engine/convert.h"
#include "engine/sqlite_connection.h"
#include "engine/sqlite_writer_state.h"
#include "engine/token.h"

namespace quillmarden {

namespace {

Written conditionOf(std::string sql) { return {std::move(sql), ValueType::Condition, false, -1, nullptr}; }

bool isNumber(ValueType type) { return type == ValueType::Whole || type == ValueType::Real; }

bool isComparison(std::string_view name) {
  return name == "=" || name == "<>" || name == "<" || name == ">" || name == "<=" || name == ">=";
}

// True and False as constants of the statement.
const std::int64_t* constantFlag(const Expression& node) {
  return node.kind == ExpressionKind::Constant ? std::get_if<std::int64_t>(&node.value) : nullptr;
}

ValueType parameterValueType(std::string_view type) {
  constexpr std::string_view kWhole[] = {"integer", "long", "byte", "boolean", "bigint"};
  constexpr std::string_view kReal[] = {"double", "single", "currency", "decimal", "numeric"};
  const auto is = [&](std::string_view candidate) { return candidate == type; };
  if (std::any_of(std::begin(kWhole), std::end(kWhole), is)) return ValueType::Whole;
  if (std::any_of(std::begin(kReal), std::end(kReal), is)) return ValueType::Real;
  if (type == "date" || type == "time") return ValueType::Date;
  return ValueType::Text;
}

// A part of "&": text, Null being the empty one.
std::string concatenated(const Written& part, bool literal) {
  switch (part.type) {
    case ValueType::Null:
      return "''";
    case ValueType::Text:
    case ValueType::Date:
    case ValueType::Whole:
      return literal ? operand(part) : "ifnull(" + part.sql + ",'')";
    default:
      return "qm_text(" + part.sql + ")";
  }
}

}  // namespace

void throwAmbiguous(const std::string& column) {
  throw EngineError(engine_error::kAmbiguousColumn,
                    "項目「" + column + "」は複数のテーブルにあります. 「テーブル名.項目名」の形で書いて下さい.");
}

std::string operand(const Written& value) { return value.atomic ? value.sql : "(" + value.sql + ")"; }

std::string_view collation(ValueType type) { return hasNoCase(type) ? "" : " COLLATE NOCASE"; }

std::string_view collation(ValueType left, ValueType right) {
  return hasNoCase(left) || hasNoCase(right) ? "" : " COLLATE NOCASE";
}

std::string quotedText(std::string_view text) {
  std::string result = "'";
  for (const char letter : text) {
    if (letter == '\'') result += '\'';
    result += letter;
  }
  return result += '\'';
}

ValueType typeOf(const FieldDef& field) {
  switch (field.type) {
    case FieldType::Text:
    case FieldType::Memo:
      return ValueType::Text;
    case FieldType::Double:
      return ValueType::Real;
    case FieldType::Date:
      return ValueType::Date;
    default:
      return ValueType::Whole;
  }
}

std::string joined(const std::vector<std::string>& parts, std::string_view separator) {
  constexpr std::size_t kRun = 100;
  if (parts.size() <= kRun) {
    std::string result;
    for (const std::string& part : parts) {
      if (!result.empty()) result += separator;
      result += part;
    }
    return result;
  }
  std::vector<std::string> groups;
  for (std::size_t begin = 0; begin < parts.size(); begin += kRun) {
    const auto first = parts.begin() + static_cast<std::ptrdiff_t>(begin);
    const auto last = parts.begin() + static_cast<std::ptrdiff_t>(std::min(begin + kRun, parts.size()));
    groups.push_back("(" + joined({first, last}, separator) + ")");
  }
  return joined(groups, separator);
}

Written StatementWriter::expression(const Expression& node, Scope& scope) {
  switch (node.kind) {
    case ExpressionKind::Literal:
      return literal(node);
    case ExpressionKind::Constant: {
      const std::int64_t* flag = constantFlag(node);
      if (flag == nullptr) return {"NULL", ValueType::Null, true, -1, nullptr};
      return {*flag == 0 ? "0" : "-1", ValueType::Whole, *flag == 0, -1, nullptr};
    }
    case ExpressionKind::Name:
      return name(node, scope);
    case ExpressionKind::Unary:
      return unary(node, scope);
    case ExpressionKind::Binary:
      return isComparison(node.name) ? comparison(node, scope) : binary(node, scope);
    case ExpressionKind::Chain:
      return chain(node, scope);
    case ExpressionKind::Like: {
      const std::string text = value(*node.operands[0], scope).sql;
      return conditionOf(std::string(node.negated ? "NOT " : "") + "qm_like(" + text + "," +
                         value(*node.operands[1], scope).sql + ")");
    }
    case ExpressionKind::Between:
      return between(node, scope);
    case ExpressionKind::InList:
      return inList(node, scope);
    case ExpressionKind::InQuery:
      return inQuery(node, scope);
    case ExpressionKind::IsNull:
      return conditionOf(operand(value(*node.operands[0], scope)) + (node.negated ? " IS NOT NULL" : " IS NULL"));
    case ExpressionKind::Exists:
      return conditionOf("EXISTS (" + select(*node.query, &scope, Use::Rows).sql + ")");
    case ExpressionKind::Call:
      return call(node, scope);
    case ExpressionKind::Query: {
      const WrittenSelect query = select(*node.query, &scope, Use::Rows);
      return {"(" + query.sql + ")", query.outputs.front().value.type, true, -1, nullptr};
    }
  }
  return {};
}

Written StatementWriter::value(const Expression& node, Scope& scope) {
  Written result = expression(node, scope);
  if (result.type != ValueType::Condition) return result;
  return {"-(" + result.sql + ")", ValueType::Whole, false, -1, nullptr};
}

std::string StatementWriter::condition(const Expression& node, Scope& scope) { return expression(node, scope).sql; }

// A condition that is 0 or 1 whatever number stands for it.
std::string StatementWriter::truth(const Expression& node, Scope& scope) {
  const Written result = expression(node, scope);
  return result.type == ValueType::Condition ? "(" + result.sql + ")" : "(" + operand(result) + " <> 0)";
}

Written StatementWriter::literal(const Expression& node) {
  Written result;
  if (node.isDate) {
    result.type = ValueType::Date;
  } else if (std::holds_alternative<std::string>(node.value)) {
    result.type = ValueType::Text;
  } else {
    result.type = std::holds_alternative<double>(node.value) ? ValueType::Real : ValueType::Whole;
  }
  if (!inlineLiterals_) {
    result.sql = "?" + std::to_string(node.slot);
    return result;
  }
  const auto* text = std::get_if<std::string>(&node.value);
  result.sql = text != nullptr ? quotedText(*text) : toText(node.value);
  // A whole real must not become an integer.
  if (result.type == ValueType::Real && result.sql.find('.') == std::string::npos) result.sql += ".0";
  return result;
}

Written StatementWriter::parameter(const std::string& name) {
  Written result{"", ValueType::Text, true, -1, nullptr};
  for (const QueryParameter& declared : *declared_) {
    if (sameName(declared.name, name)) result.type = parameterValueType(declared.type);
  }
  std::vector<std::string>& parameters = result_.parameters;
  auto found = std::find_if(parameters.begin(), parameters.end(),
                            [&](const std::string& known) { return sameName(known, name); });
  if (found == parameters.end()) found = parameters.insert(parameters.end(), name);
  result.sql = "?" + std::to_string(result_.literalCount + (found - parameters.begin()) + 1);
  return result;
}

Written StatementWriter::name(const Expression& node, Scope& scope) {
  const bool declared =
      node.qualifier.empty() && std::any_of(declared_->begin(), declared_->end(), [&](const QueryParameter& parameter) {
        return sameName(parameter.name, node.name);
      });
  if (declared) return parameter(node.name);
  for (const Scope* level = &scope; level != nullptr; level = level->outer) {
    Written found;
    for (std::size_t i = 0; i < level->sources.size(); ++i) {
      const Source& source = level->sources[i];
      if (!node.qualifier.empty() && !sameName(source.alias, node.qualifier)) continue;
      Written column;
      if (source.table != nullptr) {
        column.field = source.table->field(node.name);
        if (column.field == nullptr) continue;
        column.type = typeOf(*column.field);
        column.sql = quotedName(source.alias) + "." + quotedName(column.field->name);
      } else {
        const auto output = std::find_if(source.columns.begin(), source.columns.end(),
                                         [&](const Output& candidate) { return sameName(candidate.name, node.name); });
        if (output == source.columns.end()) continue;
        column.type = output->value.type;
        column.sql = quotedName(source.alias) + "." + quotedName(output->name);
      }
      column.source = level == &scope ? static_cast<int>(i) : -1;
      if (!found.sql.empty()) throwAmbiguous(node.name);
      found = std::move(column);
    }
    if (!found.sql.empty()) return found;
  }
  if (!node.qualifier.empty()) return parameter(node.qualifier + "." + node.name);
  // Names that AS gives serve in the other parts of their SELECT.
  if (scope.select != nullptr) {
    for (const SelectItem& item : scope.select->items) {
      const bool open = std::find(scope.substituted.begin(), scope.substituted.end(), &item) == scope.substituted.end();
      if (item.alias.empty() || !open || !sameName(item.alias, node.name)) continue;
      scope.substituted.push_back(&item);
      Written result = expression(*item.expression, scope);
      scope.substituted.pop_back();
      // Names that use names twice double the text each time.
      constexpr std::size_t kMostText = 100000;
      if (result.sql.size() > kMostText) throw EngineError(engine_error::kSyntax, "式が長すぎます: " + node.name);
      return result;
    }
  }
  if (sameName(node.name, "yes") || sameName(node.name, "on")) return {"-1", ValueType::Whole, false, -1, nullptr};
  if (sameName(node.name, "no") || sameName(node.name, "off")) return {"0", ValueType::Whole, true, -1, nullptr};
  return parameter(node.name);
}

Written StatementWriter::unary(const Expression& node, Scope& scope) {
  const Expression& inner = *node.operands[0];
  if (node.name == "-") {
    const Written number = value(inner, scope);
    const ValueType type = isNumber(number.type) ? number.type : ValueType::Real;
    return {"-" + operand(number), type, false, -1, nullptr};
  }
  const Written operandText = expression(inner, scope);
  // Not turns the bits of a number: -1 becomes 0, and 1 becomes -2, which is no False.
  if (operandText.type == ValueType::Whole) return {"~" + operand(operandText), ValueType::Whole, false, -1, nullptr};
  return conditionOf("NOT " + operand(operandText));
}

Written StatementWriter::comparison(const Expression& node, Scope& scope) {
  // "condition = True" is the condition itself.
  if (node.name == "=" || node.name == "<>") {
    const bool constantRight = constantFlag(*node.operands[1]) != nullptr;
    const std::int64_t* flag = constantFlag(*node.operands[constantRight ? 1 : 0]);
    if (flag != nullptr) {
      Written other = expression(*node.operands[constantRight ? 0 : 1], scope);
      if (other.type == ValueType::Condition) {
        const bool holds = (*flag != 0) == (node.name == "=");
        return holds ? other : conditionOf("NOT " + operand(other));
      }
    }
  }
  const Written left = value(*node.operands[0], scope);
  const Written right = value(*node.operands[1], scope);
  std::string sql = operand(left) + " " + node.name + " " + operand(right);
  sql += collation(left.type, right.type);
  return conditionOf(std::move(sql));
}

Written StatementWriter::binary(const Expression& node, Scope& scope) {
  if (node.name == "XOR") {
    return conditionOf(truth(*node.operands[0], scope) + " <> " + truth(*node.operands[1], scope));
  }
  if (node.name == "EQV") {
    return conditionOf(truth(*node.operands[0], scope) + " = " + truth(*node.operands[1], scope));
  }
  if (node.name == "IMP") {
    return conditionOf("NOT " + truth(*node.operands[0], scope) + " OR " + truth(*node.operands[1], scope));
  }
  const Written left = value(*node.operands[0], scope);
  const Written right = value(*node.operands[1], scope);
  return arithmetic(node, left, right);
}

Written StatementWriter::arithmetic(const Expression& node, const Written& left, const Written& right) const {
  const std::string& sign = node.name;
  const bool numbers = isNumber(left.type) && isNumber(right.type);
  const bool whole = left.type == ValueType::Whole && right.type == ValueType::Whole;
  const auto function = [&](std::string_view name, ValueType type) {
    return Written{std::string(name) + "(" + left.sql + "," + right.sql + ")", type, true, -1, nullptr};
  };
  if (sign == "/") return function("qm_divide", ValueType::Real);
  if (sign == "\\") return function("qm_quotient", ValueType::Whole);
  if (sign == "MOD") return function("qm_modulo", ValueType::Whole);
  if (sign == "^") return function("qm_power", ValueType::Real);
  const std::string native = operand(left) + " " + sign + " " + operand(right);
  const ValueType type = whole ? ValueType::Whole : ValueType::Real;
  if (numbers || sign == "*") return {native, type, false, -1, nullptr};
  if (sign == "-") return function("qm_subtract", ValueType::Unknown);
  if (left.type == ValueType::Text && right.type == ValueType::Text) {
    return {operand(left) + " || " + operand(right), ValueType::Text, false, -1, nullptr};
  }
  return function("qm_add", ValueType::Unknown);
}

Written StatementWriter::chain(const Expression& node, Scope& scope) {
  std::vector<std::string> parts;
  parts.reserve(node.operands.size());
  if (node.name == "&") {
    for (const ExpressionPtr& part : node.operands) {
      parts.push_back(concatenated(value(*part, scope), part->kind == ExpressionKind::Literal));
    }
    return {joined(parts, " || "), ValueType::Text, false, -1, nullptr};
  }
  bool whole = true;
  for (const ExpressionPtr& part : node.operands) {
    const Written written = expression(*part, scope);
    whole = whole && written.type == ValueType::Whole;
    parts.push_back(operand(written));
  }
  // Between numbers And and Or work on the bits.
  if (whole) return {joined(parts, node.name == "AND" ? " & " : " | "), ValueType::Whole, false, -1, nullptr};
  return conditionOf(joined(parts, node.name == "AND" ? " AND " : " OR "));
}

Written StatementWriter::between(const Expression& node, Scope& scope) {
  const Written tested = value(*node.operands[0], scope);
  const Written low = value(*node.operands[1], scope);
  const Written high = value(*node.operands[2], scope);
  std::string sql = operand(tested);
  if (!hasNoCase(low.type) && !hasNoCase(high.type)) sql += collation(tested.type);
  sql += node.negated ? " NOT BETWEEN " : " BETWEEN ";
  return conditionOf(sql + operand(low) + " AND " + operand(high));
}

Written StatementWriter::inList(const Expression& node, Scope& scope) {
  const Written tested = value(*node.operands[0], scope);
  std::string list;
  bool noCase = hasNoCase(tested.type);
  for (std::size_t i = 1; i < node.operands.size(); ++i) {
    const Written item = value(*node.operands[i], scope);
    noCase = noCase || hasNoCase(item.type);
    if (i > 1) list += ",";
    list += item.sql;
  }
  std::string sql = operand(tested);
  if (!noCase) sql += collation(tested.type);
  return conditionOf(sql + (node.negated ? " NOT IN (" : " IN (") + list + ")");
}

Written StatementWriter::inQuery(const Expression& node, Scope& scope) {
  const Written tested = value(*node.operands[0], scope);
  const WrittenSelect query = select(*node.query, &scope, Use::Rows);
  if (query.outputs.size() != 1) {
    throw EngineError(engine_error::kSyntax, "構文エラー: IN の中の SELECT は 1 項目だけを返す必要があります.");
  }
  std::string sql = operand(tested);
  sql += collation(tested.type, query.outputs.front().value.type);
  return conditionOf(sql + (node.negated ? " NOT IN (" : " IN (") + query.sql + ")");
}

}  // namespace quillmarden
