#include "engine/sql_text.h"

#include "engine/value.h"

namespace quillmarden {

std::string sqlText(std::string_view value) {
  std::string literal = "'";
  literal.reserve(value.size() + 2);
  for (const char letter : value) {
    if (letter == '\'') literal += letter;
    literal += letter;
  }
  return literal += '\'';
}

std::string asTyped(std::string_view text, std::string_view before, std::string_view behind) {
  for (std::size_t at = text.find('\''); at != std::string_view::npos; at = text.find('\'', at + 2)) {
    if (at + 1 < text.size() && text[at + 1] == '\'') continue;
    throw EngineError(engine_error::kSyntax, "「" + std::string(text) +
                                                 "」の「'」が対になっていません. 文字としての「'」は、" +
                                                 "「''」と2つ続けて入力して下さい.");
  }
  std::string literal = "'";
  return literal.append(before).append(text).append(behind).append("'");
}

}  // namespace quillmarden
