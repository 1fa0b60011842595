#include <cmath>

#include "common/numbers.h"
#include "sqlgen/runnable/expressions.h"
#include "sqlgen/runnable/values.h"

namespace quillmarden {

namespace {

using Kind = ValueKind;

bool isOfNumbers(Kind kind) { return kind == Kind::Integer || kind == Kind::Exact || kind == Kind::Real; }
bool isDayOrMoment(Kind kind) { return kind == Kind::Date || kind == Kind::Moment || kind == Kind::ZonedMoment; }

bool isAssignableByKind(bool mySql, Kind kind, TypeFamily family) {
  switch (family) {
    case TypeFamily::Integer:
    case TypeFamily::Exact:
    case TypeFamily::Real:
      return isOfNumbers(kind);
    case TypeFamily::Money:
      return kind == Kind::Integer || kind == Kind::Exact;
    case TypeFamily::Text:
      return kind != Kind::Other && kind != Kind::Null;
    case TypeFamily::Date:
    case TypeFamily::Moment:
      return isDayOrMoment(kind);
    case TypeFamily::Time:
      return kind == Kind::Time || kind == Kind::ZonedTime || kind == Kind::Moment || kind == Kind::ZonedMoment;
    case TypeFamily::Interval:
      return kind == Kind::Interval || kind == Kind::Time;
    case TypeFamily::Boolean:
      return kind == Kind::Boolean;
    case TypeFamily::Uuid:
      return kind == Kind::Uuid;
    case TypeFamily::Json:
      return kind == Kind::Json;
    case TypeFamily::Bits:
    case TypeFamily::Year:
      return mySql && kind == Kind::Integer;
    default:
      return false;
  }
}

}  // namespace

std::optional<double> resultOf(std::string_view sign, const Expression& left, const Expression& right) {
  if (!left.number || !right.number) return std::nullopt;
  if (sign == "+") return *left.number + *right.number;
  if (sign == "-") return *left.number - *right.number;
  if (sign == "*") return *left.number * *right.number;
  if (*right.number == 0) return std::nullopt;
  return sign == "/" ? *left.number / *right.number : std::fmod(*left.number, *right.number);
}

std::optional<Kind> kindOfResult(ScriptKind dialect, std::string_view sign, const Expression& left,
                                 const Expression& right) {
  const Kind a = left.kind, b = right.kind;
  if (isOfNumbers(a) && isOfNumbers(b)) {
    // A division by a zero that stands there is a fault at each use.
    if ((sign == "/" || sign == "%") && right.number && *right.number == 0) return std::nullopt;
    if (a == Kind::Real || b == Kind::Real)
      return sign == "%" && dialect == ScriptKind::PostgreSql ? std::nullopt : std::optional(Kind::Real);
    const bool exact = a == Kind::Exact || b == Kind::Exact || (sign == "/" && dialect == ScriptKind::MySql);
    return exact ? Kind::Exact : Kind::Integer;
  }
  const bool plus = sign == "+", minus = sign == "-";
  if (b == Kind::Interval && (plus || minus)) {
    if (dialect == ScriptKind::MySql) return isDayOrMoment(a) ? std::optional(a) : std::nullopt;
    if (a == Kind::Date) return Kind::Moment;
    return isDayOrMoment(a) || a == Kind::Time || a == Kind::Interval ? std::optional(a) : std::nullopt;
  }
  if (dialect == ScriptKind::MySql) return std::nullopt;
  if (a == Kind::Interval && isOfNumbers(b) && (sign == "*" || sign == "/")) return Kind::Interval;
  if (a == Kind::Date && b == Kind::Integer && (plus || minus)) return Kind::Date;
  if (a == Kind::Date && b == Kind::Time && plus) return Kind::Moment;
  if (a == Kind::Date && b == Kind::Date && minus) return Kind::Integer;
  if (isDayOrMoment(a) && isDayOrMoment(b) && minus) return Kind::Interval;
  return std::nullopt;
}

bool isCastable(const Dialect& dialect, const Expression& value, const ScriptType& type) {
  if (value.kind == Kind::Null || value.kind == Kind::Text || type.family == TypeFamily::Text) return true;
  if (value.kind == Kind::Array && value.element == Kind::Null) return type.family == TypeFamily::Array;
  const Kind wanted = kindOf(type);
  if (value.kind == Kind::Integer && wanted == Kind::Boolean) return true;
  if (value.kind == Kind::Boolean) return wanted == Kind::Boolean || wanted == Kind::Integer;
  return isAssignable(dialect, value, type);
}

ValueKind kindOf(const ScriptType& type) {
  switch (type.family) {
    case TypeFamily::Integer:
    case TypeFamily::Year:
      return Kind::Integer;
    case TypeFamily::Exact:
      return Kind::Exact;
    case TypeFamily::Real:
      return Kind::Real;
    case TypeFamily::Text:
    case TypeFamily::Members:
      return Kind::Text;
    case TypeFamily::Date:
      return Kind::Date;
    case TypeFamily::Time:
      return type.zoned ? Kind::ZonedTime : Kind::Time;
    case TypeFamily::Moment:
      return type.zoned ? Kind::ZonedMoment : Kind::Moment;
    case TypeFamily::Interval:
      return Kind::Interval;
    case TypeFamily::Boolean:
      return Kind::Boolean;
    case TypeFamily::Uuid:
      return Kind::Uuid;
    case TypeFamily::Json:
      return Kind::Json;
    case TypeFamily::Array:
      return Kind::Array;
    default:
      return Kind::Other;
  }
}

bool isAssignable(const Dialect& dialect, const Expression& expression, const ScriptType& type) {
  if (!expression.base.empty() && expression.kind != Kind::Literal && expression.base == type.base) return true;
  if (type.family == TypeFamily::Array)
    return expression.kind == Kind::Array && isAssignableByKind(false, expression.element, type.element->family) &&
           (type.element->family != TypeFamily::Text || expression.element == Kind::Text);
  // The result of numbers is known: it has to be one of the column's.
  if (expression.number && isNumber(type.family)) {
    ScriptType rounded = type;
    const double result = type.family == TypeFamily::Integer ? std::nearbyint(*expression.number) : *expression.number;
    if (type.family == TypeFamily::Exact) rounded.length = 0;
    if (!numberConstant(rounded, plainNumber(result), ConstantUse::Stored)) return false;
  }
  return isAssignableByKind(dialect.kind == ScriptKind::MySql, expression.kind, type.family);
}

}  // namespace quillmarden
