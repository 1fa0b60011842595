#include <algorithm>
#include <map>

#include "common/message.h"
#include "excel/er_book.h"
#include "excel/er_parts.h"
#include "workbook/sheet_drawing.h"

namespace quillmarden {
namespace {

constexpr double kSideRoom = 16;  ///< points beside a shape's text
constexpr double kDiskHeight = 54;
constexpr double kTextBoxHeight = 24;

/// The edges by which a line between two boxes is shortest: sides that face each other, else both right ones.
std::pair<ShapeEdge, ShapeEdge> edgesBetween(const Box& from, const Box& to) {
  if (to.left >= from.left + from.width) return {ShapeEdge::Right, ShapeEdge::Left};
  if (to.left + to.width <= from.left) return {ShapeEdge::Left, ShapeEdge::Right};
  return {ShapeEdge::Right, ShapeEdge::Right};
}

/// A line from each table to those that its foreign keys name.
void connect(Drawing& drawing, const std::vector<ErTable>& tables) {
  std::map<std::string_view, std::size_t> places;
  for (std::size_t i = 0; i < tables.size(); ++i) places.emplace(tables[i].id, i);
  for (std::size_t from = 0; from < tables.size(); ++from) {
    for (const std::string& target : tables[from].targets) {
      const auto to = places.find(target);
      if (to == places.end() || to->second == from) continue;
      const auto [fromEdge, toEdge] = edgesBetween(drawing.shapes[from].box, drawing.shapes[to->second].box);
      drawing.connectors.push_back(
          {"FK " + tables[from].name + " - " + tables[to->second].name, from, fromEdge, to->second, toEdge});
    }
  }
}

Drawing drawShapes(BookRun& run, const std::vector<ErTable>& tables, ShapeKind kind, bool shadow) {
  const SizedFont font = erFont();
  const bool disks = kind == ShapeKind::MagneticDisk;
  std::vector<Box> sizes;
  for (const ErTable& table : tables) {
    sizes.push_back(
        {0, 0, textWidth(run.fonts, font, table.name) + 2 * kSideRoom, disks ? kDiskHeight : kTextBoxHeight});
  }
  const auto chosen = static_cast<std::size_t>(std::ranges::count(tables, false, &ErTable::extra));
  const std::vector<Box> places = placeErBoxes(sizes, chosen, erGapUnit(run.fonts, font));
  Drawing drawing;
  for (std::size_t i = 0; i < tables.size(); ++i) {
    SheetShape shape;
    shape.name = tables[i].name;
    shape.kind = kind;
    shape.box = places[i];
    shape.text.text = tables[i].name;
    shape.text.font = font;
    shape.centred = true;
    shape.shadow = shadow;
    drawing.shapes.push_back(std::move(shape));
  }
  connect(drawing, tables);
  return drawing;
}

void saveShapes(Session& session, Host& host, BookRun& run, const Drawing& drawing, const std::string& path) {
  const SizedFont font = erFont();
  Workbook book = Workbook::create({.sheetName = "ER図", .fontName = font.family, .fontSize = font.size});
  book.sheet(0).select(cellAt("A1"));
  book.sheet(0).setShowGridLines(false);
  setUpErPage(book.sheet(0), host.clock.now());
  addDrawing(book, 0, drawing, run.fonts);
  saveBook(session, host, book, session.gCurrentSystemName, path, host.dialogs.stopRequested);
}

}  // namespace

std::string pPutExcel2ERTextBox(Session& session, Host& host, BookRun& run, const frmTBList& list, frmTBDetail& detail,
                                const ErChoice& choice) {
  return runErForm(session, host, run, choice.openAfter, true, [&]() -> std::string {
    const std::string path = erFile(session, host, run, choice.bookName, "_ER.xls");
    if (path.empty()) return "";
    bool stopped = false;
    const std::vector<ErTable> tables = readErTables(session, host, list, detail, stopped);
    if (stopped) return endStopped(host, run);
    saveShapes(session, host, run, drawShapes(run, tables, ShapeKind::TextBox, session.settings.excelObject2SetKage),
               path);
    return path;
  });
}

std::string pPutCurrentTable2ExcelDisk(Session& session, Host& host, BookRun& run, const frmTBList& list,
                                       frmTBDetail& detail, bool openAfter) {
  return runErForm(session, host, run, openAfter, true, [&]() -> std::string {
    const std::string path = workFile(session, run, "temptemptemp.xls");
    if (outputRefused(session, host, path)) return "";
    if (inUse(path)) {
      gMsgBox(host, "作業ファイルが使用中かな?", kOkOnly, "使用中?");
      return "";
    }
    bool stopped = false;
    const std::vector<ErTable> tables = readErTables(session, host, list, detail, stopped);
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
