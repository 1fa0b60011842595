#include "workbook/styles.h"

#include <gtest/gtest.h>

#include <functional>

#include "packages.h"
#include "support/package_rules.h"

namespace quillmarden {
namespace {

/// Every attribute that a format has, each with a change to it.
std::vector<std::pair<const char*, std::function<void(CellStyle&)>>> allChanges() {
  return {
      {"name", [](CellStyle& s) { s.font.name = "Arial & \"Co\""; }},
      {"size", [](CellStyle& s) { s.font.size = 10.5; }},
      {"bold", [](CellStyle& s) { s.font.bold = !s.font.bold; }},
      {"italic", [](CellStyle& s) { s.font.italic = true; }},
      {"strike", [](CellStyle& s) { s.font.strike = true; }},
      {"outline", [](CellStyle& s) { s.font.outline = true; }},
      {"shadow", [](CellStyle& s) { s.font.shadow = true; }},
      {"condense", [](CellStyle& s) { s.font.condense = true; }},
      {"extend", [](CellStyle& s) { s.font.extend = true; }},
      {"underline", [](CellStyle& s) { s.font.underline = CellFont::Underline::DoubleAccounting; }},
      {"script", [](CellStyle& s) { s.font.script = CellFont::Script::Subscript; }},
      {"theme colour",
       [](CellStyle& s) {
         s.font.color = {CellColor::Kind::Theme, 4, -0.25};
       }},
      {"indexed colour",
       [](CellStyle& s) {
         s.font.color = {CellColor::Kind::Indexed, 10, 0};
       }},
      {"automatic colour", [](CellStyle& s) { s.font.color = CellColor::automatic(); }},
      {"family", [](CellStyle& s) { s.font.family = 2; }},
      {"charset", [](CellStyle& s) { s.font.charset = 0; }},
      {"solid fill", [](CellStyle& s) { s.fill = CellFill::solid(CellColor::index(6)); }},
      {"pattern",
       [](CellStyle& s) {
         s.fill = {FillPattern::LightTrellis, CellColor::rgb(1), CellColor::rgb(2), ""};
       }},
      {"left", [](CellStyle& s) { s.border.left = BorderLine::of(13); }},
      {"right", [](CellStyle& s) { s.border.right = BorderLine::of(5, -4138, 56); }},
      {"top", [](CellStyle& s) { s.border.top = BorderLine::of(-4115, -4138); }},
      {"bottom", [](CellStyle& s) { s.border.bottom = BorderLine::of(-4118); }},
      {"diagonal", [](CellStyle& s) { s.border.diagonal = BorderLine::of(1, 1); }},
      {"diagonal down", [](CellStyle& s) { s.border.diagonalDown = true; }},
      {"diagonal up", [](CellStyle& s) { s.border.diagonalUp = !s.border.diagonalUp; }},
      {"horizontal", [](CellStyle& s) { s.alignment.horizontal = HorizontalAlign::CenterContinuous; }},
      {"vertical", [](CellStyle& s) { s.alignment.vertical = VerticalAlign::Distributed; }},
      {"wrap", [](CellStyle& s) { s.alignment.wrap = !s.alignment.wrap; }},
      {"shrink", [](CellStyle& s) { s.alignment.shrink = true; }},
      {"justify last line", [](CellStyle& s) { s.alignment.justifyLastLine = true; }},
      {"down", [](CellStyle& s) { s.alignment.setOrientation(-45); }},
      {"stacked", [](CellStyle& s) { s.alignment.setOrientation(-4166); }},
      {"indent", [](CellStyle& s) { s.alignment.indent = 3; }},
      {"relative indent", [](CellStyle& s) { s.alignment.relativeIndent = 1; }},
      {"reading order", [](CellStyle& s) { s.alignment.readingOrder = 2; }},
      {"own number format", [](CellStyle& s) { s.numberFormat = "\"<\"0.0\">\""; }},
      {"known number format", [](CellStyle& s) { s.numberFormat = "#,##0"; }},
      {"no number format", [](CellStyle& s) { s.numberFormat = ""; }},
      {"quote prefix", [](CellStyle& s) { s.quotePrefix = true; }},
      {"pivot button", [](CellStyle& s) { s.pivotButton = true; }},
      {"unlocked", [](CellStyle& s) { s.locked = !s.locked; }},
      {"hidden", [](CellStyle& s) { s.hidden = true; }},
  };
}

TEST(Styles, everyAttributeComesBackAndLeavesTheOthersAlone) {
  Workbook book = templateBook();
  std::vector<std::pair<StyleId, CellStyle>> made;
  for (const StyleId from : {0U, 1U}) {
    for (const auto& [name, change] : allChanges()) {
      CellStyle style = book.styleAt(from);
      const CellStyle before = style;
      change(style);
      const StyleId id = book.style(style);
      if (style != before) {
        EXPECT_NE(id, from) << name << " makes no difference";
      }
      made.emplace_back(id, style);
    }
  }
  const Workbook read = Workbook::fromBytes(book.bytes());
  const auto changes = allChanges();
  for (std::size_t i = 0; i < made.size(); ++i)
    EXPECT_EQ(read.styleAt(made[i].first), made[i].second) << changes[i % changes.size()].first;
  EXPECT_EQ(packageFaults(book), "");
}

TEST(Styles, equalFormatsAreStoredOnce) {
  Workbook book = templateBook();
  EXPECT_EQ(book.style(book.styleAt(1)), 1U);
  CellStyle style = book.styleAt(0);
  style.font.bold = true;
  const StyleId bold = book.style(style);
  EXPECT_EQ(book.style(style), bold);
  Workbook read = Workbook::fromBytes(book.bytes());
  EXPECT_EQ(read.style(style), bold) << "after it was written and read, too";
  EXPECT_EQ(read.style(book.styleAt(1)), 1U);
}

TEST(Styles, whatStandsInThePartStays) {
  Workbook book = templateBook();
  for (const auto& [name, change] : allChanges()) {
    CellStyle style = book.styleAt(1);
    change(style);
    book.style(style);
  }
  const std::string before = partsOf(zipOf(partsIn("template"))).at("xl/styles.xml");
  const std::string after = partsOf(book.bytes()).at("xl/styles.xml");
  // All of the part is there, in its order, but for the counts; new things stand between.
  std::size_t at = 0;
  for (std::size_t i = 0; i < before.size();) {
    std::size_t end = before.find(">", i);
    end = end == std::string::npos ? before.size() : end + 1;
    std::string piece = before.substr(i, end - i);
    i = end;
    if (piece.find(" count=") != std::string::npos) continue;
    const std::size_t found = after.find(piece, at);
    ASSERT_NE(found, std::string::npos) << piece;
    at = found + piece.size();
  }
}

TEST(Styles, booksWithoutStylesOrWithOddOnes) {
  Parts parts = partsIn("template");
  std::erase_if(parts, [](const auto& part) { return part.first == "xl/styles.xml"; });
  for (auto& [name, bytes] : parts) {
    const std::string relation =
        "<Relationship Id=\"rId4\" Type=\"http://schemas.openxmlformats.org/officeDocument/"
        "2006/relationships/styles\" Target=\"styles.xml\"/>";
    if (name == "xl/_rels/workbook.xml.rels") bytes.erase(bytes.find(relation), relation.size());
    const std::string type =
        "<Override PartName=\"/xl/styles.xml\" ContentType=\"application/vnd.openxmlformats-"
        "officedocument.spreadsheetml.styles+xml\"/>";
    if (name == "[Content_Types].xml") bytes.erase(bytes.find(type), type.size());
  }
  Workbook book = Workbook::fromBytes(zipOf(parts));
  EXPECT_EQ(book.sheet(0).style(cellAt("A1")), book.styleAt(0)) << "a number that is not there is the default";
  book.sheet(0).changeStyle(cellAt("A1"), [](CellStyle& style) { style.font.bold = true; });
  const Workbook read = Workbook::fromBytes(book.bytes());
  EXPECT_TRUE(read.sheet(0).style(cellAt("A1")).font.bold);

  const StyleTable odd = StyleTable::parse(
      "<s:styleSheet xmlns:s=\"m\"><s:fonts/><s:cellXfs><s:xf fontId=\"7\" fillId=\"-3\" "
      "numFmtId=\"30000\"/></s:cellXfs>"
      "</s:styleSheet>",
      "odd");
  StyleTable grown = odd;
  CellStyle style = odd.at(0);
  style.font.name = "A";
  style.numberFormat = "0.000";
  const StyleId id = grown.add(style);
  EXPECT_EQ(StyleTable::parse(grown.xml(), "odd").at(id), style) << grown.xml();
  EXPECT_NE(grown.xml().find("<s:numFmts count=\"1\"><s:numFmt numFmtId=\"164\""), std::string::npos);
}

TEST(Styles, constantsOfAutomation) {
  EXPECT_EQ(paletteRgb(38), 0xFF99CCU);
  EXPECT_EQ(paletteRgb(39), 0xCC99FFU);
  EXPECT_EQ(paletteRgb(48), 0x969696U);
  EXPECT_EQ(CellColor::index(6), CellColor::rgb(0xFFFF00));
  EXPECT_EQ(CellColor::index(-4105), CellColor::automatic());
  EXPECT_EQ(CellColor::index(57), CellColor::automatic());
  EXPECT_EQ(BorderLine::of(-4142, 2, 3), BorderLine());
  EXPECT_EQ(BorderLine::of(1, 2).kind, LineKind::Thin);
  EXPECT_EQ(BorderLine::of(1, 1).kind, LineKind::Hair);
  EXPECT_EQ(BorderLine::of(1, 4).kind, LineKind::Thick);
  CellAlignment alignment;
  for (const auto& [orientation, rotation] : std::vector<std::pair<int, int>>{
           {45, 45}, {-45, 135}, {-4171, 90}, {-4170, 180}, {-4166, 255}, {999, 255}, {0, 0}}) {
    alignment.setOrientation(orientation);
    EXPECT_EQ(alignment.rotation, rotation) << orientation;
  }
}

}  // namespace
}  // namespace quillmarden
