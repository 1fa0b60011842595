#include "engine/letters.h"

#include <array>

namespace quillmarden {

namespace {

// The full-width forms of U+FF61 to U+FF9F.
constexpr std::u32string_view kWideKatakana =
    U"。「」、・ヲァィゥェォャュョッーアイウエオカキクケコサシスセソタチツテトナニヌネノハヒフヘホマミムメモヤユヨラリ"
    U"ルレロワン゛゜";
constexpr char32_t kNarrowFirst = 0xFF61;
constexpr char32_t kNarrowLast = 0xFF9F;
constexpr char32_t kNarrowVoiced = 0xFF9E;
constexpr char32_t kNarrowHalfVoiced = 0xFF9F;
static_assert(kWideKatakana.size() == kNarrowLast - kNarrowFirst + 1);

// The marks of ASCII that have no full-width form at the regular distance.
struct Pair {
  char32_t narrow;
  char32_t wide;
};
constexpr std::array<Pair, 2> kOddPairs = {{{' ', 0x3000}, {0xA5, 0xFFE5}}};

constexpr char32_t kWideDistance = 0xFEE0;  // from "!" (U+0021) to its full-width form (U+FF01)

bool isVoicedRow(char32_t katakana) {
  return (katakana >= U'カ' && katakana <= U'ト') || (katakana >= U'ハ' && katakana <= U'ホ');
}

// カ gives ガ, ハ gives バ, ウ gives ヴ; 0 for one without a voiced form.
char32_t voiced(char32_t katakana) {
  if (katakana == U'ウ') return U'ヴ';
  return isVoicedRow(katakana) ? katakana + 1 : 0;
}

char32_t halfVoiced(char32_t katakana) { return katakana >= U'ハ' && katakana <= U'ホ' ? katakana + 2 : 0; }

bool isNarrowKatakana(char32_t character) { return character >= kNarrowFirst && character <= kNarrowLast; }

// The half-width form of a full-width katakana or its mark, 0 where there is none.
char32_t narrowKatakana(char32_t wide) {
  const std::size_t found = kWideKatakana.find(wide);
  return found == std::u32string_view::npos ? 0 : kNarrowFirst + static_cast<char32_t>(found);
}

bool appendNarrowVoiced(std::string& result, char32_t wide) {
  for (const char32_t base : kWideKatakana) {
    char32_t mark = 0;
    if (voiced(base) == wide) mark = kNarrowVoiced;
    if (halfVoiced(base) == wide) mark = kNarrowHalfVoiced;
    if (mark == 0) continue;
    appendCharacter(result, narrowKatakana(base));
    appendCharacter(result, mark);
    return true;
  }
  return false;
}

}  // namespace

char32_t takeCharacter(std::string_view& text) {
  const auto byte = [&](std::size_t i) {
    return i < text.size() ? static_cast<char32_t>(static_cast<unsigned char>(text[i])) : char32_t{0};
  };
  const auto follows = [&](std::size_t i) { return (byte(i) & 0xC0) == 0x80; };
  const char32_t first = byte(0);
  std::size_t length = 1;
  char32_t result = first;
  if (first >= 0xC2 && first <= 0xDF && follows(1)) {
    length = 2;
    result = (first & 0x1F) << 6 | (byte(1) & 0x3F);
  } else if (first >= 0xE0 && first <= 0xEF && follows(1) && follows(2)) {
    length = 3;
    result = (first & 0x0F) << 12 | (byte(1) & 0x3F) << 6 | (byte(2) & 0x3F);
  } else if (first >= 0xF0 && first <= 0xF4 && follows(1) && follows(2) && follows(3)) {
    length = 4;
    result = (first & 0x07) << 18 | (byte(1) & 0x3F) << 12 | (byte(2) & 0x3F) << 6 | (byte(3) & 0x3F);
  }
  text.remove_prefix(length);
  return result;
}

void appendCharacter(std::string& text, char32_t character) {
  const auto add = [&](char32_t byte) { text += static_cast<char>(byte); };
  if (character < 0x80) {
    add(character);
  } else if (character < 0x800) {
    add(0xC0 | character >> 6);
    add(0x80 | (character & 0x3F));
  } else if (character < 0x10000) {
    add(0xE0 | character >> 12);
    add(0x80 | (character >> 6 & 0x3F));
    add(0x80 | (character & 0x3F));
  } else {
    add(0xF0 | character >> 18);
    add(0x80 | (character >> 12 & 0x3F));
    add(0x80 | (character >> 6 & 0x3F));
    add(0x80 | (character & 0x3F));
  }
}

char32_t upperCharacter(char32_t character) {
  const auto between = [&](char32_t low, char32_t high) { return character >= low && character <= high; };
  if (between('a', 'z') || between(0xFF41, 0xFF5A)) return character - 0x20;
  if (character < 0x80) return character;
  if (between(0xE0, 0xFE) && character != 0xF7) return character - 0x20;
  if (between(0x3B1, 0x3C9) && character != 0x3C2) return character - 0x20;
  if (between(0x430, 0x44F)) return character - 0x20;
  if (between(0x450, 0x45F)) return character - 0x50;
  return character;
}

char32_t lowerCharacter(char32_t character) {
  const auto between = [&](char32_t low, char32_t high) { return character >= low && character <= high; };
  if (between('A', 'Z') || between(0xFF21, 0xFF3A)) return character + 0x20;
  if (character < 0x80) return character;
  if (between(0xC0, 0xDE) && character != 0xD7) return character + 0x20;
  if (between(0x391, 0x3A9) && character != 0x3A2) return character + 0x20;
  if (between(0x410, 0x42F)) return character + 0x20;
  if (between(0x400, 0x40F)) return character + 0x50;
  return character;
}

std::string wideLetters(std::string_view text) {
  std::string result;
  while (!text.empty()) {
    char32_t character = takeCharacter(text);
    if (isNarrowKatakana(character)) {
      character = kWideKatakana[character - kNarrowFirst];
      std::string_view behind = text;
      const char32_t mark = behind.empty() ? 0 : takeCharacter(behind);
      const char32_t joined = mark == kNarrowVoiced       ? voiced(character)
                              : mark == kNarrowHalfVoiced ? halfVoiced(character)
                                                          : char32_t{0};
      if (joined != 0) {
        character = joined;
        text = behind;
      }
    } else if (character > ' ' && character < 0x7F) {
      character += kWideDistance;
    } else {
      for (const Pair& pair : kOddPairs) {
        if (character == pair.narrow) character = pair.wide;
      }
    }
    appendCharacter(result, character);
  }
  return result;
}

std::string narrowLetters(std::string_view text) {
  std::string result;
  while (!text.empty()) {
    char32_t character = takeCharacter(text);
    if (character > ' ' + kWideDistance && character < 0x7F + kWideDistance) {
      character -= kWideDistance;
    } else if (const char32_t narrow = narrowKatakana(character); narrow != 0) {
      character = narrow;
    } else if (appendNarrowVoiced(result, character)) {
      continue;
    } else {
      for (const Pair& pair : kOddPairs) {
        if (character == pair.wide) character = pair.narrow;
      }
    }
    appendCharacter(result, character);
  }
  return result;
}

std::string toKatakana(std::string_view text) {
  std::string result;
  while (!text.empty()) {
    const char32_t character = takeCharacter(text);
    const bool hiragana = (character >= U'ぁ' && character <= U'ゖ') || character == U'ゝ' || character == U'ゞ';
    appendCharacter(result, hiragana ? character + 0x60 : character);
  }
  return result;
}

std::string toHiragana(std::string_view text) {
  std::string result;
  while (!text.empty()) {
    const char32_t character = takeCharacter(text);
    const bool katakana = (character >= U'ァ' && character <= U'ヶ') || character == U'ヽ' || character == U'ヾ';
    appendCharacter(result, katakana ? character - 0x60 : character);
  }
  return result;
}

}  // namespace quillmarden
