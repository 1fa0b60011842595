#include "workbook/xml_fragment.h"

#include "workbook/workbook_error.h"
#include "workbook/xml_scan.h"

namespace quillmarden {

namespace {

struct StringWriter : pugi::xml_writer {
  std::string text;
  void write(const void* data, std::size_t size) override { text.append(static_cast<const char*>(data), size); }
};

}  // namespace

XmlFragment::XmlFragment(std::string_view xml, std::string_view part) {
  constexpr unsigned kOptions =
      pugi::parse_cdata | pugi::parse_escapes | pugi::parse_eol | pugi::parse_ws_pcdata | pugi::parse_comments;
  const auto result = document_.load_buffer(xml.data(), xml.size(), kOptions, pugi::encoding_utf8);
  if (!result || !root())
    throw WorkbookError(WorkbookFault::Damaged, std::string(part),
                        std::string("XML が壊れています: ") + result.description());
}

std::string XmlFragment::xml() const {
  StringWriter writer;
  root().print(writer, "", pugi::format_raw | pugi::format_no_declaration, pugi::encoding_utf8);
  return std::move(writer.text);
}

std::string_view localName(const pugi::xml_node& node) { return localName(std::string_view(node.name())); }

pugi::xml_node childNamed(const pugi::xml_node& node, std::string_view name) {
  for (pugi::xml_node child : node.children())
    if (child.type() == pugi::node_element && localName(child) == name) return child;
  return {};
}

void setAttribute(pugi::xml_node node, const char* name, const std::string& value) {
  pugi::xml_attribute attribute = node.attribute(name);
  if (!attribute) attribute = node.append_attribute(name);
  attribute.set_value(value.c_str());
}

bool flag(const pugi::xml_node& node, const char* name, bool otherwise) {
  return node.attribute(name).as_bool(otherwise);
}

}  // namespace quillmarden
