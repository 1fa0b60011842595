#include "excel/er_book.h"

#include <fmt/format.h>

#include <algorithm>
#include <vector>

#include "common/message.h"
#include "common/paths.h"
#include "common/text.h"
#include "common/text_file.h"
#include "excel/er_parts.h"
#include "workbook/sheet_drawing.h"
#include "workbook/sheet_measure.h"

namespace quillmarden {
namespace {

constexpr double kMarkColumnWidth = 2.13;
constexpr double kPictureScale = 0.56;
constexpr double kObjectScale = 0.99;
constexpr double kPointsPerPixel = 72.0 / 96.0;

/// What tells the two forms of embedded books apart.
struct BookForm {
  std::string_view ending;
  bool newTitles;  ///< a title may end in a full stop and spans all columns
};

/// What all boxes of a run are made from.
struct BoxMaker {
  Session& session;
  Host& host;
  BookRun& run;
  const ErChoice& choice;
  const BookForm& form;
  const std::vector<ErTable>& tables;
  std::string keyPicture;  ///< the bytes of key.bmp; empty without one
  Workbook pattern;        ///< an empty book, whose parts all boxes share

  int columns() const { return choice.fields == ErFields::TwoColumns ? 3 : 2; }
};

/// Leaves of a table the fields and texts that its box shows.
void keepShown(ErTable& table, const ErChoice& choice) {
  std::vector<ErField> shown;
  for (ErField& field : table.fields) {
    const bool left = choice.fields == ErFields::TitleOnly || (choice.fields == ErFields::KeysOnly && !field.key) ||
                      (choice.foreignOnly && !field.foreign);
    if (left) continue;
    if (choice.fields != ErFields::TwoColumns) field.second = {};
    shown.push_back(std::move(field));
  }
  shown.shrink_to_fit();
  table.fields = std::move(shown);
}

std::string markedName(const ErField& field) {
  return std::string(field.key ? "(PK)" : "") + (field.foreign ? "(FK)" : "") + field.name;
}

/// The size of a Windows bitmap in points.
Box pictureSize(const std::string& bmp) {
  const auto pixels = [&bmp](std::size_t at) {
    double value = 0;
    for (std::size_t i = 4; i-- > 0;) value = value * 256 + static_cast<unsigned char>(bmp[at + i]);
    return value;
  };
  constexpr std::size_t kWidthAt = 18;
  constexpr std::size_t kHeightAt = 22;
  if (bmp.size() < kHeightAt + 4) return {};
  return {0, 0, pixels(kWidthAt) * kPointsPerPixel, pixels(kHeightAt) * kPointsPerPixel};
}

std::string titleOf(const BoxMaker& maker, const ErTable& table) {
  return "【" + table.name + (maker.form.newTitles && maker.choice.dotTitle ? "】." : "】");
}

/// Widths that hold the longest text of each column.
void fitColumns(Worksheet& sheet, const BoxMaker& maker, const ErTable& table) {
  constexpr double kRoom = 1.5;  // digits beside the text
  constexpr double kLeast = 8;
  constexpr double kMost = 60;
  FontBook& fonts = maker.run.fonts;
  const SizedFont font = erFont();
  const double digit = digitWidth(fonts, font);
  double name = 0;
  double second = 0;
  for (const ErField& field : table.fields) {
    name = std::max(name, textWidth(fonts, font, markedName(field)));
    second = std::max(second, textWidth(fonts, font, field.second));
  }
  // The title may shrink, but not to half its size.
  const double least = std::max(kLeast, textWidth(fonts, font, titleOf(maker, table)) / digit * 0.8 - kMarkColumnWidth);
  const auto width = [&](double points, double leastWidth) {
    return std::clamp(points / digit + kRoom, leastWidth, kMost);
  };
  sheet.setColumnWidth(2, 2, width(name, std::min(least, kMost)));
  if (maker.columns() == 3) sheet.setColumnWidth(3, 3, width(second, kLeast));
}

Workbook boxPattern(FontBook& fonts) {
  const SizedFont font = erFont();
  Workbook book = Workbook::create({.sheetName = "ER", .fontName = font.family, .fontSize = font.size});
  Worksheet& sheet = book.sheet(0);
  sheet.setShowGridLines(false);
  sheet.setDefaultRowHeight(linesHeight(fonts, font, 1));
  sheet.setColumnWidth(1, 1, kMarkColumnWidth);
  return book;
}

/// The sizes of the boxes, before they are made.
std::vector<Box> boxSizes(const BoxMaker& maker) {
  std::vector<Box> sizes;
  Workbook ruler = maker.pattern.clone();
  for (const ErTable& table : maker.tables) {
    fitColumns(ruler.sheet(0), maker, table);
    const SheetMeasure measure(ruler, 0, maker.run.fonts);
    sizes.push_back({0, 0, measure.rangeWidth(1, maker.columns()) * kObjectScale,
                     measure.rangeHeight(1, static_cast<int>(table.fields.size()) + 1) * kObjectScale});
  }
  return sizes;
}

void frame(Worksheet& sheet, const CellRange& used) {
  for (const BorderIndex diagonal : {BorderIndex::DiagonalDown, BorderIndex::DiagonalUp}) {
    sheet.setBorder(used, diagonal, BorderLine());
  }
  for (const BorderIndex edge :
       {BorderIndex::EdgeLeft, BorderIndex::EdgeTop, BorderIndex::EdgeBottom, BorderIndex::EdgeRight}) {
    sheet.setBorder(used, edge, BorderLine::of(1, 2, -4105));
  }
}

std::vector<SheetPicture> keyPictures(const BoxMaker& maker, const SheetMeasure& measure,
                                      const std::vector<ErField>& fields) {
  std::vector<SheetPicture> pictures;
  if (maker.keyPicture.empty()) return pictures;
  const Box natural = pictureSize(maker.keyPicture);
  const double width = natural.width * kPictureScale;
  const double height = natural.height * kPictureScale;
  for (std::size_t i = 0; i < fields.size(); ++i) {
    if (!fields[i].key) continue;
    const int row = static_cast<int>(i) + 2;
    const double room = measure.rowHeight(row) - height;
    const Box place{(measure.columnWidth(1) - width) / 2, measure.rangeHeight(1, row - 1) + room / 2, width, height};
    pictures.push_back({fmt::format("key{}", row), place, maker.keyPicture, "bmp"});
  }
  return pictures;
}

EmbeddedBook makeBox(const BoxMaker& maker, const ErTable& table) {
  const AppSettings& settings = maker.session.settings;
  const std::vector<ErField>& fields = table.fields;
  const int columns = maker.columns();
  const std::string title = titleOf(maker, table);
  Workbook book = maker.pattern.clone();
  Worksheet& sheet = book.sheet(0);
  fitColumns(sheet, maker, table);

  const auto fill = [&sheet](const CellRange& range, int colourIndex) {
    sheet.changeStyle(range,
                      [colourIndex](CellStyle& style) { style.fill = CellFill::solid(CellColor::index(colourIndex)); });
  };
  for (std::size_t i = 0; i < fields.size(); ++i) {
    const int row = static_cast<int>(i) + 2;
    if (fields[i].key) fill({{row, 2}, {row, columns}}, settings.backColorKeyIndex);
    sheet.setText({row, 2}, markedName(fields[i]));
    if (columns == 3) sheet.setText({row, 3}, fields[i].second);
  }
  const CellRange head({1, 1}, {1, columns});
  sheet.setText({1, 1}, title);
  sheet.merge(maker.form.newTitles ? head : rangeAt("A1:B1"));
  sheet.changeStyle(head, [](CellStyle& style) {
    style.alignment.horizontal = HorizontalAlign::Center;
    style.alignment.shrink = true;
    style.font.bold = true;
  });
  fill(head, settings.backColorTableNameIndex);
  const CellRange used({1, 1}, {static_cast<int>(fields.size()) + 1, columns});
  frame(sheet, used);
  sheet.setBorder(head, BorderIndex::EdgeBottom, BorderLine::of(1, 2, -4105));
  noteCutTexts(maker.run, sheet, [&](CellRef cell) {
    return cell.row == 1 ? table.name : table.name + " : " + fields[static_cast<std::size_t>(cell.row - 2)].name;
  });

  const SheetMeasure measure(book, 0, maker.run.fonts);
  Drawing drawing;
  drawing.pictures = keyPictures(maker, measure, fields);
  if (!drawing.empty()) addDrawing(book, 0, drawing, maker.run.fonts);
  book.setVisibleRange(used);
  return {book.bytes(), previewOf(book, 0, used, maker.run.fonts, drawing.pictures)};
}

/// The box of a table while the sheet is written.
EmbeddedBook nextBox(const BoxMaker& maker, std::size_t number) {
  const ErTable& table = maker.tables[number];
  EmbeddedBook made = forTable(table.name, [&] { return makeBox(maker, table); });
  maker.session.log.gPutLog(maker.host, "OLE Insert FileExcel_ER:" + table.name);
  maker.host.dialogs.progress(static_cast<long>(number + 1), static_cast<long>(maker.tables.size()));
  maker.host.dialogs.yield();
  return made;
}

std::string keyPicture(const Host& host) {
  std::error_code error;
  return readFile(host.machine.programFolder / "key.bmp", error).value_or("");
}

std::string putEmbeddedBooks(Session& session, Host& host, BookRun& run, const frmTBList& list, frmTBDetail& detail,
                             const ErChoice& choice, const BookForm& form) {
  session.log.gPutLog(host, "---------------------------------------");
  const std::string path = erFile(session, host, run, choice.bookName, form.ending);
  if (path.empty()) return "";
  bool stopped = false;
  const std::vector<ErTable> tables = readErTables(
      session, host, list, detail, [&choice](ErTable& table) { keepShown(table, choice); }, stopped);
  if (stopped) return endStopped(host, run);

  const BoxMaker maker{session, host, run, choice, form, tables, keyPicture(host), boxPattern(run.fonts)};
  const auto chosen = static_cast<std::size_t>(std::ranges::count(tables, false, &ErTable::extra));
  const std::vector<Box> places = placeErBoxes(boxSizes(maker), chosen, erGapUnit(run.fonts, erFont()));
  Drawing drawing;
  for (std::size_t i = 0; i < tables.size(); ++i) {
    drawing.objects.push_back({tables[i].name, places[i], [&maker, i] { return nextBox(maker, i); },
                               session.settings.excelObject2SetKage, 0.75});
  }
  const SizedFont font = erFont();
  Workbook book = Workbook::create({.sheetName = erSheetName(list), .fontName = font.family, .fontSize = font.size});
  book.sheet(0).select(cellAt("A1"));
  book.sheet(0).setShowGridLines(false);
  session.log.gPutLog(host, "PageSetUp FileExcel_ER:" + path);
  setUpErPage(book.sheet(0), host.clock.now());
  addDrawing(book, 0, drawing, run.fonts);
  session.log.gPutLog(host, "Save FileExcel_ER:" + path);
  saveBook(session, host, book, session.gCurrentSystemName, path, host.dialogs.stopRequested);
  session.log.gPutLog(host, "Normal End");
  tellCutTexts(host, run);
  return path;
}

}  // namespace

std::string pPutExcel2ER(Session& session, Host& host, BookRun& run, const frmTBList& list, frmTBDetail& detail,
                         const ErChoice& choice) {
  constexpr BookForm kForm{"_ER.xlsx", true};
  return runErForm(session, host, run, choice.openAfter, true,
                   [&] { return putEmbeddedBooks(session, host, run, list, detail, choice, kForm); });
}

std::string pPutExcel2ERMemoryExtend(Session& session, Host& host, BookRun& run, const frmTBList& list,
                                     frmTBDetail& detail, const ErChoice& choice) {
  constexpr BookForm kForm{"_ER.xls", false};
  return runErForm(session, host, run, choice.openAfter, false,
                   [&] { return putEmbeddedBooks(session, host, run, list, detail, choice, kForm); });
}

}  // namespace quillmarden
