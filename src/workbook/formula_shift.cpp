#include "workbook/formula_shift.h"

#include <algorithm>

#include "workbook/formula_scan.h"
#include "workbook/part_name.h"

namespace quillmarden {

namespace {

constexpr std::string_view kLost = "#REF!";

/// "$A$1", "A", "1" with the dollars noted; 0 for what is not there.
struct ShiftedCorner {
  int column = 0;
  int row = 0;
  bool fixedColumn = false;
  bool fixedRow = false;

  std::string text() const {
    std::string out;
    if (column != 0) out += (fixedColumn ? "$" : "") + columnLetters(column);
    if (row != 0) out += (fixedRow ? "$" : "") + std::to_string(row);
    return out;
  }
};

/// The address is known to be one.
ShiftedCorner cornerOf(std::string_view text) {
  ShiftedCorner corner;
  bool dollar = false;
  for (const char c : text) {
    if (c == '$') {
      dollar = true;
    } else if (c >= '0' && c <= '9') {
      corner.fixedRow = corner.fixedRow || dollar;
      corner.row = corner.row * 10 + (c - '0');
      dollar = false;
    } else {
      corner.fixedColumn = corner.fixedColumn || dollar;
      corner.column = corner.column * 26 + ((c & ~0x20) - 'A' + 1);
      dollar = false;
    }
  }
  return corner;
}

struct Address {
  ShiftedCorner first;
  std::optional<ShiftedCorner> last;

