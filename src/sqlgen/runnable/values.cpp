#include "sqlgen/runnable/values.h"

#include <arpa/inet.h>

#include <algorithm>
#include <cctype>
#include <cstdlib>

#include "common/numbers.h"
#include "common/text.h"
#include "sqlgen/runnable/literals.h"

namespace quillmarden {

namespace {

using Family = TypeFamily;

bool allDigits(std::string_view text) {
  return !text.empty() && text.find_first_not_of("0123456789") == std::string_view::npos;
}

/// Takes the sign of a number off its front.
bool takeMinus(std::string_view& text) {
  const bool minus = text.starts_with('-');
  if (minus || text.starts_with('+')) text.remove_prefix(1);
  return minus;
}

/// "1,234,567" without its commas; the text itself when they part no groups of three.
std::string withoutGroups(std::string_view whole) {
  std::string digits;
  for (std::size_t i = 0; i < whole.size(); ++i) {
    if (whole[i] != ',') {
      digits += whole[i];
    } else if (i == 0 || (whole.size() - i) % 4 != 0) {
      return std::string(whole);
    }
  }
  return digits;
}

/// Moves the point of the digits; too far gives nothing.
bool movePoint(std::string& whole, std::string& fraction, std::string_view exponent) {
  constexpr long kFarthest = 400;
  const bool minus = takeMinus(exponent);
  if (!allDigits(exponent) || exponent.size() > 3) return false;
  long places = std::atol(std::string(exponent).c_str());
  if (places > kFarthest) return false;
  std::string& from = minus ? whole : fraction;
  for (; places > 0; --places) {
    const char digit = from.empty() ? '0' : minus ? from.back() : from.front();
    if (!from.empty()) from.erase(minus ? from.size() - 1 : 0, 1);
    minus ? fraction.insert(0, 1, digit) : whole.append(1, digit);
  }
  return true;
}

/// Reads the parts of a time from the front.
std::optional<long> takeNumber(std::string_view& text, std::size_t most) {
  std::size_t size = 0;
  while (size < text.size() && size < most && std::isdigit(static_cast<unsigned char>(text[size]))) ++size;
  if (size == 0) return std::nullopt;
  const long number = std::atol(std::string(text.substr(0, size)).c_str());
  text.remove_prefix(size);
  return number;
}

/// Takes ".123" and "+09:00" from behind the seconds. False when something else is left.
bool takeTail(std::string_view text, std::string& fraction, std::string& zone) {
  if (text.starts_with('.')) {
    text.remove_prefix(1);
    const std::size_t size = std::min(text.find_first_not_of("0123456789"), text.size());
    if (size == 0 || size > 6) return false;
    fraction = text.substr(0, size);
    text.remove_prefix(size);
  }
  text = trim(text);
  if (text == "Z" || text == "z") {
    zone = "Z";
    return true;
  }
  if (text.empty()) return true;
  if (text.front() != '+' && text.front() != '-') return false;
  std::string_view rest = text.substr(1);
  const auto hours = takeNumber(rest, 2);
  if (!hours || *hours > 14) return false;
  if (rest.starts_with(':')) rest.remove_prefix(1);
  if (!rest.empty()) {
    const auto minutes = takeNumber(rest, 2);
    if (!minutes || *minutes > 59 || !rest.empty()) return false;
  }
  zone = text;
  return true;
}

/// Reads JSON from its beginning; nothing is kept of it.
class JsonReader {
 public:
  explicit JsonReader(std::string_view text) : rest_(text) {}

  bool whole() {
    const bool read = value(0);
    blanks();
    return read && rest_.empty();
  }

 private:
  void blanks() { rest_.remove_prefix(std::min(rest_.find_first_not_of(" \t\r\n"), rest_.size())); }
  bool take(std::string_view sign) {
    blanks();
    if (!rest_.starts_with(sign)) return false;
    rest_.remove_prefix(sign.size());
    return true;
  }

