#include "engine/like.h"

#include <string>

#include "engine/letters.h"
#include "engine/value.h"

namespace quillmarden {

namespace {

[[noreturn]] void throwPattern(std::string_view pattern) {
  throw EngineError(engine_error::kLikePattern,
                    "Like のパターン「" + std::string(pattern.substr(0, 120)) + "」が正しくありません.");
}

char32_t takeFolded(std::string_view& text) { return lowerCharacter(takeCharacter(text)); }

// Reads the list behind "[" up to its "]" and tells whether the character is in it. An empty list takes no character.
bool takeList(std::string_view& rest, char32_t character, std::string_view pattern, bool& empty) {
  const bool negated = rest.size() > 1 && rest[0] == '!' && rest[1] != ']';
  if (negated) rest.remove_prefix(1);
  bool found = false;
  empty = true;
  while (true) {
    if (rest.empty()) throwPattern(pattern);
    if (rest.front() == ']') break;
    empty = false;
    const char32_t low = takeFolded(rest);
    char32_t high = low;
    if (rest.size() > 1 && rest[0] == '-' && rest[1] != ']') {
      rest.remove_prefix(1);
      high = takeFolded(rest);
      if (high < low) throwPattern(pattern);
    }
    found = found || (character >= low && character <= high);
  }
  rest.remove_prefix(1);
  return found != negated;
}

}  // namespace

bool matchesLike(std::string_view text, std::string_view pattern) {
  const std::string_view whole = pattern;
  // At a mismatch the last "*" takes one more character; the ones before it need not be tried again.
  std::string_view patternBehindStar;
  std::string_view textAtStar;
  bool star = false;
  while (true) {
    if (!pattern.empty() && pattern.front() == '*') {
      pattern.remove_prefix(1);
      if (pattern.empty()) return true;
      patternBehindStar = pattern;
      textAtStar = text;
      star = true;
      continue;
    }
    if (pattern.empty() && text.empty()) return true;
    bool fits = false;
    if (!pattern.empty()) {
      std::string_view textRest = text;
      const char32_t character = text.empty() ? 0 : takeFolded(textRest);
      const char first = pattern.front();
      if (first == '[') {
        pattern.remove_prefix(1);
        bool empty = false;
        fits = takeList(pattern, character, whole, empty);
        if (empty) continue;
        fits = fits && !text.empty();
      } else {
        const char32_t wanted = takeFolded(pattern);
        fits = !text.empty() &&
               (first == '?' || (first == '#' ? character >= '0' && character <= '9' : wanted == character));
      }
      if (fits) {
        text = textRest;
        continue;
      }
    }
    if (!star || textAtStar.empty()) return false;
    takeCharacter(textAtStar);
    text = textAtStar;
    pattern = patternBehindStar;
  }
}

}  // namespace quillmarden
