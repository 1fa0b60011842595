#pragma once

#include <string>
#include <string_view>

namespace quillmarden {

/// A value as a literal of a statement, with its quotes: whatever it holds, it stays one text. Everything that is
/// typed, read from a file, given as an option or found in a Repository goes into a statement this way; the statement's
/// key in the cache is the same for all values.
std::string sqlText(std::string_view value);

/// A text that the statement is meant to take as it was typed, between quotes, as the searches and the login do: two
/// quotes side by side are one. Throws EngineError kSyntax, with words for the person who typed it, for a quote that
/// has no partner: behind it the text would go on as a part of the statement. `before` and `behind` are the statement's
/// own, such as the "*" of a pattern.
std::string asTyped(std::string_view text, std::string_view before = "", std::string_view behind = "");

}  // namespace quillmarden
