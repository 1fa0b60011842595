#include "workbook/worksheet.h"

#include <gtest/gtest.h>

#include <limits>

#include "packages.h"
#include "support/package_rules.h"

namespace quillmarden {
namespace {

/// The book written and read again.
Workbook again(const Workbook& book) {
  const std::string bytes = book.bytes();
  EXPECT_EQ(PackageRules(bytes).faults(), "");
  return Workbook::fromBytes(bytes);
}

TEST(Worksheet, textsComeBackAsTheyWere) {
  Workbook book = Workbook::create();
  Worksheet& sheet = book.sheet(0);
  const std::string texts[] = {
      " blanks ",
      "line\nfeed",
      "\ttab\t",
      "<a href=\"x\">&amp;</a>",
      std::string("\x01 bell\x07"),
      "_x0041_ is no A",
      "_x_",
      "絵文字😀",
      "'quoted",
      "=not a formula",
      "12",
      "\n",
      std::string(3000, 'x'),
  };
  int row = 0;
  for (const std::string& text : texts) sheet.setText({++row, 2}, text);
  const Workbook read = again(book);
  row = 0;
  for (const std::string& text : texts) EXPECT_EQ(read.sheet(0).value({++row, 2}), CellValue(text));
  sheet.setText({1, 1}, "a\r\nb\rc\r");
  EXPECT_EQ(sheet.text({1, 1}), "a\nb\nc\n") << "lines in a cell are parted by LF";
}

TEST(Worksheet, bytesThatXmlCannotHoldAreReplaced) {
  Workbook book = Workbook::create();
  book.sheet(0).setText({1, 1},
                        "a\xFF"
                        "b\xC0\x80"
                        "c\xED\xA0\x80"
                        "d\xEF\xBF\xBF");
  EXPECT_EQ(again(book).sheet(0).text({1, 1}), "a\uFFFDb\uFFFD\uFFFDc\uFFFD\uFFFD\uFFFDd\uFFFD\uFFFD\uFFFD");
}

TEST(Worksheet, numbersComeBackExactly) {
  Workbook book = Workbook::create();
  const double numbers[] = {
      0, -1, 0.1, 1.0 / 3, 1e300, -4.9e-324, 123456789012345678.0, 45000.5, 1e15, 999999999999999};
  int row = 0;
  for (const double number : numbers) book.sheet(0).setNumber({++row, 1}, number);
  book.sheet(0).setBoolean({1, 2}, true);
  book.sheet(0).setFormula({2, 2}, "SUM(A1:A3)&\"<\"");
  book.sheet(0).setDate({3, 2}, 45000, "yyyy/mm/dd");
  const Workbook read = again(book);
  row = 0;
  for (const double number : numbers) EXPECT_EQ(read.sheet(0).value({++row, 1}), CellValue(number));
  EXPECT_EQ(read.sheet(0).value({1, 2}), CellValue(true));
  EXPECT_EQ(read.sheet(0).formula({2, 2}), "SUM(A1:A3)&\"<\"");
  EXPECT_EQ(read.sheet(0).style({3, 2}).numberFormat, "yyyy/mm/dd");
  EXPECT_EQ(read.sheet(0).used(), rangeAt("A1:B10"));
}

TEST(Worksheet, whatIsTyped) {
  Workbook book = Workbook::create();
  Worksheet& sheet = book.sheet(0);
  sheet.changeStyle(rangeAt("B1:B9"), [](CellStyle& style) { style.numberFormat = "@"; });
  const auto typed = [&](const char* text) {
    sheet.setEntered(cellAt("A1"), text);
    return sheet.value(cellAt("A1"));
  };
  EXPECT_EQ(typed("10"), CellValue(10.0));
  EXPECT_EQ(typed("-2.5"), CellValue(-2.5));
  EXPECT_EQ(typed("0"), CellValue(0.0));
  // What would be shown in another way stays as it was typed.
  for (const char* text : {"001", "1.50", "+5", "-0", "1e5", "1,234", "10%", "2026/11/24", "12345678901234", " 5",
                           "inf", "nan", "0x10", "=== 備考 ===", "=", "(-)"})
    EXPECT_EQ(typed(text), CellValue(std::string(text)));
  EXPECT_EQ(typed("=B1+1"), CellValue());
  EXPECT_EQ(sheet.formula(cellAt("A1")), "B1+1");
  EXPECT_EQ(typed("'=B1+1"), CellValue(std::string("=B1+1")));
  EXPECT_TRUE(sheet.style(cellAt("A1")).quotePrefix);
  EXPECT_EQ(typed("'"), CellValue());
  EXPECT_EQ(typed("x"), CellValue(std::string("x")));
  EXPECT_FALSE(sheet.style(cellAt("A1")).quotePrefix);
  sheet.setEntered(cellAt("B1"), "10");
  EXPECT_EQ(sheet.value(cellAt("B1")), CellValue(std::string("10"))) << "a cell for texts";
  EXPECT_EQ(packageFaults(book), "");
}

TEST(Worksheet, cellsThatShowDatesTakeDates) {
  Workbook book = Workbook::create();
  Worksheet& sheet = book.sheet(0);
  const auto typed = [&](const char* format, const char* text) {
    sheet.changeStyle(rangeAt("A1"), [&](CellStyle& style) { style.numberFormat = format; });
    sheet.setEntered(cellAt("A1"), text);
    return sheet.value(cellAt("A1"));
  };
  for (const char* format :
       {"yyyy/mm/dd", "mm-dd-yy", "[$-411]ggge\"年\"m\"月\"d\"日\"", "[Red]h:mm", "[h]:mm", "mmss.0"})
    EXPECT_EQ(typed(format, "2026/11/24"), CellValue(46350.0)) << format;
  EXPECT_EQ(typed("yyyy/mm/dd", "2026-1-2 03:04"), CellValue(46024 + (3 * 3600 + 4 * 60) / 86400.0));
  EXPECT_EQ(sheet.style(cellAt("A1")).numberFormat, "yyyy/mm/dd") << "it looks as the template wants it";
  for (const char* text :
       {"2026/02/29", "2026/11/24 ", "2026/11/24 24:00", "24/11/2026", "2026/11", "1900/01/01", "未定"})
    EXPECT_EQ(typed("yyyy/mm/dd", text), CellValue(std::string(text)));
  for (const char* format : {"", "@", "0.00E+00", "#,##0\"日\"", "[Red]0", "0\\d"})
    EXPECT_EQ(typed(format, "2026/11/24"), CellValue(std::string("2026/11/24"))) << format;

  std::string bytes = book.bytes();
  book = Workbook::fromBytes(std::move(bytes));
  std::string xml = book.package().bytes("xl/workbook.xml");
  book.package().set("xl/workbook.xml", xml.insert(xml.find("<bookViews"), "<workbookPr date1904=\"1\"/>"));
  Workbook later = again(book);
  later.sheet(0).changeStyle(rangeAt("A1"), [](CellStyle& style) { style.numberFormat = "yyyy/mm/dd"; });
  later.sheet(0).setEntered(cellAt("A1"), "2026/11/24");
  EXPECT_EQ(later.sheet(0).value(cellAt("A1")), CellValue(46350.0 - 1462));
  later.sheet(0).setEntered(cellAt("A1"), "1903/12/31");
  EXPECT_EQ(later.sheet(0).value(cellAt("A1")), CellValue(std::string("1903/12/31")));
}

TEST(Worksheet, whatNoCellCanHold) {
  Workbook book = Workbook::create();
  Worksheet& sheet = book.sheet(0);
  const auto fault = [](const auto& call) { return errorOf(call).fault(); };
  std::string longest;
  for (int i = 0; i < 32767; ++i) longest += "字";
  sheet.setText({1, 1}, longest);
  EXPECT_EQ(sheet.text({1, 1}), longest);
  EXPECT_TRUE(sheet.cutTexts().empty());
  // A longer one is cut, not through a character of two units, and named.
  const std::string wide = "\xF0\xA0\xAE\xB7";
  sheet.setText({2, 1}, longest.substr(0, 32757 * 3) + wide + longest);
  sheet.setEntered({3, 1}, "'" + std::string(40000, '\x80'));
  EXPECT_EQ(sheet.text({2, 1}), longest.substr(0, 32757 * 3) + wide + "…(以下省略)");
  EXPECT_TRUE(again(book).sheet(0).text({3, 1}).ends_with("\uFFFD…(以下省略)"));
  EXPECT_EQ(sheet.cutTexts(), (std::vector<CellRef>{{2, 1}, {3, 1}}));
  EXPECT_EQ(fault([&] { sheet.setNumber({1, 1}, std::numeric_limits<double>::quiet_NaN()); }), WorkbookFault::BadValue);
  EXPECT_EQ(fault([&] { sheet.setFormula({1, 1}, "1+"); }), WorkbookFault::BadValue);
  EXPECT_EQ(fault([&] { sheet.setText({0, 1}, "x"); }), WorkbookFault::BadAddress);
  EXPECT_EQ(fault([&] { sheet.setText({1, 16385}, "x"); }), WorkbookFault::BadAddress);
  EXPECT_EQ(fault([&] { sheet.insertRows(1, kMaxSheetRow); }), WorkbookFault::BadAddress) << "pushed off the sheet";
  for (const char* text : {"", "A", "1", "A0", "AAAA1", "XFE1", "A1048577", "A1:B", "$", "A-1", "A1:2", "あ1"})
    EXPECT_FALSE(parseCell(text).has_value()) << text;
  EXPECT_EQ(fault([] { rangeAt("A1:B"); }), WorkbookFault::BadAddress);
  EXPECT_EQ(rangeAt("$c$4:B2"), rangeAt("B2:C4"));
  EXPECT_EQ(rangeName(rangeAt("c:A")) + " " + rangeName(rangeAt("9:2")) + " " + absoluteName(rangeAt("XFD1")),
            "A:C 2:9 $XFD$1");

  for (const char* name : {"", "a:b", "a\\b", "a/b", "a?", "a*", "[a", "a]", "'a", "a'", "a\nb", "a\xED\xA0\x80",
                           "a\xEF\xBF\xBE", "1234567890123456789012345678901x"})
    EXPECT_EQ(fault([&] { checkSheetName(name); }), WorkbookFault::BadSheetName) << name;
  checkSheetName("一二三四五六七八九十一二三四五六七八九十一二三四五六七八九十一");
  EXPECT_EQ(fault([&] { book.addSheet("SHEET1"); }), WorkbookFault::BadSheetName) << "taken";
}

TEST(Worksheet, mergedCells) {
  Workbook book = Workbook::create();
  Worksheet& sheet = book.sheet(0);
  for (const char* cell : {"A1", "B1", "C1", "A2"}) sheet.setText(cellAt(cell), cell);
  sheet.merge(rangeAt("A1:B2"));
  sheet.merge(rangeAt("E5:F6"));
  EXPECT_EQ(sheet.text(cellAt("A1")), "A1");
  EXPECT_EQ(sheet.text(cellAt("B1")) + sheet.text(cellAt("A2")), "");
  sheet.merge(rangeAt("B2:C3"));
  EXPECT_EQ(sheet.mergedRange(cellAt("A1")), rangeAt("A1")) << "dissolved by the one that met it";
  EXPECT_EQ(again(book).sheet(0).mergedRanges().size(), 2U);
  sheet.unmerge(rangeAt("A1:Z99"));
  EXPECT_TRUE(again(book).sheet(0).mergedRanges().empty());
}

TEST(Worksheet, columnsAreSplitWhereTheyDiffer) {
  Workbook book = templateBook();
  Worksheet& sheet = book.sheet(0);
  sheet.setColumnWidth(3, 6, 70);
  sheet.setColumnHidden(5, 5, true);
  const Workbook read = again(book);
  const Worksheet& result = read.sheet(0);
  EXPECT_EQ(result.columnWidth(2), 12.625);
  EXPECT_EQ(result.columnWidth(4), result.columnWidth(3));
  EXPECT_NEAR(result.columnWidth(6), 70.625, 0.1) << "with the padding";
  EXPECT_EQ(result.columnWidth(5), 0);
  EXPECT_EQ(result.columnWidth(7), result.columnWidth(8));
  EXPECT_EQ(result.styleId(cellAt("D2")), 1U);
  EXPECT_EQ(result.styleId(cellAt("E2")), 0U);
  EXPECT_NE(result.element("cols").find("bestFit"), std::string::npos);
}

TEST(Worksheet, changingOneAttributeKeepsTheOthers) {
  Workbook book = templateBook();
  Worksheet& sheet = book.sheet(0);
  const CellStyle before = sheet.style(cellAt("A1"));
  sheet.changeStyle(rangeAt("A1:B2"), [](CellStyle& style) { style.alignment.horizontal = HorizontalAlign::Center; });
  sheet.setBorder(rangeAt("A1:B2"), BorderIndex::EdgeBottom, BorderLine::of(1, -4138, 3));
  sheet.setBorder(rangeAt("A1:B2"), BorderIndex::DiagonalUp, BorderLine::of(-4142));
  const Workbook read = again(book);
  CellStyle expected = before;
  expected.alignment.horizontal = HorizontalAlign::Center;
  expected.border.diagonalUp = false;
  expected.border.diagonal = {};
  EXPECT_EQ(read.sheet(0).style(cellAt("A1")), expected);
  // B2 was never written: it starts from its column's format.
  expected.border.bottom = {LineKind::Medium, CellColor::rgb(0xFF0000)};
  EXPECT_EQ(read.sheet(0).style(cellAt("B2")), expected);
  EXPECT_EQ(expected.fill.gradient.substr(0, 13), "<gradientFill") << "kept though it is not modelled";

  sheet.changeStyle(rangeAt("A5"), [](CellStyle& style) { style.font.name = "ＭＳ Ｐゴシック"; });
  sheet.changeStyle(rangeAt("C1"), [](CellStyle& style) { style.font.name = "ＭＳ Ｐゴシック"; });
  EXPECT_EQ(sheet.style(cellAt("C1")).font.scheme, "") << "else the theme's font would show";
}

TEST(Worksheet, wholeRowsAndColumns) {
  Workbook book = Workbook::create();
  Worksheet& sheet = book.sheet(0);
  sheet.setText(cellAt("B2"), "x");
  sheet.changeStyle(rangeAt("2:2"), [](CellStyle& style) { style.font.bold = true; });
  sheet.changeStyle(rangeAt("B:C"), [](CellStyle& style) { style.alignment.wrap = true; });
  sheet.setNamedStyle(rangeAt("I:K"), "Comma [0]");
  const Workbook read = again(book);
  const auto look = [&](const char* cell) {
    const CellStyle style = read.sheet(0).style(cellAt(cell));
    return std::string(style.font.bold ? "b" : "-") + (style.alignment.wrap ? "w" : "-") + style.named;
  };
  EXPECT_EQ(look("B2") + " " + look("C2") + " " + look("D2") + " " + look("B9") + " " + look("A9"), "bw bw b- -w --");
  EXPECT_EQ(look("I2") + "," + look("K9") + "," + look("L9"), "b-Comma [0],--Comma [0],--");
  EXPECT_EQ(read.sheet(0).style(cellAt("J9")).numberFormat, "#,##0 ;[Red](#,##0)");
  Workbook japanese = templateBook();
  japanese.sheet(0).setNamedStyle(cellAt("A5"), "Comma [0]");
  EXPECT_EQ(japanese.sheet(0).style(cellAt("A5")).named, "桁区切り") << "the same style in the book's language";
  EXPECT_EQ(errorOf([&] { sheet.setNamedStyle(cellAt("A1"), "no such"); }).fault(), WorkbookFault::BadValue);
}

TEST(Worksheet, insideLinesOfARange) {
  Workbook book = Workbook::create();
  Worksheet& sheet = book.sheet(0);
  sheet.setBorder(rangeAt("A1:B2"), BorderIndex::InsideVertical, BorderLine::of(1));
  sheet.setBorder(rangeAt("A1:B2"), BorderIndex::InsideHorizontal, BorderLine::of(-4119));
  sheet.setBorder(rangeAt("A1:B2"), BorderIndex::EdgeTop, BorderLine::of(1, 4));
  const auto sides = [&](const char* cell) {
    const CellBorder border = sheet.style(cellAt(cell)).border;
    std::string text;
    for (const BorderLine* line : {&border.left, &border.top, &border.right, &border.bottom})
      text += std::to_string(static_cast<int>(line->kind)) + " ";
    return text;
  };
  // left, top, right, bottom; 1 thin, 3 thick, 13 double
  EXPECT_EQ(sides("A1"), "0 3 1 13 ");
  EXPECT_EQ(sides("B1"), "1 3 0 13 ");
  EXPECT_EQ(sides("A2"), "0 13 1 0 ");
  EXPECT_EQ(sides("B2"), "1 13 0 0 ");
}

TEST(Worksheet, pageSetup) {
  Workbook book = templateBook();
  Worksheet& sheet = book.sheet(0);
  PageSetup setup = sheet.pageSetup();
  EXPECT_EQ(setup.titleRows, rangeAt("1:2"));
  EXPECT_EQ(setup.printArea, rangeAt("A1:G30"));
  setup.fitToPage = true;
  setup.fitToHeight = 0;
  setup.firstPageNumber = 3;
  setup.order = PageSetup::Order::OverThenDown;
  setup.header = {"&A", headerText("R&D"), "作成日:1\n変更日:2"};
  setup.titleRows = rangeAt("1:9");
  setup.titleColumns = rangeAt("A:A");
  setup.printArea.reset();
  setup.centerHorizontally = true;
  sheet.setPageSetup(setup);
  const Workbook read = again(book);
  EXPECT_EQ(read.sheet(0).pageSetup(), setup);
  EXPECT_NE(read.sheet(0).element("pageSetup").find("horizontalDpi=\"300\""), std::string::npos);
  EXPECT_NE(read.sheet(0).element("sheetPr").find("<tabColor rgb=\"FFFF0000\"/><pageSetUpPr"), std::string::npos);
  EXPECT_NE(read.sheet(0).element("headerFooter").find("&amp;L&amp;A&amp;CR&amp;&amp;D&amp;R作成日"),
            std::string::npos);
  setup.zoom = 5;
  EXPECT_EQ(errorOf([&] { sheet.setPageSetup(setup); }).fault(), WorkbookFault::BadValue);
  setup.zoom = 100;
  setup.header.center = std::string(256, 'x');
  EXPECT_EQ(errorOf([&] { sheet.setPageSetup(setup); }).fault(), WorkbookFault::BadValue);

  // Elements in their places in a book from nothing, too.
  Workbook fresh = Workbook::create();
  Worksheet& page = fresh.sheet(0);
  setup.header.center = "x";
  page.setPageSetup(setup);
  page.setAutoFilter(rangeAt("A1:C9"));
  page.addRowBreak(20);
  page.addRowBreak(10);
  page.addRowBreak(20);
  page.freeze(cellAt("B2"));
  page.select(cellAt("A1"));
  page.setShowGridLines(false);
  page.merge(rangeAt("A1:B1"));
  page.setColumnWidth(1, 1, 5);
  const Workbook result = again(fresh);
  EXPECT_EQ(result.sheet(0).pageSetup(), setup);
  EXPECT_EQ(result.sheet(0).element("rowBreaks"),
            "<rowBreaks count=\"2\" manualBreakCount=\"2\"><brk id=\"10\" max=\"16383\" man=\"1\"/>"
            "<brk id=\"20\" max=\"16383\" man=\"1\"/></rowBreaks>");
}

TEST(Worksheet, drawingsAndObjectsFindTheirPlaces) {
  Workbook book = templateBook();
  EXPECT_EQ(book.drawingPart(0), "xl/drawings/drawing1.xml");
  EXPECT_EQ(book.legacyDrawingPart(0), "xl/drawings/vmlDrawing1.vml");
  EXPECT_EQ(book.legacyDrawingPart(1), "");
  EXPECT_EQ(book.drawingPart(1), "xl/drawings/drawing2.xml");
  EXPECT_EQ(book.drawingPart(1), "xl/drawings/drawing2.xml") << "made once";
  EXPECT_EQ(book.setLegacyDrawing(1, "<xml/>"), "xl/drawings/vmlDrawing2.vml");
  const std::string picture = book.addMedia("picture", "emf");
  EXPECT_EQ(book.addMedia("picture", "emf"), picture);
  EXPECT_NE(book.addMedia("other", "emf"), picture);
  const std::string id = book.relateSheet(1, std::string(kOfficeRelation) + "package", book.addMedia("a book", "xlsx"));
  book.sheet(1).setElement(
      "oleObjects",
      "<x:oleObjects><x:oleObject progId=\"Excel.Sheet.12\" shapeId=\"1025\" r:id=\"" + id + "\"/></x:oleObjects>");
  EXPECT_EQ(packageFaults(book).find("xl/worksheets"), std::string::npos);
  EXPECT_EQ(Workbook::fromBytes(book.bytes()).sheet(1).element("drawing"), "<x:drawing r:id=\"rId1\"/>");
}

TEST(Worksheet, propertiesAndNames) {
  Workbook book = templateBook();
  book.setProperties({.creator = "山田", .created = "2026-11-24T09:00:00Z"});
  book.setProperties({.title = "一覧 & 表", .modified = "2026-11-25T09:00:00Z"});
  book.setDefinedName({"rate", -1, "表紙!$C$21", ""});
  book.setDefinedName({"total", -1, "", ""});
  const Workbook read = again(book);
  EXPECT_EQ(read.properties().creator, "山田");
  EXPECT_EQ(read.properties().title, "一覧 & 表");
  EXPECT_EQ(read.properties().created, "2026-11-24T09:00:00Z");
  EXPECT_EQ(read.definedNames().size(), 3U);
  EXPECT_EQ(read.definedNames().back().formula, "表紙!$C$21");
}

}  // namespace
}  // namespace quillmarden
