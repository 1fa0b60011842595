#pragma once

#include <bit>
#include <cstdint>
#include <string>
#include <vector>

#include "workbook/address.h"
#include "workbook/package.h"
#include "workbook/shared_strings.h"
#include "workbook/style.h"
#include "workbook/xml_sections.h"

namespace quillmarden {

enum class StoredKind : std::uint8_t { Empty, Number, Boolean, Text, Inline, Error, Special };

/// A cell in sixteen bytes. What does not fit stands elsewhere, under a number: texts in the book's pool; texts that
/// the file has within the cell, error codes and formulas in lists of the sheet.
struct StoredCell {
  std::uint16_t column = 1;
  StoredKind kind = StoredKind::Empty;
  StyleId style = 0;
  std::uint64_t bits = 0;

  double number() const { return std::bit_cast<double>(bits); }
  std::uint32_t index() const { return static_cast<std::uint32_t>(bits); }
  void set(StoredKind newKind, std::uint64_t newBits) {
    kind = newKind;
    bits = newBits;
  }
};
static_assert(sizeof(StoredCell) == 16);

/// A formula, or a cell in a form that has no other place.
struct SpecialCell {
  enum class Form : std::uint8_t { Formula, Array, DataTable, Raw };

  Form form = Form::Formula;
  std::string formula;            ///< without "="
  CellRange ref;                  ///< of an array or a data table
  std::string formulaAttributes;  ///< as XML, with a leading blank
  std::string cellAttributes;     ///< as XML, with a leading blank
  std::string type;               ///< Raw: the attribute "t"
  std::string inner;              ///< Raw: the XML within the cell
};

struct StoredRow {
  enum Flag : std::uint8_t { HasHeight = 1, CustomHeight = 2, Hidden = 4, HasStyle = 8 };

  int number = 1;
  StyleId style = 0;
  double height = 0;
  std::uint8_t flags = 0;
  std::uint16_t extra = 0;        ///< other attributes, a number in SheetModel::rowExtras
  std::vector<StoredCell> cells;  ///< by column

  bool has(Flag flag) const { return (flags & flag) != 0; }
  void put(Flag flag, bool on) { flags = static_cast<std::uint8_t>(on ? flags | flag : flags & ~flag); }
  StoredCell* find(int column);
  const StoredCell* find(int column) const;
};

/// A run of columns that look alike.
struct ColumnSpan {
  int first = 1;
  int last = 1;
  StyleId style = 0;
  double width = -1;  ///< -1: not given
  bool customWidth = false;
  bool hidden = false;
  std::string otherAttributes;  ///< as XML, with a leading blank
};

/// A sheet's part, taken apart. Rows, columns and merged cells are records; all other children of the root element
/// are kept as XML.
struct SheetModel {
  XmlSections xml;
  std::vector<StoredRow> rows;  ///< by number
  std::vector<SpecialCell> specials;
  std::vector<CellRange> merges;
  std::vector<ColumnSpan> columns;  ///< by first
  std::vector<std::string> rowExtras{""};
  std::vector<std::string> errorCodes{"#N/A"};
  StringPool inlineTexts;
  double defaultRowHeight = 15;
  double defaultColumnWidth = 9.140625;
  bool mergesChanged = false;
  bool columnsChanged = false;

  /// `texts` is how many the book's pool holds. Throws WorkbookError (Damaged).
  static SheetModel parse(std::string_view xml, std::string_view part, std::size_t texts);
  /// A sheet without cells, its rows as high as the book's default font wants them.
  static SheetModel empty(const CellFont& font);

  StoredRow* findRow(int number);
  const StoredRow* findRow(int number) const;
  StoredRow& makeRow(int number);
  /// The cell, made when it is missing with the format of its row or column.
  StoredCell& makeCell(CellRef cell);
  const StoredCell* findCell(CellRef cell) const;
  StyleId styleFor(CellRef cell) const;
  const ColumnSpan* columnAt(int column) const;
  /// The spans that make up exactly these columns, split and made as needed.
  std::vector<ColumnSpan*> columnSpans(int first, int last);
  std::uint32_t addSpecial(SpecialCell special);
  std::uint32_t errorNumber(std::string_view code);

  /// The part's XML; model must outlive the source.
  PartSource source() const;
  /// About how many bytes the source gives.
  std::uint64_t xmlSize() const;
};

/// The children of a sheet's root element, in their order.
std::span<const std::string_view> sheetElementOrder();

}  // namespace quillmarden
