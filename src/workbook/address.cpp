#include "workbook/address.h"

#include <algorithm>

#include "common/utf8.h"
#include "workbook/workbook_error.h"

namespace quillmarden {

namespace {

bool isLetter(char c) { return (c >= 'A' && c <= 'Z') || (c >= 'a' && c <= 'z'); }

/// One end of a range: letters, a number, or both, each behind an optional "$".
struct Corner {
  std::optional<int> column;
  std::optional<int> row;
};

std::optional<int> parseRow(std::string_view digits) {
  if (digits.empty() || digits.size() > 7 || digits.front() == '0') return std::nullopt;
  int row = 0;
  for (const char c : digits) {
    if (!isDigit(c)) return std::nullopt;
    row = row * 10 + (c - '0');
  }
  if (row > kMaxSheetRow) return std::nullopt;
  return row;
}

std::optional<Corner> parseCorner(std::string_view text) {
  Corner corner;
  std::size_t at = text.starts_with('$') ? 1 : 0;
  const std::size_t letters = at;
  while (at < text.size() && isLetter(text[at])) ++at;
  if (at > letters) {
    corner.column = parseColumn(text.substr(letters, at - letters));
    if (!corner.column) return std::nullopt;
    if (at == text.size()) return corner;
    if (text[at] == '$') ++at;
  }
  corner.row = parseRow(text.substr(at));
  if (!corner.row) return std::nullopt;
  return corner;
}

[[noreturn]] void badAddress(std::string_view text) {
  throw WorkbookError(WorkbookFault::BadAddress, "", "「" + std::string(text) + "」はセルの番地ではありません.");
}

std::string rangeText(const CellRange& range, std::string_view mark) {
  const auto column = [&](int number) { return std::string(mark) + columnLetters(number); };
  const auto row = [&](int number) { return std::string(mark) + std::to_string(number); };
  if (range.wholeColumns()) return column(range.first.column) + ":" + column(range.last.column);
  if (range.wholeRows()) return row(range.first.row) + ":" + row(range.last.row);
  const std::string first = column(range.first.column) + row(range.first.row);
  return range.first == range.last ? first : first + ":" + column(range.last.column) + row(range.last.row);
}

}  // namespace

std::string columnLetters(int column) {
  std::string letters;
  for (; column > 0; column = (column - 1) / 26) letters += static_cast<char>('A' + (column - 1) % 26);
  std::reverse(letters.begin(), letters.end());
  return letters;
}

std::string cellName(CellRef cell) { return columnLetters(cell.column) + std::to_string(cell.row); }

std::string rangeName(const CellRange& range) { return rangeText(range, ""); }

std::string absoluteName(const CellRange& range) { return rangeText(range, "$"); }

std::optional<int> parseColumn(std::string_view letters) {
  if (letters.empty() || letters.size() > 3) return std::nullopt;
  int column = 0;
  for (const char c : letters) {
    if (!isLetter(c)) return std::nullopt;
    column = column * 26 + ((c & ~0x20) - 'A' + 1);
  }
  if (column > kMaxSheetColumn) return std::nullopt;
  return column;
}

std::optional<CellRef> parseCell(std::string_view text) {
  const auto corner = parseCorner(text);
  if (!corner || !corner->row || !corner->column) return std::nullopt;
  return CellRef{*corner->row, *corner->column};
}

std::optional<CellRange> parseRange(std::string_view text) {
  const std::size_t colon = text.find(':');
  const auto first = parseCorner(text.substr(0, colon));
  const auto last = colon == std::string_view::npos ? first : parseCorner(text.substr(colon + 1));
  if (!first || !last) return std::nullopt;
  if (first->row.has_value() != last->row.has_value() || first->column.has_value() != last->column.has_value())
    return std::nullopt;
  if (colon == std::string_view::npos && (!first->row || !first->column)) return std::nullopt;
  const auto rows = std::minmax({first->row.value_or(1), last->row.value_or(kMaxSheetRow)});
  const auto columns = std::minmax({first->column.value_or(1), last->column.value_or(kMaxSheetColumn)});
  return CellRange({rows.first, columns.first}, {rows.second, columns.second});
}

CellRef cellAt(std::string_view text) {
  const auto cell = parseCell(text);
  if (!cell) badAddress(text);
  return *cell;
}

CellRange rangeAt(std::string_view text) {
  const auto range = parseRange(text);
  if (!range) badAddress(text);
  return *range;
}

}  // namespace quillmarden
