#include "sqlgen/runnable/literals.h"

#include <algorithm>
#include <array>
#include <optional>

#include "common/numbers.h"
#include "common/text.h"
#include "screen/date_time.h"
#include "sqlgen/clauses.h"

namespace quillmarden {

namespace {

constexpr std::array<std::string_view, 14> kBareWords = {
    "null",         "current_timestamp", "current_date", "current_time", "localtimestamp", "localtime", "sysdate",
    "systimestamp", "current_user",      "session_user", "user",         "getdate",        "date",      "time"};

// What a text column can have for a default that is no text, although any text may look like a call.
constexpr std::array<std::string_view, 20> kTextFunctions = {
    "now",          "uuid",      "gen_random_uuid", "uuid_generate_v4", "newid",  "sys_guid", "user",
    "current_user", "md5",       "getdate",         "to_char",          "concat", "nextval",  "lower",
    "upper",        "substring", "replace",         "coalesce",         "chr",    "sysdate"};

bool isNameCharacter(char c) {
  return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || (c >= '0' && c <= '9') || c == '_' || c == '.';
}

/// A call such as now() or nextval('s'): a name, then brackets up to the end.
bool isCall(std::string_view text) {
  std::size_t place = 0;
  while (place < text.size() && isNameCharacter(text[place])) ++place;
  if (place == 0 || (text[0] >= '0' && text[0] <= '9')) return false;
  while (place < text.size() && text[place] == ' ') ++place;
  return place < text.size() && text[place] == '(' && text.back() == ')';
}

bool isQuoted(std::string_view text) { return text.size() >= 2 && text.front() == '\'' && text.back() == '\''; }

bool isExpression(std::string_view text, TypeClass type) {
  if (isCall(text) && type == TypeClass::Text) {
    const std::string function = toLower(trim(text.substr(0, text.find('('))));
    return std::find(kTextFunctions.begin(), kTextFunctions.end(), function) != kTextFunctions.end();
  }
  if (isCall(text)) return true;
  // A cast stands behind a literal or a call; a text may hold the sign too.
  if (const std::size_t cast = text.find("::"); cast != std::string_view::npos && cast > 0) {
    const char before = text[cast - 1];
    if (before == '\'' || before == ')' || type != TypeClass::Text) return true;
  }
  // Words such as "user" are texts in a text column; time stamps are functions everywhere but there.
  const std::string lower = toLower(text);
  if (lower == "null") return true;
  return type != TypeClass::Text && std::find(kBareWords.begin(), kBareWords.end(), lower) != kBareWords.end();
}

std::string booleanLiteral(const Dialect& dialect, std::string_view text) {
  const std::string lower = toLower(isQuoted(text) ? text.substr(1, text.size() - 2) : text);
  const bool yes = lower == "true" || lower == "t" || lower == "1" || lower == "-1" || lower == "yes";
  if (dialect.kind == ScriptKind::PostgreSql) return yes ? "true" : "false";
  return yes ? "1" : "0";
}

/// A line that holds nothing but "go" ends a batch of SQL Server, inside a literal too.
bool endsBatch(const Dialect& dialect, std::string_view text) {
  if (dialect.kind != ScriptKind::SqlServer) return false;
  while (!text.empty()) {
    const std::size_t end = std::min(text.find_first_of("\r\n"), text.size());
    const std::string line = toLower(trim(text.substr(0, end)));
    if (line == "go" || line.starts_with("go ")) return true;
    text.remove_prefix(std::min(end + 1, text.size()));
  }
  return false;
}

/// A date or moment, in a form that no setting of the session reads otherwise.
std::string dateLiteral(const Dialect& dialect, const ScriptColumn& column, std::string_view text) {
  const std::optional<DateTime> moment = parseDateTime(text);
  if (!moment) return textLiteral(dialect, text);
  const bool sqlServer = dialect.kind == ScriptKind::SqlServer;
  bool day = text.find(':') == std::string_view::npos;
  // A date of Teradata has no time of day, and a time stamp must have one.
  if (dialect.kind == ScriptKind::Teradata) day = lowerType(column) == "date";
  const std::string_view dayPattern = sqlServer ? "yyyymmdd" : "yyyy-mm-dd";
  const std::string_view momentPattern = sqlServer ? "yyyy-mm-ddThh:nn:ss" : "yyyy-mm-dd hh:nn:ss";
  const std::string literal = textLiteral(dialect, formatDateTime(*moment, day ? dayPattern : momentPattern));
  if (dialect.kind != ScriptKind::Oracle && dialect.kind != ScriptKind::Teradata) return literal;
  return (day ? "DATE " : "TIMESTAMP ") + literal;
}

}  // namespace

std::string textLiteral(const Dialect& dialect, std::string_view text) {
  std::string literal(dialect.kind == ScriptKind::SqlServer ? "N'" : "'");
  // The command-line tools of these kinds end a statement inside a literal at a line of their own.
  const bool oneLineOnly = dialect.kind == ScriptKind::Oracle || dialect.kind == ScriptKind::Teradata;
  const std::string kept =
      oneLineOnly || endsBatch(dialect, text) ? oneLine(gReplaceAll(text, "\r\n", "\n")) : std::string(text);
  for (const char c : kept) {
    if (c == '\'') literal += '\'';
    // The command-line tool of MySQL takes the CR of a line end away; an escape stays.
    if (dialect.kind == ScriptKind::MySql && (c == '\r' || c == '\n')) {
      literal += c == '\r' ? "\\r" : "\\n";
      continue;
    }
    if (c == '\\' && dialect.kind == ScriptKind::MySql) literal += '\\';
    literal += c;
  }
  return literal += '\'';
}

std::string lowerType(const ScriptColumn& column) {
  std::string lower = toLower(trim(column.type));
  const std::size_t bracket = lower.find('(');
  if (bracket == std::string::npos) return lower;
  // "decimal(5,2) unsigned": the words on both sides.
  const std::size_t close = lower.rfind(')');
  std::string rest = close == std::string::npos ? "" : lower.substr(close + 1);
  return std::string(trim(lower.substr(0, bracket))) + rest;
}

TypeClass classOf(const Dialect& dialect, const ScriptColumn& column) { return dialect.typeClass(lowerType(column)); }

std::string defaultLiteral(const Dialect& dialect, const ScriptColumn& column) {
  const std::string_view text = trim(column.defaultText);
  if (text.empty()) return {};
  const TypeClass type = classOf(dialect, column);
  if (isExpression(text, type)) return std::string(text);
  if (type == TypeClass::Boolean) return booleanLiteral(dialect, text);
  if (type == TypeClass::Number && isNumeric(text)) return std::string(text);
  const std::string_view inner = isQuoted(text) ? text.substr(1, text.size() - 2) : text;
  const std::string plain = isQuoted(text) ? gReplaceAll(inner, "''", "'") : std::string(inner);
  if (type == TypeClass::Date) return dateLiteral(dialect, column, plain);
  return textLiteral(dialect, plain);
}

std::string checkCondition(const Dialect& dialect, const ScriptColumn& column, std::string_view name) {
  if (column.values.empty() && column.rangeKind.empty()) return {};
  const bool textColumn = classOf(dialect, column) == TypeClass::Text;
  const auto literal = [&](std::string_view value, bool text) {
    return text || !isNumeric(value) ? textLiteral(dialect, value) : std::string(value);
  };
  std::string condition(name);
  if (!column.values.empty()) {
    condition += " IN (";
    for (const std::string& value : column.values) {
      if (&value != column.values.data()) condition += ", ";
      condition +=
          literal(value, textColumn || (column.valuesAreText && classOf(dialect, column) != TypeClass::Number));
    }
    return condition + ")";
  }
  // Numbers are cleaned as everywhere; the bounds of a date or a text are what was typed.
  const TypeClass type = classOf(dialect, column);
  const auto bound = [&](std::string_view text) {
    if (type == TypeClass::Number) return plainNumber(numberIn(text));
    return type == TypeClass::Date ? dateLiteral(dialect, column, trim(text)) : textLiteral(dialect, trim(text));
  };
  const std::string start = bound(column.rangeStart);
  if (column.rangeKind == "範囲") return condition + " BETWEEN " + start + " AND " + bound(column.rangeEnd);
  Field field;
  field.rangeKind = column.rangeKind;
  return condition + " " + rangeOperator(field) + " " + start;
}

}  // namespace quillmarden
