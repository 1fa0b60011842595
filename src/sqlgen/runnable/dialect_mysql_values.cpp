#include <algorithm>
#include <array>
#include <utility>

#include "common/text.h"
#include "sqlgen/runnable/literals.h"
#include "sqlgen/runnable/mysql_limits.h"
#include "sqlgen/runnable/names.h"
#include "sqlgen/runnable/values.h"

namespace quillmarden {

namespace {

using Family = TypeFamily;
using Constant = std::optional<std::string>;

Constant literalOf(std::string_view text) { return textLiteral(mySqlDialect(), text); }

/// Whether the column's character set holds the text.
bool holdsCharacters(const ScriptType& type, std::string_view text) {
  const std::string& charset = type.charset;
  const auto is = [&](std::string_view name) {
    return charset.starts_with(name) || charset.starts_with(" " + std::string(name));
  };
  if (charset.empty() || charset == " binary" || is("utf8mb4") || is("utf16") || is("utf32")) return true;
  if (is("utf8") || is("ucs2")) return withinBasicPlane(text);
  std::u32string lost;
  if (is("cp932")) toCp932(text, &lost);
  const bool ascii = std::all_of(text.begin(), text.end(), [](char c) { return (c & 0x80) == 0; });
  return ascii || (is("cp932") && lost.empty());
}

Constant textConstant(const ScriptType& type, std::string_view text, ConstantUse use) {
  constexpr std::size_t kTiny = 255;
  if (!holdsCharacters(type, text)) return std::nullopt;
  const auto most = static_cast<std::size_t>(type.length);
  const bool tooLong = (most > 0 && firstCharacters(text, most).size() != text.size()) ||
                       (type.base == "tinytext" && text.size() > kTiny);
  return use == ConstantUse::Stored && tooLong ? std::nullopt : literalOf(text);
}

Constant bytesConstant(const ScriptType& type, std::string_view text, ConstantUse use) {
  constexpr std::size_t kTiny = 255;
  const std::size_t most = type.base == "tinyblob" ? kTiny : static_cast<std::size_t>(type.length);
  const auto fits = [&](std::size_t size) { return use == ConstantUse::Compared || most == 0 || size <= most; };
  auto hex = letteredText(ScriptKind::MySql, text, "x");
  if (!hex && text.starts_with("0x")) hex = text.substr(2);
  if (hex && !isHex(*hex)) return std::nullopt;
  if (hex) return fits(hex->size() / 2) ? Constant("x'" + *hex + "'") : std::nullopt;
  if (!fits(text.size())) return std::nullopt;
  // Bytes are those of UTF-8, whatever the script itself is written in.
  const bool ascii = std::all_of(text.begin(), text.end(), [](char c) { return (c & 0x80) == 0; });
  return ascii ? literalOf(text) : Constant("x'" + hexOf(text) + "'");
}

Constant integerConstant(const ScriptType& type, std::string_view text, ConstantUse use) {
  const std::string lower = toLower(trim(text));
  if (type.base == "tinyint" && (lower == "true" || lower == "false")) return lower == "true" ? "1" : "0";
  return numberConstant(type, text, use);
}

Constant bitsConstant(const ScriptType& type, std::string_view text) {
  const auto length = static_cast<std::size_t>(type.length);
  if (const auto bits = letteredText(ScriptKind::MySql, text, "b")) {
    const bool fits = bits->size() <= length && !bits->empty() && bits->find_first_not_of("01") == std::string::npos;
    return fits ? Constant("b'" + *bits + "'") : std::nullopt;
  }
  const auto decimal = decimalText(text);
  if (!decimal || decimal->starts_with('-') || !fitsBytes(*decimal, 8, true)) return std::nullopt;
  const unsigned long long number = std::stoull(*decimal);
  return length >= 64 || number >> length == 0 ? Constant(std::to_string(number)) : std::nullopt;
}

/// A date of zeros is one, too; a time stamp counts from 1970 to 2038, wherever on earth.
Constant momentConstant(const ScriptType& type, std::string_view text) {
  const std::string_view trimmed = trim(text);
  const bool date = type.family == Family::Date;
  constexpr std::array<std::string_view, 2> kZeros = {"0000-00-00", "0000-00-00 00:00:00"};
  if (std::find(kZeros.begin(), kZeros.end(), trimmed) != kZeros.end()) return literalOf(date ? kZeros[0] : trimmed);
  const auto found = momentText(text);
  if (!found || !found->zone.empty()) return std::nullopt;
  const std::string day = formatDateTime(found->moment, "yyyy-mm-dd");
  const std::string time = formatDateTime(found->moment, "hh:nn:ss");
  if (date) return time == "00:00:00" && found->fraction.empty() ? literalOf(day) : std::nullopt;
  if (static_cast<long>(found->fraction.size()) > type.scale) return std::nullopt;
  if (type.base == "timestamp" && (day < "1970-01-02" || day > "2038-01-17")) return std::nullopt;
  if (text.find(':') == std::string_view::npos) return literalOf(day);
  return literalOf(day + " " + time + (found->fraction.empty() ? "" : "." + found->fraction));
}

Constant timeConstant(const ScriptType& type, std::string_view text) {
  constexpr int kMostHours = 838;
  const auto time = timeText(text, kMostHours, false);
  const std::size_t point = time ? time->find('.') : std::string::npos;
  const std::size_t fraction = point == std::string::npos ? 0 : time->size() - point - 1;
  return time && static_cast<long>(fraction) <= type.scale ? literalOf(*time) : std::nullopt;
}

Constant yearConstant(std::string_view text) {
  const auto decimal = decimalText(text);
  if (!decimal || !fitsDigits(*decimal, 4, 0)) return std::nullopt;
  const long year = std::stol(*decimal);
  return year == 0 || (year >= 1901 && year <= 2155) ? Constant(std::to_string(year)) : std::nullopt;
}

Constant membersConstant(const ScriptType& type, std::string_view text, ConstantUse use) {
  const auto isMember = [&](std::string_view wanted) {
    return std::any_of(type.members.begin(), type.members.end(),
                       [&](const std::string& member) { return equalsNoCase(member, wanted); });
  };
  if (use == ConstantUse::Compared) return literalOf(text);
  if (type.family == Family::Members) return isMember(text) ? literalOf(text) : std::nullopt;
  for (std::string_view rest = text; !rest.empty();) {
    const std::size_t comma = std::min(rest.find(','), rest.size());
    if (!isMember(rest.substr(0, comma))) return std::nullopt;
    rest.remove_prefix(std::min(comma + 1, rest.size()));
  }
  return literalOf(text);
}

}  // namespace

Constant mySqlConstant(const ScriptType& type, std::string_view text, ConstantUse use) {
  switch (type.family) {
    case Family::Integer:
      return integerConstant(type, text, use);
    case Family::Exact:
    case Family::Real:
      return numberConstant(type, text, use);
    case Family::Text:
      return textConstant(type, text, use);
    case Family::Date:
    case Family::Moment:
      return momentConstant(type, text);
    case Family::Time:
      return timeConstant(type, text);
    case Family::Bits:
      return bitsConstant(type, text);
    case Family::Bytes:
      return bytesConstant(type, text, use);
    case Family::Json:
      return isJson(text) ? literalOf(text) : std::nullopt;
    case Family::Uuid:
      return isUuid(trim(text)) ? literalOf(trim(text)) : std::nullopt;
    case Family::Members:
    case Family::MemberSet:
      return membersConstant(type, text, use);
    case Family::Year:
      return yearConstant(text);
    case Family::Address:
      return isAddress(trim(text), type.base == "inet4" ? 4 : 6, false) ? literalOf(trim(text)) : std::nullopt;
    default:
      return std::nullopt;
  }
}

}  // namespace quillmarden
