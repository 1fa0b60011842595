#include <algorithm>
#include <iterator>

#include "sqlgen/runnable/expressions.h"

namespace quillmarden {

namespace {

using Kind = ValueKind;

/// A function of a server. Operands are a letter each: "n" a number, "i" a whole one, "t" a text, "m" a date or moment,
/// "?" anything, "=" what the first one is; those behind "|" may be left out, "*" repeats the last.
struct SqlFunction {
  std::string_view name;
  std::string_view operands;
  Kind result;
  bool steady = true;  ///< else it depends on the moment, the user, the settings
  bool bare = false;   ///< stands without brackets, too
};

/// The result of a function that gives what its first or second operand is.
constexpr Kind kAsFirst = Kind::Null;

constexpr SqlFunction kPostgreSql[] = {
    {"now", "", Kind::ZonedMoment, false},
    {"clock_timestamp", "", Kind::ZonedMoment, false},
    {"statement_timestamp", "", Kind::ZonedMoment, false},
    {"transaction_timestamp", "", Kind::ZonedMoment, false},
    {"current_timestamp", "|i", Kind::ZonedMoment, false, true},
    {"localtimestamp", "|i", Kind::Moment, false, true},
    {"current_time", "|i", Kind::ZonedTime, false, true},
    {"localtime", "|i", Kind::Time, false, true},
    {"current_date", "", Kind::Date, false, true},
    {"timeofday", "", Kind::Text, false},
    {"current_user", "", Kind::Text, false, true},
    {"session_user", "", Kind::Text, false, true},
    {"user", "", Kind::Text, false, true},
    {"current_database", "", Kind::Text, false},
    {"current_schema", "", Kind::Text, false},
    {"version", "", Kind::Text, false},
    {"gen_random_uuid", "", Kind::Uuid, false},
    {"random", "", Kind::Real, false},
    {"pi", "", Kind::Real},
    {"md5", "t", Kind::Text},
    {"lower", "t", Kind::Text},
    {"upper", "t", Kind::Text},
    {"initcap", "t", Kind::Text},
    {"reverse", "t", Kind::Text},
    {"length", "t", Kind::Integer},
    {"char_length", "t", Kind::Integer},
    {"octet_length", "t", Kind::Integer},
    {"ascii", "t", Kind::Integer},
    {"chr", "i", Kind::Text},
    {"left", "ti", Kind::Text},
    {"right", "ti", Kind::Text},
    {"repeat", "ti", Kind::Text},
    {"substr", "ti|i", Kind::Text},
    {"substring", "ti|i", Kind::Text},
    {"lpad", "ti|t", Kind::Text},
    {"rpad", "ti|t", Kind::Text},
    {"btrim", "t|t", Kind::Text},
    {"ltrim", "t|t", Kind::Text},
    {"rtrim", "t|t", Kind::Text},
    {"replace", "ttt", Kind::Text},
    {"split_part", "tti", Kind::Text},
    {"concat", "?*", Kind::Text, false},
    {"to_char", "mt", Kind::Text, false},
    {"to_date", "tt", Kind::Date, false},
    {"to_timestamp", "tt", Kind::ZonedMoment, false},
    {"make_date", "iii", Kind::Date},
    {"age", "m|m", Kind::Interval, false},
    {"date_part", "tm", Kind::Real, false},
    {"date_trunc", "tm", Kind::ZonedMoment, false},
    {"abs", "n", kAsFirst},
    {"ceil", "n", kAsFirst},
    {"ceiling", "n", kAsFirst},
    {"floor", "n", kAsFirst},
    {"sign", "n", kAsFirst},
    {"round", "n", kAsFirst},
    {"trunc", "n", kAsFirst},
    {"mod", "ii", Kind::Integer},
    {"power", "nn", Kind::Real},
    {"sqrt", "n", Kind::Real},
    {"coalesce", "?=*", kAsFirst},
    {"greatest", "?=*", kAsFirst},
    {"least", "?=*", kAsFirst},
    {"nullif", "?=", kAsFirst},
};

constexpr SqlFunction kMySql[] = {
    {"now", "|i", Kind::Moment, false},
    {"current_timestamp", "|i", Kind::Moment, false, true},
    {"localtime", "|i", Kind::Moment, false, true},
    {"localtimestamp", "|i", Kind::Moment, false, true},
    {"sysdate", "|i", Kind::Moment, false},
    {"utc_timestamp", "|i", Kind::Moment, false, true},
    {"curdate", "", Kind::Date, false},
    {"current_date", "", Kind::Date, false, true},
    {"utc_date", "", Kind::Date, false, true},
    {"curtime", "|i", Kind::Time, false},
    {"current_time", "|i", Kind::Time, false, true},
    {"utc_time", "|i", Kind::Time, false, true},
    {"unix_timestamp", "|m", Kind::Integer, false},
    {"user", "", Kind::Text, false},
    {"current_user", "", Kind::Text, false, true},
    {"session_user", "", Kind::Text, false},
    {"database", "", Kind::Text, false},
    {"version", "", Kind::Text, false},
    {"uuid", "", Kind::Uuid, false},
    {"uuid_short", "", Kind::Integer, false},
    {"rand", "|n", Kind::Real, false},
    {"pi", "", Kind::Real},
    {"md5", "?", Kind::Text},
    {"sha1", "?", Kind::Text},
    {"hex", "?", Kind::Text},
    {"lower", "?", Kind::Text},
    {"upper", "?", Kind::Text},
    {"lcase", "?", Kind::Text},
    {"ucase", "?", Kind::Text},
    {"reverse", "?", Kind::Text},
    {"length", "?", Kind::Integer},
    {"char_length", "?", Kind::Integer},
    {"ascii", "?", Kind::Integer},
    {"left", "?i", Kind::Text},
    {"right", "?i", Kind::Text},
    {"repeat", "?i", Kind::Text},
    {"substr", "?i|i", Kind::Text},
    {"substring", "?i|i", Kind::Text},
    {"lpad", "?i?", Kind::Text},
    {"rpad", "?i?", Kind::Text},
    {"trim", "?", Kind::Text},
    {"ltrim", "?", Kind::Text},
    {"rtrim", "?", Kind::Text},
    {"replace", "???", Kind::Text},
    {"concat", "?*", Kind::Text},
    {"concat_ws", "??*", Kind::Text},
    {"date", "m", Kind::Date},
    {"last_day", "m", Kind::Date},
    {"year", "m", Kind::Integer},
    {"month", "m", Kind::Integer},
    {"day", "m", Kind::Integer},
    {"hour", "m", Kind::Integer},
    {"minute", "m", Kind::Integer},
    {"second", "m", Kind::Integer},
    {"quarter", "m", Kind::Integer},
    {"date_format", "mt", Kind::Text, false},
    {"json_object", "", Kind::Json},
    {"json_array", "|?*", Kind::Json},
    {"abs", "n", kAsFirst},
    {"ceil", "n", Kind::Integer},
    {"ceiling", "n", Kind::Integer},
    {"floor", "n", Kind::Integer},
    {"sign", "n", Kind::Integer},
    {"round", "n|i", kAsFirst},
    {"truncate", "ni", kAsFirst},
    {"mod", "nn", kAsFirst},
    {"pow", "nn", Kind::Real},
    {"power", "nn", Kind::Real},
    {"sqrt", "n", Kind::Real},
    {"coalesce", "?=*", kAsFirst},
    {"ifnull", "?=", kAsFirst},
    {"nullif", "?=", kAsFirst},
    {"greatest", "?=*", kAsFirst},
    {"least", "?=*", kAsFirst},
};

bool isNumberKind(Kind kind) { return kind == Kind::Integer || kind == Kind::Exact || kind == Kind::Real; }

bool operandFits(char wanted, const Expression& operand, const Expression& first) {
  const Kind kind = operand.kind;
  switch (wanted) {
    case 'n':
      return isNumberKind(kind);
    case 'i':
      return kind == Kind::Integer;
    case 't':
      return kind == Kind::Text || kind == Kind::Literal;
    case 'm':
      return kind == Kind::Date || kind == Kind::Moment || kind == Kind::ZonedMoment;
    case '=':
      return kind == first.kind && kind != Kind::Literal && kind != Kind::Null;
    default:
      return kind != Kind::Array && kind != Kind::Other;
  }
}

/// Whether the operands are those of the pattern.
bool operandsFit(std::string_view pattern, const std::vector<Expression>& operands) {
  std::size_t read = 0;
  bool optional = false;
  char last = '?';
  for (const char wanted : pattern) {
    if (wanted == '|') {
      optional = true;
    } else if (wanted == '*') {
      for (; read < operands.size(); ++read)
        if (!operandFits(last, operands[read], operands.front())) return false;
    } else {
      last = wanted;
      if (read == operands.size()) return optional;
      if (!operandFits(wanted, operands[read], operands.front())) return false;
      ++read;
    }
  }
  return read == operands.size();
}

template <std::size_t size>
const SqlFunction* functionOf(const SqlFunction (&known)[size], std::string_view name) {
  const auto found = std::find_if(std::begin(known), std::end(known),
                                  [&](const SqlFunction& function) { return function.name == name; });
  return found == std::end(known) ? nullptr : &*found;
}

}  // namespace

std::optional<Expression> callFunction(ScriptKind kind, const std::string& name, std::vector<Expression> operands,
                                       bool brackets) {
  const SqlFunction* function = kind == ScriptKind::MySql ? functionOf(kMySql, name) : functionOf(kPostgreSql, name);
  if (!function || (!brackets && !function->bare) || !operandsFit(function->operands, operands)) return std::nullopt;
  // Words of the standard's own form take brackets only around digits.
  const bool bareOnly = kind == ScriptKind::PostgreSql && function->bare;
  if (bareOnly && brackets && operands.empty()) return std::nullopt;
  Expression called;
  called.sql = name;
  called.kind = function->result == kAsFirst ? operands.front().kind : function->result;
  called.call = called.single = true;
  called.steady = function->steady;
  called.now = kind == ScriptKind::MySql &&
               (name == "now" || name == "current_timestamp" || name == "localtime" || name == "localtimestamp");
  if (brackets) called.sql += "(";
  for (const Expression& operand : operands) {
    called.sql.append(&operand == operands.data() ? "" : ", ").append(operand.sql);
    called.steady = called.steady && operand.steady;
  }
  if (brackets) called.sql += ")";
  return called;
}

}  // namespace quillmarden
