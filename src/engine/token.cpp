#include "engine/token.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <optional>
#include <string>

#include "common/utf8.h"
#include "engine/convert.h"

namespace quillmarden {

namespace {

bool isNameStart(char letter) {
  return (letter >= 'a' && letter <= 'z') || (letter >= 'A' && letter <= 'Z') || letter == '_' ||
         static_cast<unsigned char>(letter) >= 0x80;
}

bool isNamePart(char letter) { return isNameStart(letter) || isDigit(letter); }

// U+3000, the blank of Japanese input.
constexpr std::string_view kWideBlank = "\xE3\x80\x80";

// Bytes of the well-formed UTF-8 character at a place, 0 for a broken one.
std::size_t characterLength(std::string_view text) {
  const auto byte = [&](std::size_t i) { return i < text.size() ? static_cast<unsigned char>(text[i]) : 0u; };
  const auto follows = [&](std::size_t i) { return (byte(i) & 0xC0u) == 0x80u; };
  const unsigned first = byte(0);
  if (first < 0x80) return 1;
  if (first >= 0xC2 && first <= 0xDF) return follows(1) ? 2 : 0;
  if (first >= 0xE0 && first <= 0xEF) {
    if (!follows(1) || !follows(2) || (first == 0xE0 && byte(1) < 0xA0) || (first == 0xED && byte(1) > 0x9F)) return 0;
    return 3;
  }
  if (first >= 0xF0 && first <= 0xF4) {
    if (!follows(1) || !follows(2) || !follows(3)) return 0;
    if ((first == 0xF0 && byte(1) < 0x90) || (first == 0xF4 && byte(1) > 0x8F)) return 0;
    return 4;
  }
  return 0;
}

// Access writes times of day with AM and PM behind them.
std::optional<std::string> dateLiteral(std::string_view text) {
  const auto endsWith = [&](std::string_view mark) {
    return text.size() > mark.size() && isUpperOf(text.substr(text.size() - mark.size()), mark);
  };
  const bool morning = endsWith(" AM");
  const bool afternoon = endsWith(" PM");
  if (!morning && !afternoon) return normaliseDate(text);
  std::optional<std::string> date = normaliseDate(text.substr(0, text.size() - 3));
  if (!date) return date;
  constexpr std::size_t kHour = 11;
  int hour = ((*date)[kHour] - '0') * 10 + ((*date)[kHour + 1] - '0');
  if (hour < 1 || hour > 12) return std::nullopt;
  hour = hour % 12 + (afternoon ? 12 : 0);
  (*date)[kHour] = static_cast<char>('0' + hour / 10);
  (*date)[kHour + 1] = static_cast<char>('0' + hour % 10);
  return date;
}

std::size_t charactersBefore(std::string_view text, std::size_t end) { return characterCount(text.substr(0, end)); }

}  // namespace

bool isUpperOf(std::string_view word, std::string_view upper) {
  if (word.size() != upper.size()) return false;
  for (std::size_t i = 0; i < word.size(); ++i) {
    if (upperLetter(word[i]) != upper[i]) return false;
  }
  return true;
}

bool Token::isWord(std::string_view upper) const { return kind == TokenKind::Word && isUpperOf(text, upper); }

void throwSyntax(std::string_view sql, std::size_t begin, std::string_view expected) {
  begin = std::min(begin, sql.size());
  const std::size_t lineStart = begin == 0 ? std::string_view::npos : sql.rfind('\n', begin - 1);
  const std::size_t columnStart = lineStart == std::string_view::npos ? 0 : lineStart + 1;
  std::size_t line = 1;
  for (const char letter : sql.substr(0, columnStart)) line += letter == '\n' ? 1 : 0;
  std::string message = "構文エラー: 行 " + std::to_string(line) + ", 桁 " +
                        std::to_string(charactersBefore(sql.substr(columnStart), begin - columnStart) + 1);
  // The words at the place, in whole characters; a broken text is not handed on to the message box.
  constexpr std::size_t kMost = 40;
  std::string words;
  for (std::size_t at = begin; at < sql.size() && at - begin < kMost;) {
    const std::size_t length = characterLength(sql.substr(at));
    if (length == 0 || static_cast<unsigned char>(sql[at]) < 0x20) break;
    words.append(sql.substr(at, length));
    at += length;
  }
  while (!words.empty() && words.back() == ' ') words.pop_back();
  if (!words.empty()) {
    message += " の「" + words + "」の近く";
  } else if (begin == sql.size()) {
    message += " (文の終わり)";
  }
  throw EngineError(engine_error::kSyntax, message + ": " + std::string(expected) + ".");
}

void Tokenizer::skipBlanks() {
  while (at_ < sql_.size()) {
    const char letter = sql_[at_];
    if (letter == ' ' || letter == '\t' || letter == '\r' || letter == '\n') {
      ++at_;
    } else if (sql_.substr(at_, kWideBlank.size()) == kWideBlank) {
      at_ += kWideBlank.size();
    } else {
      return;
    }
  }
}

Token Tokenizer::next() {
  skipBlanks();
  if (at_ >= sql_.size()) return Token{TokenKind::End, sql_.size(), sql_.size(), {}, {}};
  const char letter = sql_[at_];
  const char following = at_ + 1 < sql_.size() ? sql_[at_ + 1] : '\0';
  if (isNameStart(letter)) return word();
  if (isDigit(letter) || (letter == '.' && isDigit(following))) return number();
  switch (letter) {
    case '\'':
    case '"':
      return quoted(letter);
    case '#':
      return date();
    case '[':
      return bracketed();
    case ']':
      break;
    case '<':
      return symbol(following == '>' || following == '=' ? 2 : 1);
    case '>':
      return symbol(following == '=' ? 2 : 1);
    case '=':
    case '(':
    case ')':
    case ',':
    case '.':
    case '!':
    case ';':
    case '+':
    case '-':
    case '*':
    case '/':
    case '\\':
    case '^':
    case '&':
      return symbol(1);
    default:
      throwSyntax(sql_, at_, letter == '\0' ? "NUL は使えません" : "ここでは使えない文字です");
  }
  if (openQueryBrackets_ == 0) throwSyntax(sql_, at_, "対応する「[」がありません");
  Token token{TokenKind::QueryBracketEnd, at_, at_ + 1, {}, {}};
  ++at_;
  skipBlanks();
  if (at_ >= sql_.size() || sql_[at_] != '.') throwSyntax(sql_, at_, "「[SELECT …]」の後ろに「.」が必要です");
  token.end = ++at_;
  --openQueryBrackets_;
  return token;
}

Token Tokenizer::symbol(std::size_t length) {
  Token token{TokenKind::Symbol, at_, at_ + length, sql_.substr(at_, length), {}};
  at_ += length;
  return token;
}

Token Tokenizer::quoted(char quote) {
  const std::size_t begin = at_++;
  std::string text;
  while (true) {
    const std::size_t run = at_;
    while (at_ < sql_.size() && sql_[at_] != quote) {
      const std::size_t length = characterLength(sql_.substr(at_));
      if (length == 0) throwSyntax(sql_, at_, "UTF-8 として正しくない文字です");
      if (sql_[at_] == '\0') throwSyntax(sql_, at_, "NUL は使えません");
      at_ += length;
    }
    text.append(sql_.substr(run, at_ - run));
    if (at_ >= sql_.size()) throwSyntax(sql_, begin, "引用符が閉じていません");
    ++at_;
    if (at_ >= sql_.size() || sql_[at_] != quote) break;
    text += quote;
    ++at_;
  }
  return Token{TokenKind::Text, begin, at_, {}, std::move(text)};
}

Token Tokenizer::number() {
  const std::size_t begin = at_;
  const auto skipDigits = [&] {
    while (at_ < sql_.size() && isDigit(sql_[at_])) ++at_;
  };
  bool whole = true;
  skipDigits();
  if (at_ < sql_.size() && sql_[at_] == '.') {
    whole = false;
    ++at_;
    skipDigits();
  }
  if (at_ < sql_.size() && (sql_[at_] == 'e' || sql_[at_] == 'E')) {
    std::size_t exponent = at_ + 1;
    if (exponent < sql_.size() && (sql_[exponent] == '+' || sql_[exponent] == '-')) ++exponent;
    if (exponent < sql_.size() && isDigit(sql_[exponent])) {
      whole = false;
      at_ = exponent;
      skipDigits();
    }
  }
  if (at_ < sql_.size() && isNamePart(sql_[at_]) && sql_.substr(at_, kWideBlank.size()) != kWideBlank) {
    throwSyntax(sql_, begin, "数字で始まる名前は [ ] で囲んで下さい");
  }
  const std::string_view text = sql_.substr(begin, at_ - begin);
  if (whole) {
    std::int64_t value = 0;
    if (std::from_chars(text.data(), text.data() + text.size(), value).ec == std::errc()) {
      return Token{TokenKind::Whole, begin, at_, {}, value};
    }
  }
  double value = 0;
  if (std::from_chars(text.data(), text.data() + text.size(), value).ec != std::errc() || !std::isfinite(value)) {
    throwSyntax(sql_, begin, "数値が大きすぎます");
  }
  return Token{TokenKind::Real, begin, at_, {}, value};
}

Token Tokenizer::date() {
  const std::size_t begin = at_;
  const std::size_t close = sql_.find('#', begin + 1);
  if (close == std::string_view::npos) throwSyntax(sql_, begin, "日付の「#」が閉じていません");
  std::optional<std::string> value = dateLiteral(sql_.substr(begin + 1, close - begin - 1));
  if (!value) throwSyntax(sql_, begin, "日付は #yyyy/mm/dd hh:nn:ss# の形で書いて下さい");
  at_ = close + 1;
  return Token{TokenKind::Date, begin, at_, {}, *std::move(value)};
}

Token Tokenizer::bracketed() {
  const std::size_t begin = at_++;
  skipBlanks();
  constexpr std::string_view kSelect = "SELECT";
  const std::size_t behind = at_ + kSelect.size();
  if (isUpperOf(sql_.substr(at_, kSelect.size()), kSelect) && behind < sql_.size() &&
      (sql_[behind] == ' ' || sql_[behind] == '\t' || sql_[behind] == '\r' || sql_[behind] == '\n')) {
    ++openQueryBrackets_;
    return Token{TokenKind::QueryBracket, begin, begin + 1, {}, {}};
  }
  at_ = begin + 1;
  while (at_ < sql_.size() && sql_[at_] != ']') {
    const std::size_t length = characterLength(sql_.substr(at_));
    if (length == 0) throwSyntax(sql_, at_, "UTF-8 として正しくない文字です");
    if (sql_[at_] == '\0') throwSyntax(sql_, at_, "NUL は使えません");
    at_ += length;
  }
  if (at_ >= sql_.size()) throwSyntax(sql_, begin, "「[」が閉じていません");
  std::string_view name = sql_.substr(begin + 1, at_ - begin - 1);
  ++at_;
  // Access takes no notice of blanks at the end of a name.
  while (!name.empty() && name.back() == ' ') name.remove_suffix(1);
  if (name.empty()) throwSyntax(sql_, begin, "[ ] の中に名前が必要です");
  return Token{TokenKind::BracketedName, begin, at_, name, {}};
}

Token Tokenizer::word() {
  const std::size_t begin = at_;
  while (at_ < sql_.size() && isNamePart(sql_[at_])) {
    if (static_cast<unsigned char>(sql_[at_]) < 0x80) {
      ++at_;
      continue;
    }
    if (sql_.substr(at_, kWideBlank.size()) == kWideBlank) break;
    const std::size_t length = characterLength(sql_.substr(at_));
    if (length == 0) throwSyntax(sql_, at_, "UTF-8 として正しくない文字です");
    at_ += length;
  }
  // Trim$ and its like are functions of their own in Basic, the same ones here.
  const std::string_view text = sql_.substr(begin, at_ - begin);
  if (at_ < sql_.size() && sql_[at_] == '$') ++at_;
  return Token{TokenKind::Word, begin, at_, text, {}};
}

}  // namespace quillmarden
