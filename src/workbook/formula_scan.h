#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace quillmarden {

// The pieces that formulas are made of, for the two that read them: formula_scan.cpp finds references, and
// formula_syntax.cpp tells whether a text is a formula.

/// Whether the character can be part of a name, a number or an address.
bool isFormulaWord(char c);
/// The end of the word that begins at `at`; `at` when none does.
std::size_t wordEnd(std::string_view formula, std::size_t at);
/// The end of a text in `quote`s, in which the quote is doubled, that begins at `at`; npos when it does not end.
std::size_t quotedEnd(std::string_view formula, std::size_t at, char quote);
/// The end of a "[...]" that begins at `at`, with others inside; npos when it does not end.
std::size_t bracketEnd(std::string_view formula, std::size_t at);
/// The end of an error value as "#REF!" that begins at `at`.
std::size_t errorEnd(std::string_view formula, std::size_t at);
/// The end of a prefix as "Sheet1!", "'A b'!", "[1]Sheet1!" or "Sheet1:Sheet3!" that begins at `at`; `at` when none
/// does.
std::size_t prefixEnd(std::string_view formula, std::size_t at);
/// The end of an address as "A1", "$A$1:B2", "A:A" or "1:3" that begins at `at`; `at` when none does.
std::size_t addressEnd(std::string_view formula, std::size_t at);

std::string doubledApostrophes(std::string_view text);

}  // namespace quillmarden
