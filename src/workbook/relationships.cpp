#include "workbook/relationships.h"

#include <algorithm>
#include <unordered_set>

#include "workbook/part_name.h"
#include "workbook/workbook_error.h"
#include "workbook/xml_scan.h"
#include "workbook/xml_text.h"

namespace quillmarden {

namespace {

std::string percentDecoded(std::string_view text) {
  const auto digit = [](char c) {
    if (c >= '0' && c <= '9') return c - '0';
    if (c >= 'A' && c <= 'F') return c - 'A' + 10;
    if (c >= 'a' && c <= 'f') return c - 'a' + 10;
    return -1;
  };
  std::string out;
  for (std::size_t at = 0; at < text.size(); ++at) {
    const bool escape = text[at] == '%' && at + 2 < text.size() && digit(text[at + 1]) >= 0 && digit(text[at + 2]) >= 0;
    out += escape ? static_cast<char>(digit(text[at + 1]) * 16 + digit(text[at + 2])) : text[at];
    if (escape) at += 2;
  }
  return out;
}

}  // namespace

bool Relationship::is(std::string_view word) const {
  const std::size_t slash = type.rfind('/');
  return std::string_view(type).substr(slash == std::string::npos ? 0 : slash + 1) == word;
}

Relationships Relationships::parse(std::string_view xml, std::string_view part) {
  Relationships relationships;
  std::unordered_set<std::string> ids;
  XmlScanner scanner(xml, part);
  for (auto token = scanner.next(); token != XmlScanner::Token::Finish; token = scanner.next()) {
    if (token != XmlScanner::Token::Start || scanner.local() != "Relationship") continue;
    Relationship item;
    std::string_view name;
    std::string_view value;
    while (scanner.nextAttribute(name, value)) {
      if (name == "Id") item.id = xmlDecode(value);
      if (name == "Type") item.type = xmlDecode(value);
      if (name == "Target") item.target = xmlDecode(value);
      if (name == "TargetMode") item.external = value == "External";
    }
    if (item.id.empty() || !ids.insert(item.id).second) scanner.fail("関連の Id がないか, 重複しています.");
    relationships.items.push_back(std::move(item));
  }
  return relationships;
}

std::string Relationships::xml() const {
  std::string out =
      "<?xml version=\"1.0\" encoding=\"UTF-8\" standalone=\"yes\"?>\n"
      "<Relationships xmlns=\"http://schemas.openxmlformats.org/package/2006/relationships\">";
  for (const Relationship& item : items) {
    out += "<Relationship Id=\"";
    appendXmlAttribute(out, item.id);
    out += "\" Type=\"";
    appendXmlAttribute(out, item.type);
    out += "\" Target=\"";
    appendXmlAttribute(out, item.target);
    out += item.external ? "\" TargetMode=\"External\"/>" : "\"/>";
  }
  return out += "</Relationships>";
}

const Relationship* Relationships::byId(std::string_view id) const {
  const auto found = std::find_if(items.begin(), items.end(), [&](const Relationship& item) { return item.id == id; });
  return found == items.end() ? nullptr : &*found;
}

const Relationship* Relationships::byType(std::string_view word) const {
  const auto found = std::find_if(items.begin(), items.end(),
                                  [&](const Relationship& item) { return !item.external && item.is(word); });
  return found == items.end() ? nullptr : &*found;
}

std::string Relationships::freeId() const {
  for (std::size_t number = items.size() + 1;; ++number) {
    std::string id = "rId" + std::to_string(number);
    if (!byId(id)) return id;
  }
}

std::string relationshipsPart(std::string_view part) {
  const std::string_view folder = partFolder(part);
  return std::string(folder) + "_rels/" + std::string(part.substr(folder.size())) + ".rels";
}

std::string resolveTarget(std::string_view part, std::string_view target) {
  const auto outside = [&]() -> WorkbookError {
    return {WorkbookFault::Damaged, std::string(part),
            "関連先「" + std::string(target) + "」はブックの外を指しています."};
  };
  const std::string decoded = percentDecoded(target.substr(0, target.find('#')));
  std::string_view rest = decoded;
  std::string resolved = rest.starts_with('/') ? std::string() : std::string(partFolder(part));
  while (!rest.empty()) {
    const std::size_t slash = rest.find('/');
    const std::string_view segment = rest.substr(0, slash);
    if (segment == "..") {
      if (resolved.empty()) throw outside();
      resolved.pop_back();
      resolved.resize(partFolder(resolved).size());
    } else if (!segment.empty() && segment != ".") {
      resolved += segment;
      if (slash != std::string_view::npos) resolved += '/';
    }
    rest.remove_prefix(slash == std::string_view::npos ? rest.size() : slash + 1);
  }
  if (!partNameFault(resolved).empty()) throw outside();
  return resolved;
}

std::string relativeTarget(std::string_view part, std::string_view target) {
  std::string_view from = partFolder(part);
  std::string_view to = target;
  for (std::size_t slash = from.find('/'); slash != std::string_view::npos; slash = from.find('/')) {
    if (to.substr(0, slash + 1) != from.substr(0, slash + 1)) break;
    from.remove_prefix(slash + 1);
    to.remove_prefix(slash + 1);
  }
  std::string relative;
  for (auto up = std::count(from.begin(), from.end(), '/'); up > 0; --up) relative += "../";
  return relative += to;
}

}  // namespace quillmarden
