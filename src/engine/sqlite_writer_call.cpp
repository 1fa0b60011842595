#include <algorithm>
#include <iterator>

#include "engine/sqlite_writer_state.h"

namespace quillmarden {

namespace {

struct WrittenFunction {
  std::string_view name;  ///< in upper case
  std::string_view sql;   ///< of SQLite, or of registerFunctions
  std::size_t least;      ///< arguments
  std::size_t most;
  ValueType type;
};

constexpr WrittenFunction kFunctions[] = {
    {"TRIM", "trim", 1, 1, ValueType::Text},
    {"LTRIM", "ltrim", 1, 1, ValueType::Text},
    {"RTRIM", "rtrim", 1, 1, ValueType::Text},
    {"UCASE", "qm_ucase", 1, 1, ValueType::Text},
    {"LCASE", "qm_lcase", 1, 1, ValueType::Text},
    {"LEFT", "qm_left", 2, 2, ValueType::Text},
    {"RIGHT", "qm_right", 2, 2, ValueType::Text},
    {"MID", "qm_mid", 2, 3, ValueType::Text},
    {"LEN", "length", 1, 1, ValueType::Whole},
    {"INSTR", "qm_instr", 2, 4, ValueType::Whole},
    {"REPLACE", "qm_replace", 3, 3, ValueType::Text},
    {"STRCONV", "qm_strconv", 2, 3, ValueType::Text},
    {"SPACE", "qm_space", 1, 1, ValueType::Text},
    {"STRING", "qm_string", 2, 2, ValueType::Text},
    {"CHR", "qm_chr", 1, 1, ValueType::Text},
    {"CHRW", "qm_chr", 1, 1, ValueType::Text},
    {"ASC", "qm_asc", 1, 1, ValueType::Whole},
    {"ASCW", "qm_asc", 1, 1, ValueType::Whole},
    {"CSTR", "qm_cstr", 1, 1, ValueType::Text},
    {"VAL", "qm_val", 1, 1, ValueType::Real},
    {"CINT", "qm_cint", 1, 1, ValueType::Whole},
    {"CLNG", "qm_clng", 1, 1, ValueType::Whole},
    {"CDBL", "qm_cdbl", 1, 1, ValueType::Real},
    {"CSNG", "qm_cdbl", 1, 1, ValueType::Real},
    {"CCUR", "qm_cdbl", 1, 1, ValueType::Real},
    {"CBOOL", "0 <> qm_cdbl", 1, 1, ValueType::Condition},
    {"CDATE", "qm_cdate", 1, 1, ValueType::Date},
    {"CVDATE", "qm_cdate", 1, 1, ValueType::Date},
    {"DATEVALUE", "qm_datevalue", 1, 1, ValueType::Date},
    {"ISNUMERIC", "qm_isnumeric", 1, 1, ValueType::Condition},
    {"ISDATE", "qm_isdate", 1, 1, ValueType::Condition},
    {"ABS", "abs", 1, 1, ValueType::Real},
    {"INT", "qm_int", 1, 1, ValueType::Real},
    {"FIX", "qm_fix", 1, 1, ValueType::Real},
    {"SGN", "qm_sgn", 1, 1, ValueType::Whole},
    {"SQR", "qm_sqr", 1, 1, ValueType::Real},
    {"ROUND", "qm_round", 1, 2, ValueType::Real},
    {"NOW", "qm_now", 0, 0, ValueType::Date},
    {"DATE", "qm_date", 0, 0, ValueType::Date},
    {"TIME", "qm_time", 0, 0, ValueType::Date},
    {"YEAR", "qm_year", 1, 1, ValueType::Whole},
    {"MONTH", "qm_month", 1, 1, ValueType::Whole},
    {"DAY", "qm_day", 1, 1, ValueType::Whole},
    {"HOUR", "qm_hour", 1, 1, ValueType::Whole},
    {"MINUTE", "qm_minute", 1, 1, ValueType::Whole},
    {"SECOND", "qm_second", 1, 1, ValueType::Whole},
};

struct Aggregate {
  std::string_view name;
  std::string_view sql;
};

constexpr Aggregate kAggregates[] = {{"COUNT", "count"},  {"SUM", "sum"},        {"AVG", "avg"},
                                     {"MIN", "min"},      {"MAX", "max"},        {"FIRST", "qm_first"},
                                     {"LAST", "qm_last"}, {"STDEV", "qm_stdev"}, {"STDEVP", "qm_stdevp"},
                                     {"VAR", "qm_var"},   {"VARP", "qm_varp"}};

constexpr std::string_view kChoices[] = {"IIF", "ISNULL", "NZ", "SWITCH", "CHOOSE"};

[[noreturn]] void throwArguments(const std::string& function) {
  throw EngineError(engine_error::kSyntax, "構文エラー: 関数「" + function + "」の引数の数が違います.");
}

// The type of a value that comes from either of two.
ValueType either(ValueType left, ValueType right) {
  if (left == right || right == ValueType::Null) return left;
  if (left == ValueType::Null) return right;
  const auto isNumber = [](ValueType type) { return type == ValueType::Whole || type == ValueType::Real; };
  return isNumber(left) && isNumber(right) ? ValueType::Real : ValueType::Unknown;
}

const Aggregate* findAggregate(std::string_view upperName) {
  const auto* found = std::find_if(std::begin(kAggregates), std::end(kAggregates),
                                   [&](const Aggregate& candidate) { return candidate.name == upperName; });
  return found == std::end(kAggregates) ? nullptr : found;
}

}  // namespace

bool isAggregate(std::string_view upperName) { return findAggregate(upperName) != nullptr; }

bool hasAggregate(const Expression& node) {
  if (node.kind == ExpressionKind::Call && isAggregate(node.name)) return true;
  return std::any_of(node.operands.begin(), node.operands.end(),
                     [](const ExpressionPtr& operand) { return hasAggregate(*operand); });
}

Written StatementWriter::call(const Expression& node, Scope& scope) {
  if (isAggregate(node.name)) return aggregate(node, scope);
  if (std::find(std::begin(kChoices), std::end(kChoices), node.name) != std::end(kChoices)) return choice(node, scope);
  const auto* found = std::find_if(std::begin(kFunctions), std::end(kFunctions),
                                   [&](const WrittenFunction& candidate) { return candidate.name == node.name; });
  if (found == std::end(kFunctions)) {
    throw EngineError(engine_error::kUnknownFunction, "関数「" + node.name + "」は使えません.");
  }
  if (node.operands.size() < found->least || node.operands.size() > found->most) throwArguments(node.name);
  Written result{std::string(found->sql) + "(", found->type, found->type != ValueType::Condition, -1, nullptr};
  for (std::size_t i = 0; i < node.operands.size(); ++i) {
    const Written argument = value(*node.operands[i], scope);
    if (i > 0) result.sql += ",";
    result.sql += argument.sql;
    // What only takes a part of a number away leaves its kind.
    if (i == 0 && result.type == ValueType::Real && argument.type == ValueType::Whole &&
        (node.name == "ABS" || node.name == "INT" || node.name == "FIX" || node.name == "ROUND")) {
      result.type = ValueType::Whole;
    }
  }
  result.sql += ")";
  return result;
}

Written StatementWriter::aggregate(const Expression& node, Scope& scope) {
  const Aggregate& function = *findAggregate(node.name);
  if (node.operands.empty() && node.name == "COUNT") return {"count(*)", ValueType::Whole, true, -1, nullptr};
  if (node.operands.size() != 1) throwArguments(node.name);
  const Written argument = value(*node.operands[0], scope);
  Written result{std::string(function.sql) + "(" + operand(argument), argument.type, true, -1, nullptr};
  if (node.name == "COUNT") {
    result.type = ValueType::Whole;
  } else if (node.name == "MIN" || node.name == "MAX") {
    result.sql += collation(argument.type);
  } else if (node.name != "FIRST" && node.name != "LAST") {
    const bool keepsWhole = node.name == "SUM" && argument.type == ValueType::Whole;
    result.type = keepsWhole ? ValueType::Whole : ValueType::Real;
  }
  result.sql += ")";
  return result;
}

// Functions that give one of their arguments, and ask no other.
Written StatementWriter::choice(const Expression& node, Scope& scope) {
  const std::vector<ExpressionPtr>& arguments = node.operands;
  const auto expect = [&](bool right) {
    if (!right) throwArguments(node.name);
  };
  Written result{"", ValueType::Null, true, -1, nullptr};
  const auto branch = [&](const Expression& argument) {
    const Written written = value(argument, scope);
    result.type = either(result.type, written.type);
    return written.sql;
  };
  if (node.name == "ISNULL") {
    expect(arguments.size() == 1);
    return {operand(value(*arguments[0], scope)) + " IS NULL", ValueType::Condition, false, -1, nullptr};
  }
  if (node.name == "NZ") {
    expect(arguments.size() == 1 || arguments.size() == 2);
    result.sql = "ifnull(" + branch(*arguments[0]) + ",";
    // Without a second argument the empty text, or 0 where a number is wanted.
    const bool number = result.type == ValueType::Whole || result.type == ValueType::Real;
    result.sql += arguments.size() == 2 ? branch(*arguments[1]) : number ? "0" : "''";
    result.sql += ")";
    return result;
  }
  if (node.name == "IIF") {
    expect(arguments.size() == 2 || arguments.size() == 3);
    result.sql = "CASE WHEN " + condition(*arguments[0], scope) + " THEN " + branch(*arguments[1]);
    if (arguments.size() == 3) result.sql += " ELSE " + branch(*arguments[2]);
  } else if (node.name == "SWITCH") {
    expect(arguments.size() >= 2 && arguments.size() % 2 == 0);
    result.sql = "CASE";
    for (std::size_t i = 0; i < arguments.size(); i += 2) {
      result.sql += " WHEN " + condition(*arguments[i], scope) + " THEN " + branch(*arguments[i + 1]);
    }
  } else {
    expect(arguments.size() >= 2);
    result.sql = "CASE qm_fix(" + value(*arguments[0], scope).sql + ")";
    for (std::size_t i = 1; i < arguments.size(); ++i) {
      result.sql += " WHEN " + std::to_string(i) + " THEN " + branch(*arguments[i]);
    }
  }
  result.sql += " END";
  return result;
}

}  // namespace quillmarden
