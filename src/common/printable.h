#pragma once

#include <string>
#include <string_view>

namespace quillmarden {

/// Whether a character steers a terminal or ends a line: C0, DEL and C1.
constexpr bool isControl(char32_t character) { return character < 0x20 || (character >= 0x7F && character < 0xA0); }

/// Whether the text has such a character, or bytes that are no UTF-8.
bool holdsControl(std::string_view text);

/// The text as a terminal may have it: line feeds and tabs stay, any other control character becomes a blank, and each
/// byte that is no UTF-8 U+FFFD, since terminals that don't read UTF-8 take some of them for control characters.
std::string printable(std::string_view text);

}  // namespace quillmarden
