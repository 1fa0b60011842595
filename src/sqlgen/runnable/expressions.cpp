#include "sqlgen/runnable/expressions.h"

#include <algorithm>
#include <array>
#include <cmath>

#include "common/numbers.h"
#include "common/text.h"
#include "sqlgen/runnable/literals.h"
#include "sqlgen/runnable/values.h"

namespace quillmarden {

namespace {

using Kind = ValueKind;
using Read = std::optional<Expression>;

bool isNumeric(Kind kind) { return kind == Kind::Integer || kind == Kind::Exact || kind == Kind::Real; }

class ExpressionReader {
 public:
  ExpressionReader(const Dialect& dialect, const std::vector<SqlToken>& tokens, const ColumnLookUp& columns)
      : dialect_(dialect), tokens_(tokens), columns_(columns), mySql_(dialect.kind == ScriptKind::MySql) {}

  std::optional<ReadExpression> read() {
    Read found = joined();
    if (!found) return std::nullopt;
    return ReadExpression{std::move(*found), at_};
  }

 private:
  const SqlToken& token(std::size_t ahead = 0) const { return tokens_[std::min(at_ + ahead, tokens_.size() - 1)]; }
  bool takeSign(std::string_view sign) {
    if (!token().isSign(sign)) return false;
    ++at_;
    return true;
  }
  bool takeWord(std::string_view word) {
    if (!token().isWord(word)) return false;
    ++at_;
    return true;
  }

  /// Operands with operators of one rank between them, from left to right.
  template <typename Operand, typename Join>
  Read chain(std::initializer_list<std::string_view> signs, Operand operand, Join join) {
    Read left = operand();
    while (left) {
      const auto sign = std::find_if(signs.begin(), signs.end(), [&](auto known) { return token().isSign(known); });
      if (sign == signs.end()) return left;
      ++at_;
      const Read right = operand();
      if (!right) return std::nullopt;
      left = join(*sign, *left, *right);
    }
    return std::nullopt;
  }

  Read joined() {
    if (mySql_) return sum();  // its "||" is another operator
    return chain(
        {"||"}, [&] { return sum(); },
        [&](std::string_view, const Expression& left, const Expression& right) -> Read {
          const auto isText = [](Kind kind) { return kind == Kind::Text || kind == Kind::Literal; };
          const bool arrays = left.kind == Kind::Array || right.kind == Kind::Array;
          if (arrays || !(isText(left.kind) || isText(right.kind)) || !plain(left) || !plain(right))
            return std::nullopt;
          Expression all{left.sql + " || " + right.sql, Kind::Text};
          all.call = true;
          all.steady = left.steady && right.steady && isText(left.kind) && isText(right.kind);
          return all;
        });
  }

  /// Whether the value can stand beside a text that it is joined with.
  static bool plain(const Expression& value) { return value.kind != Kind::Null && value.kind != Kind::Other; }

  Read sum() {
    return chain(
        {"+", "-"}, [&] { return product(); },
        [&](auto sign, const auto& left, const auto& right) { return calculated(sign, left, right); });
  }
  Read product() {
    return chain(
        {"*", "/", "%"}, [&] { return signedValue(); },
        [&](auto sign, const auto& left, const auto& right) { return calculated(sign, left, right); });
  }

  Read calculated(std::string_view sign, const Expression& left, const Expression& right) const {
    const auto kind = kindOfResult(dialect_.kind, sign, left, right);
    if (!kind) return std::nullopt;
    Expression result{left.sql + " " + std::string(sign) + " " + right.sql, *kind};
    result.number = resultOf(sign, left, right);
    result.steady = left.steady && right.steady;
    return result;
  }

  Read signedValue() {
    if (token().isSign("-") || token().isSign("+")) {
      const std::string sign = token().text;
      ++at_;
      Read value = signedValue();
      if (!value || !(isNumeric(value->kind) || (!mySql_ && value->kind == Kind::Interval))) return std::nullopt;
      // Two signs beside each other would begin a comment.
      value->sql = sign + (value->sql.starts_with(sign) ? " " : "") + value->sql;
      if (value->number && sign == "-") value->number = -*value->number;
      value->call = value->single = value->now = false;
      return value;
    }
    Read value = single();
    while (value && !mySql_) {
      if (takeSign("::")) {
        value = castTo(*value, false);
      } else if (token().isWord("at") && token(1).isWord("time") && token(2).isWord("zone")) {
        at_ += 3;
        value = inZone(*value);
      } else {
        return value;
      }
    }
    return value;
  }

