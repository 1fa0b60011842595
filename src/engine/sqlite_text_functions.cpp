#include <algorithm>
#include <utility>

#include "engine/convert.h"
#include "engine/letters.h"
#include "engine/sqlite_functions.h"

namespace quillmarden {

namespace {

bool anyNull(int count, sqlite3_value** arguments) {
  return std::any_of(arguments, arguments + count, [](sqlite3_value* argument) { return isNullArgument(argument); });
}

[[noreturn]] void throwArgument(const char* function) {
  throw EngineError(engine_error::kConversion, std::string("関数「") + function + "」の引数の値が正しくありません.");
}

// What is left of a text behind its first characters.
std::string_view behind(std::string_view text, std::int64_t characters) {
  while (characters-- > 0 && !text.empty()) takeCharacter(text);
  return text;
}

std::string_view front(std::string_view text, std::int64_t characters) {
  return text.substr(0, text.size() - behind(text, characters).size());
}

template <char32_t (*convert)(char32_t)>
void eachCharacter(sqlite3_context* context, int count, sqlite3_value** arguments) {
  if (anyNull(count, arguments)) return;
  std::string buffer;
  std::string_view text = textArgument(arguments[0], buffer);
  std::string result;
  result.reserve(text.size());
  while (!text.empty()) appendCharacter(result, convert(takeCharacter(text)));
  resultText(context, result);
}

void left(sqlite3_context* context, int count, sqlite3_value** arguments) {
  if (anyNull(count, arguments)) return;
  std::string buffer;
  const int length = wholeArgument(arguments[1]);
  if (length < 0) throwArgument("Left");
  resultText(context, front(textArgument(arguments[0], buffer), length));
}

void right(sqlite3_context* context, int count, sqlite3_value** arguments) {
  if (anyNull(count, arguments)) return;
  std::string buffer;
  const std::string_view text = textArgument(arguments[0], buffer);
  const int length = wholeArgument(arguments[1]);
  if (length < 0) throwArgument("Right");
  resultText(context, behind(text, static_cast<std::int64_t>(characterCount(text)) - length));
}

void mid(sqlite3_context* context, int count, sqlite3_value** arguments) {
  if (anyNull(count, arguments)) return;
  std::string buffer;
  std::string_view text = textArgument(arguments[0], buffer);
  const int begin = wholeArgument(arguments[1]);
  if (begin < 1) throwArgument("Mid");
  text = behind(text, begin - 1);
  if (count == 3) {
    const int length = wholeArgument(arguments[2]);
    if (length < 0) throwArgument("Mid");
    text = front(text, length);
  }
  resultText(context, text);
}

std::string folded(std::string_view text) {
  std::string result;
  result.reserve(text.size());
  while (!text.empty()) appendCharacter(result, lowerCharacter(takeCharacter(text)));
  return result;
}

// InStr([start,] text, wanted [, compare]); texts compare without case as everywhere.
void instr(sqlite3_context* context, int count, sqlite3_value** arguments) {
  if (anyNull(count, arguments)) return;
  const int start = count == 2 ? 1 : wholeArgument(arguments[0]);
  if (start < 1) throwArgument("InStr");
  sqlite3_value** texts = count == 2 ? arguments : arguments + 1;
  std::string buffer;
  const std::string text = folded(textArgument(texts[0], buffer));
  const std::string wanted = folded(textArgument(texts[1], buffer));
  const std::size_t begin = text.size() - behind(text, start - 1).size();
  const std::size_t found = begin >= text.size() ? std::string::npos : text.find(wanted, begin);
  const std::size_t place =
      found == std::string::npos ? 0 : characterCount(std::string_view(text).substr(0, found)) + 1;
  sqlite3_result_int64(context, static_cast<std::int64_t>(place));
}

void replace(sqlite3_context* context, int count, sqlite3_value** arguments) {
  if (anyNull(count, arguments)) return;
  std::string buffers[3];
  std::string_view text = textArgument(arguments[0], buffers[0]);
  const std::string wanted = folded(textArgument(arguments[1], buffers[1]));
  const std::string_view with = textArgument(arguments[2], buffers[2]);
  std::string result;
  while (!text.empty()) {
    const std::string head = folded(front(text, static_cast<std::int64_t>(characterCount(wanted))));
    if (!wanted.empty() && head == wanted) {
      result += with;
      text = behind(text, static_cast<std::int64_t>(characterCount(wanted)));
    } else {
      appendCharacter(result, takeCharacter(text));
    }
  }
  resultText(context, result);
}

std::string properCase(std::string_view text) {
  std::string result;
  bool inWord = false;
  while (!text.empty()) {
    const char32_t character = takeCharacter(text);
    appendCharacter(result, inWord ? lowerCharacter(character) : upperCharacter(character));
    inWord = character != ' ' && character != '\t' && character != 0x3000;
  }
  return result;
}

std::string upperText(std::string_view text) {
  std::string result;
  while (!text.empty()) appendCharacter(result, upperCharacter(takeCharacter(text)));
  return result;
}

// StrConv(text, kinds): a sum of upper 1, lower 2, proper 3, wide 4, narrow 8, katakana 16, hiragana 32.
void strConv(sqlite3_context* context, int count, sqlite3_value** arguments) {
  if (anyNull(count, arguments)) return;
  std::string buffer;
  std::string text(textArgument(arguments[0], buffer));
  const int kinds = wholeArgument(arguments[1]);
  constexpr int kAll = 63;
  if (kinds < 0 || kinds > kAll || (kinds & 12) == 12 || (kinds & 48) == 48) throwArgument("StrConv");
  if ((kinds & 3) == 1) text = upperText(text);
  if ((kinds & 3) == 2) text = folded(text);
  if ((kinds & 3) == 3) text = properCase(text);
  if ((kinds & 16) != 0) text = toKatakana(text);
  if ((kinds & 32) != 0) text = toHiragana(text);
  if ((kinds & 4) != 0) text = wideLetters(text);
  if ((kinds & 8) != 0) text = narrowLetters(text);
  resultText(context, text);
}

constexpr int kLongestText = 100000;

void space(sqlite3_context* context, int count, sqlite3_value** arguments) {
  if (anyNull(count, arguments)) return;
  const int length = wholeArgument(arguments[0]);
  if (length < 0 || length > kLongestText) throwArgument("Space");
  resultText(context, std::string(static_cast<std::size_t>(length), ' '));
}

// String(count, character): of a text its first character, of a number the character of that code.
void repeated(sqlite3_context* context, int count, sqlite3_value** arguments) {
  if (anyNull(count, arguments)) return;
  const int length = wholeArgument(arguments[0]);
  if (length < 0 || length > kLongestText) throwArgument("String");
  std::string buffer;
  std::string_view text = textArgument(arguments[1], buffer);
  std::string character;
  if (sqlite3_value_type(arguments[1]) == SQLITE_TEXT) {
    character = front(text, 1);
  } else {
    appendCharacter(character, static_cast<char32_t>(wholeArgument(arguments[1]) & 0xFFFF));
  }
  std::string result;
  for (int i = 0; i < length; ++i) result += character;
  resultText(context, result);
}

void character(sqlite3_context* context, int count, sqlite3_value** arguments) {
  if (anyNull(count, arguments)) return;
  const int code = wholeArgument(arguments[0]);
  if (code < 1 || code > 0xFFFF || (code >= 0xD800 && code <= 0xDFFF)) throwArgument("Chr");
  std::string result;
  appendCharacter(result, static_cast<char32_t>(code));
  resultText(context, result);
}

void characterCode(sqlite3_context* context, int count, sqlite3_value** arguments) {
  if (anyNull(count, arguments)) return;
  std::string buffer;
  std::string_view text = textArgument(arguments[0], buffer);
  if (text.empty()) throwArgument("Asc");
  sqlite3_result_int64(context, static_cast<std::int64_t>(takeCharacter(text)));
}

void cstr(sqlite3_context* context, int count, sqlite3_value** arguments) {
  if (anyNull(count, arguments)) return;
  std::string buffer;
  resultText(context, textArgument(arguments[0], buffer));
}

}  // namespace

void registerTextFunctions(sqlite3* connection) {
  addFunction<eachCharacter<upperCharacter>>(connection, "qm_ucase", 1);
  addFunction<eachCharacter<lowerCharacter>>(connection, "qm_lcase", 1);
  addFunction<left>(connection, "qm_left", 2);
  addFunction<right>(connection, "qm_right", 2);
  addFunction<mid>(connection, "qm_mid", -1);
  addFunction<instr>(connection, "qm_instr", -1);
  addFunction<replace>(connection, "qm_replace", 3);
  addFunction<strConv>(connection, "qm_strconv", -1);
  addFunction<space>(connection, "qm_space", 1);
  addFunction<repeated>(connection, "qm_string", 2);
  addFunction<character>(connection, "qm_chr", 1);
  addFunction<characterCode>(connection, "qm_asc", 1);
  addFunction<cstr>(connection, "qm_cstr", 1);
}

}  // namespace quillmarden
