// Makes the program's assets: the form that table layouts are printed on, and the picture that marks key fields.
//   make_assets FOLDER

#include <array>
#include <cstdint>
#include <filesystem>
#include <fstream>
#include <iostream>
#include <string>
#include <string_view>

#include "workbook/workbook.h"

namespace quillmarden {
namespace {

constexpr std::uint32_t kInk = 0x1F2D3D;
constexpr std::uint32_t kHeadFill = 0x34526F;
constexpr std::uint32_t kLabelFill = 0xE6EDF4;
constexpr std::uint32_t kRule = 0x8FA3B5;
constexpr std::uint32_t kHairRule = 0xC3CFDA;

constexpr int kFirstFieldRow = 10;
constexpr int kLastFieldRow = 249;

BorderLine rule(LineKind kind, std::uint32_t colour) { return {kind, CellColor::rgb(colour)}; }

/// The form, piece by piece.
class BlankBook {
 public:
  BlankBook() : book_(Workbook::create({.sheetName = "白紙", .fontName = "ＭＳ Ｐゴシック", .fontSize = 10})) {}

  Workbook make() && {
    setColumns();
    putHeader();
    putHeadings();
    putFieldRows();
    setUpPage();
    return std::move(book_);
  }

 private:
  Worksheet& sheet() { return book_.sheet(0); }

  CellStyle base() const {
    CellStyle style = book_.styleAt(0);
    style.font.color = CellColor::rgb(kInk);
    style.alignment.vertical = VerticalAlign::Center;
    return style;
  }

  static void frame(CellStyle& style, const BorderLine& line) {
    style.border.left = style.border.right = style.border.top = style.border.bottom = line;
  }

  void place(std::string_view cells, const CellStyle& style, std::string_view text = "") {
    const CellRange range = rangeAt(cells);
    sheet().setStyle(range, book_.style(style));
    if (!text.empty()) sheet().setText(range.first, text);
    if (range.first != range.last) sheet().merge(range);
  }

  void label(std::string_view cells, std::string_view text) {
    CellStyle style = base();
    style.fill = CellFill::solid(CellColor::rgb(kLabelFill));
    style.alignment.horizontal = HorizontalAlign::Center;
    style.font.size = 9;
    frame(style, rule(LineKind::Thin, kRule));
    place(cells, style, text);
  }

  void value(std::string_view cells, double size = 10, bool bold = false) {
    CellStyle style = base();
    style.font.size = size;
    style.font.bold = bold;
    style.alignment.horizontal = HorizontalAlign::Left;
    style.alignment.shrink = true;
    frame(style, rule(LineKind::Thin, kRule));
    place(cells, style);
  }

  void setColumns() {
    constexpr std::array kWidths = {4.5, 9.0, 19.0, 9.0, 17.0, 5.0, 13.0, 6.5, 6.5, 7.0, 10.0, 10.0, 36.0, 36.0};
    for (std::size_t i = 0; i < kWidths.size(); ++i) {
      const int column = static_cast<int>(i) + 1;
      sheet().setColumnWidth(column, column, kWidths[i]);
    }
  }

  void putHeader() {
    label("A1:B1", "論理名");
    value("C1:F1", 13, true);
    label("G1", "物理名");
    value("H1:K1", 12, true);
    label("L1", "システム");
    value("M1:N1", 11);
    sheet().setRowHeight(1, 26);

    label("A2:A4", "概要");
    CellStyle memo = base();
    memo.alignment.wrap = true;
    memo.alignment.vertical = VerticalAlign::Top;
    frame(memo, rule(LineKind::Thin, kRule));
    place("B2:L4", memo);
    value("M2:N2");
    for (const std::string_view cell : {"M3", "M4", "M5", "M6", "M7", "N3", "N4", "N5", "N6", "N7"}) value(cell, 9);

    label("A5:B5", "作成間隔");
    value("C5");
    label("D5", "想定件数");
    value("E5:F5");
    label("G5", "想定保持");
    value("H5:L5");
    label("A6:C6", "SQL作成 (最新作成日) 作成回数");
    value("D6:L6");
    label("A7:B7", "入力データ");
    value("C7:D7");
    label("E7:F7", "入力帳票");
    value("G7:L7");
    for (int row = 2; row <= 7; ++row) sheet().setRowHeight(row, 17);
  }

  void putHeadings() {
    CellStyle head = base();
    head.fill = CellFill::solid(CellColor::rgb(kHeadFill));
    head.font.color = CellColor::rgb(0xFFFFFF);
    head.font.bold = true;
    head.font.size = 9;
    head.alignment.horizontal = HorizontalAlign::Center;
    head.alignment.wrap = true;
    frame(head, rule(LineKind::Thin, kRule));
    struct Heading {
      std::string_view cells;
      std::string_view text;
    };
    constexpr std::array kHeadings = {
        Heading{"A8:A9", "No."},
        Heading{"B8:C9", "日本語項目名 (論理)"},
        Heading{"D8:E9", "項目名 (物理)"},
        Heading{"F8:F9", "Key"},
        Heading{"G8:G9", "型"},
        Heading{"H8:I8", "桁数"},
        Heading{"H9", "整数"},
        Heading{"I9", "少数"},
        Heading{"J8:J9", "長さ"},
        Heading{"K8:K9", "NULL値"},
        Heading{"L8:L9", "項目分類"},
        Heading{"M8:M9", "備考"},
        Heading{"N8:N9", "参照・値リスト・初期値・範囲"},
    };
    for (const Heading& heading : kHeadings) place(heading.cells, head, heading.text);
    sheet().setRowHeight(8, 15);
    sheet().setRowHeight(9, 15);
  }