  Read inZone(Expression value) {
    if (token().kind != SqlToken::Kind::Text) return std::nullopt;
    if (value.kind != Kind::Moment && value.kind != Kind::ZonedMoment) return std::nullopt;
    value.sql += " AT TIME ZONE " + textLiteral(dialect_, token().text);
    value.kind = value.kind == Kind::Moment ? Kind::ZonedMoment : Kind::Moment;
    value.call = true;
    value.single = false;
    ++at_;
    return value;
  }

  /// The words of a type, up to what cannot be part of it.
  std::optional<ScriptType> typeHere() {
    std::string text;
    const auto add = [&] {
      text.append(token().text);
      ++at_;
    };
    while (token().kind == SqlToken::Kind::Word && !token().isWord("at")) {
      if (!text.empty()) text += " ";
      add();
      if (token().isSign("(")) {
        while (!token().isSign(")")) add();
        add();
      }
    }
    while (token().isSign("[")) {
      while (!token().isSign("]")) add();
      add();
    }
    ScriptType type = dialect_.type({text, 0, 0, nullptr});
    if (!type.fault.empty() || type.numbersItself) return std::nullopt;
    return type;
  }

  Read castTo(const Expression& value, bool standard) {
    const auto type = typeHere();
    if (!type) return std::nullopt;
    Expression cast;
    cast.kind = kindOf(*type);
    cast.base = type->base;
    cast.call = true;
    cast.steady = value.steady && (value.kind != Kind::Literal || !isTime(type->family));
    if (type->family == TypeFamily::Array) cast.element = kindOf(*type->element);
    std::string sql = value.sql;
    if (value.kind == Kind::Literal) {
      const auto constant = constantOf(dialect_, *type, value.base, ConstantUse::Stored);
      if (!constant || !constant->starts_with("'")) return std::nullopt;
      sql = constant->substr(0, constant->find("::"));
      if (type->family == TypeFamily::Text) sql = value.sql;
    } else if (!isCastable(dialect_, value, *type)) {
      return std::nullopt;
    }
    cast.sql = standard ? "CAST(" + sql + " AS " + type->sql + ")" : sql + "::" + type->sql;
    return cast;
  }

  Read single() {
    const SqlToken& first = token();
    switch (first.kind) {
      case SqlToken::Kind::Number: {
        ++at_;
        Expression value{first.text,
                         first.text.find_first_of(".eE") == std::string::npos ? Kind::Integer : Kind::Exact};
        value.number = gVal(first.text);
        if (value.kind == Kind::Integer && first.text.size() > 9) value.kind = Kind::Exact;
        return value;
      }
      case SqlToken::Kind::Text: {
        if (first.lower == "b" || first.lower == "x") return std::nullopt;
        ++at_;
        Expression value{textLiteral(dialect_, first.text), Kind::Literal};
        value.base = first.text;
        return value;
      }
      case SqlToken::Kind::Sign:
        return inBrackets();
      case SqlToken::Kind::Name:
        return column(first.text);
      case SqlToken::Kind::Word:
        return word();
      default:
        return std::nullopt;
    }
  }

  Read inBrackets() {
    if (!takeSign("(")) return std::nullopt;
    Read value = joined();
    if (!value || !takeSign(")")) return std::nullopt;
    value->sql = "(" + value->sql + ")";
    value->single = value->now = false;
    if (value->kind == Kind::Literal) value->kind = Kind::Text;
    return value;
  }

  Read column(const std::string& name) {
    ++at_;
    return columns_ ? columns_(name) : std::nullopt;
  }

