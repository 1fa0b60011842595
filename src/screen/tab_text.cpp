#include "screen/tab_text.h"

#include <algorithm>

namespace quillmarden {

namespace {

void appendCell(std::string& text, const std::string& cell) {
  if (cell.find_first_of("\t\r\n") == std::string::npos && !cell.starts_with('"')) {
    text += cell;
    return;
  }
  text += '"';
  for (const char c : cell) {
    if (c == '"') text += '"';
    text += c;
  }
  text += '"';
}

/// Reads from a place in the text and moves it on.
class TabReader {
 public:
  explicit TabReader(std::string_view text) : text_(text) {}

  bool atEnd() const { return at_ == text_.size(); }

  std::string cell() {
    if (std::string quoted; quotedCell(quoted)) return quoted;
    const std::size_t end = std::min(text_.find_first_of("\t\r\n", at_), text_.size());
    std::string plain(text_.substr(at_, end - at_));
    at_ = end;
    return plain;
  }

  bool takeTab() {
    if (atEnd() || text_[at_] != '\t') return false;
    ++at_;
    return true;
  }

  void takeLineEnd() {
    if (!atEnd() && text_[at_] == '\r') ++at_;
    if (!atEnd() && text_[at_] == '\n') ++at_;
  }

 private:
  /// A cell in quotes; false, without moving on, when it does not end at a tab, a line end or the text's end.
  bool quotedCell(std::string& cell) {
    if (atEnd() || text_[at_] != '"') return false;
    for (std::size_t i = at_ + 1; i < text_.size(); ++i) {
      if (text_[i] == '\r') {
        if (i + 1 == text_.size() || text_[i + 1] != '\n') cell += '\n';
      } else if (text_[i] != '"') {
        cell += text_[i];
      } else if (i + 1 < text_.size() && text_[i + 1] == '"') {
        cell += '"';
        ++i;
      } else {
        if (i + 1 < text_.size() && text_.substr(i + 1, 1).find_first_of("\t\r\n") == std::string_view::npos)
          return false;
        at_ = i + 1;
        return true;
      }
    }
    return false;
  }

  std::string_view text_;
  std::size_t at_ = 0;
};

}  // namespace

std::string toTabText(const TextRows& rows) {
  std::string text;
  for (const auto& row : rows) {
    for (std::size_t i = 0; i < row.size(); ++i) {
      if (i > 0) text += '\t';
      appendCell(text, row[i]);
    }
    text += "\r\n";
  }
  return text;
}

TextRows fromTabText(std::string_view text) {
  TextRows rows;
  for (TabReader reader(text); !reader.atEnd(); reader.takeLineEnd()) {
    auto& row = rows.emplace_back();
    do {
      row.push_back(reader.cell());
    } while (reader.takeTab());
  }
  return rows;
}

}  // namespace quillmarden