  bool text() {
    if (!take("\"")) return false;
    while (!rest_.empty() && rest_.front() != '"') {
      if (static_cast<unsigned char>(rest_.front()) < ' ') return false;
      if (rest_.front() == '\\') {
        rest_.remove_prefix(1);
        if (rest_.empty() || std::string_view("\"\\/bfnrt").find(rest_.front()) == std::string_view::npos) return false;
      }
      rest_.remove_prefix(1);
    }
    return take("\"");
  }

  bool number() {
    const std::size_t size = std::min(rest_.find_first_not_of("+-0123456789.eE"), rest_.size());
    std::string_view digits = rest_.substr(0, size);
    rest_.remove_prefix(size);
    const std::string_view unsignedDigits = digits.substr(digits.starts_with('-') ? 1 : 0);
    const bool zeros = unsignedDigits.size() > 1 && unsignedDigits[0] == '0' && std::isdigit(unsignedDigits[1]);
    return !unsignedDigits.empty() && std::isdigit(unsignedDigits.front()) && std::isdigit(digits.back()) && !zeros &&
           isNumeric(digits);
  }

  /// What stands between brackets, parted by commas.
  template <typename Item>
  bool items(std::string_view close, Item item) {
    if (take(close)) return true;
    while (item())
      if (!take(",")) return take(close);
    return false;
  }

  bool value(int depth) {
    constexpr int kDeepest = 50;
    if (depth > kDeepest) return false;
    if (take("{")) return items("}", [&] { return text() && take(":") && value(depth + 1); });
    if (take("[")) return items("]", [&] { return value(depth + 1); });
    blanks();
    if (rest_.starts_with('"')) return text();
    return take("true") || take("false") || take("null") || number();
  }

