#pragma once

#include <compare>
#include <optional>
#include <string>
#include <string_view>

namespace quillmarden {

inline constexpr int kMaxSheetRow = 1048576;
inline constexpr int kMaxSheetColumn = 16384;

/// A cell of a sheet; rows and columns count from 1.
struct CellRef {
  int row = 1;
  int column = 1;

  auto operator<=>(const CellRef&) const = default;
};

/// The cells between two corners, both included; `first` is the top left one.
struct CellRange {
  CellRef first;
  CellRef last;

  CellRange() = default;
  CellRange(CellRef cell) : first(cell), last(cell) {}  // NOLINT: a cell is a range
  CellRange(CellRef from, CellRef to) : first(from), last(to) {}

  int rows() const { return last.row - first.row + 1; }
  int columns() const { return last.column - first.column + 1; }
  bool wholeRows() const { return first.column == 1 && last.column == kMaxSheetColumn; }
  bool wholeColumns() const { return first.row == 1 && last.row == kMaxSheetRow; }
  bool contains(CellRef cell) const {
    return cell.row >= first.row && cell.row <= last.row && cell.column >= first.column && cell.column <= last.column;
  }
  bool meets(const CellRange& other) const {
    return first.row <= other.last.row && other.first.row <= last.row && first.column <= other.last.column &&
           other.first.column <= last.column;
  }
  bool operator==(const CellRange&) const = default;
};

/// "A" for 1, "XFD" for 16384.
std::string columnLetters(int column);
/// "B10".
std::string cellName(CellRef cell);
/// "A1:B2"; "A1" for a single cell, "A:C" for whole columns, "1:3" for whole rows.
std::string rangeName(const CellRange& range);
/// rangeName with "$" before every letter group and number: "$A$1:$B$2".
std::string absoluteName(const CellRange& range);

/// Letters to a column number, case ignored. Nothing when they are none or lie beyond the sheet.
std::optional<int> parseColumn(std::string_view letters);
/// "B10" or "$B$10".
std::optional<CellRef> parseCell(std::string_view text);
/// A cell, two cells in any order, whole columns ("A:C") or whole rows ("1:3"), each with or without "$".
std::optional<CellRange> parseRange(std::string_view text);

/// parseCell and parseRange for addresses that people gave. Throws WorkbookError (BadAddress) with the text in it.
CellRef cellAt(std::string_view text);
CellRange rangeAt(std::string_view text);

}  // namespace quillmarden
