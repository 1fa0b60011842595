#include "sqlgen/runnable/literals.h"

#include <algorithm>
#include <array>
#include <optional>

#include "common/numbers.h"
#include "common/text.h"
#include "screen/date_time.h"
#include "sqlgen/clauses.h"
#include "sqlgen/runnable/names.h"

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
bool endsBatch(std::string_view text) {
  while (!text.empty()) {
    const std::size_t end = std::min(text.find_first_of("\r\n"), text.size());
    const std::string_view line = trim(text.substr(0, end));
    const bool go = line.size() >= 2 && (line[0] == 'g' || line[0] == 'G') && (line[1] == 'o' || line[1] == 'O');
    if (go && (line.size() == 2 || line[2] == ' ')) return true;
    text.remove_prefix(std::min(end + 1, text.size()));
  }
  return false;
}

/// Whether line ends in a literal stand as they are.
bool keepsLineEnds(ScriptKind kind, std::string_view text) {
  // The command-line tools of these kinds end a statement inside a literal at a line of their own.
  if (kind == ScriptKind::Oracle || kind == ScriptKind::Teradata) return false;
  return kind != ScriptKind::SqlServer || !endsBatch(text);
}

/// A date or moment, in a form that no setting of the session reads otherwise.
std::string dateLiteral(const Dialect& dialect, const ScriptColumn& column, std::string_view text) {
  const std::optional<DateTime> moment = parseDateTime(text);
  if (!moment) return textLiteral(dialect, text);
  const bool sqlServer = dialect.kind == ScriptKind::SqlServer;
  bool day = text.find(':') == std::string_view::npos;
  // A date of Teradata has no time of day, and a time stamp must have one.
  if (dialect.kind == ScriptKind::Teradata) day = column.type->lower == "date";
  const std::string_view dayPattern = sqlServer ? "yyyymmdd" : "yyyy-mm-dd";
  const std::string_view momentPattern = sqlServer ? "yyyy-mm-ddThh:nn:ss" : "yyyy-mm-dd hh:nn:ss";
  const std::string literal = textLiteral(dialect, formatDateTime(*moment, day ? dayPattern : momentPattern));
  if (dialect.kind != ScriptKind::Oracle && dialect.kind != ScriptKind::Teradata) return literal;
  return (day ? "DATE " : "TIMESTAMP ") + literal;
}

}  // namespace

void appendTextLiteral(const Dialect& dialect, std::string_view text, std::string& script) {
  const bool mySql = dialect.kind == ScriptKind::MySql;
  const bool sqlServer = dialect.kind == ScriptKind::SqlServer;
  script += sqlServer ? "N'" : "'";
  std::string flat;
  if (text.find_first_of("\r\n") != std::string_view::npos && !keepsLineEnds(dialect.kind, text))
    text = flat = oneLine(gReplaceAll(text, "\r\n", "\n"));
  // A dollar sign before a bracket is a variable of SQL Server's tool.
  const std::string_view special = mySql ? "'\\\r\n" : sqlServer ? "'$" : "'";
  while (true) {
    const std::size_t plain = std::min(text.find_first_of(special), text.size());
    script += text.substr(0, plain);
    if (plain == text.size()) break;
    // The command-line tool of MySQL takes the CR of a line end away; an escape stays.
    const char c = text[plain];
    if (c == '$') {
      script += text.substr(plain).starts_with(kToolVariable) ? "$' + N'" : "$";
    } else if (c == '\r' || c == '\n') {
      script += c == '\r' ? "\\r" : "\\n";
    } else {
      script.append(2, c);
    }
    text.remove_prefix(plain + 1);
  }
  script += '\'';
}

std::string textLiteral(const Dialect& dialect, std::string_view text) {
  std::string literal;
  appendTextLiteral(dialect, text, literal);
  return literal;
}

ScriptType scriptType(ScriptKind kind, std::string_view text) {
  ScriptType type;
  type.text = trim(text);
  type.lower = toLower(type.text);
  // "decimal(5,2) unsigned": the words on both sides of the digits.
  if (const std::size_t bracket = type.lower.find('('); bracket != std::string::npos) {
    const std::size_t close = type.lower.rfind(')');
    const std::string rest = close == std::string::npos ? "" : type.lower.substr(close + 1);
    type.lower = std::string(trim(type.lower.substr(0, bracket))) + rest;
  }
  type.typeClass = dialectOf(kind).typeClass(type.lower);
  return type;
}

std::string defaultLiteral(const Dialect& dialect, const ScriptColumn& column) {
  const std::string_view text = trim(column.defaultText);
  if (text.empty()) return {};
  const TypeClass type = column.type->typeClass;
  if (isExpression(text, type)) return std::string(text);
  if (type == TypeClass::Boolean) return booleanLiteral(dialect, text);
  if (type == TypeClass::Number && isNumeric(text)) return std::string(text);
  const std::string_view inner = isQuoted(text) ? text.substr(1, text.size() - 2) : text;
  const std::string plain = isQuoted(text) ? gReplaceAll(inner, "''", "'") : std::string(inner);
  if (type == TypeClass::Date) return dateLiteral(dialect, column, plain);
  const std::string literal = textLiteral(dialect, plain);
  const bool joined = dialect.kind == ScriptKind::SqlServer && plain.find(kToolVariable) != std::string::npos;
  return joined ? "(" + literal + ")" : literal;
}

std::string checkCondition(const Dialect& dialect, const ScriptColumn& column, std::string_view name) {
  if (!column.checked()) return {};
  const TypeClass type = column.type->typeClass;
  const auto literal = [&](std::string_view value, bool text) {
    return text || !isNumeric(value) ? textLiteral(dialect, value) : std::string(value);
  };
  std::string condition(name);
  if (column.list) {
    const bool texts = type == TypeClass::Text || (column.list->text && type != TypeClass::Number);
    condition += " IN (";
    for (const std::string& value : column.list->values) {
      if (&value != column.list->values.data()) condition += ", ";
      condition += literal(value, texts);
    }
    return condition + ")";
  }
  // Numbers are cleaned as everywhere; the bounds of a date or a text are what was typed.
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
