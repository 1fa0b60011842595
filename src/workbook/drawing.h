#pragma once

#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "workbook/font_metrics.h"

namespace quillmarden {

/// Legacy shape numbers are handed out in blocks of this size.
inline constexpr int kShapesABlock = 1024;

/// A place on a sheet in points from its top left corner.
struct Box {
  double left = 0;
  double top = 0;
  double width = 0;
  double height = 0;
};

struct Point {
  double x = 0;
  double y = 0;
};

/// A side of a shape, in whose middle a connector can hold on.
enum class ShapeEdge { Top, Left, Bottom, Right };

enum class ShapeKind { TextBox, Rectangle, MagneticDisk };

/// The attributes of a shape's text. A colour is 0xRRGGBB; none leaves it to the program.
struct ShapeText {
  std::string text;  ///< lines parted by "\n"
  SizedFont font;
  bool strikethrough = false;
  bool superscript = false;
  bool subscript = false;
  bool outline = false;
  bool shadow = false;
  bool underline = false;
  std::optional<std::uint32_t> colour;
};

struct SheetShape {
  std::string name;
  Box box;
  ShapeText text;
  ShapeKind kind = ShapeKind::TextBox;
  bool centred = false;  ///< the text in the middle of the shape, otherwise at its top left
  std::optional<std::uint32_t> fill = 0xFFFFFF;
  std::uint32_t lineColour = 0;
  double lineWeight = 0.75;  ///< points
  bool shadow = false;
};

/// A line from one shape of the drawing to another, along its points, the ends included: straight, or by turns across
/// and down. Shapes count from 0. It ends in an arrow. Where the program can, it follows when a person moves the
/// shapes.
struct SheetConnector {
  std::string name;
  std::size_t fromShape = 0;
  ShapeEdge fromEdge = ShapeEdge::Right;
  std::size_t toShape = 0;
  ShapeEdge toEdge = ShapeEdge::Left;
  std::vector<Point> points;
  std::uint32_t colour = 0x404040;
};

struct SheetPicture {
  std::string name;
  Box box;
  std::string bytes;
  std::string extension;  ///< "png", "bmp", "emf" ...
};

/// What an object consists of.
struct EmbeddedBook {
  std::string book;     ///< the bytes of an .xlsx package
  std::string preview;  ///< the bytes of the .emf picture that is shown
};

/// A workbook that stands in the sheet as an object and opens by a double click. It is made while the sheet's book is
/// written, so that a book of thousands of objects holds one at a time; each writing gives the same.
struct OleObject {
  std::string name;
  Box box;
  std::function<EmbeddedBook()> make;
  bool shadow = false;
  double lineWeight = 0.75;
};

/// What is to be added to a sheet's drawing, in the order from back to front within each list.
struct Drawing {
  std::vector<SheetShape> shapes;
  std::vector<SheetConnector> connectors;
  std::vector<SheetPicture> pictures;
  std::vector<OleObject> objects;

  bool empty() const { return shapes.empty() && connectors.empty() && pictures.empty() && objects.empty(); }
};

/// The measures of a sheet, in points; columns and rows count from 1.
struct SheetGeometry {
  std::function<double(int column)> columnWidth;
  std::function<double(int row)> rowHeight;
};

/// Adds a part to the package and gives the relationship id by which the asking part names it.
using AddMedia = std::function<std::string(const std::string& bytes, std::string_view extension)>;

/// The anchor elements of xl/drawings/drawingN.xml for all but the objects. Ids of shapes count up from `firstId`.
/// Connectors that name a shape which is not there, or have no two points, are left out.
std::string drawingAnchors(const Drawing& drawing, const SheetGeometry& geometry, int firstId,
                           const AddMedia& addMedia);

/// The shape elements of the legacy (VML) drawing that place the objects. Shape numbers count up from `firstShape`;
/// `previews` are the objects' pictures among the legacy drawing's own relationships.
std::string legacyShapes(const Drawing& drawing, const SheetGeometry& geometry, int firstShape,
                         const std::vector<std::string>& previews);

/// A whole legacy drawing around such shapes.
std::string legacyDrawing(std::string_view shapes, int firstShape, std::size_t count);

/// The oleObject elements of the sheet, in the order of the shapes. `books` are the embedded packages among the sheet's
/// relationships.
std::string oleObjects(const Drawing& drawing, int firstShape, const std::vector<std::string>& books);

}  // namespace quillmarden
