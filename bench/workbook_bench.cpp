// Writes the cells and styles of a workbook again with libxlsxwriter, from nothing, and prints what a book costs the
// processor in milliseconds: the measure that our own books are held against.
//   bench_workbook PATTERN FOLDER BOOKS

#include <fmt/format.h>
#include <sys/resource.h>
#include <xlsxwriter.h>

#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <map>
#include <string>
#include <vector>

#include "workbook/workbook.h"

namespace quillmarden {
namespace {

struct Cell {
  CellRef at;
  CellValue value;
  StyleId style = 0;
};

struct Merge {
  CellRange range;
  CellValue value;
  StyleId style = 0;
};

/// A sheet taken apart, so that reading it does not count.
struct Pattern {
  std::string name;
  std::map<StyleId, CellStyle> styles;
  std::vector<Cell> cells;
  std::vector<Merge> merges;
  std::vector<double> widths;
  std::vector<StyleId> columnStyles;
  std::map<int, double> heights;
  PageSetup page;
};

Pattern takeApart(const std::string& file) {
  const Workbook book = Workbook::open(file);
  const Worksheet& sheet = book.sheet(0);
  const CellRange used = sheet.used().value();
  Pattern pattern;
  pattern.name = sheet.name();
  pattern.page = sheet.pageSetup();
  const auto note = [&](StyleId id) {
    pattern.styles.try_emplace(id, book.styleAt(id));
    return id;
  };
  for (int column = 1; column <= used.last.column; ++column) {
    pattern.widths.push_back(sheet.columnWidth(column));
    pattern.columnStyles.push_back(note(sheet.styleId({kMaxSheetRow, column})));
  }
  for (const CellRange& range : sheet.mergedRanges()) {
    pattern.merges.push_back({range, sheet.value(range.first), note(sheet.styleId(range.first))});
  }
  // The line that closes a form stands below its last text.
  for (int row = 1; row <= used.last.row + 1; ++row) {
    if (sheet.hasRowHeight(row)) pattern.heights[row] = sheet.rowHeight(row);
    for (int column = 1; column <= used.last.column; ++column) {
      const CellRef at{row, column};
      const CellRange merged = sheet.mergedRange(at);
      const StyleId style = note(sheet.styleId(at));
      // A merged range writes its cells by itself, all in one format.
      if (merged.first != merged.last && style == sheet.styleId(merged.first)) continue;
      CellValue value = sheet.value(at);
      const bool empty = std::holds_alternative<std::monostate>(value);
      if (empty && style == pattern.columnStyles[static_cast<std::size_t>(column) - 1]) continue;
      pattern.cells.push_back({at, std::move(value), style});
    }
  }
  return pattern;
}

/// 0xRRGGBB, or -1 for the automatic colour.
long rgbOf(const CellColor& colour) {
  constexpr std::uint32_t kFirstOfPalette = 8;
  switch (colour.kind) {
    case CellColor::Kind::Rgb:
      return static_cast<long>(colour.value & 0xFFFFFFU);
    case CellColor::Kind::Indexed:
      if (colour.value < kFirstOfPalette || colour.value >= 64) return -1;
      return static_cast<long>(paletteRgb(static_cast<int>(colour.value - kFirstOfPalette + 1)));
    default:
      return -1;
  }
}

template <class Set>
void setColour(lxw_format* format, const CellColor& colour, Set set) {
  if (const long rgb = rgbOf(colour); rgb >= 0) set(format, static_cast<lxw_color_t>(rgb));
}

int alignOf(HorizontalAlign align) {
  switch (align) {
    case HorizontalAlign::Left:
      return LXW_ALIGN_LEFT;
    case HorizontalAlign::Center:
      return LXW_ALIGN_CENTER;
    case HorizontalAlign::Right:
      return LXW_ALIGN_RIGHT;
    default:
      return LXW_ALIGN_NONE;
  }
}

int borderOf(LineKind kind) {
  switch (kind) {
    case LineKind::None:
      return LXW_BORDER_NONE;
    case LineKind::Hair:
      return LXW_BORDER_HAIR;
    case LineKind::Medium:
      return LXW_BORDER_MEDIUM;
    default:
      return LXW_BORDER_THIN;
  }
}

lxw_format* makeFormat(lxw_workbook* book, const CellStyle& style) {
  lxw_format* format = workbook_add_format(book);
  format_set_font_name(format, style.font.name.c_str());
  format_set_font_size(format, style.font.size);
  if (style.font.bold) format_set_bold(format);
  setColour(format, style.font.color, format_set_font_color);
  if (style.fill.pattern == FillPattern::Solid) {
    format_set_pattern(format, LXW_PATTERN_SOLID);
    setColour(format, style.fill.foreground, format_set_fg_color);
  }
  const auto line = [&](const BorderLine& border, auto setKind, auto setLineColour) {
    if (border.kind == LineKind::None) return;
    setKind(format, static_cast<std::uint8_t>(borderOf(border.kind)));
    setColour(format, border.color, setLineColour);
  };
  line(style.border.left, format_set_left, format_set_left_color);
  line(style.border.right, format_set_right, format_set_right_color);
  line(style.border.top, format_set_top, format_set_top_color);
  line(style.border.bottom, format_set_bottom, format_set_bottom_color);
  format_set_align(format, static_cast<std::uint8_t>(alignOf(style.alignment.horizontal)));
  if (style.alignment.vertical == VerticalAlign::Center) format_set_align(format, LXW_ALIGN_VERTICAL_CENTER);
  if (style.alignment.vertical == VerticalAlign::Top) format_set_align(format, LXW_ALIGN_VERTICAL_TOP);
  if (style.alignment.wrap) format_set_text_wrap(format);
  if (style.alignment.shrink) format_set_shrink(format);
  if (!style.numberFormat.empty()) format_set_num_format(format, style.numberFormat.c_str());
  return format;
}

lxw_row_t rowAt(int row) { return static_cast<lxw_row_t>(row - 1); }
lxw_col_t columnAt(int column) { return static_cast<lxw_col_t>(column - 1); }

void writePage(lxw_worksheet* sheet, const PageSetup& page) {
  worksheet_set_landscape(sheet);
  worksheet_set_paper(sheet, static_cast<std::uint8_t>(page.paperSize));
  worksheet_fit_to_pages(sheet, 1, 0);
  worksheet_set_margins(sheet, page.marginLeft, page.marginRight, page.marginTop, page.marginBottom);
  worksheet_set_header(sheet, ("&L" + page.header.left + "&R" + page.header.right).c_str());
  worksheet_set_footer(sheet, ("&L" + page.footer.left + "&C" + page.footer.center).c_str());
  if (page.titleRows) worksheet_repeat_rows(sheet, rowAt(page.titleRows->first.row), rowAt(page.titleRows->last.row));
}

void writeCell(lxw_worksheet* sheet, CellRef at, const CellValue& value, lxw_format* format) {
  if (const auto* number = std::get_if<double>(&value)) {
    worksheet_write_number(sheet, rowAt(at.row), columnAt(at.column), *number, format);
  } else if (const auto* text = std::get_if<std::string>(&value)) {
    worksheet_write_string(sheet, rowAt(at.row), columnAt(at.column), text->c_str(), format);
  } else {
    worksheet_write_blank(sheet, rowAt(at.row), columnAt(at.column), format);
  }
}

void writeMerge(lxw_worksheet* sheet, const Merge& merge, lxw_format* format) {
  const auto* text = std::get_if<std::string>(&merge.value);
  worksheet_merge_range(sheet, rowAt(merge.range.first.row), columnAt(merge.range.first.column),
                        rowAt(merge.range.last.row), columnAt(merge.range.last.column),
                        text == nullptr ? "" : text->c_str(), format);
  if (std::holds_alternative<double>(merge.value)) writeCell(sheet, merge.range.first, merge.value, format);
}

void writeBook(const Pattern& pattern, const std::string& file) {
  lxw_workbook* book = workbook_new(file.c_str());
  lxw_worksheet* sheet = workbook_add_worksheet(book, pattern.name.c_str());
  std::map<StyleId, lxw_format*> formats;
  for (const auto& [id, style] : pattern.styles) formats[id] = id == 0 ? nullptr : makeFormat(book, style);
  for (std::size_t i = 0; i < pattern.widths.size(); ++i) {
    const auto column = static_cast<lxw_col_t>(i);
    worksheet_set_column(sheet, column, column, pattern.widths[i], formats[pattern.columnStyles[i]]);
  }
  for (const auto& [row, height] : pattern.heights) worksheet_set_row(sheet, rowAt(row), height, nullptr);
  for (const Merge& merge : pattern.merges) writeMerge(sheet, merge, formats[merge.style]);
  for (const Cell& cell : pattern.cells) writeCell(sheet, cell.at, cell.value, formats[cell.style]);
  writePage(sheet, pattern.page);
  if (const lxw_error error = workbook_close(book); error != LXW_NO_ERROR) {
    fmt::print(stderr, "{}: {}\n", file, lxw_strerror(error));
    std::exit(1);
  }
}

/// Processor time of this process, in milliseconds.
double processorTime() {
  rusage usage{};
  getrusage(RUSAGE_SELF, &usage);
  const auto milliseconds = [](const timeval& time) {
    return static_cast<double>(time.tv_sec) * 1e3 + static_cast<double>(time.tv_usec) / 1e3;
  };
  return milliseconds(usage.ru_utime) + milliseconds(usage.ru_stime);
}

int run(const std::string& pattern, const std::filesystem::path& folder, int books) {
  const Pattern sheet = takeApart(pattern);
  const double start = processorTime();
  for (int i = 0; i < books; ++i) writeBook(sheet, folder / fmt::format("xlsxwriter{}.xlsx", i));
  fmt::print("{}\n", (processorTime() - start) / books);
  return 0;
}

}  // namespace
}  // namespace quillmarden

int main(int argc, char** argv) {
  if (argc != 4) {
    fmt::print(stderr, "usage: bench_workbook PATTERN FOLDER BOOKS\n");
    return 2;
  }
  try {
    return quillmarden::run(argv[1], argv[2], std::atoi(argv[3]));
  } catch (const std::exception& error) {
    fmt::print(stderr, "{}\n", error.what());
    return 1;
  }
}
