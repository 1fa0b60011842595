#pragma once

#include <map>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "workbook/style.h"
#include "workbook/xml_sections.h"

namespace quillmarden {

/// The records of a format that refer to others by number, as the part has them.
struct StoredFormat {
  int numberFormat = 0;
  int font = 0;
  int fill = 0;
  int border = 0;
  int base = 0;  ///< in the formats of named styles
  CellAlignment alignment;
  bool quotePrefix = false;
  bool pivotButton = false;
  bool locked = true;
  bool hidden = false;
};

struct NamedStyle {
  std::string name;
  int format = 0;
  int builtin = -1;
};

/// The formats of a book: its styles part, to whose lists new entries are only added.
class StyleTable {
 public:
  /// Throws WorkbookError (Damaged).
  static StyleTable parse(std::string_view xml, std::string_view part);
  /// A new book's styles with this default font.
  static StyleTable standard(std::string_view fontName, double fontSize);

  std::size_t size() const { return formats_.size(); }
  /// A number that the book lacks gives the default format.
  CellStyle at(StyleId id) const;
  /// Throws WorkbookError (BadValue) for a named style that is not known, and when the book is full of formats.
  StyleId add(const CellStyle& style);
  /// Whether cells of the format take what is typed as text.
  bool isText(StyleId id) const;
  /// Whether the format shows dates or times.
  bool isDate(StyleId id) const;
  bool hasQuotePrefix(StyleId id) const { return id < formats_.size() && formats_[id].quotePrefix; }
  /// The style based on a named one, with that one's number format.
  CellStyle basedOn(CellStyle style, std::string_view name) const;

  /// The formats of conditional formats and tables, as XML.
  std::vector<std::string> differences() const;
  int addDifference(const std::string& xml);

  std::string xml() const;

 private:
  /// New entries of one list of the part.
  struct Growth {
    std::string xml;
    std::size_t count = 0;
  };

  void read();
  void readNamed();
  CellFont withDefaultName(CellFont font) const;
  int addFont(const CellFont& font);
  int addFill(const CellFill& fill);
  int addBorder(const CellBorder& border);
  int addNumberFormat(const std::string& code);
  int addNamed(const std::string& name);
  int addTo(std::string_view list, std::unordered_map<std::string, int>& known, std::size_t size, std::string xml);
  const NamedStyle* named(std::string_view name) const;
  std::string numberFormat(int id) const;
  std::string prefix() const { return xml_.prefix(); }

  XmlSections xml_;
  std::string part_;
  std::vector<CellFont> fonts_;
  std::vector<CellFill> fills_;
  std::vector<CellBorder> borders_;
  std::map<int, std::string> numberFormats_;
  std::vector<StoredFormat> baseFormats_;
  std::vector<StoredFormat> formats_;
  std::vector<NamedStyle> named_;
  std::unordered_map<std::string, int> fontNumbers_;
  std::unordered_map<std::string, int> fillNumbers_;
  std::unordered_map<std::string, int> borderNumbers_;
  std::unordered_map<std::string, int> formatNumbers_;
  std::map<std::string, Growth, std::less<>> growth_;  ///< by the list's name
};

// The XML of one record, and back. Elements carry the prefix.
std::string fontXml(const CellFont& font, std::string_view prefix);
std::string fillXml(const CellFill& fill, std::string_view prefix);
std::string borderXml(const CellBorder& border, std::string_view prefix);
/// `base` is the format of the named style; what differs from it is marked as applied. `baseNumber` < 0 writes one of
/// the named styles' own formats.
std::string formatXml(const StoredFormat& format, const StoredFormat& base, int baseNumber, std::string_view prefix);

/// The code of a number format that programs know by number alone; "" for "General" and unknown ones.
std::string_view builtinNumberFormat(int id);
/// Its number; -1 for a code that is none of them.
int builtinNumberFormatId(std::string_view code);

}  // namespace quillmarden