  Read word() {
    const std::string& name = token().lower;
    if (name == "null") return constant("NULL", Kind::Null);
    if (name == "true" || name == "false") return constant(name, mySql_ ? Kind::Integer : Kind::Boolean);
    if (name == "interval") return mySql_ ? mySqlInterval() : typedLiteral();
    if (!mySql_ && (name == "date" || name == "timestamp" || name == "time" || name == "timestamptz") &&
        token(1).kind == SqlToken::Kind::Text)
      return typedLiteral();
    if (!mySql_ && name == "array" && token(1).isSign("[")) return array();
    if (!mySql_ && name == "cast" && token(1).isSign("(")) {
      at_ += 2;
      const Read value = joined();
      if (!value || !takeWord("as")) return std::nullopt;
      Read cast = castTo(*value, true);
      return takeSign(")") ? cast : std::nullopt;
    }
    if (columns_ && !token(1).isSign("(")) return column(token().text);
    return call();
  }

  Read constant(std::string_view sql, Kind kind) {
    ++at_;
    return Expression{std::string(sql), kind};
  }

  Read call() {
    const std::string name = token().lower;
    const std::string typed = token().text;
    ++at_;
    const bool brackets = takeSign("(");
    std::vector<Expression> operands;
    while (brackets && !takeSign(")")) {
      Read operand = joined();
      if (!operand) return std::nullopt;
      operands.push_back(std::move(*operand));
      if (!takeSign(",") && !token().isSign(")")) return std::nullopt;
    }
    Read called = callFunction(dialect_.kind, name, std::move(operands), brackets);
    if (called) called->sql.replace(0, name.size(), typed);
    return called;
  }

  /// INTERVAL '1 day', DATE '2020-01-01'.
  Read typedLiteral() {
    const std::string words = token().text;
    const ScriptType type = dialect_.type({words, 0, 0, nullptr});
    if (token(1).kind != SqlToken::Kind::Text) return std::nullopt;
    const auto value = constantOf(dialect_, type, token(1).text, ConstantUse::Stored);
    if (!value) return std::nullopt;
    at_ += 2;
    return Expression{words + " " + *value, kindOf(type)};
  }

  /// INTERVAL 1 DAY.
  Read mySqlInterval() {
    constexpr std::array<std::string_view, 8> kUnits = {"second", "minute", "hour",    "day",
                                                        "week",   "month",  "quarter", "year"};
    ++at_;
    const bool minus = takeSign("-");
    const SqlToken count = token();
    const std::string unit = token(1).lower;
    const bool number = count.kind == SqlToken::Kind::Number ||
                        (count.kind == SqlToken::Kind::Text && decimalText(count.text).has_value());
    if (!number || count.text.size() > 6 || std::find(kUnits.begin(), kUnits.end(), unit) == kUnits.end())
      return std::nullopt;
    at_ += 2;
    return Expression{"INTERVAL " + std::string(minus ? "-" : "") + *decimalText(count.text) + " " + unit,
                      Kind::Interval};
  }

  Read array() {
    at_ += 2;
    Expression all{"ARRAY[", Kind::Array};
    while (!takeSign("]")) {
      const Read element = joined();
      if (!element) return std::nullopt;
      const Kind kind = element->kind == Kind::Literal ? Kind::Text : element->kind;
      const bool first = all.element == Kind::Null;
      const bool numbers = isNumeric(kind) && isNumeric(all.element);
      if ((!first && kind != all.element && !numbers) || kind == Kind::Null || kind == Kind::Array ||
          kind == Kind::Other)
        return std::nullopt;
      if (first || kind == Kind::Real || (kind == Kind::Exact && all.element == Kind::Integer)) all.element = kind;
      all.sql.append(all.sql.ends_with("[") ? "" : ", ").append(element->sql);
      if (!takeSign(",") && !token().isSign("]")) return std::nullopt;
    }
    all.sql += "]";
    return all;
  }

  const Dialect& dialect_;
  const std::vector<SqlToken>& tokens_;
  const ColumnLookUp& columns_;
  bool mySql_;
  std::size_t at_ = 0;
};

}  // namespace

std::optional<ReadExpression> readExpression(const Dialect& dialect, const std::vector<SqlToken>& tokens,
                                             const ColumnLookUp& columns) {
  return ExpressionReader(dialect, tokens, columns).read();
}

}  // namespace quillmarden
