#pragma once

#include <cstddef>
#include <string>
#include <string_view>

#include "engine/value.h"

namespace quillmarden {

enum class TokenKind {
  End,
  Word,           ///< a name or a keyword, as written
  BracketedName,  ///< [name], never a keyword
  Text,
  Whole,
  Real,
  Date,
  Symbol,           ///< an operator or a mark; one of "<>", "<=", ">=" or a single character
  QueryBracket,     ///< "[" in front of SELECT: a derived table in the older form
  QueryBracketEnd,  ///< its "]."
};

struct Token {
  TokenKind kind = TokenKind::End;
  std::size_t begin = 0;  ///< in bytes of the statement
  std::size_t end = 0;
  std::string_view text;  ///< of a word, symbol or bracketed name; lives as long as the statement
  Value value;            ///< of a literal; a date as "yyyy/mm/dd hh:nn:ss"

  bool isLiteral() const {
    return kind == TokenKind::Text || kind == TokenKind::Whole || kind == TokenKind::Real || kind == TokenKind::Date;
  }
  /// Whether this is that keyword, given in upper case. A bracketed name never is.
  bool isWord(std::string_view upper) const;
  bool isSymbol(std::string_view symbol) const { return kind == TokenKind::Symbol && text == symbol; }
};

/// Cuts a statement into tokens, one at a time.
class Tokenizer {
 public:
  explicit Tokenizer(std::string_view sql) : sql_(sql) {}
  /// The next token, End at the end. Throws EngineError kSyntax for an unclosed quote or bracket, a date that is none,
  /// a character without a meaning, NUL and broken UTF-8.
  Token next();

 private:
  void skipBlanks();
  Token symbol(std::size_t length);
  Token quoted(char quote);
  Token number();
  Token date();
  Token bracketed();
  Token word();

  std::string_view sql_;
  std::size_t at_ = 0;
  int openQueryBrackets_ = 0;
};

/// Reports a fault at a place of the statement: line and column (both from 1, in characters), the words there, and what
/// was expected instead, a sentence without its full stop.
[[noreturn]] void throwSyntax(std::string_view sql, std::size_t begin, std::string_view expected);

/// A letter of ASCII in upper case, anything else as it is.
constexpr char upperLetter(char letter) {
  return letter >= 'a' && letter <= 'z' ? static_cast<char>(letter - 'a' + 'A') : letter;
}

/// Equality of a word with one given in upper case.
bool isUpperOf(std::string_view word, std::string_view upper);

}  // namespace quillmarden
