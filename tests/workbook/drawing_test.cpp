#include "workbook/drawing.h"

#include <fmt/format.h>
#include <gtest/gtest.h>

#include <pugixml.hpp>
#include <set>

namespace quillmarden {
namespace {

const SheetGeometry kSquares{[](int) { return 50.0; }, [](int) { return 20.0; }};

SheetShape shape(std::string name, Box box) {
  SheetShape made;
  made.name = std::move(name);
  made.box = box;
  made.text.text = made.name;
  made.text.font = {"ＭＳ Ｐゴシック", 9, false};
  return made;
}

pugi::xml_document parsed(const std::string& anchors) {
  pugi::xml_document document;
  const std::string whole = "<xdr:wsDr xmlns:xdr=\"x\" xmlns:a=\"a\">" + anchors + "</xdr:wsDr>";
  EXPECT_TRUE(document.load_string(whole.c_str())) << whole;
  return document;
}

std::string noMedia(const std::string&, std::string_view) { return "rId1"; }

TEST(DrawingTest, AnchorsShapesToTheCellsBelowThem) {
  Drawing drawing;
  drawing.shapes.push_back(shape("A<&\"", {60, 25, 100, 40}));
  const auto document = parsed(drawingAnchors(drawing, kSquares, 2, noMedia));
  const auto anchor = document.first_child().first_child();
  EXPECT_STREQ(anchor.child("xdr:from").child_value("xdr:col"), "1");
  EXPECT_STREQ(anchor.child("xdr:from").child_value("xdr:colOff"), "127000");
  EXPECT_STREQ(anchor.child("xdr:from").child_value("xdr:row"), "1");
  EXPECT_STREQ(anchor.child("xdr:to").child_value("xdr:col"), "3");
  EXPECT_STREQ(anchor.child("xdr:to").child_value("xdr:row"), "3");
  const auto properties = anchor.child("xdr:sp").child("xdr:nvSpPr").child("xdr:cNvPr");
  EXPECT_STREQ(properties.attribute("name").value(), "A<&\"");
}

TEST(DrawingTest, ConnectorsHoldOnToShapesAndKeepTheirBends) {
  Drawing drawing;
  drawing.shapes = {shape("left", {0, 0, 100, 40}), shape("right", {300, 100, 100, 40}),
                    shape("below", {0, 200, 100, 40})};
  drawing.shapes[2].kind = ShapeKind::MagneticDisk;
  drawing.connectors = {
      {"c1",
       0,
       ShapeEdge::Right,
       1,
       ShapeEdge::Left,
       {{100, 20}, {150, 20}, {150, 80}, {250, 80}, {250, 120}, {300, 120}}},
      {"c2", 2, ShapeEdge::Right, 0, ShapeEdge::Right, {{100, 220}, {114, 220}, {114, 20}, {100, 20}}},
      {"straight", 0, ShapeEdge::Right, 1, ShapeEdge::Left, {{100, 20}, {300, 20}}},
      {"no such shape", 0, ShapeEdge::Right, 9, ShapeEdge::Left, {{100, 20}, {300, 20}}},
      {"no way", 0, ShapeEdge::Right, 1, ShapeEdge::Left, {}}};
  const auto document = parsed(drawingAnchors(drawing, kSquares, 10, noMedia));
  std::vector<pugi::xml_node> connectors;
  std::vector<pugi::xml_node> lines;
  std::set<std::string> ids;
  for (const auto part : document.first_child().children()) {
    const auto kept = part.child("mc:Choice").child("xdr:twoCellAnchor");
    if (const auto connector = kept.child("xdr:cxnSp")) connectors.push_back(connector);
    if (kept) lines.push_back(part.child("mc:Fallback").child("xdr:twoCellAnchor"));
    const auto found = part.find_node([](pugi::xml_node node) { return node.name() == std::string("xdr:cNvPr"); });
    EXPECT_TRUE(ids.insert(found.attribute("id").value()).second);
  }
  ASSERT_EQ(connectors.size(), 3U);
  const auto ends = connectors[0].child("xdr:nvCxnSpPr").child("xdr:cNvCxnSpPr");
  EXPECT_EQ(ends.child("a:stCxn").attribute("id").as_int(), 10);
  EXPECT_EQ(ends.child("a:stCxn").attribute("idx").as_int(), 3);
  EXPECT_EQ(ends.child("a:endCxn").attribute("id").as_int(), 11);
  // A disk counts a site on its upper face before the others.
  EXPECT_EQ(connectors[1].child("xdr:nvCxnSpPr").child("xdr:cNvCxnSpPr").child("a:stCxn").attribute("idx").as_int(), 4);
  const auto bends = [](const pugi::xml_node& connector) {
    std::string all = connector.child("xdr:spPr").child("a:prstGeom").attribute("prst").value();
    for (const auto bend : connector.child("xdr:spPr").child("a:prstGeom").child("a:avLst").children())
      all += std::string(" ") + bend.attribute("fmla").value();
    return all;
  };
  // A quarter across, six tenths down, three quarters across.
  EXPECT_EQ(bends(connectors[0]), "bentConnector5 val 25000 val 60000 val 75000");
  EXPECT_EQ(bends(connectors[1]), "bentConnector3 val 1400000") << "14 points beside a box that is one point wide";
  EXPECT_EQ(connectors[1].child("xdr:spPr").child("a:xfrm").attribute("flipV").as_int(), 1);
  EXPECT_EQ(bends(connectors[2]), "straightConnector1");

  // Programs that would lay it anew get the points themselves, in a box around them.
  const auto drawn = lines[0].child("xdr:sp").child("xdr:spPr");
  EXPECT_EQ(drawn.child("a:xfrm").child("a:off").attribute("x").as_int(), 1270000);
  EXPECT_EQ(drawn.child("a:xfrm").child("a:ext").attribute("cy").as_int(), 1270000);
  const auto path = drawn.child("a:custGeom").child("a:pathLst").child("a:path");
  EXPECT_EQ(std::ranges::distance(path.children()), 6);
  EXPECT_EQ(path.child("a:moveTo").child("a:pt").attribute("y").as_int(), 0);
  EXPECT_EQ(path.last_child().child("a:pt").attribute("x").as_int(), 2540000);
  EXPECT_STREQ(drawn.child("a:ln").child("a:tailEnd").attribute("type").value(), "triangle");
}

TEST(DrawingTest, ObjectsHaveALegacyShapeEach) {
  Drawing drawing;
  for (int i = 0; i < 3; ++i) {
    drawing.objects.push_back({fmt::format("受注 明細{}", i), {10.0 + i, 10, 90, 60}, {}, i == 1, 0.75});
  }
  const std::string shapes = legacyShapes(drawing, kSquares, 1025, {"rId1", "rId2", "rId3"});
  pugi::xml_document document;
  ASSERT_TRUE(document.load_string(legacyDrawing(shapes, 1025, 3).c_str()));
  const auto first = document.first_child().child("v:shape");
  EXPECT_STREQ(first.attribute("id").value(), "受注_x0020_明細0");
  EXPECT_STREQ(first.attribute("o:spid").value(), "_x0000_s1025");
  EXPECT_STREQ(first.child("x:ClientData").child_value("x:Anchor"), "0, 13, 0, 13, 2, 0, 3, 13");
  EXPECT_FALSE(first.child("v:shadow"));
  EXPECT_TRUE(first.next_sibling().child("v:shadow"));
  // More objects than a block of shape numbers holds need the next block as well.
  EXPECT_NE(legacyDrawing("", 1025, 1).find("data=\"1\""), std::string::npos);
  EXPECT_NE(legacyDrawing("", 1025, 2000).find("data=\"1,2\""), std::string::npos);
}

}  // namespace
}  // namespace quillmarden