  void putFieldRows() {
    CellStyle text = base();
    text.alignment.wrap = true;
    text.border.left = text.border.right = rule(LineKind::Thin, kRule);
    text.border.top = text.border.bottom = rule(LineKind::Hair, kHairRule);
    CellStyle centred = text;
    centred.alignment.horizontal = HorizontalAlign::Center;
    CellStyle number = text;
    number.alignment.wrap = false;
    number.alignment.horizontal = HorizontalAlign::Right;
    const StyleId textId = book_.style(text);
    const StyleId centredId = book_.style(centred);
    const StyleId numberId = book_.style(number);
    for (int row = kFirstFieldRow; row <= kLastFieldRow; ++row) {
      sheet().setRowHeight(row, 18);
      sheet().setStyle({{row, 1}, {row, 14}}, textId);
      sheet().setStyle({{row, 8}, {row, 10}}, numberId);
      for (const int column : {1, 6, 11}) sheet().setStyle(CellRef{row, column}, centredId);
      sheet().setNumber({row, 1}, row - kFirstFieldRow + 1);
      sheet().merge({{row, 2}, {row, 3}});
      sheet().merge({{row, 4}, {row, 5}});
    }
    sheet().setBorder({{kLastFieldRow, 1}, {kLastFieldRow, 14}}, BorderIndex::EdgeBottom, rule(LineKind::Thin, kRule));
  }

  void setUpPage() {
    PageSetup page = sheet().pageSetup();
    page.orientation = PageSetup::Orientation::Landscape;
    page.paperSize = 9;
    page.fitToPage = true;
    page.fitToWidth = 1;
    page.fitToHeight = 0;
    page.marginLeft = page.marginRight = 0.4;
    page.marginTop = 0.75;
    page.marginBottom = 0.6;
    page.header.left = "&\"ＭＳ Ｐゴシック,太字\"&14テーブル定義書";
    page.footer.left = "fileName:&F";
    page.footer.center = "&P / &N";
    page.titleRows = rangeAt("1:9");
    page.centerHorizontally = true;
    sheet().setPageSetup(page);
    sheet().setShowGridLines(false);
    sheet().freeze({kFirstFieldRow, 1});
    sheet().select(cellAt("A1"));
  }

  Workbook book_;
};

/// A small golden key: "#" its outline, "o" its body, "." nothing. Each letter makes kDot by kDot pixels.
constexpr std::uint32_t kDot = 2;
constexpr std::array<std::string_view, 12> kKeyPicture = {
    "....####....", "...#oooo#...", "..#oo##oo#..", "..#o#..#o#..", "..#oo##oo#..", "...#oooo#...",
    "....#oo#....", "....#oo#....", "....#oo##...", "....#ooo#...", "....#oo##...", ".....##.....",
};

void put(std::string& out, std::uint32_t value, int bytes) {
  for (int i = 0; i < bytes; ++i) out += static_cast<char>((value >> (8 * i)) & 0xFFU);
}

/// The picture as a Windows bitmap of 24 bits, from the lowest row up.
std::string keyBitmap() {
  constexpr std::uint32_t kHeads = 54;
  const auto width = static_cast<std::uint32_t>(kKeyPicture.front().size()) * kDot;
  const auto height = static_cast<std::uint32_t>(kKeyPicture.size()) * kDot;
  const std::uint32_t rowBytes = (width * 3 + 3) / 4 * 4;
  std::string out = "BM";
  put(out, kHeads + rowBytes * height, 4);
  put(out, 0, 4);
  put(out, kHeads, 4);
  put(out, 40, 4);
  put(out, width, 4);
  put(out, height, 4);
  put(out, 1, 2);
  put(out, 24, 2);
  for (const std::uint32_t value : {0U, rowBytes * height, 3780U, 3780U, 0U, 0U}) put(out, value, 4);
  for (auto row = kKeyPicture.rbegin(); row != kKeyPicture.rend(); ++row) {
    std::string line;
    for (const char pixel : *row) {
      const std::uint32_t colour = pixel == '#' ? 0x7A5200U : pixel == 'o' ? 0xF5C542U : 0xFFFFFFU;
      for (std::uint32_t dot = 0; dot < kDot; ++dot) put(line, colour, 3);
    }
    line.resize(rowBytes);
    for (std::uint32_t dot = 0; dot < kDot; ++dot) out += line;
  }
  return out;
}

}  // namespace
}  // namespace quillmarden

int main(int argc, char** argv) {
  if (argc != 2) {
    std::cerr << "usage: make_assets FOLDER\n";
    return 2;
  }
  const std::filesystem::path folder = argv[1];
  std::filesystem::create_directories(folder);
  quillmarden::BlankBook().make().save(folder / "t白紙.xls");
  std::ofstream(folder / "key.bmp", std::ios::binary) << quillmarden::keyBitmap();
  return 0;
}
