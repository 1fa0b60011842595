#include "common/numbers.h"

#include <fmt/format.h>

#include <algorithm>
#include <cmath>

#include "common/text.h"
#include "common/utf8.h"
#include "engine/convert.h"
#include "engine/value.h"

namespace quillmarden {

namespace {}  // namespace

std::string gNumFromText(std::string_view text, bool allowPoint) {
  std::string number;
  bool pointSeen = false;
  for (std::size_t i = 0; i < text.size(); ++i) {
    const char c = text[i];
    const bool point = c == '.' && allowPoint && !pointSeen;
    if (point) pointSeen = true;
    if (isDigit(c) || point || (c == '-' && i == 0)) number += c;
  }
  return std::any_of(number.begin(), number.end(), isDigit) ? number : "0";
}

double gStr2Double(std::string_view text) {
  text = trim(text);
  if (const auto number = parseNumber(text)) return *number;
  return parseNumber(gNumFromText(text, true)).value_or(0);
}

double gVal(std::string_view text) { return parseNumber(text).value_or(0); }

bool isNumeric(std::string_view text) { return parseNumber(text).has_value(); }

std::string plainNumber(double number) { return numberText(number); }

std::string groupedNumber(double number) {
  if (!std::isfinite(number)) return "0";
  // std::round takes halves away from zero, as people do; fmt alone would take them to the even neighbour.
  const double rounded = std::round(number);
  const std::string digits = fmt::format("{:.0f}", std::abs(rounded));
  std::string grouped = rounded < 0 ? "-" : "";
  for (std::size_t i = 0; i < digits.size(); ++i) {
    if (i > 0 && (digits.size() - i) % 3 == 0) grouped += ',';
    grouped += digits[i];
  }
  return grouped;
}

}  // namespace quillmarden
