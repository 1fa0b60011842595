#include "excel/grid_sheet.h"

#include <fmt/format.h>

#include <algorithm>
#include <array>
#include <charconv>
#include <optional>

#include "common/text.h"
#include "common/utf8.h"
#include "workbook/sheet_measure.h"

namespace quillmarden {
namespace {

// Column widths in digits. The first column holds the words of the heading, too.
constexpr double kFirstColumn = 14;
constexpr double kLeast = 8;
constexpr double kMost = 80;

/// The number that the text is, in the one form that numbers have: neither a sign nor a zero in front that would be
/// lost, and no more digits than a cell keeps.
std::optional<double> gridNumber(std::string_view text) {
  constexpr std::size_t kMostDigits = 15;
  const auto digits = std::ranges::count_if(text, isDigit);
  if (digits == 0 || static_cast<std::size_t>(digits) > kMostDigits || text == "-0") return std::nullopt;
  double number = 0;
  const char* const end = text.data() + text.size();
  if (const auto read = std::from_chars(text.data(), end, number, std::chars_format::fixed);
      read.ec != std::errc() || read.ptr != end) {
    return std::nullopt;
  }
  std::array<char, 64> shown;
  const auto [shownEnd, error] =
      std::to_chars(shown.data(), shown.data() + shown.size(), number, std::chars_format::fixed);
  return error == std::errc() && std::string_view(shown.data(), shownEnd) == text ? std::optional(number)
                                                                                  : std::nullopt;
}

/// A number that shows all its digits, where the usual format would round it.
void putGridNumber(Worksheet& sheet, CellRef cell, double number, std::string_view text) {
  constexpr std::size_t kUsual = 11;
  sheet.setNumber(cell, number);
  if (text.size() <= kUsual) return;
  const std::size_t point = text.find('.');
  std::string format = "0";
  if (point != std::string_view::npos) format += "." + std::string(text.size() - point - 1, '0');
  sheet.changeStyle(cell, [&](CellStyle& style) { style.numberFormat = format; });
}

/// Writes the titles and rows, and gives the width of each column's widest text in points.
std::vector<double> putCells(Worksheet& sheet, FontBook& fonts, const SizedFont& font, int headRow,
                             const SheetGrid& grid) {
  std::vector<double> widths;
  for (const std::string& title : grid.titles) {
    widths.push_back(textWidth(fonts, font, title));
    sheet.setText({headRow, static_cast<int>(widths.size())}, title);
  }
  for (int row = 1; row <= grid.rows; ++row) {
    for (int column = 1; column <= static_cast<int>(widths.size()); ++column) {
      const std::string_view text = grid.text(column, row);
      if (text.empty()) continue;
      const auto number = grid.numbers ? gridNumber(text) : std::nullopt;
      if (number) {
        putGridNumber(sheet, {headRow + row, column}, *number, text);
      } else if (grid.numbers) {
        sheet.setEntered({headRow + row, column}, gExcelSafeText(text));
      } else {
        sheet.setText({headRow + row, column}, text);
      }
      double& width = widths[static_cast<std::size_t>(column - 1)];
      // Nothing is measured that can't be the widest.
      if (static_cast<double>(text.size()) * font.size > width) width = std::max(width, textWidth(fonts, font, text));
    }
  }
  return widths;
}

void setWidths(Worksheet& sheet, const std::vector<double>& widths, double digit) {
  sheet.setColumnWidth(1, 1, kFirstColumn);
  for (std::size_t i = 0; i < widths.size(); ++i) {
    const int column = static_cast<int>(i) + 1;
    const double least = i == 0 ? kFirstColumn : kLeast;
    sheet.setColumnWidth(column, column, std::clamp(widths[i] / digit + 1.5, least, kMost));
  }
}

void frame(Worksheet& sheet, int headRow, const SheetGrid& grid) {
  const int lastColumn = static_cast<int>(grid.titles.size());
  if (lastColumn == 0) return;
  const CellRange all({headRow, 1}, {headRow + grid.rows, lastColumn});
  sheet.setGrid(all, gridRule());
  sheet.changeStyle(all, [](CellStyle& style) {
    style.alignment.wrap = true;
    style.alignment.vertical = VerticalAlign::Top;
  });
  styleTitles(sheet, {{headRow, 1}, {headRow, lastColumn}});
}

/// Rows of several lines get the height that they need.
void fitRows(Workbook& book, FontBook& fonts, int headRow, const SheetGrid& grid, double line) {
  SheetMeasure measure(book, 0, fonts);
  for (int row = headRow + 1; row <= headRow + grid.rows; ++row) {
    const double needed = measure.neededHeight(row, 1, static_cast<int>(grid.titles.size()));
    if (needed > line) book.sheet(0).setRowHeight(row, needed);
  }
}

}  // namespace

BorderLine gridRule() {
  constexpr std::uint32_t kGrey = 0x9AA7B4;
  return {LineKind::Thin, CellColor::rgb(kGrey)};
}

void styleTitles(Worksheet& sheet, const CellRange& titles) {
  sheet.changeStyle(titles, [](CellStyle& style) {
    constexpr int kPaleBlue = 37;
    style.fill = CellFill::solid(CellColor::index(kPaleBlue));
    style.font.bold = true;
    style.alignment.horizontal = HorizontalAlign::Center;
  });
}

void setUpGridPage(Worksheet& sheet, int titleRow, int frozenColumns) {
  constexpr int kA4 = 9;
  PageSetup page = sheet.pageSetup();
  page.orientation = PageSetup::Orientation::Landscape;
  page.paperSize = kA4;
  page.fitToPage = true;
  page.fitToHeight = 0;
  page.titleRows = CellRange({titleRow, 1}, {titleRow, kMaxSheetColumn});
  page.header.center = "&A";
  page.footer.left = "fileName:&F";
  page.footer.center = "&P / &N";
  sheet.setPageSetup(page);
  sheet.freeze({titleRow + 1, frozenColumns + 1});
  sheet.select(cellAt("A1"));
}

Workbook gridBook(BookRun& run, const std::vector<std::array<std::string, 2>>& heading, const SheetGrid& grid) {
  FontBook& fonts = run.fonts;
  Workbook book = Workbook::create();
  Worksheet& sheet = book.sheet(0);
  const CellStyle normal = book.styleAt(0);
  const SizedFont font{normal.font.name, normal.font.size, false};
  const double line = linesHeight(fonts, font, 1);
  sheet.setDefaultRowHeight(line);
  int row = 0;
  for (const auto& [word, value] : heading) {
    ++row;
    sheet.setText({row, 1}, word);
    sheet.setText({row, 2}, value);
  }
  const int headRow = row + 2;
  const std::vector<double> widths = putCells(sheet, fonts, font, headRow, grid);
  setWidths(sheet, widths, digitWidth(fonts, font));
  frame(sheet, headRow, grid);
  fitRows(book, fonts, headRow, grid, line);
  setUpGridPage(sheet, headRow);
  noteCutTexts(run, sheet, [&](CellRef cell) {
    if (cell.row < headRow) return sheet.text({cell.row, 1});
    return fmt::format("{} ({} 行目)", sheet.text({headRow, cell.column}), cell.row - headRow);
  });
  return book;
}

}  // namespace quillmarden
