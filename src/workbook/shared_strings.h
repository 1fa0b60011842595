#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "workbook/package.h"
#include "workbook/xml_scan.h"

namespace quillmarden {

/// The texts of a book's cells, each stored once: plain texts, and rich ones as XML. Made for millions of texts: they
/// lie one behind the other in large blocks.
class StringPool {
 public:
  /// A sharedStrings part. Numbers are those of the part. Throws WorkbookError (Damaged).
  static StringPool parse(std::string_view xml, std::string_view part);

  /// The number of a text, which is added when it is new. TooLarge beyond four gigabytes of text.
  std::uint32_t intern(std::string_view text) { return add(text, false); }
  /// The same for the XML inside of an "si" element with other things than one plain text.
  std::uint32_t internRich(std::string_view xml) { return add(xml, true); }

  std::size_t size() const { return places_.size(); }
  bool isRich(std::uint32_t number) const;
  /// The plain text, or the XML of a rich one.
  std::string_view stored(std::uint32_t number) const;
  /// The text as it is shown.
  std::string text(std::uint32_t number) const;

  /// Appends the text as an element "si" or "is".
  void appendItem(std::string& out, std::uint32_t number, std::string_view element, std::string_view prefix) const;
  /// What the part's own elements carry before their names, as "x:".
  const std::string& prefix() const { return prefix_; }
  /// The part's XML; the pool must outlive the source.
  PartSource source() const;
  /// About how many bytes the source gives.
  std::uint64_t xmlSize() const;

 private:
  std::uint32_t add(std::string_view text, bool rich);
  std::uint32_t append(std::string_view text, bool rich);
  std::size_t slot(std::string_view text, bool rich) const;
  void index();

  std::vector<std::string> blocks_;
  std::vector<std::uint32_t> places_;  ///< block number and byte within it
  std::vector<std::uint32_t> slots_;   ///< open addressing: number + 1, or 0
  std::string head_;                   ///< the root tag; empty for a new part
  std::string prefix_;
  std::uint64_t bytes_ = 0;
};

/// What an "si" or "is" element holds: whether it is a plain text, that text, or the XML within. The scanner stands
/// behind the element's start tag and is taken behind its end.
struct StringItem {
  bool rich = false;
  std::string text;
};
StringItem readStringItem(XmlScanner& scanner);
/// The text that the inner XML of a rich item shows; readings (phonetic runs) are left out.
std::string richText(std::string_view xml);

}  // namespace quillmarden
