#include <algorithm>
#include <array>

#include "common/numbers.h"
#include "common/text.h"
#include "sqlgen/runnable/column_parts.h"
#include "sqlgen/runnable/mysql_limits.h"
#include "sqlgen/runnable/names.h"
#include "sqlgen/runnable/values.h"

namespace quillmarden {

namespace {

constexpr std::string_view kNoDefault = "初期値を設定できません";

constexpr std::array<std::string_view, 14> kBareWords = {
    "null",         "current_timestamp", "current_date", "current_time", "localtimestamp", "localtime", "sysdate",
    "systimestamp", "current_user",      "session_user", "user",         "getdate",        "date",      "time"};

// What a text column can have for a default that is no text, although any text may look like a call.
constexpr std::array<std::string_view, 20> kTextFunctions = {
    "now",          "uuid",      "gen_random_uuid", "uuid_generate_v4", "newid",  "sys_guid", "user",
    "current_user", "md5",       "getdate",         "to_char",          "concat", "nextval",  "lower",
    "upper",        "substring", "replace",         "coalesce",         "chr",    "sysdate"};

template <std::size_t size>
bool isListed(const std::array<std::string_view, size>& words, std::string_view word) {
  return std::find(words.begin(), words.end(), word) != words.end();
}

/// A call such as newid() or to_char(sysdate): a name, then brackets up to the end.
bool looksLikeCall(std::string_view text) {
  const auto isNameSign = [](char c) {
    return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || (c >= '0' && c <= '9') || c == '_' || c == '.';
  };
  const auto end = std::find_if_not(text.begin(), text.end(), isNameSign);
  if (end == text.begin() || (text[0] >= '0' && text[0] <= '9')) return false;
  return trim(std::string_view(end, text.end())).starts_with('(') && text.ends_with(')');
}

/// Of the kinds whose expressions are not known one by one.
bool looksLikeExpression(std::string_view text, TypeFamily family) {
  const std::string lower = toLower(text);
  if (looksLikeCall(text))
    return family != TypeFamily::Text || isListed(kTextFunctions, trim(lower.substr(0, lower.find('('))));
  // Words such as "user" are texts in a text column; time stamps are functions everywhere but there.
  return lower == "null" || (family != TypeFamily::Text && isListed(kBareWords, lower));
}

ColumnPart looseDefault(const Dialect& dialect, const ScriptColumn& column) {
  const std::string text(trim(column.defaultText));
  const TypeFamily family = column.type->family;
  ColumnPart part;
  if (looksLikeExpression(text, family)) {
    if (standsAlone(dialect.kind, text)) return {" DEFAULT " + text, {}};
    part.remark = "初期値が式として使えないため、文字として設定します";
  }
  const auto constant = constantOf(dialect, *column.type, text, ConstantUse::Stored);
  if (!constant) return {{}, std::string(kNoDefault)};
  const bool joined = dialect.kind == ScriptKind::SqlServer && text.find(kToolVariable) != std::string::npos;
  part.sql = " DEFAULT " + (joined ? "(" + *constant + ")" : *constant);
  return part;
}

/// "CURRENT_TIMESTAMP", with the digits of a second that the type has: a server of MySQL wants them to agree.
std::string nowOf(std::string_view typed, const ScriptType& type) {
  std::string words(typed.substr(0, typed.find('(')));
  return type.scale > 0 ? words + "(" + std::to_string(type.scale) + ")" : std::string(typed);
}

bool isText(TypeFamily family) { return family == TypeFamily::Text || family == TypeFamily::Members; }

/// The default as an expression; "" for a text that is none, or one of another type.
std::string expressionDefault(const Dialect& dialect, const ScriptType& type, const std::vector<SqlToken>& tokens) {
  const auto read = readExpression(dialect, tokens);
  if (!read || tokens[read->used].kind != SqlToken::Kind::End) return {};
  const Expression& expression = read->expression;
  // A word alone, such as "user", is a text in a text column.
  const bool text = isText(type.family) && (!expression.call || read->used == 1);
  if (text || !isAssignable(dialect, expression, type)) return {};
  if (dialect.kind != ScriptKind::MySql) return expression.single ? expression.sql : "(" + expression.sql + ")";
  if (expression.single && expression.now && type.family == TypeFamily::Moment) return nowOf(expression.sql, type);
  return "(" + expression.sql + ")";
}

ColumnPart knownDefault(const Dialect& dialect, const ScriptColumn& column, std::string_view text) {
  const ScriptType& type = *column.type;
  const auto tokens = sqlTokens(dialect.kind, text);
  if (tokens && tokens->front().isWord("null") && tokens->size() == 2)
    return {column.notNull ? "" : " DEFAULT " + tokens->front().text, {}};
  const auto constant = constantOf(dialect, type, text, ConstantUse::Stored);
  // A large value is taken as an expression alone.
  const bool inBrackets = dialect.kind == ScriptKind::MySql && isLarge(type);
  // A text may look like an expression, and a text column may have one.
  if (constant && !isText(type.family)) return {" DEFAULT " + (inBrackets ? "(" + *constant + ")" : *constant), {}};
  if (const std::string sql = tokens ? expressionDefault(dialect, type, *tokens) : ""; !sql.empty())
    return {" DEFAULT " + sql, {}};
  if (constant) return {" DEFAULT " + (inBrackets ? "(" + *constant + ")" : *constant), {}};
  return {{}, std::string(kNoDefault)};
}

/// Where "ON UPDATE CURRENT_TIMESTAMP" begins behind the default; npos without it.
std::size_t onUpdate(const Dialect& dialect, std::string_view text) {
  const auto tokens = sqlTokens(dialect.kind, text);
  if (!tokens) return std::string_view::npos;
  for (std::size_t i = 0; i + 2 < tokens->size(); ++i) {
    if (!(*tokens)[i].isWord("on") || !(*tokens)[i + 1].isWord("update")) continue;
    const std::vector<SqlToken> rest(tokens->begin() + static_cast<std::ptrdiff_t>(i) + 2, tokens->end());
    const auto read = readExpression(mySqlDialect(), rest);
    const bool now =
        read && rest[read->used].kind == SqlToken::Kind::End && read->expression.single && read->expression.now;
    return now ? (*tokens)[i].place : std::string_view::npos;
  }
  return std::string_view::npos;
}

}  // namespace

ColumnPart defaultPart(const Dialect& dialect, const ScriptColumn& column) {
  std::string_view text = trim(column.defaultText);
  if (text.empty()) return {};
  if (column.type->numbersItself) return {{}, "自動採番の項目のため、初期値を設定できません"};
  if (!dialect.knowsTypes) return looseDefault(dialect, column);
  const std::size_t update = onUpdate(dialect, text);
  ColumnPart part;
  if (const std::string_view value = trim(text.substr(0, update)); !value.empty())
    part = knownDefault(dialect, column, value);
  if (update == std::string_view::npos) return part;
  if (dialect.kind == ScriptKind::MySql && column.type->family == TypeFamily::Moment) {
    part.sql += " ON UPDATE " + nowOf("CURRENT_TIMESTAMP", *column.type);
  } else if (part.remark.empty()) {
    part.remark = "初期値の ON UPDATE を設定できません";
  }
  return part;
}

}  // namespace quillmarden
