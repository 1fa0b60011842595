#include "common/text.h"

#include <algorithm>
#include <unordered_set>

#include "common/code_page.h"
#include "common/utf8.h"

namespace quillmarden {

namespace {

/// Bytes of one character that is no ASCII.
std::size_t wideWidth(const Utf8Step& step) {
  if (step.character > 0xFFFF) return 2;
  return CodePage::get().toCell[step.character] > 0xFF ? 2 : 1;
}

void padTo(std::string& text, std::size_t width, std::size_t target, bool inFront) {
  if (inFront)
    text.insert(0, target - width, ' ');
  else
    text.append(target - width, ' ');
}

}  // namespace

std::size_t gLenB(std::string_view text) {
  std::size_t width = 0;
  for (std::size_t at = 0;;) {
    const std::size_t run = asciiRun(text, at);
    width += run;
    at += run;
    if (at >= text.size()) return width;
    const Utf8Step step = utf8At(text, at);
    width += wideWidth(step);
    at += step.size;
  }
}

std::string gMidB(std::string_view text, std::size_t start, std::size_t length) {
  if (start == 0) return {};
  const std::size_t first = start - 1;
  const std::size_t last = length > std::string_view::npos - first ? std::string_view::npos : first + length;
  // In units of bytes of the code page: where the next character begins.
  std::size_t place = 0;
  std::size_t at = 0;
  std::string part;
  while (at < text.size() && place < last) {
    const std::size_t run = asciiRun(text, at);
    if (run > 0) {
      const std::size_t from = place < first ? std::min(run, first - place) : 0;
      const std::size_t to = std::min(run, last - place);
      if (from < to) part.append(text.substr(at + from, to - from));
      place += run;
      at += run;
      continue;
    }
    const Utf8Step step = utf8At(text, at);
    const std::size_t width = wideWidth(step);
    if (place >= first && place + width <= last) part.append(text.substr(at, step.size));
    place += width;
    at += step.size;
  }
  return part;
}

std::string gPadText(std::string_view text, std::size_t width, int mode, bool keep) {
  std::string padded = mode >= 2 ? toWide(text) : std::string(text);
  const std::size_t own = gLenB(padded);
  if (own < width)
    padTo(padded, own, width, mode == 1 || mode == 3);
  else if (own > width && !keep)
    padded = gMidB(padded, 1, width);
  return padded;
}

std::string gZenkaku2Hankaku(std::string_view text, bool withDigits, bool withBlanks) {
  std::string narrow;
  narrow.reserve(text.size());
  for (std::size_t at = 0; at < text.size();) {
    const Utf8Step step = utf8At(text, at);
    const char32_t c = step.character;
    if (c == U'（' || c == U'）' || c == U'［' || c == U'］' || c == U'＞' || c == U'＜' ||
        (withDigits && c >= U'０' && c <= U'９'))
      narrow += static_cast<char>(c - 0xFEE0);
    else if (!(withBlanks && (c == U' ' || c == U'　')))
      narrow.append(text.substr(at, step.size));
    at += step.size;
  }
  return narrow;
}

std::string_view trim(std::string_view text) {
  const std::size_t first = text.find_first_not_of(' ');
  if (first == std::string_view::npos) return {};
  return text.substr(first, text.find_last_not_of(' ') - first + 1);
}

std::string gReplaceAll(std::string_view text, std::string_view from, std::string_view to) {
  std::string replaced;
  if (from.empty()) return std::string(text);
  for (std::size_t at = 0;;) {
    const std::size_t hit = text.find(from, at);
    replaced.append(text.substr(at, hit - at));
    if (hit == std::string_view::npos) return replaced;
    replaced.append(to);
    at = hit + from.size();
  }
}

std::string gExcelSafeText(std::string_view text) {
  const std::string_view trimmed = trim(text);
  std::string safe;
  if (!trimmed.empty() && std::string_view("+=-").find(trimmed.front()) != std::string_view::npos) safe = "'";
  return safe.append(trimmed);
}

std::string toCp932(std::string_view utf8, std::u32string* lost) {
  std::string bytes;
  bytes.reserve(utf8.size());
  std::unordered_set<char32_t> told;
  const auto tell = [&](char32_t character) {
    if (!lost) return;
    if (told.empty()) told.insert(lost->begin(), lost->end());
    if (told.insert(character).second) lost->push_back(character);
  };
  for (std::size_t at = 0;;) {
    const std::size_t run = asciiRun(utf8, at);
    bytes.append(utf8.substr(at, run));
    at += run;
    if (at >= utf8.size()) return bytes;
    const Utf8Step step = utf8At(utf8, at);
    at += step.size;
    const unsigned cell = step.character > 0xFFFF ? 0U : CodePage::get().toCell[step.character];
    if (cell > 0xFF) bytes += static_cast<char>(cell >> 8);
    bytes += cell == 0 ? '?' : static_cast<char>(cell & 0xFF);
    if (cell == 0) tell(step.character);
  }
}

std::string fromCp932(std::string_view cp932) {
  std::string text;
  text.reserve(cp932.size() + cp932.size() / 2);
  for (std::size_t at = 0;;) {
    const std::size_t run = asciiRun(cp932, at);
    text.append(cp932.substr(at, run));
    at += run;
    if (at >= cp932.size()) return text;
    const unsigned lead = static_cast<unsigned char>(cp932[at++]);
    char32_t character = 0;
    if (lead >= 0xA1 && lead <= 0xDF) {
      character = 0xFF61 + (lead - 0xA1);
    } else if (at < cp932.size()) {
      character = CodePage::get().toCharacter[lead << 8 | static_cast<unsigned char>(cp932[at])];
      if (character != 0) ++at;
    }
    text += toUtf8(character == 0 ? U'\uFFFD' : character);
  }
}

std::string toUtf8(char32_t character) {
  const auto tail = [&](int shift) { return static_cast<char>(0x80U | ((character >> shift) & 0x3FU)); };
  if (character < 0x80) return {static_cast<char>(character)};
  if (character < 0x800) return {static_cast<char>(0xC0U | (character >> 6)), tail(0)};
  if (character < 0x10000) return {static_cast<char>(0xE0U | (character >> 12)), tail(6), tail(0)};
  return {static_cast<char>(0xF0U | (character >> 18)), tail(12), tail(6), tail(0)};
}

}  // namespace quillmarden
