#include "workbook/xml_scan.h"

#include <cstring>

#include "workbook/workbook_error.h"
#include "workbook/xml_text.h"

namespace quillmarden {

namespace {

constexpr std::size_t kMaxElementDepth = 200;

bool isBlank(char c) { return c == ' ' || c == '\t' || c == '\n' || c == '\r'; }
bool isBlankText(std::string_view text) { return text.find_first_not_of(" \t\r\n") == std::string_view::npos; }

/// The place of the ">" that ends the tag at `at`; npos when there is none.
std::size_t tagEnd(std::string_view xml, std::size_t at) {
  for (; at < xml.size(); ++at) {
    const char c = xml[at];
    if (c == '>') return at;
    if (c == '<') return std::string_view::npos;
    if (c != '"' && c != '\'') continue;
    const void* close = std::memchr(xml.data() + at + 1, c, xml.size() - at - 1);
    if (close == nullptr) return std::string_view::npos;
    const auto closeAt = static_cast<std::size_t>(static_cast<const char*>(close) - xml.data());
    if (std::memchr(xml.data() + at, '<', closeAt - at) != nullptr) return std::string_view::npos;
    at = closeAt;
  }
  return std::string_view::npos;
}

}  // namespace

std::string_view localName(std::string_view name) {
  const std::size_t colon = name.find(':');
  return colon == std::string_view::npos ? name : name.substr(colon + 1);
}

std::string_view XmlScanner::local() const { return localName(name_); }

void XmlScanner::fail(const std::string& text) const {
  throw WorkbookError(WorkbookFault::Damaged, std::string(part_), "XML が壊れています: " + text);
}

bool XmlScanner::passOver(std::string_view opening, std::string_view closing) {
  if (!xml_.substr(at_).starts_with(opening)) return false;
  const std::size_t end = xml_.find(closing, at_ + opening.size());
  if (end == std::string_view::npos) fail("途中で終わっています.");
  at_ = end + closing.size();
  return true;
}

XmlScanner::Token XmlScanner::next() {
  while (at_ < xml_.size()) {
    begin_ = at_;
    if (xml_[at_] != '<') {
      const void* found = std::memchr(xml_.data() + at_, '<', xml_.size() - at_);
      const std::size_t end =
          found == nullptr ? xml_.size() : static_cast<std::size_t>(static_cast<const char*>(found) - xml_.data());
      text_ = xml_.substr(at_, end - at_);
      cdata_ = false;
      at_ = end;
      if (!open_.empty()) return Token::Text;
      if (!isBlankText(text_)) fail("要素の外に文字があります.");
      continue;
    }
    if (xml_.substr(at_).starts_with("<![CDATA[")) {
      if (open_.empty()) fail("要素の外に文字があります.");
      const std::size_t from = at_ + 9;
      passOver("<![CDATA[", "]]>");
      text_ = xml_.substr(from, at_ - 3 - from);
      cdata_ = true;
      return Token::Text;
    }
    if (passOver("<!--", "-->") || passOver("<?", "?>")) continue;
    if (xml_.substr(at_).starts_with("<!")) fail("文書型の宣言は使えません.");
    return xml_.substr(at_).starts_with("</") ? endTag() : startTag();
  }
  if (!open_.empty()) fail("要素「" + std::string(open_.back()) + "」が閉じていません.");
  if (!rootSeen_) fail("要素がありません.");
  begin_ = at_;
  return Token::Finish;
}

XmlScanner::Token XmlScanner::startTag() {
  const std::size_t end = tagEnd(xml_, at_ + 1);
  if (end == std::string_view::npos) fail("途中で終わっています.");
  std::string_view tag = xml_.substr(at_ + 1, end - at_ - 1);
  selfClosing_ = tag.ends_with('/');
  if (selfClosing_) tag.remove_suffix(1);
  std::size_t nameEnd = 0;
  while (nameEnd < tag.size() && !isBlank(tag[nameEnd])) ++nameEnd;
  name_ = tag.substr(0, nameEnd);
  if (name_.empty() || name_.find_first_of("=\"'&/") != std::string_view::npos) fail("要素の名前がありません.");
  attributes_ = tag.substr(nameEnd);
  attributeAt_ = 0;
  if (open_.empty() && rootSeen_) fail("最上位の要素が 2 つあります.");
  rootSeen_ = true;
  at_ = end + 1;
  if (!selfClosing_) {
    if (open_.size() >= kMaxElementDepth) fail("要素の入れ子が深すぎます.");
    open_.push_back(name_);
  }
  return Token::Start;
}

XmlScanner::Token XmlScanner::endTag() {
  const std::size_t end = xml_.find('>', at_);
  if (end == std::string_view::npos) fail("途中で終わっています.");
  name_ = xml_.substr(at_ + 2, end - at_ - 2);
  while (!name_.empty() && isBlank(name_.back())) name_.remove_suffix(1);
  if (open_.empty() || open_.back() != name_) fail("要素「" + std::string(name_) + "」の終わりが合いません.");
  open_.pop_back();
  at_ = end + 1;
  return Token::End;
}

std::string XmlScanner::text() const { return cdata_ ? std::string(text_) : xmlDecode(text_); }

bool XmlScanner::nextAttribute(std::string_view& name, std::string_view& value) {
  std::size_t at = attributeAt_;
  while (at < attributes_.size() && isBlank(attributes_[at])) ++at;
  if (at == attributes_.size()) return false;
  const std::size_t equals = attributes_.find('=', at);
  if (equals == std::string_view::npos) fail("属性に値がありません.");
  name = attributes_.substr(at, equals - at);
  while (!name.empty() && isBlank(name.back())) name.remove_suffix(1);
  at = equals + 1;
  while (at < attributes_.size() && isBlank(attributes_[at])) ++at;
  if (name.empty() || at == attributes_.size() || (attributes_[at] != '"' && attributes_[at] != '\''))
    fail("属性に値がありません.");
  const std::size_t close = attributes_.find(attributes_[at], at + 1);
  if (close == std::string_view::npos) fail("属性に値がありません.");
  value = attributes_.substr(at + 1, close - at - 1);
  attributeAt_ = close + 1;
  return true;
}

std::optional<std::string_view> XmlScanner::attribute(std::string_view name) {
  attributeAt_ = 0;
  std::string_view candidate;
  std::string_view value;
  while (nextAttribute(candidate, value))
    if (candidate == name) return value;
  return std::nullopt;
}

void XmlScanner::skip() {
  if (selfClosing_) return;
  const std::size_t outside = depth() - 1;
  while (depth() > outside)
    if (next() == Token::Finish) return;
}

std::string XmlScanner::content() {
  std::string all;
  if (selfClosing_) return all;
  const std::size_t outside = depth() - 1;
  while (depth() > outside)
    if (next() == Token::Text) all += text();
  return all;
}

}  // namespace quillmarden
