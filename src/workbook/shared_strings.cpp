#include "workbook/shared_strings.h"

#include <cstring>
#include <functional>

#include "workbook/workbook_error.h"
#include "workbook/xml_sections.h"
#include "workbook/xml_text.h"

namespace quillmarden {

namespace {

using Token = XmlScanner::Token;

constexpr std::size_t kBlockBits = 20;
constexpr std::size_t kBlockSize = std::size_t{1} << kBlockBits;
constexpr std::uint32_t kRichBit = 1U << 31;
constexpr std::size_t kHeader = sizeof(std::uint32_t);

std::size_t hashOf(std::string_view text) { return std::hash<std::string_view>{}(text); }

}  // namespace

StringItem readStringItem(XmlScanner& scanner) {
  StringItem item;
  if (scanner.selfClosing()) return item;
  const std::size_t begin = scanner.end();
  const std::size_t outside = scanner.depth() - 1;
  std::size_t end = begin;
  int texts = 0;
  while (scanner.depth() > outside) {
    end = scanner.end();
    const Token token = scanner.next();
    if (token != Token::Start) continue;
    if (scanner.depth() == outside + 2 && scanner.local() == "t" && !scanner.selfClosing()) {
      item.text = cellTextDecode(scanner.content());
      ++texts;
    } else if (scanner.local() != "t") {
      item.rich = true;
      scanner.skip();
    }
  }
  if (texts > 1) item.rich = true;
  if (item.rich) item.text = scanner.xml().substr(begin, end - begin);
  return item;
}

std::string richText(std::string_view xml) {
  const std::string whole = "<si>" + std::string(xml) + "</si>";
  XmlScanner scanner(whole, "");
  std::string text;
  for (Token token = scanner.next(); token != Token::Finish; token = scanner.next()) {
    if (token != Token::Start) continue;
    if (scanner.local() == "rPh") scanner.skip();
    if (scanner.local() == "t") text += scanner.content();
  }
  return cellTextDecode(text);
}

StringPool StringPool::parse(std::string_view xml, std::string_view part) {
  StringPool pool;
  XmlScanner scanner(xml, part);
  scanner.next();
  if (scanner.local() != "sst") scanner.fail("最上位の要素が「sst」ではありません.");
  pool.head_ = xml.substr(scanner.begin(), scanner.end() - scanner.begin());
  if (scanner.selfClosing()) pool.head_.erase(pool.head_.size() - 2, 1);
  pool.prefix_ = scanner.name().substr(0, scanner.name().size() - 3);
  for (Token token = scanner.next(); token != Token::Finish; token = scanner.next()) {
    if (token != Token::Start) continue;
    if (scanner.local() != "si") {
      scanner.skip();
      continue;
    }
    const StringItem item = readStringItem(scanner);
    pool.append(item.text, item.rich);
  }
  return pool;
}

bool StringPool::isRich(std::uint32_t number) const {
  const std::uint32_t place = places_[number];
  std::uint32_t header = 0;
  std::memcpy(&header, blocks_[place >> kBlockBits].data() + (place & (kBlockSize - 1)), kHeader);
  return (header & kRichBit) != 0;
}

std::string_view StringPool::stored(std::uint32_t number) const {
  const std::uint32_t place = places_[number];
  const char* at = blocks_[place >> kBlockBits].data() + (place & (kBlockSize - 1));
  std::uint32_t header = 0;
  std::memcpy(&header, at, kHeader);
  return {at + kHeader, header & ~kRichBit};
}

std::string StringPool::text(std::uint32_t number) const {
  return isRich(number) ? richText(stored(number)) : std::string(stored(number));
}

std::uint32_t StringPool::append(std::string_view text, bool rich) {
  const std::size_t need = kHeader + text.size();
  if (blocks_.empty() || blocks_.back().size() + need > kBlockSize) {
    if (blocks_.size() == std::size_t{1} << (32 - kBlockBits) || text.size() >= kRichBit)
      throw WorkbookError(WorkbookFault::TooLarge, "", "文字列の合計が大きくなりすぎます.");
    // A large pool takes whole blocks at once; a small one grows with its texts, so that its copies stay small.
    if (!blocks_.empty()) {
      blocks_.emplace_back();
      blocks_.back().reserve(std::max(kBlockSize, need));
    } else {
      blocks_.emplace_back();
    }
  }
  std::string& block = blocks_.back();
  places_.push_back(static_cast<std::uint32_t>(((blocks_.size() - 1) << kBlockBits) | block.size()));
  const std::uint32_t header = static_cast<std::uint32_t>(text.size()) | (rich ? kRichBit : 0);
  block.append(reinterpret_cast<const char*>(&header), kHeader);
  block += text;
  bytes_ += text.size();
  return static_cast<std::uint32_t>(places_.size() - 1);
}

std::size_t StringPool::slot(std::string_view text, bool rich) const {
  const std::size_t mask = slots_.size() - 1;
  for (std::size_t at = hashOf(text) & mask;; at = (at + 1) & mask) {
    if (slots_[at] == 0) return at;
    const std::uint32_t number = slots_[at] - 1;
    if (stored(number) == text && isRich(number) == rich) return at;
  }
}

/// Makes the table of slots, for twice the texts that are there.
void StringPool::index() {
  std::size_t size = 64;
  while (size < places_.size() * 4) size *= 2;
  slots_.assign(size, 0);
  for (std::uint32_t number = 0; number < places_.size(); ++number) {
    std::uint32_t& place = slots_[slot(stored(number), isRich(number))];
    if (place == 0) place = number + 1;
  }
}

std::uint32_t StringPool::add(std::string_view text, bool rich) {
  if (slots_.size() < (places_.size() + 1) * 2) index();
  const std::size_t at = slot(text, rich);
  if (slots_[at] == 0) slots_[at] = append(text, rich) + 1;
  return slots_[at] - 1;
}

void StringPool::appendItem(std::string& out, std::uint32_t number, std::string_view element,
                            std::string_view prefix) const {
  const std::string_view text = stored(number);
  const auto tag = [&](std::string_view opening, std::string_view name, std::string_view rest = ">") {
    out += opening;
    out += prefix;
    out += name;
    out += rest;
  };
  tag("<", element);
  if (isRich(number)) {
    out += text;
  } else {
    tag("<", "t", hasOuterBlanks(text) ? " xml:space=\"preserve\">" : ">");
    appendCellText(out, text);
    tag("</", "t");
  }
  tag("</", element);
}

PartSource StringPool::source() const {
  return [this, next = std::uint32_t{0}, begun = false](std::string& out) mutable {
    const std::size_t full = out.size() + (1U << 15);
    if (next > size()) return false;
    if (!begun) {
      begun = true;
      const std::string head =
          head_.empty() ? "<sst xmlns=\"http://schemas.openxmlformats.org/spreadsheetml/2006/main\">" : head_;
      out += "<?xml version=\"1.0\" encoding=\"UTF-8\" standalone=\"yes\"?>\n";
      out += withAttribute(withAttribute(head, "count", std::nullopt), "uniqueCount", std::to_string(size()));
    }
    for (; next < size() && out.size() < full; ++next) appendItem(out, next, "si", prefix_);
    if (next < size()) return true;
    out += "</" + prefix_ + "sst>";
    ++next;
    return true;
  };
}

std::uint64_t StringPool::xmlSize() const { return bytes_ * 2 + size() * 48 + 512; }

}  // namespace quillmarden
