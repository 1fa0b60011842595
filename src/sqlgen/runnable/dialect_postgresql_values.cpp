#include <algorithm>
#include <array>
#include <utility>

#include "common/text.h"
#include "sqlgen/runnable/literals.h"
#include "sqlgen/runnable/names.h"
#include "sqlgen/runnable/values.h"

namespace quillmarden {

namespace {

using Family = TypeFamily;
using Constant = std::optional<std::string>;

Constant literalOf(std::string_view text) { return textLiteral(postgreSqlDialect(), text); }

template <std::size_t size>
bool isOneOf(std::string_view text, const std::array<std::string_view, size>& words) {
  return std::find(words.begin(), words.end(), text) != words.end();
}

Constant booleanConstant(std::string_view text) {
  constexpr std::array<std::string_view, 7> kYes = {"true", "t", "yes", "y", "on", "1", "-1"};
  constexpr std::array<std::string_view, 6> kNo = {"false", "f", "no", "n", "off", "0"};
  const std::string lower = toLower(trim(text));
  if (isOneOf(lower, kYes)) return "true";
  return isOneOf(lower, kNo) ? Constant("false") : std::nullopt;
}

bool isBits(std::string_view text) { return !text.empty() && text.find_first_not_of("01") == std::string_view::npos; }

/// Digits as many as the type has are its bits; a number has them as it has them in a computer.
Constant bitsConstant(const ScriptType& type, std::string_view text, ConstantUse use) {
  const bool varies = type.base == "varbit";
  const auto lettered = letteredText(ScriptKind::PostgreSql, text, "b");
  const std::string digits = lettered ? *lettered : std::string(trim(text));
  const auto length = static_cast<std::size_t>(type.length);
  const bool fits = varies ? length == 0 || digits.size() <= length : digits.size() == length;
  if (isBits(digits) && (fits || (lettered && use == ConstantUse::Compared))) return "B'" + digits + "'";
  const auto decimal = decimalText(digits);
  if (lettered || varies || !decimal || decimal->starts_with('-') || !fitsBytes(*decimal, 8, true)) return std::nullopt;
  std::string bits(length, '0');
  unsigned long long number = std::stoull(*decimal);
  for (std::size_t place = length; number > 0 && place > 0; number /= 2) bits[--place] = number % 2 == 0 ? '0' : '1';
  return number == 0 ? Constant("B'" + bits + "'") : std::nullopt;
}

Constant bytesConstant(std::string_view text) {
  if (const auto hex = letteredText(ScriptKind::PostgreSql, text, "x")) {
    if (!isHex(*hex)) return std::nullopt;
    return "'\\x" + *hex + "'";
  }
  if (text.starts_with("\\x") && isHex(text.substr(2))) return literalOf(text);
  const bool plain = std::all_of(text.begin(), text.end(), [](char c) { return c >= ' ' && c <= '~' && c != '\\'; });
  return plain ? literalOf(text) : literalOf("\\x" + hexOf(text));
}

Constant timeConstant(const ScriptType& type, std::string_view text) {
  constexpr std::array<std::string_view, 3> kWords = {"infinity", "-infinity", "epoch"};
  if (type.family == Family::Time) {
    const auto time = timeText(text, 24, type.zoned);
    return time && *time < "24:00:00" ? literalOf(*time) : std::nullopt;
  }
  if (isOneOf(toLower(trim(text)), kWords)) return literalOf(toLower(trim(text)));
  const auto found = momentText(text);
  if (!found) return std::nullopt;
  const std::string day = formatDateTime(found->moment, "yyyy-mm-dd");
  const std::string time = formatDateTime(found->moment, "hh:nn:ss");
  if (type.family == Family::Date)
    return time == "00:00:00" && found->fraction.empty() && found->zone.empty() ? literalOf(day) : std::nullopt;
  if (!found->zone.empty() && !type.zoned) return std::nullopt;
  if (text.find(':') == std::string_view::npos) return literalOf(day);
  return literalOf(day + " " + time + (found->fraction.empty() ? "" : "." + found->fraction) + found->zone);
}

/// "1 year 2 days", "01:30", "90".
Constant intervalConstant(std::string_view text) {
  constexpr std::array<std::string_view, 16> kUnits = {"year",   "years",   "month", "months", "week",   "weeks",
                                                       "day",    "days",    "hour",  "hours",  "minute", "minutes",
                                                       "second", "seconds", "mon",   "mons"};
  std::string_view rest = trim(text);
  if (rest.empty()) return std::nullopt;
  if (timeText(rest, 999, false) || (decimalText(rest) && fitsDigits(*decimalText(rest), 9, 6))) return literalOf(rest);
  while (!rest.empty()) {
    const std::size_t blank = rest.find(' ');
    if (blank == std::string_view::npos) return timeText(rest, 999, false) ? literalOf(trim(text)) : std::nullopt;
    const auto number = decimalText(rest.substr(0, blank));
    rest = trim(rest.substr(blank));
    const std::size_t end = std::min(rest.find(' '), rest.size());
    if (!number || !fitsDigits(*number, 6, 6) || !isOneOf(toLower(rest.substr(0, end)), kUnits)) return std::nullopt;
    rest = trim(rest.substr(end));
  }
  return literalOf(trim(text));
}

Constant addressConstant(const ScriptType& type, std::string_view text) {
  const std::string_view address = trim(text);
  if (type.base == "macaddr")
    return isHardwareAddress(address) && (address.size() == 17 || type.sql == "macaddr8") ? literalOf(address)
                                                                                          : std::nullopt;
  // A network has no bits behind its mask; a whole address has none to have.
  const bool masks = toLower(type.sql) != "cidr";
  return isAddress(address, 4, masks) || isAddress(address, 6, masks) ? literalOf(address) : std::nullopt;
}

Constant textConstant(const ScriptType& type, std::string_view text, ConstantUse use) {
  const auto most = static_cast<std::size_t>(type.length);
  if (use == ConstantUse::Stored && most > 0 && firstCharacters(text, most).size() != text.size()) return std::nullopt;
  return literalOf(text);
}

/// "{a,b}" of elements without quotes and brackets.
Constant arrayConstant(const ScriptType& type, std::string_view text) {
  std::string_view rest = trim(text);
  if (!rest.starts_with('{') || !rest.ends_with('}')) return std::nullopt;
  rest = rest.substr(1, rest.size() - 2);
  if (rest.find_first_of("{}\"\\") != std::string_view::npos || type.element->family == Family::Bits ||
      type.element->family == Family::Bytes)
    return std::nullopt;
  while (!trim(rest).empty()) {
    const std::size_t comma = std::min(rest.find(','), rest.size());
    const std::string_view element = trim(rest.substr(0, comma));
    const bool number = isNumber(type.element->family) && !decimalText(element);
    if (element.empty() || number || !postgreSqlConstant(*type.element, element, ConstantUse::Stored))
      return std::nullopt;
    if (comma + 1 == rest.size()) return std::nullopt;
    rest.remove_prefix(std::min(comma + 1, rest.size()));
  }
  return literalOf(trim(text));
}

}  // namespace

Constant postgreSqlConstant(const ScriptType& type, std::string_view text, ConstantUse use) {
  switch (type.family) {
    case Family::Integer:
    case Family::Exact:
    case Family::Real:
      return numberConstant(type, text, use);
    case Family::Money: {
      // A text would be read by the server's own signs for money.
      const auto number = numberConstant(type, text, ConstantUse::Stored);
      return number ? Constant("'" + *number + "'::numeric::money") : std::nullopt;
    }
    case Family::Text:
      return textConstant(type, text, use);
    case Family::Date:
    case Family::Time:
    case Family::Moment:
      return timeConstant(type, text);
    case Family::Interval:
      return intervalConstant(text);
    case Family::Boolean:
      return booleanConstant(text);
    case Family::Bits:
      return bitsConstant(type, text, use);
    case Family::Bytes:
      return bytesConstant(text);
    case Family::Json:
      return isJson(text) ? literalOf(text) : std::nullopt;
    case Family::Uuid:
      return isUuid(trim(text)) ? literalOf(trim(text)) : std::nullopt;
    case Family::Address:
      return addressConstant(type, text);
    case Family::Array:
      return arrayConstant(type, text);
    default:
      return std::nullopt;
  }
}

}  // namespace quillmarden
