#include "workbook/drawing.h"

#include <fmt/format.h>

#include <algorithm>
#include <array>
#include <cmath>

#include "workbook/units.h"
#include "workbook/xml_text.h"

namespace quillmarden {
namespace {

constexpr double kUnitsPerPoint = 12700;  // English Metric Units

std::int64_t units(double points) { return std::llround(points * kUnitsPerPoint); }

std::string escaped(std::string_view text) {
  std::string out;
  appendXmlAttribute(out, text);
  return out;
}

/// A position on the sheet as a cell (from 0) and the rest inside it.
struct CellPoint {
  int cell = 0;
  double rest = 0;
};

/// Finds cells by their distance from the sheet's edge; what was measured once is kept.
class Ruler {
 public:
  explicit Ruler(const std::function<double(int)>& size) : size_(size) {}

  CellPoint at(double position) {
    constexpr int kMost = 1'048'576;
    while (ends_.empty() || (ends_.back() <= position && static_cast<int>(ends_.size()) < kMost)) {
      const double before = ends_.empty() ? 0 : ends_.back();
      ends_.push_back(before + std::max(0.0, size_(static_cast<int>(ends_.size()) + 1)));
    }
    const auto found = std::ranges::upper_bound(ends_, position);
    const auto cell = std::min<std::ptrdiff_t>(found - ends_.begin(), std::ssize(ends_) - 1);
    const double start = cell == 0 ? 0 : ends_[static_cast<std::size_t>(cell - 1)];
    return {static_cast<int>(cell), std::max(0.0, position - start)};
  }

 private:
  const std::function<double(int)>& size_;
  std::vector<double> ends_;
};

struct Rulers {
  Ruler columns;
  Ruler rows;

