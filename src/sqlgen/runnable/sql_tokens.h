#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "sqlgen/runnable/dialect.h"

namespace quillmarden {

/// A piece of what a person typed for a type or an expression.
struct SqlToken {
  enum class Kind { Word, Name, Text, Number, Sign, End };
  Kind kind = Kind::End;
  std::string text{};     ///< as typed; of a name in quotes and of a literal what stands between them
  std::string lower{};    ///< of a word, and of the letter in front of a literal's quote
  std::size_t place = 0;  ///< in the text, in bytes

  bool isWord(std::string_view word) const { return kind == Kind::Word && lower == word; }
  bool isSign(std::string_view sign) const { return kind == Kind::Sign && text == sign; }
};

/// The pieces of the text with an End behind them. Nothing for a text that could not stand in a statement of the kind
/// without changing what comes behind it: an open quote or bracket, a line end, a ";", the beginning of a comment.
std::optional<std::vector<SqlToken>> sqlTokens(ScriptKind kind, std::string_view text);

/// Whether the text can stand in a statement as it is.
bool standsAlone(ScriptKind kind, std::string_view text);

}  // namespace quillmarden
