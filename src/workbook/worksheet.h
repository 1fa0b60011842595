#pragma once

#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

#include "workbook/address.h"
#include "workbook/page_setup.h"
#include "workbook/style.h"
#include "workbook/workbook_error.h"

namespace quillmarden {

struct BookState;
struct SheetModel;

/// An error value as "#N/A".
struct CellError {
  std::string code;
  bool operator==(const CellError&) const = default;
};

/// What a cell holds. A formula has no value of its own here: its result is worked out by the program that opens the
/// book.
using CellValue = std::variant<std::monostate, double, bool, std::string, CellError>;

/// A sheet of a workbook, owned by it. Reading does not change the book; the first write takes the sheet's part apart
/// and has it written anew, with everything that is not modelled here kept in its place. Addresses outside a sheet
/// throw WorkbookError (BadAddress).
class Worksheet {
 public:
  Worksheet(BookState& book, std::size_t index);
  /// The book tells the sheet its new place when sheets before it came or went.
  void moveTo(std::size_t index) { index_ = index; }
  Worksheet(const Worksheet&) = delete;
  Worksheet& operator=(const Worksheet&) = delete;

  const std::string& name() const;
  int index() const { return static_cast<int>(index_); }

  // --- values. The cell's format stays, save where a function says otherwise.

  /// A text as it stands, never taken for anything else; its line ends become LF. "" leaves an empty cell. Of a text
  /// of more than 32767 UTF-16 units the cell takes the beginning, with a mark at its end, and cutTexts() names it.
  void setText(CellRef cell, std::string_view text);
  /// What a person types into the cell: behind "'" a text that keeps the mark out of sight (quotePrefix); behind "=" a
  /// formula, if it is one; a number if it would be shown exactly as typed; in a cell that shows dates a date, from
  /// "yyyy/mm/dd" with or without a time; otherwise, and in cells of the format "@", a text.
  void setEntered(CellRef cell, std::string_view text);
  void setNumber(CellRef cell, double value);
  void setBoolean(CellRef cell, bool value);
  /// A date as days since 1899-12-30 (books that count from 1904 are seen to), shown by a number format such as
  /// "yyyy/mm/dd hh:mm", which is set too.
  void setDate(CellRef cell, double serial, std::string_view format);
  /// A formula without its "=". BadValue when it is none.
  void setFormula(CellRef cell, std::string_view formula);
  /// Takes values away and leaves the formats.
  void clear(const CellRange& range);
  /// The cells that got texts longer than they can hold, as they stood then.
  const std::vector<CellRef>& cutTexts() const;

  CellValue value(CellRef cell) const;
  /// A text, or a number as the format "General" shows it; "" for empty cells and formulas.
  std::string text(CellRef cell) const;
  /// Without "="; "" when there is none.
  std::string formula(CellRef cell) const;
  /// The smallest range around all cells that hold a value; nothing on an empty sheet.
  std::optional<CellRange> used() const;

  // --- formats

  /// The cell's format; for a cell that was never written, that of its row or column.
  StyleId styleId(CellRef cell) const;
  CellStyle style(CellRef cell) const;
  void setStyle(const CellRange& range, StyleId style);
  /// Changes some attributes of all cells of a range and keeps their others. Whole rows and columns get it as the
  /// format of the row or column too. `change` is called once for each distinct format.
  void changeStyle(const CellRange& range, const std::function<void(CellStyle&)>& change);
  /// One line of a range's border: an edge of the range, the lines inside it, or the diagonals of all its cells.
  void setBorder(const CellRange& range, BorderIndex index, const BorderLine& line);
  /// Edges and inside lines at once.
  void setGrid(const CellRange& range, const BorderLine& line);
  /// A named style of the book, or one of the common ones ("Comma [0]", "Comma", "Percent"): its number format is
  /// taken over, other attributes stay.
  void setNamedStyle(const CellRange& range, std::string_view name);

  // --- merged cells

  /// Makes one cell of the range and takes away the values of all but its first cell. Merged ranges that it meets
  /// are dissolved.
  void merge(const CellRange& range);
  /// Dissolves the merged ranges that the range meets.
  void unmerge(const CellRange& range);
  /// The merged range that holds the cell, or the cell alone.
  CellRange mergedRange(CellRef cell) const;
  std::vector<CellRange> mergedRanges() const;

  // --- rows and columns

  /// Points; the sheet's default height for a row that has none of its own, 0 for a hidden one.
  double rowHeight(int row) const;
  /// Whether the row's height was set, by a person or by setRowHeight.
  bool hasRowHeight(int row) const;
  /// At most 409.5 points, the most that programs show.
  void setRowHeight(int row, double points);
  void setRowHidden(int row, bool hidden);
  double defaultRowHeight() const;
  /// The height of all rows that have none of their own.
  void setDefaultRowHeight(double points);
  /// The width in characters as the file has it, that is with the padding of about 0.7; the sheet's default width
  /// where none is set, 0 for a hidden column.
  double columnWidth(int column) const;
  /// `characters` is the width that a person sees (70 shows 70 digits); 0 to 255.
  void setColumnWidth(int first, int last, double characters);
  void setColumnHidden(int first, int last, bool hidden);

  /// Moves the rows from `before` on down, with all that hangs on them in this and other sheets: merged cells,
  /// formulas, validations, conditional formats, drawings, comments, links, filters, tables, print areas, titles,
  /// charts' sources, page breaks. The new rows are empty. BadAddress when rows would be pushed off the sheet.
  void insertRows(int before, int count);
  /// Removes the rows `first` to `last`; what stood below moves up. Formulas that named a removed cell alone show
  /// "#REF!".
  void deleteRows(int first, int last);
  /// Makes row `to` a copy of row `from`: values, formulas (relative addresses move along), formats, height, and the
  /// merged ranges inside the row.
  void copyRow(int from, int to);

  // --- print, view

  PageSetup pageSetup() const;
  /// BadValue for numbers out of range and headers above 255 characters.
  void setPageSetup(const PageSetup& setup);
  /// A page ends behind this row.
  void addRowBreak(int row);
  /// The selected cell when the sheet is shown.
  void select(CellRef cell);
  /// Keeps the rows above and the columns left of the cell in sight; A1 ends it.
  void freeze(CellRef cell);
  void setAutoFilter(const CellRange& range);
  void setShowGridLines(bool show);

  // --- what the object model has no words for: children of the sheet's root element as XML text

  /// The whole element by its local name, as it would be written; "" when there is none.
  std::string element(std::string_view name) const;
  /// Puts the element in the place that the sheet's order of elements gives it, instead of the one of that name if
  /// there is one; "" removes it. The prefix "r" may be used for relationships. Not for sheetData, mergeCells and
  /// cols.
  void setElement(std::string_view name, std::string_view xml);

 private:
  const SheetModel& model() const;
  SheetModel& edit();
  void check(const CellRange& range) const;
  void setPrintNames(const PageSetup& before, const PageSetup& setup);

  BookState& book_;
  std::size_t index_;
};

/// Throws WorkbookError (BadSheetName) unless the text can be a sheet's name: 1 to 31 UTF-16 units, none of
/// : \ / ? * [ ], no apostrophe at either end, not reserved.
void checkSheetName(std::string_view name);
/// Whether spreadsheet programs keep the name for themselves, for the sheet that tells a shared book's changes: in
/// English or in the language of the people that books are made for.
bool isReservedSheetName(std::string_view name);

}  // namespace quillmarden
