#include "workbook/content_types.h"

#include <algorithm>

#include "workbook/part_name.h"
#include "workbook/xml_scan.h"
#include "workbook/xml_text.h"

namespace quillmarden {

namespace {

using Entries = std::vector<std::pair<std::string, std::string>>;

constexpr std::string_view kPart = "[Content_Types].xml";

template <class List>
auto findEntry(List& entries, std::string_view name) {
  return std::find_if(entries.begin(), entries.end(), [&](const auto& entry) { return samePart(entry.first, name); });
}

std::string_view extensionOf(std::string_view part) {
  const std::size_t dot = part.rfind('.');
  const std::size_t slash = part.rfind('/');
  if (dot == std::string_view::npos || (slash != std::string_view::npos && dot < slash)) return {};
  return part.substr(dot + 1);
}

std::string attributeText(XmlScanner& scanner, std::string_view name) {
  const auto value = scanner.attribute(name);
  if (!value) scanner.fail("属性「" + std::string(name) + "」がありません.");
  return xmlDecode(*value);
}

}  // namespace

ContentTypes ContentTypes::parse(std::string_view xml) {
  ContentTypes types;
  XmlScanner scanner(xml, kPart);
  for (auto token = scanner.next(); token != XmlScanner::Token::Finish; token = scanner.next()) {
    if (token != XmlScanner::Token::Start) continue;
    if (scanner.local() == "Default") {
      types.defaults.emplace_back(attributeText(scanner, "Extension"), attributeText(scanner, "ContentType"));
    } else if (scanner.local() == "Override") {
      std::string part = attributeText(scanner, "PartName");
      if (part.starts_with('/')) part.erase(0, 1);
      types.overrides.emplace_back(std::move(part), attributeText(scanner, "ContentType"));
    }
  }
  return types;
}

std::string ContentTypes::xml() const {
  std::string out =
      "<?xml version=\"1.0\" encoding=\"UTF-8\" standalone=\"yes\"?>\n"
      "<Types xmlns=\"http://schemas.openxmlformats.org/package/2006/content-types\">";
  const auto put = [&](std::string_view opening, std::string_view name, std::string_view type) {
    out += opening;
    appendXmlAttribute(out, name);
    out += "\" ContentType=\"";
    appendXmlAttribute(out, type);
    out += "\"/>";
  };
  for (const auto& [extension, type] : defaults) put("<Default Extension=\"", extension, type);
  for (const auto& [part, type] : overrides) put("<Override PartName=\"/", part, type);
  return out += "</Types>";
}

std::string_view ContentTypes::typeOf(std::string_view part) const {
  if (const auto found = findEntry(overrides, part); found != overrides.end()) return found->second;
  const auto found = findEntry(defaults, extensionOf(part));
  return found == defaults.end() ? std::string_view() : std::string_view(found->second);
}

void ContentTypes::setType(std::string_view part, std::string_view type) {
  if (typeOf(part) == type) return;
  if (const auto found = findEntry(overrides, part); found != overrides.end()) {
    found->second = type;
  } else {
    overrides.emplace_back(part, type);
  }
}

bool ContentTypes::setDefault(std::string_view extension, std::string_view type) {
  const auto found = findEntry(defaults, extension);
  if (found != defaults.end()) return found->second == type;
  defaults.emplace_back(extension, type);
  return true;
}

void ContentTypes::removePart(std::string_view part) {
  std::erase_if(overrides, [&](const auto& entry) { return samePart(entry.first, part); });
}

std::string_view usualContentType(std::string_view extension) {
  constexpr std::pair<std::string_view, std::string_view> kTypes[] = {
      {"png", "image/png"},
      {"jpg", "image/jpeg"},
      {"jpeg", "image/jpeg"},
      {"gif", "image/gif"},
      {"bmp", "image/bmp"},
      {"emf", "image/x-emf"},
      {"wmf", "image/x-wmf"},
      {"vml", "application/vnd.openxmlformats-officedocument.vmlDrawing"},
      {"xlsx", "application/vnd.openxmlformats-officedocument.spreadsheetml.sheet"},
      {"bin", "application/vnd.openxmlformats-officedocument.oleObject"},
  };
  for (const auto& [known, type] : kTypes)
    if (samePart(known, extension)) return type;
  return {};
}

}  // namespace quillmarden
