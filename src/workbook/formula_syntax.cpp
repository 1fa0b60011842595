#include "workbook/formula_scan.h"
#include "workbook/formula_shift.h"
#include "workbook/xml_text.h"

namespace quillmarden {

namespace {

constexpr std::size_t kMaxLength = 8192;
constexpr int kMaxDepth = 60;

/// Reads a formula from left to right; each function returns false at what no formula can hold.
class SyntaxReader {
 public:
  explicit SyntaxReader(std::string_view text) : text_(text) {}

  bool formula() { return expression(0) && (blanks(), at_ == text_.size()); }

 private:
  char peek() const { return at_ < text_.size() ? text_[at_] : '\0'; }
  bool take(char c) {
    if (peek() != c) return false;
    ++at_;
    return true;
  }
  void blanks() {
    while (peek() == ' ' || peek() == '\n' || peek() == '\r' || peek() == '\t') ++at_;
  }

  bool expression(int depth) {
    if (depth > kMaxDepth) return false;
    do {
      blanks();
      while (peek() == '+' || peek() == '-' || peek() == '@') ++at_, blanks();
      if (!operand(depth)) return false;
    } while (operation());
    return true;
  }

  /// An operator between two operands. A blank is one, too, where an operand follows.
  bool operation() {
    const std::size_t before = at_;
    blanks();
    const char c = peek();
    if (c == '<') {
      ++at_;
      if (!take('>')) take('=');
      return true;
    }
    if (c == '>') {
      ++at_;
      take('=');
      return true;
    }
    if (c != '\0' && std::string_view("+-*/^&=:").find(c) != std::string_view::npos) {
      ++at_;
      return true;
    }
    const bool another = isFormulaWord(c) || c == '(' || c == '\'';
    return at_ > before && another;
  }

  bool operand(int depth) {
    if (!primary(depth)) return false;
    while (peek() == '%' || peek() == '#') ++at_;
    return true;
  }

  bool primary(int depth) {
    switch (peek()) {
      case '"':
        return jump(quotedEnd(text_, at_, '"'));
      case '(':
        ++at_;
        return list(depth, ')', false);
      case '{':
        return array();
      case '#':
        return text_.substr(at_).size() > 2 && jump(errorEnd(text_, at_));
      default:
        return reference(depth);
    }
  }

  bool jump(std::size_t end) {
    if (end == std::string_view::npos || end == at_) return false;
    at_ = end;
    return true;
  }

  /// Arguments up to the closing character; within plain parentheses none may be missing.
  bool list(int depth, char close, bool mayMiss) {
    for (;;) {
      blanks();
      const bool missing = peek() == ',' || peek() == close;
      if (missing ? !mayMiss : !expression(depth + 1)) return false;
      blanks();
      if (take(close)) return true;
      if (!take(',')) return false;
    }
  }

  bool array() {
    const std::size_t end = text_.find('}', at_);
    if (end == std::string_view::npos || end == at_ + 1) return false;
    const std::string_view inner = text_.substr(at_ + 1, end - at_ - 1);
    at_ = end + 1;
    return inner.find_first_of("({") == std::string_view::npos;
  }

  bool reference(int depth) {
    at_ = prefixEnd(text_, at_);
    if (peek() == '#') return jump(errorEnd(text_, at_));
    if (const std::size_t end = addressEnd(text_, at_); end > at_) return jump(end);
    const std::size_t word = at_;
    at_ = wordEnd(text_, at_);
    const bool named = at_ > word;
    if (peek() == '[') return jump(bracketEnd(text_, at_));
    if (!named) return false;
    const char first = text_[word];
    if ((first >= '0' && first <= '9') || first == '.') return number(text_.substr(word, at_ - word));
    if (text_.substr(word, at_ - word).find('$') != std::string_view::npos || first == '?') return false;
    return !take('(') || list(depth, ')', true);
  }

  /// The word is digits with a point and an exponent, of which the sign is still to come.
  bool number(std::string_view word) {
    std::size_t i = 0;
    int digits = 0;
    int points = 0;
    for (; i < word.size() && ((word[i] >= '0' && word[i] <= '9') || word[i] == '.'); ++i)
      (word[i] == '.' ? points : digits) += 1;
    if (digits == 0 || points > 1) return false;
    if (i == word.size()) return true;
    if (word[i] != 'E' && word[i] != 'e') return false;
    std::string_view exponent = word.substr(i + 1);
    if (exponent.empty()) {
      if (!take('+') && !take('-')) return false;
      const std::size_t end = wordEnd(text_, at_);
      exponent = text_.substr(at_, end - at_);
      at_ = end;
    }
    return !exponent.empty() && exponent.find_first_not_of("0123456789") == std::string_view::npos;
  }

  std::string_view text_;
  std::size_t at_ = 0;
};

}  // namespace

bool isFormula(std::string_view text) {
  return !text.empty() && utf16Length(text) < kMaxLength && SyntaxReader(text).formula();
}

}  // namespace quillmarden
