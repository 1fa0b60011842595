#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace quillmarden {

/// Walks through XML text token by token without building a tree, for parts of any length. Declarations, comments and
/// processing instructions are passed over. Throws WorkbookError (Damaged) that names the part for tags that don't
/// match, elements nested deeper than 200, document types, and text that ends too soon.
class XmlScanner {
 public:
  enum class Token { Start, End, Text, Finish };

  /// Both texts must outlive the scanner.
  XmlScanner(std::string_view xml, std::string_view part) : xml_(xml), part_(part) {}

  Token next();

  // --- of the last token
  /// As it stands ("x:row"), and without the prefix ("row").
  std::string_view name() const { return name_; }
  std::string_view local() const;
  /// Of a Start: "<row/>", which no End follows.
  bool selfClosing() const { return selfClosing_; }
  /// The text's characters.
  std::string text() const;
  /// Where the token begins and ends in the XML.
  std::size_t begin() const { return begin_; }
  std::size_t end() const { return at_; }

  /// Of a Start: the attributes one after the other, names as they stand and values not decoded. False at the end.
  bool nextAttribute(std::string_view& name, std::string_view& value);
  /// Of a Start: the value of an attribute by its name as it stands, not decoded. Starts over at the first attribute.
  std::optional<std::string_view> attribute(std::string_view name);

  /// After a Start: goes behind its End.
  void skip();
  /// After a Start: all text within it, decoded; ends behind its End.
  std::string content();
  /// How many elements are open.
  std::size_t depth() const { return open_.size(); }

  std::string_view xml() const { return xml_; }
  std::string_view part() const { return part_; }
  [[noreturn]] void fail(const std::string& text) const;

 private:
  bool passOver(std::string_view opening, std::string_view closing);
  Token startTag();
  Token endTag();

  std::string_view xml_;
  std::string_view part_;
  std::size_t at_ = 0;
  std::size_t begin_ = 0;
  std::string_view name_;
  std::string_view attributes_;
  std::size_t attributeAt_ = 0;
  std::string_view text_;
  bool cdata_ = false;
  bool selfClosing_ = false;
  bool rootSeen_ = false;
  std::vector<std::string_view> open_;
};

/// A name without its prefix.
std::string_view localName(std::string_view name);

}  // namespace quillmarden