  std::string_view rest_;
};

/// A date or moment of the other kinds, in a form that no setting of the session reads otherwise.
std::string looseTime(ScriptKind kind, const ScriptType& type, std::string_view text) {
  const Dialect& dialect = dialectOf(kind);
  const std::optional<DateTime> moment = parseDateTime(text);
  if (!moment) return textLiteral(dialect, text);
  const bool sqlServer = kind == ScriptKind::SqlServer;
  bool day = text.find(':') == std::string_view::npos;
  // A date of Teradata has no time of day, and a time stamp must have one.
  if (kind == ScriptKind::Teradata) day = type.base == "date";
  const std::string_view dayPattern = sqlServer ? "yyyymmdd" : "yyyy-mm-dd";
  const std::string_view momentPattern = sqlServer ? "yyyy-mm-ddThh:nn:ss" : "yyyy-mm-dd hh:nn:ss";
  const std::string literal = textLiteral(dialect, formatDateTime(*moment, day ? dayPattern : momentPattern));
  if (sqlServer) return literal;
  return (day ? "DATE " : "TIMESTAMP ") + literal;
}

}  // namespace

std::optional<std::string> decimalText(std::string_view text) {
  text = trim(text);
  const bool minus = takeMinus(text);
  const std::size_t e = std::min(text.find_first_of("eE"), text.size());
  const std::size_t point = std::min(text.substr(0, e).find('.'), e);
  std::string whole = withoutGroups(text.substr(0, point));
  std::string fraction(point < e ? text.substr(point + 1, e - point - 1) : "");
  if ((whole.empty() && fraction.empty()) || (!whole.empty() && !allDigits(whole)) ||
      (!fraction.empty() && !allDigits(fraction)))
    return std::nullopt;
  if (e < text.size() && !movePoint(whole, fraction, text.substr(e + 1))) return std::nullopt;
  whole.erase(0, std::min(whole.find_first_not_of('0'), whole.size()));
  if (whole.empty()) whole = "0";
  const bool zero = whole == "0" && fraction.find_first_not_of('0') == std::string::npos;
  return (minus && !zero ? "-" : "") + whole + (fraction.empty() ? "" : "." + fraction);
}

bool fitsDigits(std::string_view decimal, long whole, long fraction) {
  takeMinus(decimal);
  const std::size_t point = std::min(decimal.find('.'), decimal.size());
  const std::string_view before = decimal.substr(0, point);
  std::string_view behind = point < decimal.size() ? decimal.substr(point + 1) : "";
  behind = behind.substr(0, behind.find_last_not_of('0') + 1);
  return (before == "0" || static_cast<long>(before.size()) <= whole) && static_cast<long>(behind.size()) <= fraction;
}

bool fitsBytes(std::string_view decimal, int bytes, bool isUnsigned) {
  if (!fitsDigits(decimal, 20, 0)) return false;
  const bool minus = takeMinus(decimal);
  if (minus && isUnsigned) return false;
  const std::string digits(decimal.substr(0, decimal.find('.')));
  // One bit less for the sign; the most negative number is one more than the most positive.
  const unsigned bits = static_cast<unsigned>(bytes) * 8 - (isUnsigned ? 0 : 1);
  const unsigned long long most = bits == 64 ? ~0ULL : (1ULL << bits) - (minus ? 0 : 1);
  constexpr std::string_view kMost = "18446744073709551615";
  if (digits.size() > kMost.size() || (digits.size() == kMost.size() && digits > kMost)) return false;
  return std::strtoull(digits.c_str(), nullptr, 10) <= most;
}

std::optional<std::string> numberConstant(const ScriptType& type, std::string_view text, ConstantUse use) {
  constexpr long kFloatDigits = 38, kDoubleDigits = 300, kMoneyDigits = 16;
  const auto decimal = decimalText(text);
  if (!decimal || use == ConstantUse::Compared) return decimal;
  if (type.isUnsigned && decimal->starts_with('-')) return std::nullopt;
  switch (type.family) {
    case Family::Integer:
      if (!fitsBytes(*decimal, integerBytes(type), type.isUnsigned)) return std::nullopt;
      return decimal->substr(0, decimal->find('.'));
    case Family::Exact:
      return type.length == 0 || fitsDigits(*decimal, type.length - type.scale, type.scale) ? decimal : std::nullopt;
    case Family::Money:
      return fitsDigits(*decimal, kMoneyDigits, 2) ? decimal : std::nullopt;
    default: {
      const bool single = type.base == "real" || type.base == "float";
      return fitsDigits(*decimal, single ? kFloatDigits : kDoubleDigits, kDoubleDigits) ? decimal : std::nullopt;
    }
  }
}

std::optional<MomentText> momentText(std::string_view text) {
  text = trim(text);
  // Whole seconds are read with their date; what stands behind them is looked at here.
  const std::size_t firstColon = text.find(':');
  std::string head(text);
  MomentText found;
  if (firstColon != std::string_view::npos) {
    std::size_t end = firstColon + 1;
    while (end < text.size() && (std::isdigit(static_cast<unsigned char>(text[end])) || text[end] == ':')) ++end;
    head = text.substr(0, end);
    if (!takeTail(text.substr(end), found.fraction, found.zone)) return std::nullopt;
    if (const std::size_t t = head.find('T'); t != std::string::npos) head[t] = ' ';
  }
  const auto moment = parseDateTime(head);
  if (!moment || moment->year < 1) return std::nullopt;
  found.moment = *moment;
  return found;
}

std::optional<std::string> timeText(std::string_view text, int mostHours, bool zoned) {
  text = trim(text);
  const bool minus = mostHours > 24 && text.starts_with('-');
  if (minus) text.remove_prefix(1);
  const auto hour = takeNumber(text, 3);
  if (!hour || *hour > mostHours || !text.starts_with(':')) return std::nullopt;
  text.remove_prefix(1);
  const auto minute = takeNumber(text, 2);
  if (!minute || *minute > 59) return std::nullopt;
  long second = 0;
  if (text.starts_with(':')) {
    text.remove_prefix(1);
    const auto seconds = takeNumber(text, 2);
    if (!seconds || *seconds > 59) return std::nullopt;
    second = *seconds;
  }
  std::string fraction, zone;
  if (!takeTail(text, fraction, zone) || (!zone.empty() && !zoned)) return std::nullopt;
  const auto two = [](long number) { return (number < 10 ? "0" : "") + std::to_string(number); };
  return (minus ? "-" : "") + two(*hour) + ":" + two(*minute) + ":" + two(second) +
         (fraction.empty() ? "" : "." + fraction) + zone;
}

std::optional<std::string> letteredText(ScriptKind kind, std::string_view text, std::string_view letter) {
  const auto tokens = sqlTokens(kind, text);
  if (!tokens || tokens->size() != 2 || tokens->front().kind != SqlToken::Kind::Text || tokens->front().lower != letter)
    return std::nullopt;
  return tokens->front().text;
}

std::string hexOf(std::string_view bytes) {
  constexpr std::string_view kDigits = "0123456789abcdef";
  std::string hex;
  for (const char c : bytes) {
    const auto byte = static_cast<unsigned char>(c);
    hex += kDigits[byte >> 4];
    hex += kDigits[byte & 15];
  }
  return hex;
}

bool isHex(std::string_view text) {
  return text.size() % 2 == 0 && text.find_first_not_of("0123456789abcdefABCDEF") == std::string_view::npos;
}

bool isUuid(std::string_view text) {
  constexpr std::string_view kForm = "xxxxxxxx-xxxx-xxxx-xxxx-xxxxxxxxxxxx";
  if (text.size() != kForm.size()) return false;
  for (std::size_t i = 0; i < text.size(); ++i)
    if (kForm[i] == '-' ? text[i] != '-' : !std::isxdigit(static_cast<unsigned char>(text[i]))) return false;
  return true;
}

bool isAddress(std::string_view text, int version, bool masks) {
  const std::size_t slash = std::min(text.find('/'), text.size());
  const bool version4 = version == 4;
  if (slash < text.size()) {
    const std::string_view mask = text.substr(slash + 1);
    if (!masks || !allDigits(mask) || mask.size() > 3 || std::atol(std::string(mask).c_str()) > (version4 ? 32 : 128))
      return false;
  }
  unsigned char bytes[16];
  return inet_pton(version4 ? AF_INET : AF_INET6, std::string(text.substr(0, slash)).c_str(), bytes) == 1;
}

bool isHardwareAddress(std::string_view text) {
  if (text.size() != 17 && text.size() != 23) return false;
  const char sign = text[2];
  if (sign != ':' && sign != '-') return false;
  for (std::size_t i = 0; i < text.size(); ++i)
    if (i % 3 == 2 ? text[i] != sign : !std::isxdigit(static_cast<unsigned char>(text[i]))) return false;
  return true;
}

bool isJson(std::string_view text) { return JsonReader(text).whole(); }

std::optional<std::string> looseConstant(ScriptKind kind, const ScriptType& type, std::string_view text) {
  if (type.family == Family::Boolean) {
    const std::string lower = toLower(text);
    const bool yes = lower == "true" || lower == "t" || lower == "1" || lower == "-1" || lower == "yes";
    const bool no = lower == "false" || lower == "f" || lower == "0" || lower == "no";
    if (!yes && !no) return std::nullopt;
    return yes ? "1" : "0";
  }
  if (isNumber(type.family) && isNumeric(text)) return std::string(text);
  return isTime(type.family) ? looseTime(kind, type, text) : textLiteral(dialectOf(kind), text);
}

std::optional<std::string> constantOf(const Dialect& dialect, const ScriptType& type, std::string_view text,
                                      ConstantUse use) {
  if (const auto inQuotes = letteredText(dialect.kind, text, "")) return dialect.constant(type, *inQuotes, use);
  return dialect.constant(type, text, use);
}

}  // namespace quillmarden
