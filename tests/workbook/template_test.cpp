// Changes to a book that another program wrote: the parts of the folder "template". Each case has a folder with the
// parts as they must be afterwards; all other parts keep their bytes.

#include <gtest/gtest.h>

#include "packages.h"
#include "support/package_rules.h"

namespace quillmarden {
namespace {

const std::vector<std::string> kCalculationOrder{"xl/calcChain.xml"};

TEST(Template, readingChangesNothing) {
  const Workbook book = templateBook();
  const Worksheet& sheet = book.sheet(0);
  EXPECT_EQ(sheet.text(cellAt("B1")), "太い 文字");
  EXPECT_EQ(sheet.text(cellAt("C1")), "日本") << "without its reading";
  EXPECT_EQ(sheet.text(cellAt("D1")), " a\r\nb & c ");
  EXPECT_EQ(sheet.value(cellAt("E1")), CellValue(true));
  EXPECT_EQ(sheet.value(cellAt("F1")), CellValue(CellError{"#DIV/0!"}));
  EXPECT_EQ(sheet.text(cellAt("G1")), "within");
  EXPECT_EQ(sheet.value(cellAt("A5")), CellValue(45000.5));
  EXPECT_EQ(sheet.formula(cellAt("E7")), "C7*C$20+'Sum''s'!A7") << "written out for its cell";
  EXPECT_EQ(sheet.rowHeight(1), 30);
  EXPECT_EQ(sheet.rowHeight(2), 18.75);
  EXPECT_EQ(sheet.rowHeight(7), 0) << "hidden";
  EXPECT_EQ(sheet.columnWidth(3), 12.625);
  EXPECT_EQ(sheet.style(cellAt("B7")), book.styleAt(1)) << "that of its column";
  EXPECT_EQ(sheet.mergedRange(cellAt("C11")), rangeAt("B10:C12"));
  EXPECT_EQ(sheet.pageSetup().header.right, "変更日:");
  EXPECT_EQ(book.findSheet("sum's"), 1);
  EXPECT_EQ(book.bytes(), Package::fromBytes(zipOf(partsIn("template"))).zip());
}

TEST(Template, fillingCells) {
  Workbook book = templateBook();
  Worksheet& sheet = book.sheet(0);
  sheet.setText(cellAt("A1"), "新");
  sheet.setText(cellAt("B5"), "太い");
  sheet.setNumber(cellAt("H30"), -2.5);
  sheet.changeStyle(rangeAt("A1:B1"), [](CellStyle& style) { style.fill = CellFill::solid(CellColor::index(38)); });
  expectParts(book, "cells_filled", kCalculationOrder);
  EXPECT_EQ(packageFaults(book), "");
}

TEST(Template, insertingRows) {
  Workbook book = templateBook();
  book.sheet(0).insertRows(6, 2);
  expectParts(book, "rows_inserted", kCalculationOrder);
  EXPECT_EQ(packageFaults(book), "");
}

TEST(Template, deletingRows) {
  Workbook book = templateBook();
  book.sheet(0).deleteRows(10, 12);
  expectParts(book, "rows_deleted", kCalculationOrder);
  EXPECT_EQ(packageFaults(book), "");
}

TEST(Template, renamingASheet) {
  Workbook book = templateBook();
  book.renameSheet(0, "A & B");
  expectParts(book, "sheet_renamed", kCalculationOrder);
  EXPECT_EQ(packageFaults(book), "");
}

TEST(Template, insertingAndDeletingGoBackToTheBeginning) {
  Workbook book = templateBook();
  book.sheet(0).insertRows(4, 3);
  book.sheet(0).deleteRows(4, 6);
  Workbook touched = templateBook();
  touched.sheet(0).insertRows(1000, 1);
  const auto before = partsOf(touched.bytes());
  const auto after = partsOf(book.bytes());
  EXPECT_EQ(after.at("xl/worksheets/sheet1.xml"), before.at("xl/worksheets/sheet1.xml"));
  EXPECT_EQ(after.at("xl/workbook.xml"), before.at("xl/workbook.xml"));
}

TEST(Template, clonesShareWhatWasReadAndKeepTheirChanges) {
  const Workbook original = templateBook();
  Workbook first = original.clone();
  Workbook second = original.clone();
  first.sheet(0).setText(cellAt("A1"), "one");
  first.renameSheet(1, "other");
  Workbook third = first.clone();
  third.sheet(0).setText(cellAt("A1"), "three");
  second.sheet(0).setText(cellAt("A1"), "two");
  EXPECT_EQ(original.sheet(0).text(cellAt("A1")), "題名");
  EXPECT_EQ(first.sheet(0).text(cellAt("A1")), "one");
  EXPECT_EQ(second.sheet(0).text(cellAt("A1")), "two");
  EXPECT_EQ(third.sheet(0).text(cellAt("A1")), "three");
  EXPECT_EQ(second.sheet(1).name(), "Sum's");
  Workbook direct = templateBook();
  direct.sheet(0).setText(cellAt("A1"), "two");
  EXPECT_EQ(second.bytes(), direct.bytes()) << "a clone is as good as a book that was opened anew";
}

TEST(Template, copyingARowTakesItsRulesAlong) {
  Workbook book = templateBook();
  Worksheet& sheet = book.sheet(0);
  sheet.copyRow(9, 26);
  sheet.copyRow(25, 10);
  EXPECT_EQ(sheet.formula(cellAt("C26")), "\"C20:\"&C37");
  EXPECT_EQ(sheet.styleId(cellAt("C26")), 2U);
  EXPECT_NE(sheet.element("conditionalFormatting").find("sqref=\"C5:C9 E5:E9 C26 E26\""), std::string::npos);
  EXPECT_EQ(sheet.text(cellAt("C10")), "題名");
  EXPECT_EQ(sheet.mergedRange(cellAt("D10")), rangeAt("D10:E10"));
  EXPECT_EQ(sheet.mergedRange(cellAt("B12")), rangeAt("B12")) << "a range that the row cut through is dissolved";
  EXPECT_EQ(packageFaults(book), "");
}

TEST(Template, copyingSheets) {
  Workbook book = Workbook::create({.sheetName = "一覧"});
  Worksheet& list = book.sheet(0);
  list.setText(cellAt("A1"), "題名");
  const Workbook source = templateBook();
  Worksheet& copy = book.copySheetFrom(source, 0, 0);
  Worksheet& second = book.copySheetFrom(source, 0, 2);
  EXPECT_EQ(copy.name(), "表紙");
  EXPECT_EQ(second.name(), "表紙 (2)");
  EXPECT_EQ(list.index(), 1) << "a reference follows its sheet";
  EXPECT_EQ(copy.text(cellAt("B1")), "太い 文字");
  EXPECT_EQ(copy.style(cellAt("A1")), source.sheet(0).style(cellAt("A1")));
  EXPECT_EQ(second.formula(cellAt("E5")), "C5*C$20+#REF!") << "of a sheet that stayed behind";
  EXPECT_EQ(second.pageSetup(), source.sheet(0).pageSetup());
  const auto parts = partsOf(book.bytes());
  EXPECT_NE(parts.at("xl/charts/chart2.xml").find("'表紙 (2)'!$C$5:$C$20"), std::string::npos);
  EXPECT_TRUE(parts.contains("xl/media/image1.png") && !parts.contains("xl/media/image2.png")) << "one picture";
  EXPECT_NE(parts.at("xl/tables/table2.xml").find("id=\"2\" name=\"表1_2\" displayName=\"表1_2\""), std::string::npos);
  EXPECT_NE(parts.at("xl/styles.xml").find("<bgColor rgb=\"FFFFFF00\"/>"), std::string::npos);
  EXPECT_EQ(packageFaults(book), "");

  Workbook same = templateBook();
  same.copySheetFrom(same, 0, 1);
  EXPECT_EQ(same.sheet(1).formula(cellAt("E5")), "C5*C$20+'Sum''s'!A5");
  EXPECT_EQ(same.definedNames()[4].formula, "'表紙 (2)'!$A$1:$G$30");
  EXPECT_EQ(packageFaults(same), "");
}

TEST(Template, removingASheet) {
  Workbook book = templateBook();
  Worksheet& still = book.sheet(2);
  book.setActiveSheet(1);
  book.removeSheet(0);
  EXPECT_EQ(book.activeSheet(), 0);
  EXPECT_EQ(still.index(), 1);
  EXPECT_EQ(book.sheet(0).formula(cellAt("A1")), "#REF!*2+LOG10(#REF!)");
  const auto parts = partsOf(book.bytes());
  for (const char* part :
       {"xl/drawings/drawing1.xml", "xl/media/image1.png", "xl/comments1.xml", "xl/tables/table1.xml"})
    EXPECT_FALSE(parts.contains(part)) << part << " belonged to that sheet alone";
  EXPECT_EQ(packageFaults(book), "");
  book.removeSheet(1);
  EXPECT_EQ(errorOf([&] { book.removeSheet(0); }).fault(), WorkbookFault::BadValue);
}

TEST(Template, partsThatAreNotWhatTheyShouldBe) {
  const auto faultWith = [](const std::string& part, const std::string& xml) {
    Parts parts = partsIn("template");
    for (auto& [name, bytes] : parts)
      if (name == part) bytes = xml;
    return errorOf([&] {
      Workbook book = Workbook::fromBytes(zipOf(parts));
      book.sheet(0).setText(cellAt("A1"), "x");
      book.sheet(0).insertRows(1, 1);
      book.style(book.styleAt(0));
      book.bytes();
    });
  };
  const std::string sheet = "xl/worksheets/sheet1.xml";
  const std::string open = "<worksheet xmlns=\"http://schemas.openxmlformats.org/spreadsheetml/2006/main\">";
  std::string deep;
  for (int i = 0; i < 100000; ++i) deep += "<a>";
  const std::string broken[] = {
      "",
      "no xml",
      open,
      open + "<sheetData></worksheet>",
      "<html/>",
      "<!DOCTYPE a [<!ENTITY b \"c\">]>" + open + "</worksheet>",
      open + "<sheetData><row r=\"1\"><c r=\"B2\"/></row></sheetData></worksheet>",
      open + "<sheetData><row r=\"1\"/><row r=\"1\"/></sheetData></worksheet>",
      open + "<sheetData><row r=\"9999999\"/></sheetData></worksheet>",
      open + "<sheetData><row r=\"1\"><c r=\"A1\" t=\"s\"><v>77</v></c></row></sheetData></worksheet>",
      open + "<sheetData><row r=\"1\"><c r=\"A1\"><v>abc</v></c></row></sheetData></worksheet>",
      open + "<cols><col min=\"5\" max=\"4\"/></cols><sheetData/></worksheet>",
      open + "<sheetData/>" + deep + "</worksheet>",
      open + "<sheetData/><a b='<'/></worksheet>",
  };
  for (const std::string& xml : broken) {
    const WorkbookError error = faultWith(sheet, xml);
    EXPECT_EQ(error.fault(), WorkbookFault::Damaged) << xml.substr(0, 120);
    EXPECT_EQ(error.part(), sheet) << xml.substr(0, 120);
  }
  for (const char* part : {"xl/workbook.xml", "xl/styles.xml", "xl/sharedStrings.xml", "xl/_rels/workbook.xml.rels",
                           "xl/drawings/drawing1.xml", "[Content_Types].xml"})
    EXPECT_EQ(faultWith(part, "<a>").part(), part);
  EXPECT_EQ(faultWith("xl/drawings/drawing1.xml", deep).fault(), WorkbookFault::Damaged);
}

TEST(Template, missingPartsAreNamed) {
  const auto without = [](const std::string& part) {
    Parts parts = partsIn("template");
    std::erase_if(parts, [&](const auto& entry) { return entry.first == part; });
    return Workbook::fromBytes(zipOf(parts));
  };
  EXPECT_EQ(errorOf([&] { without("xl/worksheets/sheet2.xml"); }).part(), "xl/worksheets/sheet2.xml");
  EXPECT_EQ(errorOf([&] { without("xl/workbook.xml"); }).part(), "xl/workbook.xml");
  EXPECT_EQ(errorOf([&] { without("_rels/.rels"); }).fault(), WorkbookFault::NotAWorkbook);
  // What can be done without is made anew, or left alone.
  Workbook book = without("xl/drawings/drawing1.xml");
  book.sheet(0).insertRows(1, 1);
  EXPECT_EQ(book.sheet(0).text(cellAt("A2")), "題名");
}

}  // namespace
}  // namespace quillmarden
