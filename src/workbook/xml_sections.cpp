#include "workbook/xml_sections.h"

#include <algorithm>

#include "workbook/xml_text.h"

namespace quillmarden {

namespace {

using Token = XmlScanner::Token;

/// The name under which a child takes its place: an alternative stands for what it holds.
std::string placeName(XmlScanner& scanner) {
  std::string name(scanner.local());
  if (name != "AlternateContent" || scanner.selfClosing()) {
    scanner.skip();
    return name;
  }
  const std::size_t outside = scanner.depth() - 1;
  while (scanner.depth() > outside) {
    if (scanner.next() != Token::Start) continue;
    const std::string_view inner = scanner.local();
    if (name == "AlternateContent" && inner != "Choice" && inner != "Fallback") name = inner;
  }
  return name;
}

/// "<a .../>" as "<a ...>" and "</a>".
void openRoot(XmlSections& sections, std::string_view rootName) {
  sections.head.erase(sections.head.rfind('/'), 1);
  sections.tail = "</" + std::string(rootName) + ">" + sections.tail;
}

std::size_t rank(std::string_view name, std::span<const std::string_view> order) {
  return static_cast<std::size_t>(std::find(order.begin(), order.end(), name) - order.begin());
}

}  // namespace

std::string withAttribute(std::string tag, std::string_view name, std::optional<std::string_view> value) {
  std::string escaped;
  if (value) appendXmlAttribute(escaped, *value);
  XmlScanner scanner(tag, "");
  // The tag alone has no end; only its attributes are asked for.
  scanner.next();
  const auto present = scanner.attribute(name);
  if (present) {
    const auto from = static_cast<std::size_t>(present->data() - tag.data());
    if (value) return tag.replace(from, present->size(), escaped);
    const std::size_t begin = tag.rfind(name, from - 1);
    const std::size_t end = from + present->size() + 1;
    return tag.erase(begin - 1, end - begin + 1);
  }
  if (value) {
    const std::size_t close = tag.ends_with("/>") ? tag.size() - 2 : tag.size() - 1;
    tag.insert(close, " " + std::string(name) + "=\"" + escaped + "\"");
  }
  return tag;
}

XmlSections XmlSections::parse(std::string_view xml, std::string_view part, std::string_view root,
                               std::string_view readName, const Reader& reader) {
  XmlSections sections;
  XmlScanner scanner(xml, part);
  scanner.next();
  const std::string rootName(scanner.name());
  if (scanner.local() != root) scanner.fail("最上位の要素が「" + std::string(root) + "」ではありません.");
  std::string_view name;
  std::string_view value;
  while (scanner.nextAttribute(name, value)) continue;  // faults are told here, with the part's name
  sections.head = xml.substr(0, scanner.end());
  std::size_t last = scanner.end();
  const auto between = [&](std::size_t end) {
    if (end > last) sections.items.push_back({"", std::string(xml.substr(last, end - last))});
  };
  if (scanner.selfClosing()) {
    scanner.next();
    sections.tail = xml.substr(last);
    openRoot(sections, rootName);
    return sections;
  }
  for (Token token = scanner.next(); token != Token::End; token = scanner.next()) {
    if (token != Token::Start) continue;
    const std::size_t begin = scanner.begin();
    between(begin);
    if (reader && scanner.local() == readName && !sections.find(readName)) {
      reader(scanner);
      sections.items.push_back({std::string(readName), ""});
    } else {
      std::string name = placeName(scanner);
      sections.items.push_back({std::move(name), std::string(xml.substr(begin, scanner.end() - begin))});
    }
    last = scanner.end();
  }
  between(scanner.begin());
  sections.tail = xml.substr(scanner.begin());
  scanner.next();
  return sections;
}

std::string XmlSections::prefix() const {
  const std::size_t open = head.rfind('<');
  const std::string_view tag = std::string_view(head).substr(open + 1);
  const std::string_view name = tag.substr(0, tag.find_first_of(" \t\r\n/>"));
  const std::size_t colon = name.find(':');
  return colon == std::string_view::npos ? "" : std::string(name.substr(0, colon + 1));
}

XmlSection* XmlSections::find(std::string_view name) {
  const auto found =
      std::find_if(items.begin(), items.end(), [&](const XmlSection& item) { return item.name == name; });
  return found == items.end() ? nullptr : &*found;
}

const XmlSection* XmlSections::find(std::string_view name) const { return const_cast<XmlSections*>(this)->find(name); }

XmlSection& XmlSections::put(std::string_view name, std::string xml, std::span<const std::string_view> order) {
  if (XmlSection* present = find(name)) {
    present->xml = std::move(xml);
    return *present;
  }
  const std::size_t own = rank(name, order);
  auto place = items.begin();
  for (auto item = items.begin(); item != items.end(); ++item)
    if (!item->name.empty() && rank(item->name, order) <= own) place = item + 1;
  return *items.insert(place, {std::string(name), std::move(xml)});
}

void XmlSections::remove(std::string_view name) {
  std::erase_if(items, [&](const XmlSection& item) { return item.name == name; });
}

std::string XmlSections::ensurePrefix(std::string_view wanted, std::string_view uri, std::string_view alternative) {
  XmlScanner scanner(head, "");
  scanner.next();
  std::string_view name;
  std::string_view value;
  std::string free(wanted);
  while (scanner.nextAttribute(name, value)) {
    if (!name.starts_with("xmlns:")) continue;
    if (value == uri || (!alternative.empty() && value == alternative)) return std::string(name.substr(6));
    if (name.substr(6) == free) free += "q";
  }
  head.insert(head.rfind('>'), " xmlns:" + free + "=\"" + std::string(uri) + "\"");
  return free;
}

std::string XmlSections::xml() const {
  std::size_t size = head.size() + tail.size();
  for (const XmlSection& item : items) size += item.xml.size();
  std::string all;
  all.reserve(size);
  all += head;
  for (const XmlSection& item : items) all += item.xml;
  return all += tail;
}

}  // namespace quillmarden
