#pragma once

#include <array>
#include <charconv>
#include <string>
#include <string_view>

namespace quillmarden {

// Values of attributes and elements as parts write them.

/// A number with blanks around it and perhaps a plus; false when the text is none.
template <class Number>
bool readNumber(std::string_view text, Number& number) {
  const std::size_t first = text.find_first_not_of(" \t\r\n");
  if (first == std::string_view::npos) return false;
  text.remove_prefix(first);
  while (text.back() == ' ' || text.back() == '\n' || text.back() == '\r' || text.back() == '\t') text.remove_suffix(1);
  if (text.starts_with('+')) text.remove_prefix(1);
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number);
  return error == std::errc() && end == text.data() + text.size();
}

inline bool isTrue(std::string_view value) { return value == "1" || value == "true"; }

/// An attribute as it stands, to be written again.
inline std::string kept(std::string_view name, std::string_view value) {
  const std::string quote = value.find('"') == std::string_view::npos ? "\"" : "'";
  return " " + std::string(name) + "=" + quote + std::string(value) + quote;
}

/// The shortest text that gives the number again.
inline std::string numberText(double number) {
  std::array<char, 32> digits;
  return {digits.data(), std::to_chars(digits.data(), digits.data() + digits.size(), number).ptr};
}

}  // namespace quillmarden
