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

TEST(DrawingTest, ConnectorsHoldOnToShapesThatExist) {
  Drawing drawing;
  drawing.shapes = {shape("left", {0, 0, 100, 40}), shape("right", {300, 100, 100, 40}),
                    shape("below", {0, 200, 100, 40})};
  drawing.shapes[2].kind = ShapeKind::MagneticDisk;
  drawing.connectors = {{"c1", 0, ShapeEdge::Right, 1, ShapeEdge::Left},
                        {"c2", 2, ShapeEdge::Right, 0, ShapeEdge::Right},  // boxes that stand above each other
                        {"c3", 0, ShapeEdge::Top, 9, ShapeEdge::Top}};     // no such shape
  const auto document = parsed(drawingAnchors(drawing, kSquares, 10, noMedia));
  std::set<std::string> ids;
  std::vector<pugi::xml_node> connectors;
  for (const auto anchor : document.first_child().children()) {
    if (const auto connector = anchor.child("xdr:cxnSp")) connectors.push_back(connector);
    const auto found = anchor.find_node([](pugi::xml_node node) { return node.name() == std::string("xdr:cNvPr"); });
    EXPECT_TRUE(ids.insert(found.attribute("id").value()).second);
  }
  ASSERT_EQ(connectors.size(), 2U);
  const auto ends = connectors[0].child("xdr:nvCxnSpPr").child("xdr:cNvCxnSpPr");
  EXPECT_EQ(ends.child("a:stCxn").attribute("id").as_int(), 10);
  EXPECT_EQ(ends.child("a:stCxn").attribute("idx").as_int(), 3);
  EXPECT_EQ(ends.child("a:endCxn").attribute("id").as_int(), 11);
  const auto place = connectors[0].child("xdr:spPr").child("a:xfrm");
  EXPECT_EQ(place.child("a:off").attribute("x").as_int(), 1270000);
  EXPECT_EQ(place.child("a:ext").attribute("cx").as_int(), 2540000);
  // A disk counts a site on its upper face before the others.
  EXPECT_EQ(connectors[1]
                .find_node([](pugi::xml_node node) { return node.name() == std::string("a:stCxn"); })
                .attribute("idx")
                .as_int(),
            4);
  // Between equal edges the line bulges to the right of both.
  const auto bulging = connectors[1].child("xdr:spPr");
  EXPECT_EQ(bulging.child("a:xfrm").attribute("flipV").as_int(), 1);
  const std::string bend = bulging.child("a:prstGeom").child("a:avLst").child("a:gd").attribute("fmla").value();
  EXPECT_GT(std::stol(bend.substr(4)), 100'000);
}

TEST(DrawingTest, ObjectsHaveALegacyShapeEach) {
  Drawing drawing;
  for (int i = 0; i < 3; ++i) {
    drawing.objects.push_back({fmt::format("受注 明細{}", i), {10.0 + i, 10, 90, 60}, "book", "picture", i == 1, 0.75});
  }
  int media = 0;
  const auto addMedia = [&](const std::string&, std::string_view) { return fmt::format("rId{}", ++media); };
  const std::string shapes = legacyShapes(drawing, kSquares, 1025, addMedia);
  EXPECT_EQ(media, 3);
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
