#include "sqlgen/runnable/types.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <utility>

#include "common/numbers.h"
#include "common/text.h"

namespace quillmarden {

namespace {

using Family = TypeFamily;

/// By their first word, the types of the kinds that are not known one by one.
constexpr std::array<std::pair<std::string_view, Family>, 48> kLooseWords = {{
    {"tinyint", Family::Integer},
    {"smallint", Family::Integer},
    {"int", Family::Integer},
    {"integer", Family::Integer},
    {"bigint", Family::Integer},
    {"byteint", Family::Integer},
    {"numeric", Family::Exact},
    {"decimal", Family::Exact},
    {"dec", Family::Exact},
    {"number", Family::Exact},
    {"money", Family::Exact},
    {"smallmoney", Family::Exact},
    {"float", Family::Real},
    {"double", Family::Real},
    {"real", Family::Real},
    {"binary_float", Family::Real},
    {"binary_double", Family::Real},
    {"char", Family::Text},
    {"character", Family::Text},
    {"varchar", Family::Text},
    {"varchar2", Family::Text},
    {"nvarchar", Family::Text},
    {"nvarchar2", Family::Text},
    {"nchar", Family::Text},
    {"text", Family::Text},
    {"ntext", Family::Text},
    {"clob", Family::Text},
    {"nclob", Family::Text},
    {"date", Family::Date},
    {"datetime", Family::Moment},
    {"datetime2", Family::Moment},
    {"smalldatetime", Family::Moment},
    {"timestamp", Family::Moment},
    {"time", Family::Moment},
    {"blob", Family::Bytes},
    {"binary", Family::Bytes},
    {"varbinary", Family::Bytes},
    {"raw", Family::Bytes},
    {"byte", Family::Bytes},
    {"varbyte", Family::Bytes},
    {"image", Family::Bytes},
    {"long", Family::Text},
    {"datetimeoffset", Family::Moment},
    {"year", Family::Integer},
    {"boolean", Family::Boolean},
    {"bool", Family::Boolean},
    {"json", Family::Json},
    {"uuid", Family::Uuid},
}};

Family looseFamily(std::string_view lower) {
  const std::string_view word = lower.substr(0, lower.find_first_of(" ("));
  const auto found =
      std::find_if(kLooseWords.begin(), kLooseWords.end(), [&](const auto& entry) { return entry.first == word; });
  return found == kLooseWords.end() ? Family::Other : found->second;
}

/// The words on both sides of the digits: "decimal(5,2) unsigned" is "decimal unsigned".
std::string withoutDigits(std::string lower) {
  const std::size_t bracket = lower.find('(');
  if (bracket == std::string::npos) return lower;
  const std::size_t close = lower.rfind(')');
  const std::string rest = close == std::string::npos ? "" : lower.substr(close + 1);
  return std::string(trim(lower.substr(0, bracket))) + rest;
}

std::string withDigits(const std::string& text, const std::string& lower, const TypeCell& cell,
                       std::initializer_list<std::string_view> takesDigits) {
  if (cell.wholeDigits + cell.fractionDigits <= 0 || text.find('(') != std::string::npos) return text;
  // The longest name wins: "character varying" before "character".
  std::string_view taken;
  for (const std::string_view name : takesDigits)
    if (name.size() > taken.size() && lower.starts_with(name) &&
        (lower.size() == name.size() || lower[name.size()] == ' '))
      taken = name;
  if (taken.empty()) return text;
  std::string sized = text.substr(0, taken.size()) + "(";
  sized += plainNumber(std::nearbyint(cell.wholeDigits + std::max(cell.fractionDigits, 0.0)));
  if (cell.fractionDigits > 0) sized.append(",").append(plainNumber(std::nearbyint(cell.fractionDigits)));
  return sized.append(")").append(text, taken.size());
}

}  // namespace

int integerBytes(const ScriptType& type) {
  if (type.family != Family::Integer) return 0;
  if (type.base == "tinyint") return 1;
  if (type.base == "smallint") return 2;
  if (type.base == "mediumint") return 3;
  return type.base == "bigint" ? 8 : 4;
}

bool isNumber(Family family) {
  return family == Family::Integer || family == Family::Exact || family == Family::Real || family == Family::Money;
}

bool isTime(Family family) { return family == Family::Date || family == Family::Time || family == Family::Moment; }

ScriptType scriptType(ScriptKind kind, const TypeCell& cell) { return dialectOf(kind).type(cell); }

std::string TypeWords::lower(std::size_t first, std::size_t count) const {
  std::string joined;
  for (std::size_t i = first; i < words.size() && i - first < count; ++i)
    joined.append(joined.empty() ? "" : " ").append(toLower(words[i]));
  return joined;
}

std::optional<TypeWords> typeWords(ScriptKind kind, std::string_view text) {
  const auto tokens = sqlTokens(kind, text);
  if (!tokens) return std::nullopt;
  TypeWords found;
  auto token = tokens->begin();
  const auto takeWords = [&] {
    for (; token->kind == SqlToken::Kind::Word || token->kind == SqlToken::Kind::Name; ++token)
      found.words.push_back(token->text);
  };
  takeWords();
  found.before = found.words.size();
  if (token->isSign("(")) {
    found.brackets = true;
    for (++token; !token->isSign(")"); ++token) {
      if (token->kind != SqlToken::Kind::Number && token->kind != SqlToken::Kind::Text) return std::nullopt;
      found.arguments.push_back(*token);
      if (!(++token)->isSign(",")) break;
    }
    if (!token->isSign(")")) return std::nullopt;
    ++token;
    takeWords();
  }
  for (; token->isSign("["); ++token, ++found.arrays) {
    if ((++token)->kind == SqlToken::Kind::Number) ++token;
    if (!token->isSign("]")) return std::nullopt;
  }
  if (token->kind != SqlToken::Kind::End || found.before == 0) return std::nullopt;
  return found;
}

std::optional<std::vector<long>> typeNumbers(const TypeWords& words, std::size_t most) {
  constexpr std::size_t kLongest = 9;  // digits
  std::vector<long> numbers;
  for (const SqlToken& argument : words.arguments) {
    const bool digits = argument.text.find_first_not_of("0123456789") == std::string::npos;
    if (argument.kind != SqlToken::Kind::Number || !digits || argument.text.size() > kLongest) return std::nullopt;
    numbers.push_back(std::stol(argument.text));
  }
  if (numbers.size() > most) return std::nullopt;
  return numbers;
}

void noteInstead(ScriptType& type, std::string_view reason) {
  type.fault = std::string(reason) + "ため " + type.sql + " で作成します";
}

ScriptType textInstead(std::string_view sql, const TypeCell& cell, long length) {
  ScriptType type;
  type.sql = type.base = sql;
  type.family = Family::Text;
  type.length = length;
  if (length > 0) type.sql += "(" + std::to_string(length) + ")";
  noteInstead(type, trim(cell.text).empty() ? "型がない" : "型が使えない");
  return type;
}

ScriptType looseType(ScriptKind kind, const TypeCell& cell, std::initializer_list<std::string_view> takesDigits,
                     std::string_view instead) {
  constexpr long kInsteadLength = 255;
  const std::string text(trim(cell.text));
  if (text.empty() || !standsAlone(kind, text)) return textInstead(instead, cell, kInsteadLength);
  ScriptType type;
  const std::string lower = toLower(text);
  type.base = withoutDigits(lower);
  type.family = looseFamily(lower);
  type.sql = withDigits(text, lower, cell, takesDigits);
  type.numbersItself = type.base.find("identity") != std::string::npos;
  return type;
}

}  // namespace quillmarden
