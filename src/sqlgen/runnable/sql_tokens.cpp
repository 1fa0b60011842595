#include "sqlgen/runnable/sql_tokens.h"

#include <algorithm>
#include <array>

#include "common/text.h"

namespace quillmarden {

namespace {

bool isDigitSign(char c) { return c >= '0' && c <= '9'; }

bool isWordSign(char c) {
  return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || isDigitSign(c) || c == '_' || (c & 0x80) != 0;
}

/// Of two signs before those of one.
constexpr std::array<std::string_view, 26> kSigns = {"::", "||", "<=", ">=", "<>", "!=", "(", ")", "[",
                                                     "]",  ",",  "+",  "-",  "*",  "/",  "%", "<", ">",
                                                     "=",  ".",  "@",  ":",  "&",  "|",  "^", "~"};
constexpr std::array<std::string_view, 4> kComments = {"--", "/*", "*/", "//"};

/// Reads one text from its beginning.
class Tokenizer {
 public:
  Tokenizer(ScriptKind kind, std::string_view text) : kind_(kind), rest_(text), whole_(text.size()) {}

  bool read(std::vector<SqlToken>& tokens) {
    while (true) {
      while (rest_.starts_with(' ')) rest_.remove_prefix(1);
      if (rest_.empty()) break;
      SqlToken token;
      const std::size_t place = whole_ - rest_.size();
      if (!next(token) || !followsBrackets(token)) return false;
      token.place = place;
      tokens.push_back(std::move(token));
    }
    tokens.emplace_back();
    tokens.back().place = whole_;
    return open_.empty();
  }

 private:
  bool next(SqlToken& token) {
    const char first = rest_.front();
    if (std::any_of(kComments.begin(), kComments.end(), [&](auto comment) { return rest_.starts_with(comment); }))
      return false;
    if (first == '\'') return readText(token);
    if (first == '"' || first == '`' || (first == '[' && kind_ == ScriptKind::SqlServer)) return readName(token);
    if (isDigitSign(first) || (first == '.' && rest_.size() > 1 && isDigitSign(rest_[1]))) return readNumber(token);
    if (isWordSign(first)) return readWord(token);
    const auto sign = std::find_if(kSigns.begin(), kSigns.end(), [&](auto known) { return rest_.starts_with(known); });
    if (sign == kSigns.end()) return false;
    token = {SqlToken::Kind::Sign, std::string(*sign)};
    rest_.remove_prefix(sign->size());
    return true;
  }

  /// What stands between a quote and the next that is not doubled.
  bool readQuoted(char close, bool escapes, std::string& inside) {
    std::size_t at = 1;
    for (; at < rest_.size(); ++at) {
      const char c = rest_[at];
      if (static_cast<unsigned char>(c) < ' ') return false;
      if (c == '\\' && escapes) {
        if (++at == rest_.size()) return false;
        inside += rest_[at];
      } else if (c != close) {
        inside += c;
      } else if (at + 1 < rest_.size() && rest_[at + 1] == close) {
        inside += rest_[at++];
      } else {
        rest_.remove_prefix(at + 1);
        return true;
      }
    }
    return false;
  }

  bool readText(SqlToken& token) {
    token.kind = SqlToken::Kind::Text;
    return readQuoted('\'', kind_ == ScriptKind::MySql, token.text);
  }

  bool readName(SqlToken& token) {
    token.kind = SqlToken::Kind::Name;
    const char open = rest_.front();
    // In quotes of these a server of MySQL reads a text.
    if (open == '"' && kind_ == ScriptKind::MySql) token.kind = SqlToken::Kind::Text;
    if (open == '`' && kind_ != ScriptKind::MySql) return false;
    return readQuoted(open == '[' ? ']' : open, token.kind == SqlToken::Kind::Text, token.text);
  }

  bool readNumber(SqlToken& token) {
    std::size_t size = 0;
    const auto digits = [&] {
      while (size < rest_.size() && isDigitSign(rest_[size])) ++size;
    };
    digits();
    if (size < rest_.size() && rest_[size] == '.') ++size;
    digits();
    if (size < rest_.size() && (rest_[size] == 'e' || rest_[size] == 'E')) {
      const bool sign = size + 1 < rest_.size() && (rest_[size + 1] == '+' || rest_[size + 1] == '-');
      size += sign ? 2 : 1;
      if (size >= rest_.size() || !isDigitSign(rest_[size])) return false;
      digits();
    }
    if (size < rest_.size() && isWordSign(rest_[size])) return false;
    token = {SqlToken::Kind::Number, std::string(rest_.substr(0, size))};
    rest_.remove_prefix(size);
    return true;
  }

  bool readWord(SqlToken& token) {
    const auto end = std::find_if_not(rest_.begin(), rest_.end(), isWordSign);
    token.text.assign(rest_.begin(), end);
    token.lower = toLower(token.text);
    rest_.remove_prefix(token.text.size());
    if (!rest_.starts_with('\'')) {
      token.kind = SqlToken::Kind::Word;
      return true;
    }
    // B'101', X'4F', N'text': the letter belongs to the literal. E'…' has escapes of its own.
    const std::string letter = token.lower;
    if (letter != "b" && letter != "x" && letter != "n") {
      token.kind = SqlToken::Kind::Word;
      return letter.size() > 1 && letter != "u";
    }
    token.text.clear();
    return readText(token);
  }

  /// Brackets close in the order in which they open.
  bool followsBrackets(const SqlToken& token) {
    if (token.isSign("(") || token.isSign("[")) open_ += token.text;
    if (!token.isSign(")") && !token.isSign("]")) return true;
    if (open_.empty() || open_.back() != (token.isSign(")") ? '(' : '[')) return false;
    open_.pop_back();
    return true;
  }

  ScriptKind kind_;
  std::string_view rest_;
  std::size_t whole_;
  std::string open_;
};

}  // namespace

std::optional<std::vector<SqlToken>> sqlTokens(ScriptKind kind, std::string_view text) {
  std::vector<SqlToken> tokens;
  if (!Tokenizer(kind, text).read(tokens)) return std::nullopt;
  return tokens;
}

bool standsAlone(ScriptKind kind, std::string_view text) { return sqlTokens(kind, text).has_value(); }

}  // namespace quillmarden