  std::string text() const { return last ? first.text() + ":" + last->text() : first.text(); }
};

std::optional<Address> addressOf(std::string_view target) {
  const bool single = parseCell(target).has_value();
  if (!single && !parseRange(target)) return std::nullopt;
  const std::size_t colon = target.find(':');
  Address address;
  address.first = cornerOf(target.substr(0, colon));
  if (!single) address.last = cornerOf(target.substr(colon + 1));
  return address;
}

/// False when the corner leaves the sheet.
bool moveCorner(ShiftedCorner& corner, int rows, int columns) {
  const auto move = [](int& number, bool fixed, int by, int most) {
    if (number == 0 || fixed) return true;
    number += by;
    return number >= 1 && number <= most;
  };
  const bool row = move(corner.row, corner.fixedRow, rows, kMaxSheetRow);
  return move(corner.column, corner.fixedColumn, columns, kMaxSheetColumn) && row;
}

std::string whole(const FormulaReference& reference) {
  return std::string(reference.prefix) + std::string(reference.target);
}

std::string shiftTarget(const FormulaReference& reference, const RowChange& change) {
  auto address = addressOf(reference.target);
  if (!address || address->first.row == 0) return whole(reference);
  if (!address->last) {
    const auto row = shiftRow(address->first.row, change);
    if (!row) return std::string(reference.prefix) + std::string(kLost);
    address->first.row = *row;
  } else {
    ShiftedCorner& upper = address->first.row <= address->last->row ? address->first : *address->last;
    ShiftedCorner& lower = address->first.row <= address->last->row ? *address->last : address->first;
    const auto range = shiftRange({{upper.row, 1}, {lower.row, 1}}, change);
    if (!range) return std::string(reference.prefix) + std::string(kLost);
    upper.row = range->first.row;
    lower.row = range->last.row;
  }
  return std::string(reference.prefix) + address->text();
}

}  // namespace

std::optional<int> shiftRow(int row, const RowChange& change) {
  if (row < change.first) return row;
  if (change.inserted) return row + change.count <= kMaxSheetRow ? std::optional(row + change.count) : std::nullopt;
  if (row <= change.last()) return std::nullopt;
  return row - change.count;
}

std::optional<CellRange> shiftRange(const CellRange& range, const RowChange& change) {
  if (range.wholeColumns() || range.last.row < change.first) return range;
  CellRange shifted = range;
  if (change.inserted) {
    if (range.first.row >= change.first) shifted.first.row += change.count;
    shifted.last.row = std::min(range.last.row + change.count, kMaxSheetRow);
    if (shifted.first.row > kMaxSheetRow) return std::nullopt;
    return shifted;
  }
  if (range.first.row >= change.first && range.last.row <= change.last()) return std::nullopt;
  if (range.first.row > change.last()) {
    shifted.first.row -= change.count;
  } else if (range.first.row >= change.first) {
    shifted.first.row = change.first;
  }
  shifted.last.row = range.last.row > change.last() ? range.last.row - change.count : change.first - 1;
  return shifted;
}

std::string offsetFormula(std::string_view formula, int rows, int columns) {
  if (rows == 0 && columns == 0) return std::string(formula);
  return editReferences(formula, [&](const FormulaReference& reference) {
    auto address = addressOf(reference.target);
    if (!address) return whole(reference);
    bool inside = moveCorner(address->first, rows, columns);
    if (address->last) inside = moveCorner(*address->last, rows, columns) && inside;
    return std::string(reference.prefix) + (inside ? address->text() : std::string(kLost));
  });
}

std::string shiftFormula(std::string_view formula, std::string_view home, std::string_view changed,
                         const RowChange& change) {
  return editReferences(formula, [&](const FormulaReference& reference) {
    const std::string_view sheet = reference.prefix.empty() ? home : std::string_view(reference.sheet);
    const bool meant = !reference.otherBook && !reference.severalSheets && sameSheet(sheet, changed);
    return meant ? shiftTarget(reference, change) : whole(reference);
  });
}

std::string renameInFormula(std::string_view formula, std::string_view from, std::string_view to) {
  return editReferences(formula, [&](const FormulaReference& reference) {
    if (reference.prefix.empty() || reference.otherBook) return whole(reference);
    if (!reference.severalSheets)
      return (sameSheet(reference.sheet, from) ? sheetInFormula(to) + "!" : std::string(reference.prefix)) +
             std::string(reference.target);
    const std::size_t colon = reference.sheet.find(':');
    const auto renamed = [&](std::string name) { return sameSheet(name, from) ? std::string(to) : name; };
    const std::string both =
        renamed(reference.sheet.substr(0, colon)) + ":" + renamed(reference.sheet.substr(colon + 1));
    if (both == reference.sheet) return whole(reference);
    return "'" + doubledApostrophes(both) + "'!" + std::string(reference.target);
  });
}

std::string dropSheets(std::string_view formula, const std::function<bool(std::string_view sheet)>& known) {
  return editReferences(formula, [&](const FormulaReference& reference) {
    if (reference.prefix.empty()) return whole(reference);
    const std::size_t colon = reference.sheet.find(':');
    const bool all = !reference.otherBook && known(std::string_view(reference.sheet).substr(0, colon)) &&
                     (colon == std::string::npos || known(std::string_view(reference.sheet).substr(colon + 1)));
    return all ? whole(reference) : std::string(kLost);
  });
}

std::string sheetInFormula(std::string_view name) {
  const auto plain = [](char c) { return (c >= 'A' && c <= 'Z') || (c >= 'a' && c <= 'z') || c == '_'; };
  const auto digit = [](char c) { return c >= '0' && c <= '9'; };
  const bool simple = !name.empty() && plain(name.front()) &&
                      std::all_of(name.begin(), name.end(), [&](char c) { return plain(c) || digit(c); });
  // "AB12", "R1C1" and "C" would read as addresses.
  const bool address = name.size() < 12 && !name.empty() &&
                       (parseColumn(name.substr(0, 1)) && (parseCell(name) || name.find_first_of("rRcC") == 0));
  if (simple && !address) return std::string(name);
  return "'" + doubledApostrophes(name) + "'";
}

bool sameSheet(std::string_view a, std::string_view b) { return samePart(a, b); }

}  // namespace quillmarden