  explicit Rulers(const SheetGeometry& geometry) : columns(geometry.columnWidth), rows(geometry.rowHeight) {}
};

std::string corner(std::string_view element, Rulers& rulers, double x, double y) {
  const CellPoint column = rulers.columns.at(x);
  const CellPoint row = rulers.rows.at(y);
  return fmt::format(
      "<xdr:{0}><xdr:col>{1}</xdr:col><xdr:colOff>{2}</xdr:colOff><xdr:row>{3}</xdr:row><xdr:rowOff>{4}</xdr:rowOff>"
      "</xdr:{0}>",
      element, column.cell, units(column.rest), row.cell, units(row.rest));
}

std::string anchored(Rulers& rulers, const Box& box, std::string_view content) {
  // The prefixes stand here since a template's drawing may use others.
  return fmt::format(
      "<xdr:twoCellAnchor xmlns:xdr=\"http://schemas.openxmlformats.org/drawingml/2006/spreadsheetDrawing\" "
      "xmlns:a=\"http://schemas.openxmlformats.org/drawingml/2006/main\" editAs=\"oneCell\">{}{}{}<xdr:clientData/>"
      "</xdr:twoCellAnchor>",
      corner("from", rulers, box.left, box.top), corner("to", rulers, box.left + box.width, box.top + box.height),
      content);
}

std::string transform(const Box& box, std::string_view attributes = "") {
  return fmt::format("<a:xfrm{}><a:off x=\"{}\" y=\"{}\"/><a:ext cx=\"{}\" cy=\"{}\"/></a:xfrm>", attributes,
                     units(box.left), units(box.top), units(box.width), units(box.height));
}

std::string solid(std::uint32_t colour) {
  return fmt::format("<a:solidFill><a:srgbClr val=\"{:06X}\"/></a:solidFill>", colour);
}

std::string runProperties(const ShapeText& text) {
  std::string attributes = fmt::format("lang=\"ja-JP\" sz=\"{}\"", std::lround(text.font.size * 100));
  if (text.font.bold) attributes += " b=\"1\"";
  if (text.underline) attributes += " u=\"sng\"";
  if (text.strikethrough) attributes += " strike=\"sngStrike\"";
  if (text.superscript) attributes += " baseline=\"30000\"";
  if (text.subscript) attributes += " baseline=\"-25000\"";
  std::string inner;
  if (text.outline) inner += "<a:ln w=\"6350\">" + solid(text.colour.value_or(0)) + "</a:ln>";
  if (text.colour || text.outline) inner += solid(text.outline ? 0xFFFFFF : *text.colour);
  if (text.shadow)
    inner +=
        "<a:effectLst><a:outerShdw dist=\"12700\" dir=\"2700000\"><a:prstClr "
        "val=\"gray\"/></a:outerShdw></a:effectLst>";
  const std::string font = escaped(text.font.family);
  inner += fmt::format("<a:latin typeface=\"{0}\"/><a:ea typeface=\"{0}\"/>", font);
  return attributes + ">" + inner;
}

std::string paragraphs(const ShapeText& text, bool centred) {
  const std::string_view alignment = centred ? "<a:pPr algn=\"ctr\"/>" : "";
  const std::string properties = runProperties(text);
  std::string out;
  std::string_view rest = text.text;
  while (true) {
    const std::size_t end = rest.find('\n');
    const std::string_view line = rest.substr(0, end);
    out += line.empty() ? fmt::format("<a:p>{}<a:endParaRPr {}</a:endParaRPr></a:p>", alignment, properties)
                        : fmt::format("<a:p>{}<a:r><a:rPr {}</a:rPr><a:t>{}</a:t></a:r></a:p>", alignment, properties,
                                      escaped(line));
    if (end == std::string_view::npos) {
      return out;
    }
    rest.remove_prefix(end + 1);
  }
}

std::string_view presetOf(ShapeKind kind) { return kind == ShapeKind::MagneticDisk ? "flowChartMagneticDisk" : "rect"; }

// The number of the connection site in the middle of an edge, as the preset counts its sites.
int siteOf(ShapeKind kind, ShapeEdge edge) {
  const int rectangle = static_cast<int>(edge);
  // The disk's upper face has a site of its own, in front of the others.
  return kind == ShapeKind::MagneticDisk ? rectangle + 1 : rectangle;
}

std::string shapeXml(const SheetShape& shape, int id) {
  const std::string fill = shape.fill ? solid(*shape.fill) : "<a:noFill/>";
  const std::string_view effects =
      shape.shadow ? "<a:effectLst><a:outerShdw blurRad=\"38100\" dist=\"38100\" dir=\"2700000\" algn=\"tl\" "
                     "rotWithShape=\"0\"><a:srgbClr val=\"808080\"><a:alpha val=\"60000\"/></a:srgbClr></a:outerShdw>"
                     "</a:effectLst>"
                   : "";
  return fmt::format(
      "<xdr:sp macro=\"\" textlink=\"\"><xdr:nvSpPr><xdr:cNvPr id=\"{}\" name=\"{}\"/><xdr:cNvSpPr{}/></xdr:nvSpPr>"
      "<xdr:spPr>{}<a:prstGeom prst=\"{}\"><a:avLst/></a:prstGeom>{}<a:ln w=\"{}\">{}</a:ln>{}</xdr:spPr>"
      "<xdr:txBody><a:bodyPr vertOverflow=\"clip\" wrap=\"square\" lIns=\"45720\" tIns=\"27432\" rIns=\"45720\" "
      "bIns=\"27432\" anchor=\"{}\"><a:noAutofit/></a:bodyPr><a:lstStyle/>{}</xdr:txBody></xdr:sp>",
      id, escaped(shape.name), shape.kind == ShapeKind::TextBox ? " txBox=\"1\"" : "", transform(shape.box),
      presetOf(shape.kind), fill, units(shape.lineWeight), solid(shape.lineColour), effects,
      shape.centred ? "ctr" : "t", paragraphs(shape.text, shape.centred));
}

/// The smallest box around the points, at least as thick as a line.
Box around(const std::vector<Point>& points) {
  const auto [left, right] = std::ranges::minmax(points, {}, &Point::x);
  const auto [top, bottom] = std::ranges::minmax(points, {}, &Point::y);
  return {left.x, top.y, right.x - left.x, bottom.y - top.y};
}

/// A connector of the shape that programs bend by themselves, between the ends of the line. Where it bends is told in
/// fractions of the box around both ends.
std::string bentConnector(const SheetConnector& connector, std::string_view head, std::string_view line,
                          Rulers& rulers) {
  const std::vector<Point>& points = connector.points;
  const Point from = points.front();
  const Point to = points.back();
  Box box = around({from, to});
  const bool bent = points.size() > 2;
  constexpr double kThinnest = 1;  // a connector as thin as nothing has no place to bend
  if (bent) box = {box.left, box.top, std::max(box.width, kThinnest), std::max(box.height, kThinnest)};
  const std::string flips =
      fmt::format("{}{}", to.x < from.x ? " flipH=\"1\"" : "", to.y < from.y ? " flipV=\"1\"" : "");
  std::string bends;
  for (std::size_t i = 1; i + 2 < points.size(); ++i) {
    const bool across = i % 2 == 1;
    const double way =
        across ? (points[i].x - from.x) * (to.x < from.x ? -1 : 1) : (points[i].y - from.y) * (to.y < from.y ? -1 : 1);
    bends += fmt::format("<a:gd name=\"adj{}\" fmla=\"val {}\"/>", i,
                         std::llround(way / (across ? box.width : box.height) * 100000));
  }
  const std::string preset = bent ? fmt::format("bentConnector{}", points.size() - 1) : "straightConnector1";
  return anchored(rulers, box,
                  fmt::format("<xdr:cxnSp macro=\"\">{}<xdr:spPr>{}<a:prstGeom prst=\"{}\"><a:avLst>{}</a:avLst>"
                              "</a:prstGeom>{}</xdr:spPr></xdr:cxnSp>",
                              head, transform(box, flips), preset, bends, line));
}

/// The same line as a drawn one.
std::string drawnLine(const SheetConnector& connector, std::string_view line, Rulers& rulers) {
  const Box box = around(connector.points);
  std::string path;
  for (const Point& point : connector.points) {
    path += fmt::format("<a:{0}><a:pt x=\"{1}\" y=\"{2}\"/></a:{0}>", path.empty() ? "moveTo" : "lnTo",
                        units(point.x - box.left), units(point.y - box.top));
  }
  return anchored(
      rulers, box,
      fmt::format("<xdr:sp macro=\"\" textlink=\"\"><xdr:nvSpPr><xdr:cNvPr id=\"0\" name=\"{}\"/><xdr:cNvSpPr/>"
                  "</xdr:nvSpPr><xdr:spPr>{}<a:custGeom><a:avLst/><a:gdLst/><a:ahLst/><a:cxnLst/>"
                  "<a:rect l=\"0\" t=\"0\" r=\"r\" b=\"b\"/><a:pathLst><a:path w=\"{}\" h=\"{}\" fill=\"none\">{}"
                  "</a:path></a:pathLst></a:custGeom><a:noFill/>{}</xdr:spPr></xdr:sp>",
                  escaped(connector.name), transform(box), units(box.width), units(box.height), path, line));
}

std::string connectorXml(const Drawing& drawing, const SheetConnector& connector, int id, int firstShapeId,
                         Rulers& rulers) {
  if (connector.fromShape >= drawing.shapes.size() || connector.toShape >= drawing.shapes.size() ||
      connector.points.size() < 2) {
    return "";
  }
  const std::string head = fmt::format(
      "<xdr:nvCxnSpPr><xdr:cNvPr id=\"{}\" name=\"{}\"/><xdr:cNvCxnSpPr><a:stCxn id=\"{}\" idx=\"{}\"/>"
      "<a:endCxn id=\"{}\" idx=\"{}\"/></xdr:cNvCxnSpPr></xdr:nvCxnSpPr>",
      id, escaped(connector.name), firstShapeId + static_cast<int>(connector.fromShape),
      siteOf(drawing.shapes[connector.fromShape].kind, connector.fromEdge),
      firstShapeId + static_cast<int>(connector.toShape),
      siteOf(drawing.shapes[connector.toShape].kind, connector.toEdge));
  const std::string line = "<a:ln w=\"9525\">" + solid(connector.colour) + "<a:tailEnd type=\"triangle\"/></a:ln>";
  // Only the program of which these names are keeps a connector's bends; others would lay the line anew, through boxes,
  // and get it as a drawn one.
  return fmt::format(
      "<mc:AlternateContent xmlns:mc=\"http://schemas.openxmlformats.org/markup-compatibility/2006\"><mc:Choice "
      "xmlns:xdr14=\"http://schemas.microsoft.com/office/excel/2010/spreadsheetDrawing\" Requires=\"xdr14\">{}"
      "</mc:Choice><mc:Fallback>{}</mc:Fallback></mc:AlternateContent>",
      bentConnector(connector, head, line, rulers), drawnLine(connector, line, rulers));
}

std::string pictureXml(const SheetPicture& picture, int id, std::string_view relationship) {
  return fmt::format(
      "<xdr:pic><xdr:nvPicPr><xdr:cNvPr id=\"{}\" name=\"{}\"/><xdr:cNvPicPr><a:picLocks noChangeAspect=\"1\"/>"
      "</xdr:cNvPicPr></xdr:nvPicPr><xdr:blipFill><a:blip "
      "xmlns:r=\"http://schemas.openxmlformats.org/officeDocument/2006/relationships\" r:embed=\"{}\"/>"
      "<a:stretch><a:fillRect/></a:stretch></xdr:blipFill><xdr:spPr>{}<a:prstGeom prst=\"rect\"><a:avLst/>"
      "</a:prstGeom></xdr:spPr></xdr:pic>",
      id, escaped(picture.name), relationship, transform(picture.box));
}

int pixels(double points) { return static_cast<int>(std::lround(points * kPixelsPerPoint)); }

// Names of legacy shapes are XML ids: what those can't hold stands as _x0000_ escapes.
std::string legacyName(std::string_view name) {
  std::string out;
  for (const char c : xmlSafe(name)) {
    const auto byte = static_cast<unsigned char>(c);
    const bool plain = byte >= 0x80 || (c >= '0' && c <= '9') || (c >= 'A' && c <= 'Z') || (c >= 'a' && c <= 'z') ||
                       c == '_' || c == '-' || c == '.';
    out += plain ? std::string(1, c) : fmt::format("_x{:04x}_", byte);
  }
  return out;
}

std::string legacyShape(const OleObject& object, int number, std::size_t order, std::string_view relationship,
                        Rulers& rulers) {
  const Box& box = object.box;
  const CellPoint left = rulers.columns.at(box.left);
  const CellPoint top = rulers.rows.at(box.top);
  const CellPoint right = rulers.columns.at(box.left + box.width);
  const CellPoint bottom = rulers.rows.at(box.top + box.height);
  const std::string_view shadow = object.shadow ? "<v:shadow on=\"t\" color=\"gray\" offset=\"3pt,3pt\"/>" : "";
  return fmt::format(
      "<v:shape id=\"{}\" o:spid=\"_x0000_s{}\" type=\"#_x0000_t75\" "
      "style='position:absolute;margin-left:{:.2f}pt;margin-top:{:.2f}pt;width:{:.2f}pt;height:{:.2f}pt;z-index:{}' "
      "filled=\"t\" fillcolor=\"window [65]\" stroked=\"t\" strokecolor=\"windowText [64]\" strokeweight=\"{:.2f}pt\" "
      "o:insetmode=\"auto\">"
      "<v:fill color2=\"window [65]\"/>{}<v:imagedata o:relid=\"{}\" o:title=\"\"/>"
      "<x:ClientData ObjectType=\"Pict\"><x:SizeWithCells/><x:Anchor>{}, {}, {}, {}, {}, {}, {}, {}</x:Anchor>"
      "<x:CF>Pict</x:CF><x:AutoPict/></x:ClientData></v:shape>",
      legacyName(object.name), number, box.left, box.top, box.width, box.height, order + 1, object.lineWeight, shadow,
      relationship, left.cell, pixels(left.rest), top.cell, pixels(top.rest), right.cell, pixels(right.rest),
      bottom.cell, pixels(bottom.rest));
}

}  // namespace

std::string drawingAnchors(const Drawing& drawing, const SheetGeometry& geometry, int firstId,
                           const AddMedia& addMedia) {
  Rulers rulers(geometry);
  std::string out;
  int id = firstId;
  for (const SheetPicture& picture : drawing.pictures) {
    out += anchored(rulers, picture.box, pictureXml(picture, id++, addMedia(picture.bytes, picture.extension)));
  }
  // Lines stand behind the boxes that they join.
  const int firstShapeId = id;
  id += static_cast<int>(drawing.shapes.size());
  for (const SheetConnector& connector : drawing.connectors) {
    out += connectorXml(drawing, connector, id++, firstShapeId, rulers);
  }
  id = firstShapeId;
  for (const SheetShape& shape : drawing.shapes) {
    out += anchored(rulers, shape.box, shapeXml(shape, id++));
  }
  return out;
}

std::string legacyShapes(const Drawing& drawing, const SheetGeometry& geometry, int firstShape,
                         const std::vector<std::string>& previews) {
  Rulers rulers(geometry);
  std::string out;
  for (std::size_t i = 0; i < drawing.objects.size(); ++i) {
    const OleObject& object = drawing.objects[i];
    out += legacyShape(object, firstShape + static_cast<int>(i), i, previews[i], rulers);
  }
  return out;
}

std::string legacyDrawing(std::string_view shapes, int firstShape, std::size_t count) {
  const int first = firstShape / kShapesABlock;
  const int last = (firstShape + std::max(0, static_cast<int>(count) - 1)) / kShapesABlock;
  std::string blocks;
  for (int block = first; block <= last; ++block) {
    blocks += fmt::format("{}{}", block == first ? "" : ",", block);
  }
  return fmt::format(
      "<xml xmlns:v=\"urn:schemas-microsoft-com:vml\" xmlns:o=\"urn:schemas-microsoft-com:office:office\" "
      "xmlns:x=\"urn:schemas-microsoft-com:office:excel\">"
      "<o:shapelayout v:ext=\"edit\"><o:idmap v:ext=\"edit\" data=\"{}\"/></o:shapelayout>"
      "<v:shapetype id=\"_x0000_t75\" coordsize=\"21600,21600\" o:spt=\"75\" o:preferrelative=\"t\" "
      "path=\"m@4@5l@4@11@9@11@9@5xe\" filled=\"f\" stroked=\"f\"><v:stroke joinstyle=\"miter\"/><v:formulas>"
      "<v:f eqn=\"if lineDrawn pixelLineWidth 0\"/><v:f eqn=\"sum @0 1 0\"/><v:f eqn=\"sum 0 0 @1\"/>"
      "<v:f eqn=\"prod @2 1 2\"/><v:f eqn=\"prod @3 21600 pixelWidth\"/><v:f eqn=\"prod @3 21600 pixelHeight\"/>"
      "<v:f eqn=\"sum @0 0 1\"/><v:f eqn=\"prod @6 1 2\"/><v:f eqn=\"prod @7 21600 pixelWidth\"/>"
      "<v:f eqn=\"sum @8 21600 0\"/><v:f eqn=\"prod @7 21600 pixelHeight\"/><v:f eqn=\"sum @10 21600 0\"/>"
      "</v:formulas><v:path o:extrusionok=\"f\" gradientshapeok=\"t\" o:connecttype=\"rect\"/>"
      "<o:lock v:ext=\"edit\" aspectratio=\"t\"/></v:shapetype>{}</xml>",
      blocks, shapes);
}

std::string oleObjects(const Drawing& drawing, int firstShape, const std::vector<std::string>& books) {
  std::string out;
  for (std::size_t i = 0; i < drawing.objects.size(); ++i) {
    out += fmt::format("<oleObject progId=\"Excel.Sheet.12\" shapeId=\"{}\" r:id=\"{}\"/>",
                       firstShape + static_cast<int>(i), books[i]);
  }
  return out;
}

}  // namespace quillmarden
