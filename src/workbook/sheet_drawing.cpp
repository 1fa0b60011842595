#include "workbook/sheet_drawing.h"

#include <algorithm>
#include <memory>
#include <pugixml.hpp>

#include "workbook/drawing.h"
#include "workbook/emf.h"
#include "workbook/sheet_measure.h"

namespace quillmarden {
namespace {

constexpr std::string_view kImageType = "http://schemas.openxmlformats.org/officeDocument/2006/relationships/image";
constexpr std::string_view kPackageType = "http://schemas.openxmlformats.org/officeDocument/2006/relationships/package";

/// The text with `added` put in front of the root's end tag.
std::string withinRoot(std::string xml, std::string_view added, const std::string& part) {
  const std::size_t last = xml.rfind('<');
  if (last == std::string::npos) throw WorkbookError(WorkbookFault::Damaged, part, "XML がありません.");
  if (xml.compare(last, 2, "</") == 0) return xml.insert(last, added);
  // The root stands alone, as "<xdr:wsDr .../>".
  const std::size_t end = xml.rfind("/>");
  if (end == std::string::npos) throw WorkbookError(WorkbookFault::Damaged, part, "最上位の要素が閉じていません.");
  const std::string name = xml.substr(last + 1, xml.find_first_of(" \t\r\n/>", last + 1) - last - 1);
  return xml.substr(0, end) + ">" + std::string(added) + "</" + name + ">";
}

/// The highest number in the attribute of all elements that the drawing holds, with what stands before the digits left
/// out.
int highestNumber(const std::string& xml, const char* attribute, const std::string& part) {
  pugi::xml_document document;
  if (!document.load_buffer(xml.data(), xml.size())) {
    throw WorkbookError(WorkbookFault::Damaged, part, "XML として読めません.");
  }
  int highest = 0;
  document.find_node([&](pugi::xml_node node) {
    const std::string_view value = node.attribute(attribute).value();
    const std::size_t digits = value.find_last_not_of("0123456789");
    const std::string number(digits == std::string_view::npos ? value : value.substr(digits + 1));
    if (!number.empty() && number.size() < 9) highest = std::max(highest, std::stoi(number));
    return false;
  });
  return highest;
}

void addAnchors(Workbook& book, int sheet, const Drawing& drawing, const SheetGeometry& geometry) {
  const std::string part = book.drawingPart(sheet);
  std::string xml = book.package().bytes(part);
  const auto addPicture = [&](const std::string& bytes, std::string_view extension) {
    return book.package().relate(part, kImageType, book.addMedia(bytes, extension));
  };
  const int firstId = std::max(1, highestNumber(xml, "id", part)) + 1;
  const std::string anchors = drawingAnchors(drawing, geometry, firstId, addPicture);
  book.package().set(part, withinRoot(std::move(xml), anchors, part));
}

/// Makes the objects one after the other while the package is written. Book and picture of an object are written side
/// by side, so the last one is kept.
class ObjectMaker {
 public:
  explicit ObjectMaker(const std::vector<OleObject>& objects) {
    for (const OleObject& object : objects) makers_.push_back(object.make);
  }

  const EmbeddedBook& object(std::size_t number) {
    if (last_ != number) made_ = makers_[number]();
    last_ = number;
    return made_;
  }

 private:
  std::vector<std::function<EmbeddedBook()>> makers_;
  std::size_t last_ = static_cast<std::size_t>(-1);
  EmbeddedBook made_;
};

void addObjects(Workbook& book, int sheet, const Drawing& drawing, const SheetGeometry& geometry) {
  const std::string former = book.legacyDrawingPart(sheet);
  std::string xml = former.empty() ? "" : book.package().bytes(former);
  const int firstShape = xml.empty()
                             ? (sheet + 1) * kShapesABlock + 1
                             : std::max(highestNumber(xml, "id", former), highestNumber(xml, "o:spid", former)) + 1;
  // The part comes first, for its relationships.
  const std::string part = former.empty() ? book.setLegacyDrawing(sheet, "<xml/>") : former;
  const auto maker = std::make_shared<ObjectMaker>(drawing.objects);
  std::vector<std::string> books;
  std::vector<std::string> previews;
  for (std::size_t i = 0; i < drawing.objects.size(); ++i) {
    books.push_back(book.addMedia([maker, i] { return maker->object(i).book; }, "xlsx"));
    previews.push_back(book.addMedia([maker, i] { return maker->object(i).preview; }, "emf"));
  }
  const std::string shapes =
      legacyShapes(drawing, geometry, firstShape, book.package().relateAll(part, kImageType, previews));
  book.setLegacyDrawing(sheet, xml.empty() ? legacyDrawing(shapes, firstShape, drawing.objects.size())
                                           : withinRoot(std::move(xml), shapes, part));

  const std::string objects =
      oleObjects(drawing, firstShape, book.package().relateAll(book.sheetPart(sheet), kPackageType, books));
  const std::string present = book.sheet(sheet).element("oleObjects");
  book.sheet(sheet).setElement("oleObjects", present.empty() ? "<oleObjects>" + objects + "</oleObjects>"
                                                             : withinRoot(present, objects, "oleObjects"));
}

std::uint32_t rgbOf(const CellColor& colour, std::uint32_t otherwise) {
  switch (colour.kind) {
    case CellColor::Kind::Rgb:
      return colour.value & 0xFFFFFFU;
    case CellColor::Kind::Indexed:
      // The file counts the palette from 8 on; 64 and 65 are the system's own colours.
      return colour.value >= 8 && colour.value < 64 ? paletteRgb(static_cast<int>(colour.value) - 7) : otherwise;
    default:
      return otherwise;
  }
}

double lineWidth(LineKind kind) {
  switch (kind) {
    case LineKind::Thick:
      return 2.25;
    case LineKind::Medium:
    case LineKind::MediumDashed:
    case LineKind::MediumDashDot:
    case LineKind::MediumDashDotDot:
      return 1.5;
    case LineKind::Hair:
      return 0.25;
    default:
      return 0.75;
  }
}

/// Draws cells at their place; positions count from the corner of the range.
class CellPainter {
 public:
  CellPainter(Emf& emf, const Worksheet& sheet, const SheetMeasure& measure, const CellRange& range, FontBook& fonts)
      : emf_(emf), sheet_(sheet), measure_(measure), range_(range), fonts_(fonts) {}

