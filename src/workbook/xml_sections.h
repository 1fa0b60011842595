#pragma once

#include <functional>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "workbook/xml_scan.h"

namespace quillmarden {

/// A child of the root element as it stands in the file.
struct XmlSection {
  std::string name;  ///< local name; that of the first element within for mc:AlternateContent; "" between elements
  std::string xml;
};

/// An XML part as its root tag and the children, which can be replaced one by one while all others keep their bytes.
class XmlSections {
 public:
  /// Takes a child apart while the part is read: the scanner stands behind its start tag and must be taken behind its
  /// end. Its section stays in its place with empty text.
  using Reader = std::function<void(XmlScanner&)>;

  /// Throws WorkbookError (Damaged) for XML that is none, or another root element than `root`.
  static XmlSections parse(std::string_view xml, std::string_view part, std::string_view root,
                           std::string_view readName = {}, const Reader& reader = {});

  /// Up to the root's start tag, included; from the root's end tag on.
  std::string head;
  std::string tail;
  std::vector<XmlSection> items;

  /// "x:" when the part's own elements carry a prefix.
  std::string prefix() const;
  XmlSection* find(std::string_view name);
  const XmlSection* find(std::string_view name) const;
  /// Puts a child where `order`, the names of all children in their order, wants it; "" takes it away.
  XmlSection& put(std::string_view name, std::string xml, std::span<const std::string_view> order);
  void remove(std::string_view name);
  /// The prefix bound to a namespace, declared in the root tag as `wanted` (or a free name like it) when it is not
  /// there yet. `alternative` is the other form of the same namespace, "" for none.
  std::string ensurePrefix(std::string_view wanted, std::string_view uri, std::string_view alternative = {});
  std::string xml() const;
};

/// A start tag ("<a b="1">") with the attribute set to a value, which is escaped; without it for no value.
std::string withAttribute(std::string tag, std::string_view name, std::optional<std::string_view> value);

/// The namespaces of relationships in sheets: the usual one and the strict one.
inline constexpr std::string_view kRelationshipsUri =
    "http://schemas.openxmlformats.org/officeDocument/2006/relationships";
inline constexpr std::string_view kStrictRelationshipsUri = "http://purl.oclc.org/ooxml/officeDocument/relationships";

}  // namespace quillmarden
