#include "engine/value.h"

#include <array>
#include <charconv>
#include <cmath>

#include "engine/convert.h"

namespace quillmarden {

bool isNull(const Value& value) { return std::holds_alternative<std::monostate>(value); }

std::string numberText(double value) {
  if (value == 0) return "0";  // "-0" included
  if (!std::isfinite(value)) return std::isnan(value) ? "nan" : (value < 0 ? "-inf" : "inf");
  // The widest plain form is that of the smallest double.
  std::array<char, 1100> buffer;
  const auto [end, fault] =
      std::to_chars(buffer.data(), buffer.data() + buffer.size(), value, std::chars_format::fixed);
  return std::string(buffer.data(), end);
}

std::string toText(const Value& value) {
  if (const auto* text = std::get_if<std::string>(&value)) return *text;
  if (const auto* whole = std::get_if<std::int64_t>(&value)) return std::to_string(*whole);
  if (const auto* real = std::get_if<double>(&value)) return numberText(*real);
  return std::string();
}

double toNumber(const Value& value) {
  if (const auto* real = std::get_if<double>(&value)) return *real;
  if (const auto* whole = std::get_if<std::int64_t>(&value)) return static_cast<double>(*whole);
  if (const auto* text = std::get_if<std::string>(&value)) return parseNumber(*text).value_or(0);
  return 0;
}

std::int64_t toInteger(const Value& value) {
  if (const auto* whole = std::get_if<std::int64_t>(&value)) return *whole;
  const double rounded = roundHalfToEven(toNumber(value));
  // Beyond 64 bits a cast would be undefined.
  constexpr double kBeyond = 9223372036854775808.0;
  if (!(rounded >= -kBeyond && rounded < kBeyond)) return 0;
  return static_cast<std::int64_t>(rounded);
}

}  // namespace quillmarden
