// Half-width and full-width forms, capitals and small letters.

#include <unicode/uchar.h>

#include <algorithm>
#include <array>

#include "common/text.h"
#include "common/utf8.h"

namespace quillmarden {

namespace {

constexpr char16_t kFirstHalfKana = 0xFF61;
constexpr char16_t kVoicedMark = 0xFF9E;      // ﾞ
constexpr char16_t kSemiVoicedMark = 0xFF9F;  // ﾟ

/// The full-width forms of U+FF61 to U+FF9F, in their order.
constexpr std::u16string_view kFullKana =
    u"。「」、・ヲァィゥェォャュョッーアイウエオカキクケコサシスセソタチツテトナニヌネノハヒフヘホマミムメモ"
    u"ヤユヨラリルレロワン゛゜";

constexpr bool takesVoicedMark(char32_t kana) {
  return (kana >= U'カ' && kana <= U'ト' && kana != U'ッ') || (kana >= U'ハ' && kana <= U'ホ') || kana == U'ウ';
}

constexpr bool takesSemiVoicedMark(char32_t kana) { return kana >= U'ハ' && kana <= U'ホ'; }

/// A voiced kana stands right behind the plain one, a semi-voiced one behind that.
constexpr char32_t voiced(char32_t kana) { return kana == U'ウ' ? U'ヴ' : kana + 1; }
constexpr char32_t semiVoiced(char32_t kana) { return kana + 2; }

struct HalfKana {
  char16_t kana = 0;
  char16_t mark = 0;
};

/// Half-width forms of U+3000 to U+30FF.
constexpr std::array<HalfKana, 0x100> kHalfKana = [] {
  std::array<HalfKana, 0x100> forms{};
  for (std::size_t i = 0; i < kFullKana.size(); ++i) {
    const char16_t full = kFullKana[i];
    const auto half = static_cast<char16_t>(kFirstHalfKana + i);
    forms[full & 0xFFU] = {half, 0};
    if (takesVoicedMark(full)) forms[voiced(full) & 0xFFU] = {half, kVoicedMark};
    if (takesSemiVoicedMark(full)) forms[semiVoiced(full) & 0xFFU] = {half, kSemiVoicedMark};
  }
  return forms;
}();

/// Signs whose full-width form is no shifted ASCII: what the code page shows for them.
constexpr char narrowSign(char32_t character) {
  switch (character) {
    case U'　':
      return ' ';
    case U'￥':
      return '\\';
    case U'〜':  // U+301C, the twin of U+FF5E
      return '~';
    case U'−':  // U+2212, the twin of U+FF0D
      return '-';
    default:
      return '\0';
  }
}

char32_t halfToFull(char32_t character) {
  if (character == U' ') return U'　';
  if (character > U' ' && character < 0x7F) return character + 0xFEE0;
  if (character >= kFirstHalfKana && character <= kSemiVoicedMark) return kFullKana[character - kFirstHalfKana];
  return character;
}

/// Applies a conversion of single characters; bytes that are no UTF-8 stay.
template <typename Convert>
std::string convertLetters(std::string_view text, Convert convert) {
  std::string converted;
  converted.reserve(text.size());
  for (std::size_t at = 0; at < text.size();) {
    const Utf8Step step = utf8At(text, at);
    if (const char32_t other = convert(step.character); step.valid && other != step.character)
      converted += toUtf8(other);
    else
      converted.append(text.substr(at, step.size));
    at += step.size;
  }
  return converted;
}

char asciiUpper(char c) { return c >= 'a' && c <= 'z' ? static_cast<char>(c - 32) : c; }
char asciiLower(char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c + 32) : c; }

char32_t lower(char32_t character) {
  if (character < 0x80) return static_cast<char32_t>(asciiLower(static_cast<char>(character)));
  return static_cast<char32_t>(u_tolower(static_cast<UChar32>(character)));
}

char32_t upper(char32_t character) {
  if (character < 0x80) return static_cast<char32_t>(asciiUpper(static_cast<char>(character)));
  return static_cast<char32_t>(u_toupper(static_cast<UChar32>(character)));
}

}  // namespace

std::string toNarrow(std::string_view text) {
  std::string narrow;
  narrow.reserve(text.size());
  for (std::size_t at = 0; at < text.size();) {
    const Utf8Step step = utf8At(text, at);
    const char32_t c = step.character;
    if (c >= 0xFF01 && c <= 0xFF5E) {
      narrow += static_cast<char>(c - 0xFEE0);
    } else if (const char sign = narrowSign(c)) {
      narrow += sign;
    } else if (c > 0x3000 && c < 0x3100 && kHalfKana[c & 0xFFU].kana != 0) {
      const HalfKana& form = kHalfKana[c & 0xFFU];
      narrow += toUtf8(form.kana);
      if (form.mark != 0) narrow += toUtf8(form.mark);
    } else {
      narrow.append(text.substr(at, step.size));
    }
    at += step.size;
  }
  return narrow;
}

std::string toWide(std::string_view text) {
  std::string wide;
  wide.reserve(text.size() * 3);
  for (std::size_t at = 0; at < text.size();) {
    const Utf8Step step = utf8At(text, at);
    if (!step.valid) {
      wide += text[at++];
      continue;
    }
    at += step.size;
    char32_t character = halfToFull(step.character);
    const bool halfKana = step.character >= kFirstHalfKana && step.character < kVoicedMark;
    const char32_t next = halfKana && at < text.size() ? utf8At(text, at).character : 0;
    if (next == kVoicedMark && takesVoicedMark(character)) {
      character = voiced(character);
      at += 3;
    } else if (next == kSemiVoicedMark && takesSemiVoicedMark(character)) {
      character = semiVoiced(character);
      at += 3;
    }
    wide += toUtf8(character);
  }
  return wide;
}

std::string toUpper(std::string_view text) {
  if (!isAscii(text)) return convertLetters(text, upper);
  std::string converted(text);
  std::transform(converted.begin(), converted.end(), converted.begin(), asciiUpper);
  return converted;
}

std::string toLower(std::string_view text) {
  if (!isAscii(text)) return convertLetters(text, lower);
  std::string converted(text);
  std::transform(converted.begin(), converted.end(), converted.begin(), asciiLower);
  return converted;
}

bool equalsNoCase(std::string_view left, std::string_view right) {
  if (left == right) return true;
  if (isAscii(left) && isAscii(right))
    return std::equal(left.begin(), left.end(), right.begin(), right.end(),
                      [](char a, char b) { return asciiLower(a) == asciiLower(b); });
  return toLower(left) == toLower(right);
}

}  // namespace quillmarden