  void fill(CellRef cell) const {
    const CellFill fill = sheet_.style(cell).fill;
    if (fill.pattern == FillPattern::Solid) emf_.fill(area(CellRange(cell)), rgbOf(fill.foreground, 0xFFFFFF));
  }

  void text(CellRef cell) const {
    const std::string text = sheet_.text(cell);
    if (text.empty()) return;
    constexpr double kPadding = 2;
    const CellStyle style = sheet_.style(cell);
    Emf::Rectangle place = area(sheet_.mergedRange(cell));
    place.left += kPadding;
    place.width = std::max(1.0, place.width - 2 * kPadding);
    const SizedFont font{style.font.name, style.font.size, style.font.bold};
    const double wide = textWidth(fonts_, font, text);
    const double squeeze = style.alignment.shrink && wide > place.width ? place.width / wide : 1;
    const bool centred = style.alignment.horizontal == HorizontalAlign::Center;
    emf_.text(place, text, font, rgbOf(style.font.color, 0), centred ? Emf::Align::Centre : Emf::Align::Left, fonts_,
              squeeze);
  }

  void borders(CellRef cell) const {
    const CellBorder border = sheet_.style(cell).border;
    const Emf::Rectangle place = area(CellRange(cell));
    const double right = place.left + place.width;
    const double bottom = place.top + place.height;
    line(border.left, place.left, place.top, place.left, bottom);
    line(border.right, right, place.top, right, bottom);
    line(border.top, place.left, place.top, right, place.top);
    line(border.bottom, place.left, bottom, right, bottom);
  }

 private:
  Emf::Rectangle area(const CellRange& cells) const {
    return {measure_.rangeWidth(range_.first.column, cells.first.column - 1),
            measure_.rangeHeight(range_.first.row, cells.first.row - 1),
            measure_.rangeWidth(cells.first.column, cells.last.column),
            measure_.rangeHeight(cells.first.row, cells.last.row)};
  }

  void line(const BorderLine& line, double fromX, double fromY, double toX, double toY) const {
    if (line.kind == LineKind::None) return;
    emf_.line(fromX, fromY, toX, toY, lineWidth(line.kind), rgbOf(line.color, 0));
  }

  Emf& emf_;
  const Worksheet& sheet_;
  const SheetMeasure& measure_;
  const CellRange& range_;
  FontBook& fonts_;
};

}  // namespace

void addDrawing(Workbook& book, int sheet, const Drawing& drawing, FontBook& fonts) {
  const SheetMeasure measure(book, sheet, fonts);
  const SheetGeometry geometry = geometryOf(measure);
  if (!drawing.shapes.empty() || !drawing.pictures.empty()) addAnchors(book, sheet, drawing, geometry);
  if (!drawing.objects.empty()) addObjects(book, sheet, drawing, geometry);
}

std::string previewOf(const Workbook& book, int sheet, const CellRange& range, FontBook& fonts,
                      const std::vector<SheetPicture>& pictures) {
  const Worksheet& cells = book.sheet(sheet);
  const SheetMeasure measure(book, sheet, fonts);
  const double width = measure.rangeWidth(range.first.column, range.last.column);
  const double height = measure.rangeHeight(range.first.row, range.last.row);
  Emf emf(width, height);
  emf.fill({0, 0, width, height}, 0xFFFFFF);
  const CellPainter painter(emf, cells, measure, range, fonts);
  const auto eachCell = [&range](auto&& paint) {
    for (int row = range.first.row; row <= range.last.row; ++row) {
      for (int column = range.first.column; column <= range.last.column; ++column) paint(CellRef{row, column});
    }
  };
  // Fills first and lines last, so that no cell covers its neighbour's line.
  eachCell([&](CellRef cell) { painter.fill(cell); });
  eachCell([&](CellRef cell) { painter.text(cell); });
  for (const SheetPicture& picture : pictures) {
    emf.bitmap({picture.box.left, picture.box.top, picture.box.width, picture.box.height}, picture.bytes);
  }
  eachCell([&](CellRef cell) { painter.borders(cell); });
  return emf.bytes();
}

}  // namespace quillmarden
