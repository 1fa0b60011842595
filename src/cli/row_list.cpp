#include "cli/row_list.h"

#include <fmt/format.h>

#include <algorithm>
#include <charconv>

namespace quillmarden {

namespace {

/// Takes a row number off the front of the text; 0 when there is none.
int takeRow(std::string_view& text) {
  int row = 0;
  const auto result = std::from_chars(text.data(), text.data() + text.size(), row);
  if (result.ec != std::errc() || row < 1) return 0;
  text.remove_prefix(static_cast<std::size_t>(result.ptr - text.data()));
  return row;
}

bool takeSign(std::string_view& text, char sign) {
  if (!text.starts_with(sign)) return false;
  text.remove_prefix(1);
  return true;
}

GridBlock wholeRows(int first, int last) {
  return {.firstCol = 1, .firstRow = first, .lastCol = field_col::kCount, .lastRow = last, .wholeRows = true};
}

}  // namespace

std::optional<GridSelection> parseRowList(std::string_view text) {
  GridSelection selection;
  do {
    const int first = takeRow(text);
    const int last = takeSign(text, '-') ? takeRow(text) : first;
    if (first == 0 || last < first) return std::nullopt;
    selection.push_back(wholeRows(first, last));
  } while (takeSign(text, ','));
  if (!text.empty()) return std::nullopt;
  return selection;
}

OptionSpec& addRows(OptionSet& options, std::string& rows, std::string help) {
  return options.text("--rows", rows, "ROWS", std::move(help)).check([](const std::string& text) {
    return parseRowList(text) ? std::string() : "行は 1,3-5 の形で指定して下さい: " + text;
  });
}

std::optional<GridSelection> chosenRows(Run& run, const frmTBDetail& detail, const std::string& wanted) {
  const int rows = detail.Spread.maxRows();
  if (wanted.empty()) return GridSelection{wholeRows(1, rows)};
  std::optional<GridSelection> selection = parseRowList(wanted);
  if (!selection) return std::nullopt;
  const int last = std::max_element(selection->begin(), selection->end(), [](const GridBlock& a, const GridBlock& b) {
                     return a.lastRow < b.lastRow;
                   })->lastRow;
  if (last <= rows) return selection;
  failure(run, fmt::format("指定の行が存在しません.\n 行 : {} ({}行までです.)", last, rows));
  return std::nullopt;
}

}  // namespace quillmarden
