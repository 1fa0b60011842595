#pragma once

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <string_view>

namespace quillmarden {

/// One step through a UTF-8 text. A byte that is no UTF-8 is a step of its own, with U+FFFD and valid false.
struct Utf8Step {
  char32_t character;
  std::size_t size;
  bool valid;
};

/// An ASCII digit, whatever the locale.
inline bool isDigit(char letter) { return letter >= '0' && letter <= '9'; }

/// How many bytes from `at` on are ASCII.
inline std::size_t asciiRun(std::string_view text, std::size_t at) {
  const std::size_t start = at;
  for (; at + 8 <= text.size(); at += 8) {
    std::uint64_t block;
    std::memcpy(&block, text.data() + at, 8);
    if ((block & 0x8080808080808080U) != 0) break;
  }
  while (at < text.size() && static_cast<unsigned char>(text[at]) < 0x80) ++at;
  return at - start;
}

inline bool isAscii(std::string_view text) { return asciiRun(text, 0) == text.size(); }

/// The character at byte `at`, which must lie inside the text. Overlong forms and surrogates are no UTF-8.
inline Utf8Step utf8At(std::string_view text, std::size_t at) {
  constexpr Utf8Step kInvalid{U'\uFFFD', 1, false};
  const auto byte = [&](std::size_t i) { return static_cast<unsigned char>(text[at + i]); };
  const unsigned char lead = byte(0);
  if (lead < 0x80) return {lead, 1, true};
  const std::size_t size = lead >= 0xF0 ? 4 : lead >= 0xE0 ? 3 : 2;
  if (lead < 0xC2 || lead > 0xF4 || text.size() - at < size) return kInvalid;
  char32_t character = lead & (0x7FU >> size);
  for (std::size_t i = 1; i < size; ++i) {
    if ((byte(i) & 0xC0) != 0x80) return kInvalid;
    character = (character << 6) | (byte(i) & 0x3FU);
  }
  constexpr char32_t kSmallest[] = {0, 0, 0x80, 0x800, 0x10000};
  const bool surrogate = character >= 0xD800 && character <= 0xDFFF;
  if (character < kSmallest[size] || surrogate || character > 0x10FFFF) return kInvalid;
  return {character, size, true};
}

}  // namespace quillmarden
