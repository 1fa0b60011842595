#include <algorithm>
#include <map>

#include "common/message.h"
#include "excel/er_book.h"
#include "excel/er_parts.h"
#include "excel/er_routing.h"
#include "workbook/sheet_drawing.h"

namespace quillmarden {
namespace {

constexpr double kSideRoom = 16;  ///< points beside a shape's text
constexpr double kDiskHeight = 54;
constexpr double kTextBoxHeight = 24;
constexpr double kDiskSide = 2.0 / 3;  ///< the part of a disk's height where its sides are straight
constexpr double kPageShape = 1.5;     ///< of the printed part of a landscape page, width to height

/// The shapes show names alone.
void withoutFields(ErTable& table) { table.fields = {}; }

/// The references of the tables to each other and to themselves.
std::vector<ErLink> linksOf(const std::vector<ErTable>& tables) {
  std::map<std::string_view, std::size_t> places;
  for (std::size_t i = 0; i < tables.size(); ++i) places.emplace(tables[i].id, i);
  std::vector<ErLink> links;
  for (std::size_t from = 0; from < tables.size(); ++from) {
    for (const std::string& target : tables[from].targets)
      if (const auto to = places.find(target); to != places.end()) links.push_back({from, to->second});
  }
  return links;
}

/// A drawing and how wide and high it is, in points.
struct ShapeSheet {
  Drawing drawing;
  double width = 0;
  double height = 0;
};

ShapeSheet drawShapes(BookRun& run, const std::vector<ErTable>& tables, ShapeKind kind, bool shadow) {
  const SizedFont font = erFont();
  const bool disks = kind == ShapeKind::MagneticDisk;
  std::vector<Box> sizes;
  for (const ErTable& table : tables) {
    sizes.push_back(
        {0, 0, textWidth(run.fonts, font, table.name) + 2 * kSideRoom, disks ? kDiskHeight : kTextBoxHeight});
  }
  const std::vector<ErLink> links = linksOf(tables);
  ErPicture picture = drawErPicture(sizes, links, disks ? kDiskSide : 1, kPageShape);
  ShapeSheet sheet{{}, picture.width, picture.height};
  for (std::size_t i = 0; i < tables.size(); ++i) {
    SheetShape shape;
    shape.name = tables[i].name;
    shape.kind = kind;
    shape.box = picture.boxes[i];
    shape.text.text = tables[i].name;
    shape.text.font = font;
    shape.centred = true;
    shape.shadow = shadow;
    sheet.drawing.shapes.push_back(std::move(shape));
  }
  for (std::size_t i = 0; i < links.size(); ++i) {
    ErRoute& route = picture.routes[i];
    sheet.drawing.connectors.push_back({"FK " + tables[links[i].from].name + " - " + tables[links[i].to].name,
                                        links[i].from, route.fromEdge, links[i].to, route.toEdge,
                                        std::move(route.points)});
  }
  return sheet;
}

/// The paper on which the texts of the one page can be read: the larger one for a drawing that would be printed too
/// small on the usual one.
int paperFor(const ShapeSheet& shapes) {
  constexpr double kUsualWidth = 741;  // points between the margins
  constexpr double kUsualHeight = 487;
  constexpr double kLeastText = 7;
  const double scale = std::min(kUsualWidth / shapes.width, kUsualHeight / shapes.height);
  return scale * erFont().size < kLeastText ? er_paper::kA3 : er_paper::kA4;
}

void saveShapes(Session& session, Host& host, BookRun& run, const ShapeSheet& shapes, const std::string& path) {
  const SizedFont font = erFont();
  Workbook book = Workbook::create({.sheetName = "ER図", .fontName = font.family, .fontSize = font.size});
  book.sheet(0).select(cellAt("A1"));
  book.sheet(0).setShowGridLines(false);
  setUpErPage(book.sheet(0), host.clock.now(), paperFor(shapes));
  addDrawing(book, 0, shapes.drawing, run.fonts);
  saveBook(session, host, book, session.gCurrentSystemName, path, host.dialogs.stopRequested);
}

}  // namespace

std::string pPutExcel2ERTextBox(Session& session, Host& host, BookRun& run, const frmTBList& list, frmTBDetail& detail,
                                const ErChoice& choice) {
  return runErForm(session, host, run, choice.openAfter, true, [&]() -> std::string {
    const std::string path = erFile(session, host, run, choice.bookName, "_ER.xls");
    if (path.empty()) return "";
    bool stopped = false;
    const std::vector<ErTable> tables = readErTables(session, host, list, detail, withoutFields, stopped);
    if (stopped) return endStopped(host, run);
    saveShapes(session, host, run, drawShapes(run, tables, ShapeKind::TextBox, session.settings.excelObject2SetKage),
               path);
    return path;
  });
}

std::string pPutCurrentTable2ExcelDisk(Session& session, Host& host, BookRun& run, const frmTBList& list,
                                       frmTBDetail& detail, bool openAfter) {
  return runErForm(session, host, run, openAfter, true, [&]() -> std::string {
    const std::string path = temporaryFile(session, "temptemptemp.xls");
    if (outputRefused(session, host, path)) return "";
    if (inUse(path)) {
      gMsgBox(host, "作業ファイルが使用中かな?", kOkOnly, "使用中?");
      return "";
    }
    bool stopped = false;
    const std::vector<ErTable> tables = readErTables(session, host, list, detail, withoutFields, stopped);
    if (stopped) return endStopped(host, run);
    if (tables.empty()) {
      gMsgBox(host, "選択されていません!!", kOkOnly, "ぷんぶん!!");
      return "";
    }
    saveShapes(session, host, run, drawShapes(run, tables, ShapeKind::MagneticDisk, false), path);
    return path;
  });
}

}  // namespace quillmarden
