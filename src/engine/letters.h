#pragma once

#include <cstddef>
#include <string>
#include <string_view>

// Single characters of UTF-8 texts, for the functions of SQL. The engine stands below the tables of the common library.
namespace quillmarden {

/// Takes the next character off the text. A broken byte counts as the character of its value, so that any text can be
/// walked; the text must not be empty.
char32_t takeCharacter(std::string_view& text);
void appendCharacter(std::string& text, char32_t character);

/// Letters of ASCII, of the full-width forms, of Latin-1, Greek and Cyrillic in the other case; all else stays.
char32_t upperCharacter(char32_t character);
char32_t lowerCharacter(char32_t character);

/// ASCII, katakana and their marks in full-width or half-width form, as StrConv has it. A voiced katakana becomes two
/// half-width characters, and the two become one again.
std::string wideLetters(std::string_view text);
std::string narrowLetters(std::string_view text);
/// Hiragana as katakana and back.
std::string toKatakana(std::string_view text);
std::string toHiragana(std::string_view text);

}  // namespace quillmarden
